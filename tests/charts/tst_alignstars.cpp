#include <QtTest>

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>

#include "catalog/database.h"
#include "catalog/recordset.h"
#include "charts/alignchart.h"
#include "charts/alignstars.h"
#include "charts/bestpairs.h"
#include "charts/skywidget.h"
#include "core/numtext.h"
#include "core/redscreen.h"
#include "lists/editlistlogic.h"
#include "printing/alignprinting.h"
#include "sky/skycalc.h"
#include "support/recordingchartsurface.h"
#include "support/recordingprintsurface.h"
#include "support/testenv.h"

namespace {

// Stand-in sky: the altitude is carried in the hours field, the azimuth is 0.
MapStar star(const QString& name, double alt, bool alignment, bool autoAlignment) {
  return {SkyCoordinates::of(alt, 0, false, 0, 0), alignment, name, autoAlignment};
}

// Each item of a list as text.
template <typename T, typename F>
QStringList mapped(const std::vector<T>& items, F text) {
  QStringList out;
  for (const T& i : items) out << text(i);
  return out;
}
template <typename T>
QStringList namesOf(const std::vector<T>& items) {
  return mapped(items, [](const T& i) { return i.name; });
}
QStringList textsOf(const std::vector<PlacedText>& lines) {
  return mapped(lines, [](const PlacedText& t) { return t.text; });
}
QStringList rowsOf(const std::vector<AlignmentPair>& rows) {
  return mapped(rows, [](const AlignmentPair& r) {
    return r.name + QLatin1Char('|') + SeparationText(r.separation);
  });
}

// Stars are letters (carried in the hours as character codes), "*" marks an automatic
// alignment star, and "P" is Polaris.
std::vector<AlignmentCandidate> candidatesOf(const QString& stars) {
  std::vector<AlignmentCandidate> out;
  for (const QString& s : stars.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
    const QString letter = s.left(1);
    out.push_back({letter == QLatin1String("P") ? QStringLiteral("Polaris") : letter,
                   SkyCoordinates::of(letter[0].unicode(), 0, false, 0, 0),
                   s.endsWith(QLatin1Char('*'))});
  }
  return out;
}

// Separations are looked up by the two letters ("AB=12.25"); a pair not listed is 10 apart.
PairSeparation separationsOf(const QString& table) {
  QHash<QString, double> seps;
  for (const QString& e : table.split(QLatin1Char(' '), Qt::SkipEmptyParts))
    seps.insert(e.left(2), e.mid(3).toDouble());
  return [seps](const SkyCoordinates& a, const SkyCoordinates& b) {
    return seps.value(QString(QChar(int(a.raHours))) + QChar(int(b.raHours)), 10.0);
  };
}

}  // namespace

class TestAlignStars : public QObject {
  Q_OBJECT
 private slots:
  void bestPairs_data() {
    QTest::addColumn<QString>("stars");
    QTest::addColumn<QString>("seps");
    QTest::addColumn<bool>("twoStar");
    QTest::addColumn<QStringList>("autoRows");
    QTest::addColumn<QStringList>("twoStarRows");
    QTest::addColumn<bool>("note");
    QTest::newRow("no candidates") << "" << "" << true << QStringList() << QStringList() << false;
    QTest::newRow("one candidate: one empty row")
        << "A*" << "" << true << QStringList() << QStringList{"| 0"} << false;
    // The two star table stops at the number of candidates; a plain star only shows there.
    QTest::newRow("widest first, equal ones in build order")
        << "A* B C* D*" << "AB=40 AC=50 AD=60 BC=50 BD=70 CD=50" << true
        << QStringList{"A - D| 60", "A - C| 50", "C - D| 50"}
        << QStringList{"B - D| 70", "A - D| 60", "A - C| 50", "B - C| 50"} << false;
    QTest::newRow("halves go to the even tenth, table off")
        << "A* B* C*" << "AB=12.25 AC=12.75 BC=12.35" << false
        << QStringList{"A - C| 12.8", "B - C| 12.4", "A - B| 12.2"} << QStringList() << false;
    const QStringList tens = {"A - B| 10", "A - C| 10", "A - D| 10", "A - E| 10", "B - C| 10"};
    QTest::newRow("five rows at most")
        << "A* B* C* D* E*" << "" << false << tens << QStringList() << false;
    QTest::newRow("Polaris at row 3 of the first table")
        << "A* B* C* P*" << "AB=60 AC=50 AP=40" << false
        << QStringList{"A - B| 60", "A - C| 50", "A - Polaris| 40", "B - C| 10", "B - Polaris| 10"}
        << QStringList() << true;
    QTest::newRow("Polaris only in the two star table")
        << "A* B* P" << "AP=80" << true << QStringList{"A - B| 10"}
        << QStringList{"A - Polaris| 80", "A - B| 10", "B - Polaris| 10"} << false;
    const QString hidden = QStringLiteral("AB=60 AC=59 AD=58 BC=57 BD=56");
    const QStringList five = {"A - B| 60", "A - C| 59", "A - D| 58", "B - C| 57", "B - D| 56"};
    QTest::newRow("Polaris at hidden row 6 of the first table")
        << "A* B* C* D* P* E" << hidden << true << five
        << (QStringList(five) << "A - Polaris| 10") << true;
    QTest::newRow("row 6 is not looked at without the two star table")
        << "A* B* C* D* P* E" << hidden << false << five << QStringList() << false;
  }
  void bestPairs() {
    QFETCH(QString, stars);
    QFETCH(QString, seps);
    QFETCH(bool, twoStar);
    QFETCH(QStringList, autoRows);
    QFETCH(QStringList, twoStarRows);
    QFETCH(bool, note);
    const BestPairs pairs = MakeBestPairs(candidatesOf(stars), twoStar, separationsOf(seps));
    QCOMPARE(rowsOf(pairs.autoRows), autoRows);
    QCOMPARE(pairs.twoStarTable, twoStar);
    QCOMPARE(rowsOf(pairs.twoStarRows), twoStarRows);
    QCOMPARE(pairs.polarisNote, note);
  }

  void starRules_data() {
    QTest::addColumn<bool>("autoOnly");
    QTest::addColumn<bool>("showNames");
    QTest::addColumn<QStringList>("names");  // printed on the chart
    QTest::addColumn<QStringList>("candidates");
    // A at 20 and B at 70 lie on the bounds; C is plain, D below the horizon, E too high,
    // F an alignment star the hand controller does not offer.
    QTest::newRow("all alignment stars")
        << false << true << QStringList{"A", "B", "E", "F"} << QStringList{"A", "B", "F"};
    QTest::newRow("automatic only")
        << true << true << QStringList{"A", "B", "E"} << QStringList{"A", "B"};
    QTest::newRow("names off") << false << false << QStringList() << QStringList{"A", "B", "F"};
  }
  void starRules() {
    QFETCH(bool, autoOnly);
    QFETCH(bool, showNames);
    QFETCH(QStringList, names);
    QFETCH(QStringList, candidates);
    const std::vector<MapStar> stars{star("A", 20, true, true),   star("B", 70, true, true),
                                     star("C", 45, false, true),  star("D", 0, true, true),
                                     star("E", 70.1, true, true), star("F", 45, true, false)};
    RecordingChartSurface surface;
    auto alt = [](const MapStar& m) { return m.position.raHours; };
    auto az = [](const MapStar&) { return 0.0; };
    const auto found = DrawAlignmentChart(surface, stars, alt, az, {autoOnly, showNames, 200});
    QCOMPARE(namesOf(found), candidates);
    QStringList printed;
    for (const auto& op : surface.ofKind("text")) printed << op.text;
    QCOMPARE(printed, names);
    // Ring, then the dotted 70 and 20 degree circles.
    const auto circles = surface.ofKind("circle");
    QCOMPARE(circles.size(), size_t(3));
    QCOMPARE(circles[1].radius, float(70.0 / 90 * 2800));
    QCOMPARE(circles[2].radius, float(20.0 / 90 * 2800));
  }

  // The best pairs' lines on the screen, an empty two star row kept, and the window's least
  // size (maximized, it is put back to normal in an area below it).
  void screenTextAndSize() {
    BestPairs pairs;
    pairs.autoRows = {{"A - B", 50}};
    pairs.polarisNote = true;
    pairs.twoStarTable = true;
    pairs.twoStarRows = {{"C - D", 40}, {}};
    QCOMPARE(textsOf(BestPairsScreenText(pairs, 200)),
             (QStringList{"Best Alignment Pairs", "Auto/GPS Align", "Sep", "A - B", " 50",
                          "Two Star Align", "Sep", "C - D", " 40", "", " 0",
                          "NOTE: Do NOT use Polaris in", "EQ mode."}));
    QCOMPARE(AlignStarsResize(true, 9179, 9000, 12000, 9000).restoreNormal, true);
    QCOMPARE(AlignStarsResize(true, 9180, 6825, 12000, 9000).restoreNormal, false);
    const AlignStarsSize small = AlignStarsResize(false, 1, 1, 5000, 8000);
    QCOMPARE(QSize(small.width, small.height), QSize(9300, 8000));
  }

  // The candidates and the first rows of both tables for a night at the default site, on the
  // shipped MapStars, against astropy (tools/alignment_crosscheck.py); the printed page lists
  // the same rows under its headings, and the note.
  void workedSky() {
    QFile f(QFINDTESTDATA("data/alignment_sky.csv"));
    QVERIFY(f.open(QIODevice::ReadOnly | QIODevice::Text));
    TestEnv env;
    AppState& s = *env.state;
    QStringList candidates, autoRows, twoStarRows;
    bool note = false;
    while (!f.atEnd()) {
      const QStringList row = QString::fromUtf8(f.readLine()).trimmed().split(QLatin1Char(','));
      const QString pair = row.value(1) + QLatin1Char('|') + PrintedNumber(row.value(2).toDouble());
      if (row[0] == QLatin1String("site")) {
        env.setSite(row.mid(1, 6));
        s.UserDate = QDateTime(QDate::fromString(row[7], Qt::ISODate),
                               QTime::fromString(row[8], QStringLiteral("hh:mm")));
        env.fixedOffsetHours = row[9].toDouble();
      }
      if (row[0] == QLatin1String("candidate")) candidates << row[1];
      if (row[0] == QLatin1String("auto")) autoRows << pair;
      if (row[0] == QLatin1String("twostar")) twoStarRows << pair;
      if (row[0] == QLatin1String("note")) note = row[1] == QLatin1String("1");
    }
    QVERIFY(s.UserDate.isValid());
    env.fixedNow = QDateTime(s.UserDate.date(), QTime(12, 0));

    const auto catalog = Database::open(s.catalogPath(), Database::Mode::ReadOnly);
    RecordingChartSurface surface;
    const auto found = DrawAlignmentChart(
        surface, LoadAlignmentStars(*catalog),
        [&](const MapStar& m) { return AltitudeAtUserDate(s, m.position); },
        [&](const MapStar& m) { return AzimuthAtUserDate(s, m.position); }, {});
    QCOMPARE(namesOf(found), candidates);
    const BestPairs pairs = MakeBestPairs(s, found, true);
    QCOMPARE(rowsOf(pairs.autoRows), autoRows);
    QCOMPARE(rowsOf(pairs.twoStarRows), twoStarRows);
    QCOMPARE(pairs.polarisNote, note);

    RecordingPrintSurface page;
    Recordset bright(catalog, QStringLiteral("MapStars to 4_5"));
    AlignPrintingJob(s, page, bright).Run(1);
    QStringList printed = page.texts();
    QCOMPARE(printed.first(), QStringLiteral("NexStar Alignment Star Chart"));
    QStringList expected = (autoRows + twoStarRows).join(QLatin1Char('|')).split(QLatin1Char('|'));
    if (note) expected << QStringLiteral("NOTE: Do NOT use Polaris in") << "EQ mode.";
    QCOMPARE(printed.mid(printed.lastIndexOf(QStringLiteral("Sep")) + 1), expected);
  }

  void window() {
    TestEnv env;
    AppState& s = *env.state;
    s.UserDate = QDateTime(QDate(2026, 11, 21), QTime(22, 0));
    env.fixedOffsetHours = 9;
    AlignStars w(s);
    w.show();
    w.Form_Activate();
    const QStringList tonight = namesOf(w.candidates());
    w.findChild<QCheckBox*>("chkAutoAlignment")->click();
    QVERIFY(!textsOf(w.bestPairsText()).contains("Two Star Align"));
    QVERIFY(namesOf(w.candidates()).size() < tonight.size());
    w.findChild<QCheckBox*>("chkAutoAlignment")->click();

    // Red Screen, on and off again, recolours the open chart and its compass letters without
    // a new activation, and leaves nothing red.
    const QImage normal = w.sky()->surface().image();
    auto* north = w.sky()->findChild<QLabel*>(QStringLiteral("lblCompassN"));
    const QColor letter = north->palette().color(QPalette::WindowText);
    RedScreen red(s);
    red.toggle({});
    QVERIFY(w.sky()->surface().image() != normal);
    QCOMPARE(north->palette().color(QPalette::WindowText), QColor(255, 0, 0));
    red.toggle({});
    QCOMPARE(w.sky()->surface().image(), normal);
    QCOMPARE(north->palette().color(QPalette::WindowText), letter);

    w.findChild<QPushButton*>("cmdToggleNames")->click();
    QVERIFY(!w.showNames());

    // An unchanged date draws nothing, even though the site has moved meanwhile.
    s.settings.LatHemi = QStringLiteral("S");
    w.showUserDateDialog = [](QWidget*) {};
    w.findChild<QPushButton*>("cmdUserDate")->click();
    QCOMPARE(namesOf(w.candidates()), tonight);
    const QDateTime later = s.UserDate.addSecs(6 * 3600);
    w.showUserDateDialog = [&](QWidget*) { s.UserDate = later; };
    w.findChild<QPushButton*>("cmdUserDate")->click();
    QCOMPARE(w.findChild<QLabel*>("lblUserDate")->text(), UserDateLabel(later));
    QVERIFY(namesOf(w.candidates()) != tonight);
    QVERIFY(env.prompter.entries.isEmpty());
  }
};

QTEST_MAIN(TestAlignStars)
#include "tst_alignstars.moc"
