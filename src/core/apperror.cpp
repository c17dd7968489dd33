#include "core/apperror.h"

QString AppError::describe(int number) {
  switch (number) {
    case ErrNo::InvalidCall: return QStringLiteral("Invalid procedure call or argument");
    case ErrNo::Overflow: return QStringLiteral("Overflow");
    case ErrNo::SubscriptRange: return QStringLiteral("Subscript out of range");
    case ErrNo::TypeMismatch: return QStringLiteral("Type mismatch");
    case ErrNo::InternalError: return QStringLiteral("Internal error");
    case ErrNo::FileNotFound: return QStringLiteral("File not found");
    case ErrNo::InputPastEnd: return QStringLiteral("Input past end of file");
    case ErrNo::PathFileAccess: return QStringLiteral("Path/File access error");
    case ErrNo::PathNotFound: return QStringLiteral("Path not found");
    case ErrNo::InvalidUseOfNull: return QStringLiteral("Invalid use of Null");
    case ErrNo::NoDdePeer:
      return QStringLiteral("No foreign application responded to a DDE initiate");
    case ErrNo::PrinterError:
      return QStringLiteral("Problem getting printer information from the system");
    case ErrNo::DialogCancelled: return QStringLiteral("Cancel was selected.");
    case ErrNo::NoCurrentRecord: return QStringLiteral("No current record.");
    case ErrNo::QueryTooComplex: return QStringLiteral("Query is too complex.");
    case ErrNo::PortOpen: return QStringLiteral("Invalid port number");
    case ErrNo::PortNotOpen: return QStringLiteral("Operation valid only when the port is open");
    case ErrNo::PortWrite: return QStringLiteral("Write to the port failed");
    default: return QStringLiteral("Application-defined or object-defined error");
  }
}

AppError& AppError::about(const QString& path, const QString& why) {
  description += QStringLiteral(": ") + path;
  if (!why.isEmpty()) description += QStringLiteral(" (") + why + QLatin1Char(')');
  return *this;
}
