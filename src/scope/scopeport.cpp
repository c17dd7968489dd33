#include "scope/scopeport.h"

#include <QDeadlineTimer>
#include <QSerialPort>

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
    const bool missing = port_->error() == QSerialPort::DeviceNotFoundError;
    const QString why = missing ? AppError::describe(ErrNo::PortOpen)
                                : device_ + QStringLiteral(": ") + port_->errorString();
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
