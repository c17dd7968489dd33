#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QThread>

#include "scope/chartlink.h"
#include "scope/scopecontrol.h"
#include "support/scopesim.h"
#include "support/testenv.h"

namespace {

// A planetarium server on the test's thread (the link runs on one of its own): sends
// `greeting` to each caller, records each line it receives and answers it with `answer`; a
// null greeting hangs up at once.
struct ChartServer : QTcpServer {
  QStringList lines;
  ChartServer(const QByteArray& greeting, const QByteArray& answer) {
    listen(QHostAddress::LocalHost);
    connect(this, &QTcpServer::newConnection, [=] {
      QTcpSocket* s = nextPendingConnection();
      if (greeting.isNull()) return s->close();
      s->write(greeting);
      connect(s, &QTcpSocket::readyRead, [=] {
        while (s->canReadLine()) {
          lines << QString::fromLatin1(s->readLine()).trimmed();
          s->write(answer);
        }
      });
    });
  }
};

const QStringList kCentring{"SETRA RA:5h34m00.00s", "SETDEC DEC:-22d1m00s", "SETFOV FOV:+5d00m00s",
                            "REDRAW"};

}  // namespace

class TestChartLink : public QObject {
  Q_OBJECT

 private slots:
  // The server's commands; the rounding and the carry are the one-line command's too.
  void commands_data() {
    QTest::addColumn<QList<double>>("p");  // RA h, m, Dec d, m
    QTest::addColumn<QString>("sign");
    QTest::addColumn<QString>("sent");  // SETRA|SETDEC
    QTest::newRow("minutes carry") << QList<double>{12, 59.6, 44, 59.5} << "+"
                                   << "SETRA RA:13h0m00.00s|SETDEC DEC:+45d0m00s";
    QTest::newRow("blank sign") << QList<double>{12, 58.6, 0, 35.5} << " "
                                << "SETRA RA:12h59m00.00s|SETDEC DEC:0d36m00s";
    QTest::newRow("24h wraps") << QList<double>{23, 59.7, 89, 59.9} << "-"
                               << "SETRA RA:0h0m00.00s|SETDEC DEC:-90d0m00s";
  }
  void commands() {
    QFETCH(QList<double>, p);
    QFETCH(QString, sign);
    QTEST(ChartServerCommands(p[0], p[1], sign, p[2], p[3], 5).mid(0, 2).join('|'), "sent");
  }

  void moveCommand() {
    QCOMPARE(MoveChartCommand(5, 34.5, "-", 22, 1, 5),
             QByteArray("MOVE RA:5h34m00.00s DEC:-22\xB0" "1'00\" FOV:+5\xB0" "00'00\""));
  }

  void moveChart_data() {
    QTest::addColumn<QByteArray>("greeting");  // null: hangs up; "-": nothing listens
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QStringList>("received");
    QTest::addColumn<QString>("message");
    const QString cdc = QStringLiteral("Unable to communicate with CDC -");
    const QByteArray ok("OK!\r\n");
    QTest::newRow("greeted first") << QByteArray("OK! id=1 chart=Chart_1\r\n") << ok << kCentring
                                   << "";
    QTest::newRow("news passed over") << QByteArray("") << ">Chart_1 selected object\r\n" + ok
                                      << kCentring << "";
    QTest::newRow("refused")
        << QByteArray("") << QByteArray("Failed!\r\n") << kCentring.mid(0, 1)
        << cdc + "Foreign application won't perform DDE method or operation - 285";
    QTest::newRow("no answer") << QByteArray("") << QByteArray() << kCentring.mid(0, 1)
                               << cdc + "Timeout while waiting for DDE response - 286";
    QTest::newRow("hangs up") << QByteArray() << QByteArray() << QStringList{}
                              << cdc + "Foreign application quit - 291";
    QTest::newRow("nothing listening") << QByteArray("-") << QByteArray() << QStringList{}
                                       << "Start CDC before using this feature.";
  }
  void moveChart() {
    QFETCH(QByteArray, greeting);
    QFETCH(QByteArray, answer);
    QFETCH(QString, message);
    ChartServer server(greeting, answer);
    TestEnv env;
    ScopeLink link;
    link.chartPort = greeting == "-" ? UnusedPort() : server.serverPort();
    link.chartTimeoutMs = 500;
    bool result = false;
    std::unique_ptr<QThread> client(QThread::create(
        [&] { result = MoveChart(*env.state, link, 5, 34.5, "-", 22, 1, 5); }));
    client->start();
    const auto join = qScopeGuard([&] { client->wait(); });
    QTRY_VERIFY_WITH_TIMEOUT(client->isFinished(), 3000);
    QCOMPARE(result, message.isEmpty());
    QTEST(server.lines, "received");
    QCOMPARE(env.prompter.texts(), message.isEmpty() ? QStringList{} : QStringList{message});
    for (const auto& e : env.prompter.entries) QCOMPARE(e.title, QStringLiteral("Error"));
  }
};

QTEST_GUILESS_MAIN(TestChartLink)
#include "tst_chartlink.moc"
