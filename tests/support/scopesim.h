#pragma once

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

// Ends a child process: asked first, then killed when it does not go within `ms`. False when
// it had to be killed.
inline bool EndProcess(QProcess& process, int ms) {
  if (process.state() == QProcess::NotRunning) return true;
  process.terminate();
  if (process.waitForFinished(ms)) return true;
  process.kill();
  process.waitForFinished(1000);
  return false;
}

// The telescope simulator as a child process: a pseudo-terminal (or a relay port) whose
// first output line is what Setup's Comm Port takes, and a log of every byte it received.
// Its slews end at once unless `extra` asks for --slew-seconds.
class ScopeSim {
 public:
  bool start(const QString& family, const QString& mode = QStringLiteral("normal"),
             bool relay = false, const QStringList& extra = {}) {
    QStringList args{QStringLiteral(SCOPE_SIM_PATH),
                     QStringLiteral("--family"),
                     family,
                     QStringLiteral("--mode"),
                     mode,
                     QStringLiteral("--log"),
                     logPath(),
                     QStringLiteral("--slew-seconds"),
                     QStringLiteral("0")};
    args << extra;
    if (relay) args << QStringLiteral("--tcp") << QStringLiteral("0");
    process.start(QStringLiteral("python3"), args);
    if (!process.waitForStarted(5000)) return false;
    QElapsedTimer t;
    t.start();
    while (!process.canReadLine() && t.elapsed() < 5000) process.waitForReadyRead(100);
    address = QString::fromLocal8Bit(process.readLine()).trimmed();
    return !address.isEmpty();
  }
  ~ScopeSim() { stop(); }

  int stop() {
    if (!EndProcess(process, 3000)) return -1;
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
  }

  QString logPath() const { return dir.filePath(QStringLiteral("received.log")); }
  QByteArray received() const {
    QFile f(logPath());
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
  }

  QTemporaryDir dir;
  QProcess process;
  QString address;  // device path, or "HCD 127.0.0.1:PORT"
};

// A local port with nothing listening on it.
inline quint16 UnusedPort() {
  QTcpServer s;
  s.listen(QHostAddress::LocalHost);
  const quint16 p = s.serverPort();
  s.close();
  return p;
}
