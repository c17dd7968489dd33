#include <QtTest>

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

#include "catalog/catalogbrowser.h"
#include "catalog/database.h"
#include "catalog/datagrid.h"
#include "catalog/recordset.h"
#include "charts/alignchart.h"
#include "charts/alignstars.h"
#include "charts/bestpairs.h"
#include "charts/hhc.h"
#include "charts/hhclogic.h"
#include "charts/qimagechartsurface.h"
#include "charts/skychart.h"
#include "charts/skywidget.h"
#include "core/apperror.h"
#include "core/numtext.h"
#include "core/redscreen.h"
#include "lists/editlistlogic.h"
#include "printing/alignprinting.h"
#include "scope/scopecontrol.h"
#include "sky/skycalc.h"
#include "support/recordingchartsurface.h"
#include "support/recordingprintsurface.h"
#include "support/scopesim.h"
#include "support/testenv.h"

namespace {

// Stand-in sky: the altitude is carried in the hours field, the azimuth in the minutes field,
// and the calls are counted.
struct FakeSky {
  int altitudeCalls = 0, azimuthCalls = 0;
  SkyChart::AltAzFunction altitude() {
    return [this](const SkyCoordinates& p) {
      ++altitudeCalls;
      return p.raHours;
    };
  }
  SkyChart::AltAzFunction azimuth() {
    return [this](const SkyCoordinates& p) {
      ++azimuthCalls;
      return p.raMinutes;
    };
  }
};

SkyCoordinates at(double alt, double az) { return SkyCoordinates::of(alt, az, false, 0, 0); }

// Each recorded operation as "kind x,y radius aspect colour", the colour in hex.
QStringList opsOf(const RecordingChartSurface& s) {
  QStringList out;
  for (const auto& o : s.ops)
    out << QStringLiteral("%1 %2,%3 %4 %5 %6")
               .arg(o.kind)
               .arg(o.x, 0, 'g', 6)
               .arg(o.y, 0, 'g', 6)
               .arg(o.radius, 0, 'g', 6)
               .arg(o.aspect)
               .arg(o.colour, 0, 16);
  return out;
}

// The pixels of an image whose colour passes `wanted`.
int countPixels(const QImage& img, const std::function<bool(QRgb)>& wanted) {
  int n = 0;
  for (int y = 0; y < img.height(); ++y)
    for (int x = 0; x < img.width(); ++x) n += wanted(img.pixel(x, y) & 0xFFFFFF);
  return n;
}

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

constexpr int kMessier = 0, kCaldwell = 1, kDoubles = 7;
constexpr int kMessierSet = 4;

// A hand control window on the shipped catalogs at the default site, 20:30 local time.
struct Rig {
  Rig() {
    env.fixedOffsetHours = 9;
    hhc = std::make_unique<HHC>(*env.state, link);
    hhc->show();
    hhc->Form_Activate();
  }
  AppState& state() { return *env.state; }
  QLineEdit* edit(const char* name) const {
    return hhc->findChild<QLineEdit*>(QLatin1String(name));
  }
  QString text(const char* name) const { return edit(name)->text(); }
  void click(const char* name) const { hhc->findChild<QPushButton*>(QLatin1String(name))->click(); }
  QPointF marker() const { return {hhc->sky()->chart().MarkerX, hhc->sky()->chart().MarkerY}; }
  Recordset* page(int tab) const { return hhc->browser()->pageRecordset(tab); }
  bool filterLabel() const { return hhc->findChild<QLabel*>("lblFilter")->isVisibleTo(hhc.get()); }

  TestEnv env;
  ScopeLink link;
  std::unique_ptr<HHC> hhc;
};

}  // namespace

class TestCharts : public QObject {
  Q_OBJECT
 private slots:
  // On the list window's chart: the ring in the 3D highlight, then white points for the stars
  // above the horizon (exactly 0 and below are skipped), south down, north up, east (also as
  // -90) left, the zenith in the middle; the marker is the caller's business.
  void drawSkyChart() {
    FakeSky sky;
    RecordingChartSurface surface;
    SkyChart chart(ChartWindow::CurrentList, surface, sky.altitude(), sky.azimuth());
    chart.MarkerX = 1234;
    chart.DrawSkyChart(
        {at(10, 0), at(0, 90), at(-5, 90), at(90, 45), at(0.1, 180), at(0.1, 270), at(60, -315)});
    QCOMPARE(opsOf(surface),
             (QStringList{"clear 0,0 0 1 0", "circle 2000,2000 1800 1 80000014",
                          "point 2000,3600 0 1 ffffff", "point 2000,2000 0 1 ffffff",
                          "point 2000,202 0 1 ffffff", "point 202,2000 0 1 ffffff",
                          "point 2424.26,2424.26 0 1 ffffff"}));
    QCOMPARE(sky.altitudeCalls, 7);
    QCOMPARE(sky.azimuthCalls, 5);  // only for the stars that are drawn
    QCOMPARE(chart.MarkerX, 1234.0);

    // The list editor's smaller chart, with no stars: the ring alone, in white.
    RecordingChartSurface small;
    SkyChart(ChartWindow::EditList, small, sky.altitude(), sky.azimuth()).DrawSkyChart({});
    QCOMPARE(opsOf(small), (QStringList{"clear 0,0 0 1 0", "circle 1550,1550 1350 1 ffffff"}));
  }

  // The marker is erased where it was stored (at first 3000, 3000), then drawn and stored only
  // above the horizon: below it and on it, the last drawn marker is erased and stays stored.
  void markerRules() {
    FakeSky sky;
    RecordingChartSurface surface;
    SkyChart chart(ChartWindow::HHC, surface, sky.altitude(), sky.azimuth());
    QVERIFY(!chart.PlotObject(at(-20, 0), 200));
    QVERIFY(chart.PlotObject(at(45, 90), 200));
    QCOMPARE(QPointF(chart.MarkerX, chart.MarkerY), QPointF(2900, 2000));
    QVERIFY(!chart.PlotObject(at(-1, 0), ChartYellow));
    QVERIFY(!chart.PlotObject(at(0, 0), ChartYellow));
    QCOMPARE(opsOf(surface), (QStringList{"circle 3000,3000 60 0.8 0", "circle 3000,3000 60 0.8 0",
                                          "circle 2900,2000 60 0.8 c8", "circle 2900,2000 60 0.8 0",
                                          "circle 2900,2000 60 0.8 0"}));
    QCOMPARE(QPointF(chart.MarkerX, chart.MarkerY), QPointF(2900, 2000));
    QCOMPARE(sky.azimuthCalls, 1);  // only for the marker drawn
  }

  // The marker is a ring, not filled; a plain colour value carries red in its low byte.
  void markerAndColoursOnTheImage() {
    FakeSky sky;
    QImageChartSurface surface(4020, 4000, 15);
    SkyChart chart(ChartWindow::CurrentList, surface, sky.altitude(), sky.azimuth());
    chart.DrawSkyChart({});
    chart.PlotObject(at(90, 0), 0x000000FF);
    QVERIFY(countPixels(surface.image(), [](QRgb c) { return c == 0xFF0000; }) > 0);
    QCOMPARE(surface.image().pixel(QPoint(133, 133)) & 0xFFFFFF, 0u);
    surface.point(75, 75, 0x00C0FFFF);
    QCOMPARE(surface.image().pixelColor(5, 5), QColor(0xFF, 0xFF, 0xC0));
  }

  // clang-format off
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
  // clang-format on
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

  // clang-format off
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
  // clang-format on
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
  }

  // The best pairs' lines on the screen, an empty two star row kept.
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
    w.findChild<QCheckBox*>("chkAutoAlignment")->click();
    QVERIFY(!textsOf(w.bestPairsText()).contains("Two Star Align"));
    const QStringList tonight = namesOf(w.candidates());

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

  // A null field shows as one empty box of twelve; a null Messier name, or a null category on
  // any page, stops with the old error.
  // clang-format off
  void nullRule_data() {
    QTest::addColumn<QString>("field");
    QTest::addColumn<int>("tab");
    QTest::addColumn<QString>("result");
    const QString error = QStringLiteral("Invalid use of Null - 94");
    QTest::newRow("name, Caldwell") << "Name" << kCaldwell << "1 of 12";
    QTest::newRow("name, Messier") << "Name" << kMessier << error;
    QTest::newRow("category") << "Category" << kCaldwell << error;
  }
  // clang-format on
  void nullRule() {
    QFETCH(QString, field);
    QFETCH(int, tab);
    QFETCH(QString, result);
    auto db = Database::open(":memory:", Database::Mode::ReadWrite);
    db->exec(
        "CREATE TABLE T (Category, ObjectNum, Name, Type, Constellation, Magnitude, Info, "
        "RAHour, RAMinute, DecSign, DecDeg, DecMinute)");
    db->exec("INSERT INTO T VALUES ('C', 1, 'N', 'T', 'Ori', '5', 'I', 5, 30, '-', 5, 23)");
    db->exec(QStringLiteral("UPDATE T SET %1 = NULL").arg(field));
    Recordset rs(db, QStringLiteral("T"));
    try {
      const QStringList texts = HHCDetailTexts(rs, tab);
      QCOMPARE(QStringLiteral("%1 of %2").arg(texts.count(QString())).arg(texts.size()), result);
    } catch (const AppError& e) {
      QCOMPARE(e.text(), result);
    }
  }

  // The marker follows the page in view; a page filtered empty blanks the panel and leaves it.
  // Ctrl+Tab and Ctrl+Shift+Tab go round the pages. Then the filter: its button, its label, a
  // change made in another window, the 21st minute.
  void detailsAndFilter() {
    Rig rig;
    AppState& s = rig.state();
    CatalogBrowser* tabs = rig.hhc->browser();
    QTest::keyClick(tabs->searchBox(0), Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(tabs->currentIndex(), kDoubles);
    QTest::keyClick(tabs->searchBox(kDoubles), Qt::Key_Tab, Qt::ControlModifier);
    QCOMPARE(tabs->currentIndex(), kMessier);
    QCOMPARE(rig.text("Text2") + ' ' + rig.text("Text3"),
             QStringLiteral("1 Crab Nebula; Taurus A"));
    QVERIFY(rig.text("Text13").toDouble() > 0);
    const QPointF crab = rig.marker();
    tabs->setCurrentIndex(kCaldwell);
    QCOMPARE(rig.text("Text1"), QStringLiteral("Caldwell"));
    QVERIFY(rig.marker() != crab);
    tabs->setCurrentIndex(kMessier);
    s.Pages[kMessierSet].Where = QStringLiteral("WHERE False");
    tabs->bindPages();
    rig.hhc->ShowDetails();
    for (int n = 1; n <= 13; ++n)
      QCOMPARE(rig.text(qPrintable(QStringLiteral("Text%1").arg(n))), QString());
    QCOMPARE(rig.marker(), crab);  // the Messier page's, left where it was
    // Nothing is in view: GoTo sends nothing and says nothing.
    s.settings.CommPort = QStringLiteral("/dev/tavorine-no-such-port");
    rig.click("cmdGoto");

    for (PageQuery& q : s.Pages) q.Filter = QStringLiteral("WHERE True");
    s.filter.FltAlt = true;
    s.filter.FltMinAlt = 20;
    bool cancel = true;
    rig.hhc->showFilterDialog = [&](QWidget*) {
      QVERIFY(!rig.hhc->timer()->isActive());
      s.FilterCancelled = cancel;
    };
    rig.click("cmdFilterAlt");
    QVERIFY(!s.FilterOn && !rig.filterLabel());
    cancel = false;
    rig.click("cmdFilterAlt");
    QVERIFY(s.FilterOn && rig.filterLabel() && rig.hhc->timer()->isActive());
    const int above20 = rig.page(kMessier)->RecordCount();
    QVERIFY(above20 > 0 && above20 < 110);

    // A stricter filter waits for the 21st minute.
    s.filter.FltMinAlt = 60;
    rig.hhc->setAltitudeTicks(19);
    rig.hhc->timerAltitude_Timer();
    QCOMPARE(rig.page(kMessier)->RecordCount(), above20);
    rig.hhc->timerAltitude_Timer();
    QVERIFY(rig.page(kMessier)->RecordCount() < above20);
    QCOMPARE(rig.hhc->altitudeTicks(), qint16(0));

    // Switched off in the list editor: noticed at the next activation; the button turns it off.
    s.FilterOn = false;
    rig.hhc->Form_Activate();
    QVERIFY(!rig.filterLabel() && rig.page(kMessier)->RecordCount() == 110);
    s.FilterOn = true;
    rig.click("cmdFilterAlt");
    QVERIFY(!s.FilterOn && !rig.filterLabel() && rig.page(kMessier)->RecordCount() == 110);
    QVERIFY(rig.env.prompter.entries.isEmpty());
  }

  // Against the telescope simulator on a pseudo-terminal; the limits' alert is the GoTo flow
  // test's.
  void telescope() {
    ScopeSim sim;
    QVERIFY(sim.start(QStringLiteral("GT")));
    Rig rig;
    ProgramSettings& s = rig.state().settings;
    s.ScopeType = QStringLiteral("GT");
    s.CommPort = sim.address;
    s.UseAltLimit = false;

    // A double click on the Crab Nebula's row (RA 5 34.5, Dec +22 0.9).
    DataGrid* grid = rig.hhc->browser()->pageGrid(kMessier);
    QVERIFY(QTest::qWaitForWindowExposed(rig.hhc.get()));
    const QRect cell = grid->visualRect(grid->model()->index(0, 1));
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
    QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
    QCOMPARE(sim.received(), QByteArray("R3B77,0FA7"));

    // Quick GoTo with seconds and the sign flipped: 5 34 30, -22 01 00.
    const char* fields[] = {"txtGotoRAHour", "txtGotoRAMin",  "txtGoToRASec",
                            "txtGotoDecDeg", "txtGotoDecMin", "txtGotoDecSec"};
    const QStringList values = {"5", "34", "30", "22", "1", "0"};
    for (int i = 0; i < 6; ++i) rig.edit(fields[i])->setText(values[i]);
    rig.click("cmdDecSign");
    rig.click("cmdQuickGoto");
    QCOMPARE(sim.received(), QByteArray("R3B77,0FA7R3B77,F057"));

    rig.click("cmdGetRA");
    QCOMPARE((QStringList{rig.text("txtRAHour"), rig.text("txtRAMin"), rig.text("txtDecSign"),
                          rig.text("txtDecDeg"), rig.text("txtDecMin")}),
             (QStringList{"5", "34.5", "-", "22", "1"}));
    QVERIFY(rig.env.prompter.entries.isEmpty());
  }
};

QTEST_MAIN(TestCharts)
#include "tst_charts.moc"
