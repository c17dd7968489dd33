#include <QSemaphore>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QThread>
#include <atomic>

#include "scope/chartlink.h"
#include "scope/scopecontrol.h"
#include "support/testenv.h"

namespace {

// A planetarium server on its own thread: records each line it receives and answers it the
// way it is told.
class ChartServer : public QThread {
 public:
  enum Style { AnswerOk, Greet, Refuse, Silent, HangUp, News };

  explicit ChartServer(Style style) : style_(style) {}
  ~ChartServer() override {
    stop_ = true;
    wait(5000);
  }

  quint16 listen() {
    start();
    listening_.acquire();
    return port_;
  }

  QStringList lines() {
    stop_ = true;
    wait(5000);
    return received_;
  }

 protected:
  void run() override {
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    port_ = server.serverPort();
    listening_.release();
    while (!stop_) {
      if (!server.waitForNewConnection(50)) continue;
      std::unique_ptr<QTcpSocket> s(server.nextPendingConnection());
      if (style_ == HangUp) {
        s->close();
        continue;
      }
      if (style_ == Greet) {
        s->write("OK! id=1 chart=Chart_1\r\n");
        s->waitForBytesWritten(1000);
      }
      QByteArray pending;
      while (!stop_ && s->state() == QAbstractSocket::ConnectedState) {
        // What came in while the greeting was being written is already waiting.
        if (s->bytesAvailable() == 0 && !s->waitForReadyRead(50)) continue;
        pending += s->readAll();
        int eol;
        while ((eol = pending.indexOf("\r\n")) >= 0) {
          received_ << QString::fromLatin1(pending.left(eol));
          pending.remove(0, eol + 2);
          if (style_ == Silent) continue;
          if (style_ == News) s->write(">Chart_1 selected object\r\n");
          s->write(style_ == Refuse ? "Failed!\r\n" : "OK!\r\n");
          s->waitForBytesWritten(1000);
        }
      }
    }
  }

 private:
  Style style_;
  QSemaphore listening_;
  quint16 port_ = 0;
  std::atomic<bool> stop_{false};
  QStringList received_;
};

const QStringList kCentring{"SETRA RA:5h34m00.00s", "SETDEC DEC:-22d1m00s", "SETFOV FOV:+5d00m00s",
                            "REDRAW"};

}  // namespace

class TestChartLink : public QObject {
  Q_OBJECT

 private slots:
  void serverCommands_data() {
    QTest::addColumn<double>("raHours");
    QTest::addColumn<double>("raMinutes");
    QTest::addColumn<QString>("sign");
    QTest::addColumn<double>("decDegrees");
    QTest::addColumn<double>("decMinutes");
    QTest::addColumn<QStringList>("commands");
    QTest::newRow("half to even") << 5.0 << 34.5 << "-" << 22.0 << 1.0 << kCentring.mid(0, 2);
    QTest::newRow("no sign") << 12.0 << 58.6 << "" << 0.0 << 35.5
                             << QStringList{"SETRA RA:12h59m00.00s", "SETDEC DEC:0d36m00s"};
    QTest::newRow("blank sign") << 1.0 << 0.0 << " " << 10.0 << 0.0
                                << QStringList{"SETRA RA:1h0m00.00s", "SETDEC DEC:10d0m00s"};
    QTest::newRow("minutes carry") << 12.0 << 59.6 << "+" << 44.0 << 59.5
                                   << QStringList{"SETRA RA:13h0m00.00s", "SETDEC DEC:+45d0m00s"};
    QTest::newRow("24h wraps") << 23.0 << 59.7 << "-" << 89.0 << 59.9
                               << QStringList{"SETRA RA:0h0m00.00s", "SETDEC DEC:-90d0m00s"};
  }
  void serverCommands() {
    QFETCH(double, raHours);
    QFETCH(double, raMinutes);
    QFETCH(QString, sign);
    QFETCH(double, decDegrees);
    QFETCH(double, decMinutes);
    QFETCH(QStringList, commands);
    QCOMPARE(ChartServerCommands(raHours, raMinutes, sign, decDegrees, decMinutes, 5).mid(0, 2),
             commands);
  }

  void moveChart_data() {
    QTest::addColumn<int>("style");
    QTest::addColumn<bool>("result");
    QTest::addColumn<QStringList>("received");
    QTest::addColumn<QString>("message");
    QTest::newRow("answered") << int(ChartServer::AnswerOk) << true << kCentring << "";
    QTest::newRow("greeted first") << int(ChartServer::Greet) << true << kCentring << "";
    QTest::newRow("news passed over") << int(ChartServer::News) << true << kCentring << "";
    QTest::newRow("refused") << int(ChartServer::Refuse) << false << kCentring.mid(0, 1)
                             << "Unable to communicate with CDC -Foreign application won't "
                                "perform DDE method or operation - 285";
    QTest::newRow("no answer") << int(ChartServer::Silent) << false << kCentring.mid(0, 1)
                               << "Unable to communicate with CDC -Timeout while waiting for DDE "
                                  "response - 286";
    QTest::newRow("hangs up") << int(ChartServer::HangUp) << false << QStringList{}
                              << "Unable to communicate with CDC -Foreign application quit - 291";
  }
  void moveChart() {
    QFETCH(int, style);
    QFETCH(bool, result);
    QFETCH(QStringList, received);
    QFETCH(QString, message);
    ChartServer server(static_cast<ChartServer::Style>(style));
    TestEnv env;
    ScopeLink link;
    link.chartPort = server.listen();
    link.chartTimeoutMs = 500;
    QElapsedTimer t;
    t.start();
    QCOMPARE(MoveChart(*env.state, link, 5, 34.5, "-", 22, 1, 5), result);
    QVERIFY(t.elapsed() < 3000);
    QCOMPARE(server.lines(), received);
    QCOMPARE(env.prompter.texts(), message.isEmpty() ? QStringList{} : QStringList{message});
    if (!message.isEmpty()) QCOMPARE(env.prompter.entries[0].title, QStringLiteral("Error"));
  }

  void nothingListening() {
    TestEnv env;
    ScopeLink link;
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    link.chartPort = probe.serverPort();
    probe.close();
    QVERIFY(!MoveChart(*env.state, link, 5, 34.5, "-", 22, 1, 5));
    QCOMPARE(env.prompter.texts(), QStringList{"Start CDC before using this feature."});
    QCOMPARE(env.prompter.entries[0].title, QStringLiteral("Error"));
  }
};

QTEST_GUILESS_MAIN(TestChartLink)
#include "tst_chartlink.moc"
