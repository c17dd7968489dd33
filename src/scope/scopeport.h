#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <memory>

class QSerialPort;

// Where the telescope is reached, from the CommPort setting. A text beginning with "/" is a
// device path; otherwise a leading number above 0 is a serial port number; "INDI" is a mount
// of an INDI server (its address is kept apart, IndiSettings); anything else ("HCD",
// "HCD host:port", "0") is the proxy route.
struct ScopeRoute {
  bool serial = false;
  bool indi = false;
  QString device;                                   // serial: the device to open
  QString proxyHost = QStringLiteral("127.0.0.1");  // proxy: where the relay listens
  quint16 proxyPort = 2000;

  static ScopeRoute of(const QString& commPort);
};

// The device name of serial port number N: "COMN" on Windows, "/dev/ttyS<N-1>" elsewhere.
QString SerialDeviceName(int number);

// Why a serial device would not open, as far as the system tells.
struct PortOpenProblem {
  enum Fault { Missing, NoPermission, Busy, Other };
  Fault fault = Other;
  QString device;
  QStringList portsFound;     // Missing: the serial ports this computer has
  QString group;              // NoPermission: the group that may use the device
  QString user;               // NoPermission: who runs the program
  bool groupPending = false;  // NoPermission: the user is in the group since this session began
  QString systemText;         // Other: the system's own words
};

// The serial ports this computer has, by device path.
QStringList FoundSerialPorts();

// The description of a port that would not open: what is wrong and what the user can do.
QString PortOpenFailureText(const PortOpenProblem& problem);

// A serial line to the telescope, open only for one exchange. Every call returns within its
// time limit; failures raise AppError (8002 open, 8018 not open, 8020 write).
class ScopePort {
 public:
  virtual ~ScopePort() = default;
  virtual void open() = 0;
  virtual bool isOpen() const = 0;
  virtual void write(const QByteArray& bytes) = 0;
  // Whatever the telescope has sent and waits to be read.
  virtual QByteArray readAll() = 0;
  virtual void close() = 0;
};

// 9600 baud, no parity, 8 data bits, 1 stop bit, no flow control.
class SerialScopePort : public ScopePort {
 public:
  explicit SerialScopePort(QString device, int timeoutMs = 2000);
  ~SerialScopePort() override;

  void open() override;
  bool isOpen() const override;
  void write(const QByteArray& bytes) override;
  QByteArray readAll() override;
  void close() override;

 private:
  QString device_;
  int timeoutMs_;
  std::unique_ptr<QSerialPort> port_;
};
