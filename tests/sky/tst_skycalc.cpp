#include <erfa.h>

#include <QAbstractSpinBox>
#include <QCalendarWidget>
#include <QPushButton>
#include <QTimeZone>
#include <QtTest>
#include <cmath>

#include "core/apperror.h"
#include "core/numtext.h"
#include "sky/observingclock.h"
#include "sky/ofdate.h"
#include "sky/skycalc.h"
#include "sky/userdatedialog.h"
#include "support/csvrows.h"
#include "support/testenv.h"

namespace {

const SkyPosition kVega{"18", "36.939", "+", "38", "47.0217"};

struct AltAzRow {
  QString site;
  double hourAngle;
  QString decSign;
  QString decDeg, decMin;
  double altitude, azimuth;
};

// One row for each line of an astropy file of tests/sky/data, named by the given columns.
void addCsvRows(const char* file, std::initializer_list<int> name) {
  QTest::addColumn<QStringList>("row");
  const QList<QStringList> rows = CsvRows(QFINDTESTDATA(QStringLiteral("data/") + file));
  QVERIFY(!rows.isEmpty());
  for (const QStringList& row : rows) {
    QStringList parts;
    for (int i : name) parts << row[i];
    QTest::newRow(qPrintable(parts.join(' '))) << row;
  }
}

double arcsecBetween(const EquatorialPlace& a, const EquatorialPlace& b) {
  return eraSeps(a.raHours * M_PI / 12, a.decDegrees * M_PI / 180, b.raHours * M_PI / 12,
                 b.decDegrees * M_PI / 180) *
         180 * 3600 / M_PI;
}

}  // namespace

class TestSkyCalc : public QObject {
  Q_OBJECT

 private slots:
  // clang-format off
  void sidereal_data() {
    QTest::addColumn<QString>("site");
    QTest::addColumn<QDateTime>("userDate");
    QTest::addColumn<double>("lst");
    // The fixed clock is 2026-11-21 20:30; other days are reached through the hours alone.
    const QDateTime evening(QDate(2026, 11, 21), QTime(20, 30));
    // x lies 0.2 below a multiple of 360: the rounded value carries the reduction past it.
    QTest::newRow("just below a whole turn") << "W 8 33 N 26 20" << evening << -0.19748872092222314;
    QTest::newRow("years ago, not normalised")
        << "E 127 40 N 26 20" << QDateTime(QDate(2000, 1, 1), QTime(20, 30)) << -183.9905460546288;
  }
  // clang-format on
  void sidereal() {
    QFETCH(QString, site);
    QFETCH(QDateTime, userDate);
    QFETCH(double, lst);
    TestEnv env;
    env.setSite(site.split(' '));
    env.state->UserDate = userDate;
    QVERIFY(std::fabs(SiderealDegreesAtUserDate(*env.state) - lst) < 1e-6);
  }

  // The system zone is read at each reading (giving what the user's own zone of that size
  // gives); an unknown zone gives 0 and the message each time.
  void timeZone() {
    const QByteArray saved = qgetenv("TZ");
    const bool had = qEnvironmentVariableIsSet("TZ");
    const auto restore = qScopeGuard([&] { had ? qputenv("TZ", saved) : qunsetenv("TZ"); });
    if (!QTimeZone(QByteArrayLiteral("Pacific/Marquesas")).isValid())
      QSKIP("the zone database is not installed");
    TestEnv env;
    AppState& s = *env.state;
    s.systemUtcOffsetHours = AppState(env.prompter).systemUtcOffsetHours;
    const QString message = QStringLiteral(
        "Unable to determine time zone information from Windows.\n"
        "Please manually enter the offset from UTC in Tools, Setup.");
    const QList<QPair<QByteArray, float>> zones{{"Nowhere/Atlantis", 0},
                                                {"Pacific/Marquesas", -9.5}};
    for (const auto& [tz, hours] : zones) {
      qputenv("TZ", tz);
      s.settings.UseWindowsTimeZone = false;
      s.settings.MyTimeZone = hours;
      const double own = AzimuthNow(s, kVega);
      s.settings.UseWindowsTimeZone = true;
      QCOMPARE(GetTimeZoneHours(s), double(hours));
      QCOMPARE(AzimuthNow(s, kVega), own);
      QCOMPARE(env.prompter.texts(), hours ? QStringList() : QStringList(2, message));
      for (const auto& e : env.prompter.entries) QCOMPARE(e.title, QStringLiteral("Error"));
      env.prompter.clear();
    }
  }

  // Exact values to a tenth; the sky's geometry is crossCheck's.
  // clang-format off
  void altitudeAzimuth_data() {
    QTest::addColumn<AltAzRow>("row");
    const QString n = QStringLiteral("E 151 12 N 26 20");
    // A "-" sign takes the degrees' size: -10 with "-" is 10 south, below the horizon.
    QTest::newRow("south sign, degrees -10") << AltAzRow{n, -90, "-", "-10", "0", -4.4, -81};
    // At the pole the altitude is the declination, and a raw half tenth rounds to even.
    const QString pole = QStringLiteral("W 0 0 N 90 0");
    QTest::newRow("pole, 1.25") << AltAzRow{pole, 90, "+", "1", "15", 1.2, qQNaN()};
    QTest::newRow("pole, -1.45") << AltAzRow{pole, 90, "-", "1", "27", -1.4, qQNaN()};
  }
  // clang-format on
  void altitudeAzimuth() {
    QFETCH(AltAzRow, row);
    TestEnv env;
    AppState& s = *env.state;
    env.setSite(row.site.split(' '));
    s.UserDate = env.fixedNow.addDays(3).addSecs(-5 * 3600);
    const double ra = std::fmod(SiderealDegreesAtUserDate(s) - row.hourAngle + 720.0, 360.0);
    const SkyPosition p{PlainNumber(ra / 15), "0", row.decSign, row.decDeg, row.decMin};
    QCOMPARE(AltitudeAtUserDate(s, p), row.altitude);
    if (!qIsNaN(row.azimuth)) QCOMPARE(AzimuthAtUserDate(s, p), row.azimuth);
  }

  // A Dec minutes field with a comma is not a number under any locale. The observing-date
  // routines say nothing (one bad row must not stop a list); the present ones say why.
  void badCoordinates() {
    TestEnv env;
    AppState& s = *env.state;
    s.UserDate = env.fixedNow;
    const SkyPosition p{"5", "55.1718", "+", "7", "1,5"};
    QCOMPARE(AltitudeAtUserDate(s, p), 0.0);
    QCOMPARE(AzimuthAtUserDate(s, p), 0.0);
    QCOMPARE(AltitudeNow(s, p), 0.0);
    QCOMPARE(AzimuthNow(s, p), 0.0);
    QCOMPARE(env.prompter.texts(), QStringList(2, QStringLiteral("Invalid Coordinates")));
    for (const auto& e : env.prompter.entries) QCOMPARE(e.title, QStringLiteral("Error"));
  }

  // clang-format off
  void separation_data() {
    QTest::addColumn<SkyPosition>("first");
    QTest::addColumn<SkyPosition>("second");
    QTest::addColumn<double>("degrees");
    QTest::newRow("Vega - Altair") << kVega << SkyPosition{"19", "50.7833", "+", "8", "52.1"}
                                   << 34.19517082898249;
    QTest::newRow("the same star") << kVega << kVega << 0.0;
    QTest::newRow("opposite points") << SkyPosition{"0", "0", "+", "10", "0"}
                                     << SkyPosition{"12", "0", "-", "10", "0"} << 180.0;
    // The separation takes the degrees as they stand: "-" with -16 and 42.9667 minutes is
    // +15 17.0333, north of the equator.
    QTest::newRow("south sign, degrees -16")
        << SkyPosition{"6", "45.1487", "-", "-16", "42.9667"}
        << SkyPosition{"6", "45.1487", "+", "16", "42.9667"} << 2 * 42.9667 / 60;
    QTest::newRow("bad text: 0 and a message")
        << kVega << SkyPosition{"6", "23.9518", "-", "fifty", "41.74"} << 0.0;
  }
  // clang-format on
  void separation() {
    QFETCH(SkyPosition, first);
    QFETCH(SkyPosition, second);
    QFETCH(double, degrees);
    TestEnv env;
    const double got = AngularSeparation(*env.state, first, second);
    QVERIFY2(std::fabs(got - degrees) < 1e-6, qPrintable(QString::number(got, 'g', 17)));
    const bool bad = second.decDegrees == "fifty";
    QCOMPARE(env.prompter.texts(), QStringList(bad ? 1 : 0, QStringLiteral("Type mismatch - 13")));
    for (const auto& e : env.prompter.entries) QCOMPARE(e.title, QStringLiteral("Tavorine"));
  }

  // Against astropy (tools/sky_crosscheck.py), allowing for the precession the routines leave
  // out; the azimuth measured along the sky and skipped near the zenith and the nadir.
  void crossCheck_data() { addCsvRows("crosscheck.csv", {0, 7, 10}); }
  void crossCheck() {
    QFETCH(QStringList, row);
    TestEnv env;
    AppState& s = *env.state;
    env.setSite(row.mid(1, 6));
    const QDateTime moment(QDate::fromString(row[7], Qt::ISODate),
                           QTime::fromString(row[8], QStringLiteral("hh:mm")));
    env.fixedOffsetHours = row[9].toDouble();
    const SkyPosition star{row[11], row[12], row[13], row[14], row[15]};
    const double altitude = row[16].toDouble(), azimuth = row[17].toDouble();
    auto check = [&](double alt, double az, const char* clock) {
      QVERIFY2(std::fabs(alt - altitude) <= 0.5,
               qPrintable(QString("%1 altitude %2").arg(clock).arg(alt)));
      QVERIFY2(az >= -90 && az <= 270, qPrintable(QString::number(az)));
      if (std::fabs(altitude) > 85) return;
      const double turn = std::remainder(az - azimuth, 360.0);
      QVERIFY2(std::fabs(turn * std::cos(altitude * M_PI / 180)) <= 0.5,
               qPrintable(QString("%1 azimuth %2").arg(clock).arg(az)));
    };
    env.fixedNow = moment;
    check(AltitudeNow(s, star), AzimuthNow(s, star), "present");
    // Days away from the present date are reached through the hours alone.
    env.fixedNow = QDateTime(moment.date().addDays(-5), QTime(12, 0));
    s.UserDate = moment;
    check(AltitudeAtUserDate(s, star), AzimuthAtUserDate(s, star), "observing date");
    QVERIFY(env.prompter.entries.isEmpty());
  }

  // Bright stars at moments from 2000 to 2049 (tools/ofdate_crosscheck.py, astropy's TETE).
  void ofDate_data() { addCsvRows("ofdate.csv", {0, 1}); }
  void ofDate() {
    QFETCH(QStringList, row);
    QDateTime utc = QDateTime::fromString(row[0], Qt::ISODate);
    utc.setTimeZone(QTimeZone::utc());
    const EquatorialPlace j2000{row[2].toDouble(), row[3].toDouble()};
    const EquatorialPlace ofDate{row[4].toDouble(), row[5].toDouble()};
    const EquatorialPlace there = J2000ToOfDate(j2000, utc), back = OfDateToJ2000(ofDate, utc);
    QVERIFY(there.raHours >= 0 && there.raHours < 24 && back.raHours >= 0 && back.raHours < 24);
    const double worst = qMax(arcsecBetween(there, ofDate), arcsecBetween(back, j2000));
    QVERIFY2(worst < 1.0, qPrintable(QString::number(worst)));
  }

  // The hour and minute fields read by their leading numbers, rounded in the two-digit form;
  // what is not a time of day is refused.
  void fromFields() {
    const QDate d(2027, 2, 28);  // a day that cannot be a month
    QCOMPARE(UserDateFromFields(d, "23", "59"), QDateTime(d, QTime(23, 59)));
    QCOMPARE(UserDateFromFields(d, "7pm", "15min"), QDateTime(d, QTime(7, 15)));
    QCOMPARE(UserDateFromFields(d, "7.6", "29.5"), QDateTime(d, QTime(8, 30)));
    QVERIFY_THROWS_EXCEPTION(AppError, UserDateFromFields(d, "24", "0"));
  }

  // Opened on UserDate; Cancel changes nothing; a time that is not one keeps it open with the
  // message; the arrows stop at the ends; OK takes the date and the fields.
  void cancelErrorThenOk() {
    TestEnv env;
    const QDateTime smallHours(QDate(2026, 11, 21), QTime(3, 0, 42));
    env.state->UserDate = smallHours;
    frmUserDate dlg(*env.state);
    auto* date = dlg.findChild<QCalendarWidget*>(QStringLiteral("PickDate"));
    auto* hour = dlg.findChild<QAbstractSpinBox*>(QStringLiteral("PickTimeHour"));
    auto* minute = dlg.findChild<QAbstractSpinBox*>(QStringLiteral("PickTimeMinute"));
    auto* ok = dlg.findChild<QPushButton*>(QStringLiteral("OKButton"));
    auto* cancel = dlg.findChild<QPushButton*>(QStringLiteral("CancelButton"));
    dlg.show();
    QCOMPARE(dlg.windowTitle(), QStringLiteral("Select Date and Time for Chart"));
    auto shown = [&] {
      return date->selectedDate().toString(Qt::ISODate) + ' ' + hour->text() + ':' + minute->text();
    };
    QCOMPARE(shown(), QStringLiteral("2026-11-21 3:00"));
    date->setSelectedDate(QDate(2027, 1, 2));
    QTest::mouseClick(cancel, Qt::LeftButton);
    QCOMPARE(env.state->UserDate, smallHours);
    dlg.show();
    QCOMPARE(shown(), QStringLiteral("2026-11-21 3:00"));

    date->setSelectedDate(QDate(2026, 12, 24));
    hour->selectAll();
    QTest::keyClicks(hour, QStringLiteral("25"));
    QTest::mouseClick(ok, Qt::LeftButton);
    QCOMPARE(env.prompter.texts(), QStringList{"Type mismatch - 13"});
    QCOMPARE(env.prompter.entries[0].title, QStringLiteral("Tavorine"));
    QCOMPARE(env.state->UserDate, smallHours);
    QVERIFY(dlg.isVisible());
    QTest::keyClick(hour, Qt::Key_Down);
    QTest::keyClick(minute, Qt::Key_Down);
    QTest::mouseClick(ok, Qt::LeftButton);
    QCOMPARE(env.state->UserDate, QDateTime(QDate(2026, 12, 24), QTime(23, 0)));
    QCOMPARE(dlg.result(), int(QDialog::Accepted));
  }
};

QTEST_MAIN(TestSkyCalc)
#include "tst_skycalc.moc"
