#pragma once

#include <QDeadlineTimer>
#include <QProcess>
#include <QStandardPaths>
#include <QTcpSocket>
#include <QTemporaryDir>

#include "support/scopesim.h"

// An indiserver (Debian's indi-bin) with its drivers, on a free port, with a home folder of
// its own so no driver remembers anything between tests; and INDI's own command line tools to
// look at it. Every call returns within its limit.
class IndiServer {
 public:
  static bool installed() {
    return !QStandardPaths::findExecutable(QStringLiteral("indiserver")).isEmpty();
  }

  // A port taken by another test between choosing and binding gets another try.
  bool start(const QStringList& drivers) {
    for (int attempt = 0; attempt < 3; ++attempt)
      if (startOnce(drivers)) return true;
    return false;
  }
  bool startOnce(const QStringList& drivers) {
    port = UnusedPort();
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("HOME"), home.path());
    process.setProcessEnvironment(env);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral("indiserver"),
                  QStringList{QStringLiteral("-p"), QString::number(port), QStringLiteral("-u"),
                              home.filePath(QStringLiteral("socket"))} +
                      drivers);
    if (!process.waitForStarted(5000)) return false;
    const QDeadlineTimer deadline(10000);
    while (!deadline.hasExpired() && process.state() == QProcess::Running) {
      QTcpSocket probe;
      probe.connectToHost(QStringLiteral("127.0.0.1"), port);
      if (probe.waitForConnected(500)) return true;
      QTest::qWait(100);
    }
    stop();
    return false;
  }
  ~IndiServer() { stop(); }

  void stop() { EndProcess(process, 5000); }

  // indi_setprop "device.property.element=value"; true when it was sent.
  bool set(const QString& assignment) {
    return tool(QStringLiteral("indi_setprop"), {assignment}, 5).first;
  }
  // indi_getprop of one element: its value, or "" when the server does not have it.
  QString get(const QString& element) {
    const QString out =
        tool(QStringLiteral("indi_getprop"), {QStringLiteral("-1"), element}, 3).second;
    return out.section(QLatin1Char('\n'), 0, 0).trimmed();
  }
  double number(const QString& element) { return get(element).toDouble(); }
  // indi_eval -w: true once the expression holds, false when `seconds` pass first.
  bool waitFor(const QString& expression, int seconds) {
    return tool(QStringLiteral("indi_eval"), {QStringLiteral("-w"), expression}, seconds).first;
  }

  quint16 port = 0;
  QTemporaryDir home;
  QProcess process;

 private:
  std::pair<bool, QString> tool(const QString& program, const QStringList& args, int seconds) {
    QProcess p;
    p.start(program, QStringList{QStringLiteral("-p"), QString::number(port), QStringLiteral("-t"),
                                 QString::number(seconds)} +
                         args);
    const bool finished = p.waitForFinished((seconds + 5) * 1000);
    if (!finished) EndProcess(p, 0);
    const bool ok = finished && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
    return {ok, QString::fromLocal8Bit(p.readAllStandardOutput())};
  }
};
