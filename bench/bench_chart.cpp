// The sky charts the observer waits for: the list window's redraw (every minute, 5,044 map
// stars on the present sky) and the list editor's (on load and on each new observing date),
// through the windows' own routines, on the real clock and system time zone.
#include <QApplication>
#include <QImage>
#include <QLineEdit>
#include <QTextStream>

#include "benchsetup.h"
#include "benchstats.h"
#include "charts/skywidget.h"
#include "core/mainwindow.h"
#include "lists/editlist.h"
#include "lists/listview.h"
#include "lists/listwindow.h"
#include "plainsky.h"

namespace {

// The floor: the same stars, their altitude and (above the horizon) azimuth done plainly, a
// pixel set for each on a chart of the same size.
void plainChart(const std::vector<SkyCoordinates>& stars, const bench::PlainSky& sky,
                const ChartConstants& c, QImage& image) {
  image.fill(Qt::black);
  for (const SkyCoordinates& s : stars) {
    double alt = 0, az = 0;
    sky.altAz(s.raHours, s.raMinutes, s.south, s.decDegrees, s.decMinutes, &alt, nullptr);
    if (!(alt > 0)) continue;
    sky.altAz(s.raHours, s.raMinutes, s.south, s.decDegrees, s.decMinutes, &alt, &az);
    const QPointF p = ProjectSky(c, alt, az);
    image.setPixel(int(p.x() / 15), int(p.y() / 15), 0xFFFFFFFF);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  QTextStream out(stdout);
  bench::Setup setup;
  AppState& state = setup.state;
  state.UserDate = QDateTime(QDate::currentDate(), QTime(22, 0));
  const QString path = bench::listOfPage(state, setup.dir, QStringLiteral("tonight.tlf"), 0, 40);

  TavorineListMain main(state);
  main.findChild<QLineEdit*>(QStringLiteral("txtFileName"))->setText(path);
  main.findChild<QLineEdit*>(QStringLiteral("txtFileTitle"))->setText(QStringLiteral("tonight"));
  CurrentList list(ListVariant::CurrentList, state, main);
  list.Form_Activate();
  const std::vector<SkyCoordinates>& stars = list.mapStars();
  out << "map stars: " << stars.size() << "\n";

  QImage image(list.Sky()->surface().image().size(), QImage::Format_RGB32);
  const ChartConstants& large = ChartConstantsFor(ChartWindow::CurrentList);
  bench::report(out, QStringLiteral("list window chart redraw (timer tick)"),
                bench::measure([&](int) { list.timerAltitude_Timer(); },
                               [&](int) {
                                 const bench::PlainSky sky{SiderealDegreesNow(state),
                                                           bench::latitudeDegrees(state.settings)};
                                 plainChart(stars, sky, large, image);
                               }),
                10);

  EditList editor(state, main, path, QStringLiteral("Objects - tonight"));
  auto catalog = Database::open(state.catalogPath(), Database::Mode::ReadOnly);
  bench::report(out, QStringLiteral("list editor: MapStars read once at load"),
                bench::measure([&](int) { (void)LoadMapStars(*catalog); },
                               [&](int) {
                                 Statement st = catalog->prepare(QStringLiteral(
                                     "SELECT RAHour, RAMinute, DecSign, DecDeg, DecMinute "
                                     "FROM MapStars"));
                                 double sum = 0;
                                 while (st.step()) sum += st.doubleValue(0);
                                 (void)sum;
                               }),
                0);
  const ChartConstants& small = ChartConstantsFor(ChartWindow::EditList);
  QImage editorImage(editor.sky()->surface().image().size(), QImage::Format_RGB32);
  bench::report(
      out, QStringLiteral("list editor chart redraw (load, date change)"),
      bench::measure(
          [&](int) { editor.DrawSkyChart(); },
          [&](int) {
            const bench::PlainSky sky{SiderealDegreesAtUserDate(state),
                                      bench::latitudeDegrees(state.settings)};
            plainChart(stars, sky, small, editorImage);
          },
          [&](int run) { state.UserDate = QDateTime(QDate::currentDate(), QTime(18 + run, 30)); }),
      10);
  return 0;
}
