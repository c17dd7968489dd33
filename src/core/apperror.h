#pragma once

#include <QString>
#include <exception>

// Error numbers. The classic run-time numbers keep their values because the user sees them
// ("description - number") and some handlers act on a particular one. Numbers from 1000 up are
// this program's own.
namespace ErrNo {
constexpr int InvalidCall = 5;          // "Invalid procedure call or argument"
constexpr int Overflow = 6;             // "Overflow"
constexpr int SubscriptRange = 9;       // "Subscript out of range"
constexpr int TypeMismatch = 13;        // "Type mismatch"
constexpr int InternalError = 51;       // anything unexpected that reached a handler
constexpr int FileNotFound = 53;        // "File not found"
constexpr int InputPastEnd = 62;        // "Input past end of file"
constexpr int PathFileAccess = 75;      // "Path/File access error"
constexpr int PathNotFound = 76;        // "Path not found"
constexpr int InvalidUseOfNull = 94;    // "Invalid use of Null"
constexpr int NoDdePeer = 228;          // the planetarium is not answering
constexpr int PrinterError = 484;       // "Problem getting printer information"
constexpr int DialogCancelled = 32755;  // a file dialog was cancelled
// Our own.
constexpr int Database = 3000;         // an SQLite error; the description carries its text
constexpr int NoCurrentRecord = 3021;  // "No current record."
constexpr int QueryTooComplex = 3360;  // "Query is too complex."
constexpr int PortOpen = 8002;         // the serial port could not be opened
constexpr int PortNotOpen = 8018;      // a write to a port that is not open
constexpr int PortWrite = 8020;        // a write to the port failed or timed out
// The INDI route; the description names what is missing.
constexpr int IndiServer = 8101;  // no INDI server answers, or it went away
constexpr int IndiDevice = 8102;  // the server has no such device, or it is no telescope
constexpr int IndiMount = 8103;   // the device did not connect to its mount
constexpr int IndiGoto = 8104;    // the device refused a GoTo or did not take it
}  // namespace ErrNo

// The one error type thrown by the program's logic. Handlers catch it at their failure
// boundary (see handler.h) and show "description - number".
struct AppError : std::exception {
  int number = 0;
  QString description;

  AppError(int n, QString d) : number(n), description(std::move(d)) {}
  const char* what() const noexcept override { return "AppError"; }

  // The usual text of a trapped error.
  QString text() const { return description + QStringLiteral(" - ") + QString::number(number); }

  // The classic description of a classic number.
  static QString describe(int number);
  static AppError of(int number) { return AppError(number, describe(number)); }
  // The same for a file: "description: path", and the reason in brackets when there is one.
  static AppError ofFile(int number, const QString& path, const QString& why = QString()) {
    return of(number).about(path, why);
  }
  // Names the file an error is about: ": path" after the description, then the reason in
  // brackets when there is one.
  AppError& about(const QString& path, const QString& why = QString());
};
