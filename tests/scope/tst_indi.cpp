#include <QElapsedTimer>
#include <QTest>
#include <cmath>

#include "core/apperror.h"
#include "scope/gotoflow.h"
#include "scopetest.h"
#include "support/commalocale.h"
#include "support/indiserver.h"

namespace {

const QString kDevice = QStringLiteral("Telescope Simulator");
const QString kCelestron = QStringLiteral("Celestron GPS");

// A state on the INDI route, pointing at a server (running or not).
struct Rig : SimRig {
  Rig(quint16 port, const QString& device) {
    s.settings.CommPort = QStringLiteral("INDI");
    s.settings.UseAltLimit = false;
    s.indi = {QStringLiteral("localhost"), port, device};
    link.indi = {2000, 3000, 15000, 5000};
  }
};

}  // namespace

// INDI's own drivers through indiserver: its Celestron driver against our hand control
// simulator over a pseudo-terminal, and Tavorine against its telescope simulator.
class TestIndi : public QObject {
  Q_OBJECT
  IndiServer many_;       // Celestron GPS, Telescope and Focuser Simulator
  IndiServer celestron_;  // Celestron GPS alone

 private slots:
  void initTestCase() {
    if (!IndiServer::installed())
      QFAIL("indiserver not found: install indi-bin (tools/install-deps.sh)");
    QVERIFY(
        many_.start({"indi_celestron_gps", "indi_simulator_telescope", "indi_simulator_focus"}));
    QVERIFY(celestron_.start({"indi_celestron_gps"}));
  }

  // A hand control below 2.2 gets the 16-bit commands the program itself sends.
  void celestronDriver() {
    const QString coord = kCelestron + QStringLiteral(".EQUATORIAL_EOD_COORD.");
    auto near = [&](const char* element, double value, double scale, double units) {
      return std::fabs(many_.number(coord + element) - value) * scale < units * 360.0 / 65536;
    };

    ScopeSim sim;  // starts at RA 6h, Dec +11.25
    QVERIFY(sim.start("GPS", "normal", false,
                      {"--hc-version", "1.6", "--slew-seconds", "2", "--ra-units", "16384",
                       "--dec-units", "2048"}));
    QVERIFY(many_.waitFor('"' + kCelestron + ".CONNECTION.CONNECT\"==0", 10));
    QVERIFY(many_.set(kCelestron + ".DEVICE_AUTO_SEARCH.INDI_ENABLED=Off;INDI_DISABLED=On"));
    QVERIFY(many_.set(kCelestron + ".DEVICE_PORT.PORT=" + sim.address));
    QVERIFY(many_.set(kCelestron + ".CONNECTION.CONNECT=On"));
    // The 16-bit hand control does not know the variant question: the driver waits it out.
    QVERIFY2(many_.waitFor('"' + coord + "DEC\">11", 30), "the driver did not connect");
    QVERIFY(near("RA", 6.0, 1, 1) && near("DEC", 11.25, 1, 1));

    QVERIFY(many_.set(coord + "RA;DEC=5.575;22.0167"));
    QVERIFY2(many_.waitFor('"' + coord + "_STATE\"==2", 10), "no slew began");
    QVERIFY2(many_.waitFor('"' + coord + "_STATE\"==1", 20), "the slew did not end");
    QVERIFY(near("RA", 5.575, 15, 2) && near("DEC", 22.0167, 1, 2));

    // A slew, then a position read and a GoTo-in-progress ask.
    const QByteArray received = sim.received();
    QVERIFY2(received.startsWith("Kx"), received.left(20).toHex().constData());
    QVERIFY2(received.contains("R3B77,0FA8") && received.contains("EL"), received.constData());
  }

  // The place of date goes out and comes back as J2000, under decimal commas (INDI's client
  // library reads and writes numbers with the C library).
  void quickGotoAndReadBack() {
    CommaLocale comma;
    REQUIRE_COMMA_LOCALE(comma);
    Rig rig(many_.port, kDevice);
    const QString prefix = kDevice + QStringLiteral(".");
    QVERIFY(
        QuickGoto(rig.s, rig.link, {"5", "34", "30", "+", "22", "1", "0"}, GotoPanel::MainWindow));
    const EquatorialPlace ofDate = J2000ToOfDate({5.575, 22 + 1 / 60.0}, rig.s.now());
    QVERIFY(std::fabs(many_.number(prefix + "TARGET_EOD_COORD.RA") - ofDate.raHours) < 1e-6);
    QVERIFY(std::fabs(many_.number(prefix + "TARGET_EOD_COORD.DEC") - ofDate.decDegrees) < 1e-6);

    const QString ended = QStringLiteral("\"%1_STATE\"==1 && abs(\"%1DEC\"-%2)<0.01");
    QVERIFY2(many_.waitFor(ended.arg(prefix + "EQUATORIAL_EOD_COORD.").arg(ofDate.decDegrees), 30),
             "the slew did not end");
    const std::optional<PositionFields> read = ReadScopePosition(rig.s, rig.link);
    QCOMPARE(rig.env.prompter.texts(), QStringList{});
    QVERIFY(read);
    QCOMPARE(QStringList({read->txtRAHour, read->txtDecSign, read->txtDecDeg, read->txtDecMin}),
             QStringList({"5", "+", "22", "1"}));
    // The simulator stops within a few seconds of time of its target.
    QVERIFY2(std::fabs(read->txtRAMin.toDouble() - 34.5) <= 0.3, qPrintable(Shown(read)));
  }

  // What cannot work says why, for the GoTo and the read-back; Setup's Find lists telescopes.
  // clang-format off
  void failures_data() {
    QTest::addColumn<int>("server");  // 0: none, 1: many, 2: the Celestron driver alone
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("why");  // %1: the server's port
    QTest::newRow("server down") << 0 << kDevice << "No INDI server answers at localhost:%1.";
    QTest::newRow("unknown device")
        << 2 << kDevice
        << "The INDI server at localhost:%1 has no device \"Telescope Simulator\". It has: "
           "Celestron GPS.";
    QTest::newRow("no device named") << 1 << " " << "No INDI device is named in Setup.";
  }
  // clang-format on
  void failures() {
    QFETCH(int, server);
    QFETCH(QString, device);
    QFETCH(QString, why);
    const quint16 port = server == 0 ? UnusedPort() : (server == 1 ? many_ : celestron_).port;
    Rig rig(port, device);
    const QString text = ScopeTrapText(why.contains(QLatin1String("%1")) ? why.arg(port) : why);

    QElapsedTimer t;
    t.start();
    QVERIFY(!rig.slew(5, 34.5, "+", 22, 1));
    QCOMPARE(rig.read(), QStringLiteral("nothing"));
    QCOMPARE(rig.env.prompter.texts(), QStringList(2, text));
    for (const auto& e : rig.env.prompter.entries) QCOMPARE(e.title, QStringLiteral("Error"));
    QVERIFY2(t.elapsed() < 10000, qPrintable(QString::number(t.elapsed())));

    QStringList telescopes;
    try {
      telescopes = IndiMount::telescopes({QStringLiteral("localhost"), port, QString()});
      telescopes.sort();
    } catch (const AppError& e) {
      telescopes << ScopeTrapText(e.description);
    }
    const QStringList all{kCelestron, kDevice};
    QCOMPARE(telescopes, server == 0 ? QStringList{text} : all.mid(0, server == 2 ? 1 : 2));
  }
};

QTEST_GUILESS_MAIN(TestIndi)
#include "tst_indi.moc"
