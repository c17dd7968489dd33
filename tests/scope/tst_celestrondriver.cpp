#include <QTest>
#include <cmath>

#include "support/indiserver.h"
#include "support/scopesim.h"

// INDI's own Celestron driver against our hand control simulator over a pseudo-terminal:
// what the simulator answers must satisfy a program we did not write.
class TestCelestronDriver : public QObject {
  Q_OBJECT

 private slots:
  void initTestCase() {
    if (!IndiServer::installed())
      QFAIL("indiserver not found: install indi-bin (tools/install-deps.sh)");
  }

  // A hand control below 2.2 gets the 16-bit commands, one from 2.2 on the precise ones. The
  // target is the worked position RA 05 34.5, Dec +22 01. Each case has a server of its own:
  // the driver remembers the hand control's version across reconnects.
  void connectSlewReadBack_data() {
    QTest::addColumn<QString>("version");
    QTest::addColumn<QByteArray>("slew");     // what the simulator must receive
    QTest::addColumn<QByteArray>("polling");  // a position read, then a GoTo-in-progress ask
    QTest::addColumn<double>("tolerance");    // degrees, the command's resolution
    QTest::newRow("16-bit 1.6") << "1.6" << QByteArray("R3B77,0FA8") << QByteArray("EL")
                                << 360.0 / 65536;
    QTest::newRow("precise 4.21") << "4.21" << QByteArray("r3B777777,0FA80496") << QByteArray("eL")
                                  << 1e-6;
  }
  void connectSlewReadBack() {
    QFETCH(QString, version);
    QFETCH(QByteArray, slew);
    QFETCH(QByteArray, polling);
    QFETCH(double, tolerance);
    const QString dev = QStringLiteral("Celestron GPS");
    const QString coord = dev + QStringLiteral(".EQUATORIAL_EOD_COORD.");

    ScopeSim sim;  // starts at RA 6h, Dec +11.25
    QVERIFY(sim.start(QStringLiteral("GPS"), QStringLiteral("normal"), false,
                      {QStringLiteral("--hc-version"), version, QStringLiteral("--slew-seconds"),
                       QStringLiteral("2"), QStringLiteral("--ra-units"), QStringLiteral("16384"),
                       QStringLiteral("--dec-units"), QStringLiteral("2048")}));
    IndiServer server;
    QVERIFY(server.start({QStringLiteral("indi_celestron_gps")}));
    QVERIFY(
        server.waitFor(QLatin1Char('"') + dev + QStringLiteral(".CONNECTION.CONNECT\"==0"), 10));
    QVERIFY(
        server.set(dev + QStringLiteral(".DEVICE_AUTO_SEARCH.INDI_ENABLED=Off;INDI_DISABLED=On")));
    QVERIFY(server.set(dev + QStringLiteral(".DEVICE_PORT.PORT=") + sim.address));
    QVERIFY(server.set(dev + QStringLiteral(".CONNECTION.CONNECT=On")));
    // The 16-bit hand control does not know the variant question: the driver waits it out.
    QVERIFY2(server.waitFor(QLatin1Char('"') + coord + QStringLiteral("DEC\">11"), 30),
             "the driver did not connect");
    QVERIFY(std::fabs(server.number(coord + QStringLiteral("RA")) - 6.0) < tolerance);
    QVERIFY(std::fabs(server.number(coord + QStringLiteral("DEC")) - 11.25) < tolerance);

    QVERIFY(server.set(coord + QStringLiteral("RA;DEC=5.575;22.0167")));
    QVERIFY2(server.waitFor(QLatin1Char('"') + coord + QStringLiteral("_STATE\"==2"), 10),
             "no slew began");
    QVERIFY2(server.waitFor(QLatin1Char('"') + coord + QStringLiteral("_STATE\"==1"), 20),
             "the slew did not end");
    QVERIFY(std::fabs(server.number(coord + QStringLiteral("RA")) - 5.575) * 15 < 2 * tolerance);
    QVERIFY(std::fabs(server.number(coord + QStringLiteral("DEC")) - 22.0167) < 2 * tolerance);

    const QByteArray received = sim.received();
    QVERIFY2(received.startsWith("Kx"), received.left(20).toHex().constData());
    QVERIFY2(received.contains(slew), received.constData());
    QVERIFY2(received.contains(polling), received.constData());
  }
};

QTEST_GUILESS_MAIN(TestCelestronDriver)
#include "tst_celestrondriver.moc"
