#include <QElapsedTimer>
#include <QTest>
#include <cmath>

#include "core/apperror.h"
#include "scope/gotoflow.h"
#include "scope/scopecontrol.h"
#include "support/commalocale.h"
#include "support/indiserver.h"
#include "support/testenv.h"

namespace {

const QString kDevice = QStringLiteral("Telescope Simulator");

// A state on the INDI route, pointing at a server (running or not).
struct Rig {
  IndiServer server;
  TestEnv env;
  ScopeLink link;
  AppState& state() { return *env.state; }
  void pointAt(quint16 port, const QString& device) {
    state().settings.CommPort = QStringLiteral("INDI");
    state().settings.UseAltLimit = false;
    state().indi = {QStringLiteral("localhost"), port, device};
    link.indi = {2000, 3000, 15000, 5000};
  }
};

QString show(const std::optional<PositionFields>& f) {
  if (!f) return QStringLiteral("nothing");
  return QStringList{f->txtRAHour, f->txtRAMin, f->txtDecSign, f->txtDecDeg, f->txtDecMin}.join(
      '|');
}

}  // namespace

// Tavorine against INDI's telescope simulator through indiserver.
class TestIndiRoute : public QObject {
  Q_OBJECT

 private slots:
  void initTestCase() {
    if (!IndiServer::installed())
      QFAIL("indiserver not found: install indi-bin (tools/install-deps.sh)");
  }

  // A declined altitude alert reaches nothing; Quick GoTo connects the device, sends the place
  // of date, and the read-back turns the mount's place back into J2000. INDI's client library
  // writes and reads numbers with the C library, so this runs with decimal commas.
  void quickGotoAndReadBack() {
    CommaLocale comma;
    REQUIRE_COMMA_LOCALE(comma);
    Rig rig;
    QVERIFY(rig.server.start({QStringLiteral("indi_simulator_telescope")}));
    rig.pointAt(rig.server.port, kDevice);
    const QuickGotoFields target{"5", "34", "30", "+", "22", "1", "0"};
    const QString prefix = kDevice + QStringLiteral(".");

    rig.state().settings.UseAltLimit = true;
    rig.state().settings.MinAlt = 90;
    rig.env.prompter.answer(Prompter::Answer::No);
    QVERIFY(!QuickGoto(rig.state(), rig.link, target, GotoPanel::MainWindow));
    QCOMPARE(rig.env.prompter.entries.size(), 1);
    QCOMPARE(rig.env.prompter.entries[0].title, QStringLiteral("Altitude Alert!"));
    QCOMPARE(rig.server.get(prefix + QStringLiteral("CONNECTION.CONNECT")), QStringLiteral("Off"));

    rig.env.prompter.clear();
    rig.state().settings.UseAltLimit = false;
    QVERIFY(QuickGoto(rig.state(), rig.link, target, GotoPanel::MainWindow));
    QCOMPARE(rig.env.prompter.texts(), QStringList{});
    const EquatorialPlace ofDate = J2000ToOfDate({5.575, 22 + 1 / 60.0}, rig.state().now());
    QVERIFY(std::fabs(rig.server.number(prefix + QStringLiteral("TARGET_EOD_COORD.RA")) -
                      ofDate.raHours) < 1e-6);
    QVERIFY(std::fabs(rig.server.number(prefix + QStringLiteral("TARGET_EOD_COORD.DEC")) -
                      ofDate.decDegrees) < 1e-6);

    QVERIFY2(rig.server.waitFor(QStringLiteral("\"%1EQUATORIAL_EOD_COORD._STATE\"==1 && "
                                               "abs(\"%1EQUATORIAL_EOD_COORD.DEC\"-%2)<0.01")
                                    .arg(prefix)
                                    .arg(ofDate.decDegrees),
                                30),
             "the slew did not end");
    const std::optional<PositionFields> read = ReadScopePosition(rig.state(), rig.link);
    QCOMPARE(rig.env.prompter.texts(), QStringList{});
    QVERIFY(read);
    QCOMPARE(QStringList({read->txtRAHour, read->txtDecSign, read->txtDecDeg, read->txtDecMin}),
             QStringList({"5", "+", "22", "1"}));
    // The simulator stops within a few seconds of time of its target.
    QVERIFY2(std::fabs(read->txtRAMin.toDouble() - 34.5) <= 0.3, qPrintable(show(read)));
  }

  // What cannot work says why, once for the GoTo and once for the read-back, within the limits;
  // Setup's Find lists the telescopes among the devices, or says why it cannot.
  void failures_data() {
    QTest::addColumn<QStringList>("drivers");  // none: no server at all
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("why");  // %1: the server's port
    QTest::newRow("server down") << QStringList{} << kDevice
                                 << "No INDI server answers at localhost:%1.";
    QTest::newRow("unknown device")
        << QStringList{"indi_simulator_telescope"} << "Celestron GPS"
        << "The INDI server at localhost:%1 has no device \"Celestron GPS\". It has: Telescope "
           "Simulator.";
    QTest::newRow("not a telescope")
        << QStringList{"indi_simulator_focus", "indi_simulator_telescope"} << "Focuser Simulator"
        << "The INDI device \"Focuser Simulator\" is not a telescope.";
    QTest::newRow("no device named") << QStringList{"indi_simulator_telescope"} << " "
                                     << "No INDI device is named in Setup.";
  }
  void failures() {
    QFETCH(QStringList, drivers);
    QFETCH(QString, device);
    QFETCH(QString, why);
    Rig rig;
    if (!drivers.isEmpty()) QVERIFY(rig.server.start(drivers));
    const quint16 port = drivers.isEmpty() ? UnusedPort() : rig.server.port;
    rig.pointAt(port, device);
    const QString text = ScopeTrapText(why.contains(QLatin1String("%1")) ? why.arg(port) : why);

    QElapsedTimer t;
    t.start();
    QVERIFY(!ScopeGoto(rig.state(), rig.link, 5, 34.5, QStringLiteral("+"), 22, 1));
    QCOMPARE(rig.env.prompter.texts(), QStringList{text});
    rig.env.prompter.clear();
    QCOMPARE(show(ReadScopePosition(rig.state(), rig.link)), QStringLiteral("nothing"));
    QCOMPARE(rig.env.prompter.texts(), QStringList{text});
    for (const auto& e : rig.env.prompter.entries) QCOMPARE(e.title, QStringLiteral("Error"));
    QVERIFY2(t.elapsed() < 10000, qPrintable(QString::number(t.elapsed())));

    QStringList found;
    try {
      found = IndiMount::telescopes({QStringLiteral("localhost"), port, QString()});
    } catch (const AppError& e) {
      found << ScopeTrapText(e.description);
    }
    QCOMPARE(found, QStringList{drivers.isEmpty() ? text : kDevice});
  }
};

QTEST_GUILESS_MAIN(TestIndiRoute)
#include "tst_indiroute.moc"
