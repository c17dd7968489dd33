#include "scope/scopeport.h"

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QSerialPort>
#include <QSerialPortInfo>

#ifdef Q_OS_UNIX
#include <grp.h>
#include <pwd.h>
#include <unistd.h>
#endif

#include "core/apperror.h"
#include "core/numtext.h"

ScopeRoute ScopeRoute::of(const QString& commPort) {
  ScopeRoute r;
  const QString text = commPort.trimmed();
  if (text.startsWith(QLatin1Char('/'))) {
    r.serial = true;
    r.device = text;
    return r;
  }
  const double number = Val(commPort);
  if (number > 0) {
    r.serial = true;
    r.device = SerialDeviceName(static_cast<int>(RoundHalfEven(number)));
    return r;
  }
  if (text.compare(QLatin1String("INDI"), Qt::CaseInsensitive) == 0) {
    r.indi = true;
    return r;
  }
  if (text.startsWith(QLatin1String("HCD"), Qt::CaseInsensitive)) {
    const QString address = text.mid(3).trimmed();
    if (!address.isEmpty()) {
      const int colon = address.lastIndexOf(QLatin1Char(':'));
      bool ok = false;
      const uint port = colon >= 0 ? address.mid(colon + 1).toUInt(&ok) : 0;
      if (colon >= 0 && ok && port > 0 && port <= 65535) {
        r.proxyPort = static_cast<quint16>(port);
        if (colon > 0) r.proxyHost = address.left(colon);
      } else if (colon < 0) {
        r.proxyHost = address;
      }
    }
  }
  return r;
}

QString SerialDeviceName(int number) {
#ifdef Q_OS_WIN
  return QStringLiteral("COM%1").arg(number);
#else
  return QStringLiteral("/dev/ttyS%1").arg(number - 1);
#endif
}

QString PortOpenFailureText(const PortOpenProblem& p) {
  switch (p.fault) {
    case PortOpenProblem::Missing:
      return QStringLiteral("There is no port %1 on this computer.\n").arg(p.device) +
             (p.portsFound.isEmpty()
                  ? QStringLiteral("No serial ports were found: is the telescope's cable or USB "
                                   "adapter plugged in?")
                  : QStringLiteral("Ports found: %1.")
                        .arg(p.portsFound.join(QStringLiteral(", ")))) +
             QStringLiteral("\nChoose the port in Tools, Setup.");
    case PortOpenProblem::NoPermission:
      if (p.groupPending)
        return QStringLiteral(
                   "You were added to the group %1, which may use %2, after this "
                   "session began.\nLog out and log in again (or restart the "
                   "computer), then try again.")
            .arg(p.group, p.device);
      return QStringLiteral(
                 "You may not use %1: only members of the group %2 may.\nAdd "
                 "yourself to it with the command\n    sudo usermod -aG %2 %3\nthen "
                 "log out and log in again.")
          .arg(p.device, p.group, p.user);
    case PortOpenProblem::Busy:
      return QStringLiteral(
                 "%1 is in use by another program, perhaps another copy of "
                 "Tavorine.\nClose it, then try again.")
          .arg(p.device);
    case PortOpenProblem::Other: break;
  }
  return p.device + QStringLiteral(": ") + p.systemText;
}

QStringList FoundSerialPorts() {
  QStringList ports;
  for (const QSerialPortInfo& info : QSerialPortInfo::availablePorts())
    ports << info.systemLocation();
  ports.sort();
  return ports;
}

namespace {

QString UserName() {
#ifdef Q_OS_UNIX
  if (const struct passwd* pw = getpwuid(geteuid())) return QString::fromLocal8Bit(pw->pw_name);
#endif
  return QStringLiteral("$USER");
}

// Whether the group database lists the user in the group although this process does not
// carry it: the membership is newer than the login.
bool GroupIsPending(const QString& group, const QString& user) {
#ifndef Q_OS_UNIX
  return false;
#else
  const struct group* g = getgrnam(group.toLocal8Bit().constData());
  if (!g) return false;
  bool listed = false;
  for (char** m = g->gr_mem; m && *m && !listed; ++m) listed = user == QString::fromLocal8Bit(*m);
  if (!listed) return false;
  gid_t groups[256];
  const int n = getgroups(256, groups);
  for (int i = 0; i < n; ++i)
    if (groups[i] == g->gr_gid) return false;
  return getegid() != g->gr_gid;
#endif
}

PortOpenProblem Diagnose(const QString& device, QSerialPort::SerialPortError error,
                         const QString& systemText) {
  PortOpenProblem p;
  p.device = device;
  p.systemText = systemText;
  const QFileInfo file(device);
  if (error == QSerialPort::DeviceNotFoundError || !file.exists()) {
    p.fault = PortOpenProblem::Missing;
    p.portsFound = FoundSerialPorts();
  } else if (error == QSerialPort::PermissionError) {
    // A device we may read and write that still refuses is held by someone else.
    if (file.isReadable() && file.isWritable()) {
      p.fault = PortOpenProblem::Busy;
    } else {
      p.fault = PortOpenProblem::NoPermission;
      p.group = file.group();
      if (p.group.isEmpty() || p.group == QLatin1String("root"))
        p.group = QStringLiteral("dialout");
      p.user = UserName();
      p.groupPending = GroupIsPending(p.group, p.user);
    }
  }
  return p;
}

}  // namespace

SerialScopePort::SerialScopePort(QString device, int timeoutMs)
    : device_(std::move(device)), timeoutMs_(timeoutMs), port_(std::make_unique<QSerialPort>()) {}

SerialScopePort::~SerialScopePort() { close(); }

void SerialScopePort::open() {
  if (port_->isOpen()) return;
  port_->setPortName(device_);
  port_->setBaudRate(QSerialPort::Baud9600);
  port_->setDataBits(QSerialPort::Data8);
  port_->setParity(QSerialPort::NoParity);
  port_->setStopBits(QSerialPort::OneStop);
  port_->setFlowControl(QSerialPort::NoFlowControl);
  if (!port_->open(QIODevice::ReadWrite)) {
    const QString why =
        PortOpenFailureText(Diagnose(device_, port_->error(), port_->errorString()));
    port_->clearError();
    throw AppError(ErrNo::PortOpen, why);
  }
}

bool SerialScopePort::isOpen() const { return port_->isOpen(); }

void SerialScopePort::write(const QByteArray& bytes) {
  if (!port_->isOpen()) throw AppError::of(ErrNo::PortNotOpen);
  if (port_->write(bytes) != bytes.size()) throw AppError::of(ErrNo::PortWrite);
  const QDeadlineTimer deadline(timeoutMs_);
  while (port_->bytesToWrite() > 0 && !deadline.hasExpired())
    port_->waitForBytesWritten(static_cast<int>(qMax<qint64>(1, deadline.remainingTime())));
  if (port_->bytesToWrite() > 0) {
    port_->clear(QSerialPort::Output);
    throw AppError::of(ErrNo::PortWrite);
  }
}

QByteArray SerialScopePort::readAll() {
  if (!port_->isOpen()) throw AppError::of(ErrNo::PortNotOpen);
  // Take what the driver holds; stop as soon as the line is quiet, and never after the limit.
  const QDeadlineTimer deadline(timeoutMs_);
  while (!deadline.hasExpired() && port_->waitForReadyRead(20)) {
  }
  return port_->readAll();
}

void SerialScopePort::close() {
  if (port_->isOpen()) port_->close();
}
