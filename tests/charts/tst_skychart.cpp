#include <QLabel>
#include <QtTest>

#include "charts/qimagechartsurface.h"
#include "charts/skychart.h"
#include "support/recordingchartsurface.h"
#include "charts/skywidget.h"
#include "core/numtext.h"
#include "sky/skycalc.h"
#include "support/testenv.h"

namespace {

// Stand-in sky: the altitude is carried in the hours field, the azimuth in the minutes field,
// and the calls are counted.
struct FakeSky {
  int altitudeCalls = 0, azimuthCalls = 0;
  SkyChart::AltAzFunction altitude() {
    return [this](const SkyCoordinates& p) { ++altitudeCalls; return p.raHours; };
  }
  SkyChart::AltAzFunction azimuth() {
    return [this](const SkyCoordinates& p) { ++azimuthCalls; return p.raMinutes; };
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

}  // namespace

class TestSkyChart : public QObject {
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
    chart.DrawSkyChart({at(10, 0), at(0, 90), at(-5, 90), at(90, 45), at(0.1, 180),
                        at(0.1, 270), at(60, -315)});
    QCOMPARE(opsOf(surface), (QStringList{"clear 0,0 0 1 0", "circle 2000,2000 1800 1 80000014",
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
    QCOMPARE(QPointF(chart.MarkerX, chart.MarkerY), QPointF(3000, 3000));
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

  // The marker is a ring, not filled; a plain colour value carries red in its low byte, and the
  // 3D face is the grey of the controls.
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
    QCOMPARE(ChartColourToRgb(SystemColour3DFace, false), 0x00A0A0A0u);
  }

  // The compass letters of each chart (the editor's has no S); the W stands against the ring.
  void compassLetters() {
    FakeSky sky;
    for (const auto& [window, letters] : {std::pair{ChartWindow::HHC, "NSEW"},
                                          std::pair{ChartWindow::EditList, "NEW"}}) {
      SkyWidget w(window, sky.altitude(), sky.azimuth());
      QString found;
      for (QLabel* l : w.findChildren<QLabel*>()) found += l->text();
      QCOMPARE(found, QLatin1String(letters));
      QVERIFY(w.findChild<QLabel*>(QStringLiteral("lblCompassW"))->alignment() & Qt::AlignRight);
    }
  }
};

QTEST_MAIN(TestSkyChart)
#include "tst_skychart.moc"
