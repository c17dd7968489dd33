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

struct SiderealRow {
  QString site;
  QDateTime userDate;
  double lst;
};

struct AltAzRow {
  QString site;
  double hourAngle;
  QString decSign;
  int decDeg, decMin;
  double altitude, azimuth;
};

// An object whose hour angle is `hourAngle` degrees at the observing date.
SkyPosition atHourAngle(const AppState& s, double hourAngle, const QString& sign, int decDeg,
                        int decMin) {
  const double ra = std::fmod(SiderealDegreesAtUserDate(s) - hourAngle + 720.0, 360.0);
  return {PlainNumber(ra / 15), "0", sign, QString::number(decDeg), QString::number(decMin)};
}

// One row for each line of an astropy file of tests/sky/data, named by the given columns.
void addCsvRows(const char* file, int columns, std::initializer_list<int> name) {
  QTest::addColumn<QStringList>("row");
  const QList<QStringList> rows = CsvRows(QFINDTESTDATA(QStringLiteral("data/") + file));
  QVERIFY(!rows.isEmpty());
  for (const QStringList& row : rows) {
    QCOMPARE(row.size(), columns);
    QStringList parts;
    for (int i : name) parts << row[i];
    QTest::newRow(qPrintable(parts.join(' '))) << row;
  }
}

double arcsecBetween(const EquatorialPlace& a, const EquatorialPlace& b) {
  return eraSeps(a.raHours * M_PI / 12, a.decDegrees * M_PI / 180, b.raHours * M_PI / 12,
                 b.decDegrees * M_PI / 180) * 180 * 3600 / M_PI;
}

const QDateTime kSmallHours(QDate(2026, 11, 21), QTime(3, 0, 42));

// The dialog on a state whose observing date is `userDate`, found by its control names.
struct Dialog {
  TestEnv env;
  frmUserDate* dlg;
  QCalendarWidget* date;
  QAbstractSpinBox *hour, *minute;
  QPushButton *ok, *cancel;

  Dialog() {
    env.state->UserDate = kSmallHours;
    dlg = new frmUserDate(*env.state);
    date = dlg->findChild<QCalendarWidget*>(QStringLiteral("PickDate"));
    hour = dlg->findChild<QAbstractSpinBox*>(QStringLiteral("PickTimeHour"));
    minute = dlg->findChild<QAbstractSpinBox*>(QStringLiteral("PickTimeMinute"));
    ok = dlg->findChild<QPushButton*>(QStringLiteral("OKButton"));
    cancel = dlg->findChild<QPushButton*>(QStringLiteral("CancelButton"));
    dlg->show();
  }
  ~Dialog() { delete dlg; }
};

}  // namespace

class TestSkyCalc : public QObject {
  Q_OBJECT
  double worstOfDate_ = 0;

 private slots:
  void sidereal_data() {
    QTest::addColumn<SiderealRow>("row");
    // The fixed clock is 2026-11-21 20:30; other days are reached through the hours alone.
    const QDateTime evening(QDate(2026, 11, 21), QTime(20, 30));
    QTest::newRow("0 E is a whole turn west, as Greenwich")
        << SiderealRow{"E 0 0 N 26 20", evening, 8.352511279077675};
    // x lies 0.2 below a multiple of 360: the rounded value carries the reduction past it.
    QTest::newRow("just below a whole turn")
        << SiderealRow{"W 8 33 N 26 20", evening, -0.19748872092222314};
    QTest::newRow("years ago, not normalised")
        << SiderealRow{"E 127 40 N 26 20", QDateTime(QDate(2000, 1, 1), QTime(20, 30)),
                       -183.9905460546288};
  }
  void sidereal() {
    QFETCH(SiderealRow, row);
    TestEnv env;
    AppState& s = *env.state;
    env.setSite(row.site.split(' '));
    s.UserDate = row.userDate;
    QVERIFY(std::fabs(SiderealDegreesAtUserDate(s) - row.lst) < 1e-6);
  }

  // The system zone is read each time: a change while the program runs shows at once in every
  // altitude and azimuth (the same as the user's own zone of that size, which never reads the
  // system's), and an unknown zone gives 0 and the message at each reading.
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

  // Exact values to a tenth; the sky's geometry (azimuth from the south through the west, -90
  // to 270) is checked against astropy in crossCheck.
  void altitudeAzimuth_data() {
    QTest::addColumn<AltAzRow>("row");
    const QString n = QStringLiteral("E 151 12 N 26 20");
    // A "-" sign takes the degrees' size: -10 with "-" is 10 south, below the horizon.
    QTest::newRow("south sign, degrees -10") << AltAzRow{n, -90, "-", -10, 0, -4.4, -81};
    // At the pole the altitude is the declination, and a raw half tenth rounds to even.
    const QString pole = QStringLiteral("W 0 0 N 90 0");
    QTest::newRow("pole, 1.25") << AltAzRow{pole, 90, "+", 1, 15, 1.2, qQNaN()};
    QTest::newRow("pole, -1.45") << AltAzRow{pole, 90, "-", 1, 27, -1.4, qQNaN()};
  }
  void altitudeAzimuth() {
    QFETCH(AltAzRow, row);
    TestEnv env;
    AppState& s = *env.state;
    env.setSite(row.site.split(' '));
    s.UserDate = env.fixedNow.addDays(3).addSecs(-5 * 3600);
    const SkyPosition p = atHourAngle(s, row.hourAngle, row.decSign, row.decDeg, row.decMin);
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
    QVERIFY(env.prompter.entries.isEmpty());
    QCOMPARE(AltitudeNow(s, p), 0.0);
    QCOMPARE(AzimuthNow(s, p), 0.0);
    QCOMPARE(env.prompter.texts(), QStringList(2, QStringLiteral("Invalid Coordinates")));
    for (const auto& e : env.prompter.entries) QCOMPARE(e.title, QStringLiteral("Error"));
  }

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
    QTest::newRow("bad text: 0, and a message each way")
        << kVega << SkyPosition{"6", "23.9518", "-", "fifty", "41.74"} << 0.0;
  }
  void separation() {
    QFETCH(SkyPosition, first);
    QFETCH(SkyPosition, second);
    QFETCH(double, degrees);
    TestEnv env;
    const double got = AngularSeparation(*env.state, first, second);
    QVERIFY2(std::fabs(got - degrees) < 1e-6, qPrintable(QString::number(got, 'g', 17)));
    QVERIFY(std::fabs(AngularSeparation(*env.state, second, first) - got) < 1e-9);
    const bool bad = second.decDegrees == "fifty";
    QCOMPARE(env.prompter.texts(), QStringList(bad ? 2 : 0, QStringLiteral("Type mismatch - 13")));
    for (const auto& e : env.prompter.entries) QCOMPARE(e.title, QStringLiteral("Tavorine"));
  }

  // Independent altitudes and azimuths (tools/sky_crosscheck.py). The routines leave out
  // precession, so stars drift up to 0.4 degree from their catalog places; the azimuth is
  // measured along the sky (its difference times the cosine of the altitude) and skipped near
  // the zenith and the nadir, where it turns fast.
  void crossCheck_data() { addCsvRows("crosscheck.csv", 18, {0, 7, 10}); }
  void crossCheck() {
    QFETCH(QStringList, row);
    TestEnv env;
    AppState& s = *env.state;
    env.setSite(row.mid(1, 6));
    const QDateTime moment(QDate::fromString(row[7], Qt::ISODate),
                           QTime::fromString(row[8], QStringLiteral("hh:mm")));
    QVERIFY(moment.isValid());
    env.fixedOffsetHours = row[9].toDouble();
    const SkyPosition star{row[11], row[12], row[13], row[14], row[15]};
    const double altitude = row[16].toDouble(), azimuth = row[17].toDouble();
    auto check = [&](double alt, double az, const char* clock) {
      QVERIFY2(std::fabs(alt - altitude) <= 0.5, qPrintable(QString("%1 altitude %2").arg(clock).arg(alt)));
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
  void ofDate_data() { addCsvRows("ofdate.csv", 6, {0, 1}); }
  void ofDate() {
    QFETCH(QStringList, row);
    QDateTime utc = QDateTime::fromString(row[0], Qt::ISODate);
    utc.setTimeZone(QTimeZone::utc());
    QVERIFY(utc.isValid());
    const EquatorialPlace j2000{row[2].toDouble(), row[3].toDouble()};
    const EquatorialPlace ofDate{row[4].toDouble(), row[5].toDouble()};
    const EquatorialPlace there = J2000ToOfDate(j2000, utc), back = OfDateToJ2000(ofDate, utc);
    QVERIFY(there.raHours >= 0 && there.raHours < 24 && back.raHours >= 0 && back.raHours < 24);
    const double worst = qMax(arcsecBetween(there, ofDate), arcsecBetween(back, j2000));
    worstOfDate_ = qMax(worstOfDate_, worst);
    QVERIFY2(worst < 1.0, qPrintable(QString::number(worst)));
  }
  void cleanupTestCase() {
    qInfo("largest difference from astropy of date: %.3f milliarcseconds", worstOfDate_ * 1000);
  }

  // The hour and minute fields read by their leading numbers; what is not a time is refused.
  void fromFields_data() {
    QTest::addColumn<QString>("hour");
    QTest::addColumn<QString>("minute");
    QTest::addColumn<QTime>("time");  // invalid: refused
    QTest::newRow("last minute of the day") << "23" << "59" << QTime(23, 59);
    QTest::newRow("leading number only") << "7pm" << "15min" << QTime(7, 15);
    QTest::newRow("fractions round in the two-digit form") << "7.6" << "29.5" << QTime(8, 30);
    QTest::newRow("hour 24") << "24" << "0" << QTime();
    QTest::newRow("minute 60") << "12" << "60" << QTime();
  }
  void fromFields() {
    QFETCH(QString, hour);
    QFETCH(QString, minute);
    QFETCH(QTime, time);
    const QDate date(2027, 2, 28);  // a day that cannot be a month
    try {
      QCOMPARE(UserDateFromFields(date, hour, minute), QDateTime(date, time));
      QVERIFY(time.isValid());
    } catch (const AppError& e) {
      QVERIFY(!time.isValid());
      QCOMPARE(e.text(), QStringLiteral("Type mismatch - 13"));
    }
  }

  // It opens on the observing date, the hour without a leading zero. Cancel changes nothing,
  // and opened again it shows UserDate; a time that is not one keeps it open with the message;
  // put right with the arrows, which stop at the ends, OK takes the date and the fields.
  void cancelErrorThenOk() {
    Dialog d;
    QVERIFY(d.date && d.hour && d.minute && d.ok && d.cancel);
    QCOMPARE(QStringList({d.dlg->windowTitle(), d.ok->text(), d.cancel->text()}),
             QStringList({"Select Date and Time for Chart", "OK", "Cancel"}));
    auto shown = [&] { return d.date->selectedDate().toString(Qt::ISODate) + ' ' +
                              d.hour->text() + ':' + d.minute->text(); };
    QCOMPARE(shown(), QStringLiteral("2026-11-21 3:00"));
    d.date->setSelectedDate(QDate(2027, 1, 2));
    QTest::mouseClick(d.cancel, Qt::LeftButton);
    QCOMPARE(d.env.state->UserDate, kSmallHours);
    d.dlg->show();
    QCOMPARE(shown(), QStringLiteral("2026-11-21 3:00"));

    d.date->setSelectedDate(QDate(2026, 12, 24));
    d.hour->selectAll();
    QTest::keyClicks(d.hour, QStringLiteral("25"));
    QTest::mouseClick(d.ok, Qt::LeftButton);
    QCOMPARE(d.env.prompter.texts(), QStringList{"Type mismatch - 13"});
    QCOMPARE(d.env.prompter.entries[0].title, QStringLiteral("Tavorine"));
    QCOMPARE(d.env.state->UserDate, kSmallHours);
    QVERIFY(d.dlg->isVisible());
    QTest::keyClick(d.hour, Qt::Key_Down);
    QTest::keyClick(d.minute, Qt::Key_Down);
    QTest::mouseClick(d.ok, Qt::LeftButton);
    QCOMPARE(d.env.state->UserDate, QDateTime(QDate(2026, 12, 24), QTime(23, 0)));
    QCOMPARE(d.dlg->result(), int(QDialog::Accepted));
  }
};

QTEST_MAIN(TestSkyCalc)
#include "tst_skycalc.moc"
