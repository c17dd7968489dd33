#include <QtTest>

#include <QApplication>
#include <QMdiArea>
#include <QToolButton>
#include <memory>
#include <vector>

#include "core/redscreen.h"
#include "core/redscreencolors.h"
#include "support/testenv.h"

class TestRedScreen : public QObject {
  Q_OBJECT
 private slots:
  void init();
  void colorValues_data();
  void colorValues();
  void tables();
  void roundTrip();
  void exitWhileOn();
  void exitWhileOff();
  void workspaceTurnsBlack();
  void picturesFollowTheMode();

 private:
  struct Buttons {
    std::vector<std::unique_ptr<QToolButton>> owned;
    QList<QAbstractButton*> list;
  };
  static Buttons makeButtons();
  QString startSheet_ = QStringLiteral("QLabel#lblNote { color: blue; }");
};

namespace {
const char* const kNames[] = {"cmdNew", "cmdOpen", "cmdPrint", "cmdHHC", "cmdAlignStars",
                              "cmdRedScreen"};
const char* const kTips[] = {"New List", "Open Existing List", "Print", "Hyper Hand Control",
                             "Alignment Star Chart", "Red Screen"};
}  // namespace

TestRedScreen::Buttons TestRedScreen::makeButtons() {
  Buttons b;
  for (const char* name : kNames) {
    b.owned.push_back(std::make_unique<QToolButton>());
    b.owned.back()->setObjectName(QLatin1String(name));
    b.owned.back()->setToolTip(QStringLiteral("old"));
    b.list << b.owned.back().get();
  }
  b.owned[2]->setStyleSheet(QStringLiteral("padding: 3px;"));
  return b;
}

void TestRedScreen::init() {
  qApp->setStyleSheet(startSheet_);
}

void TestRedScreen::colorValues_data() {
  QTest::addColumn<int>("value");
  QTest::addColumn<QString>("css");
  QTest::addColumn<int>("red");
  QTest::addColumn<int>("blue");
  QTest::newRow("red low byte") << 0x0000FF << "#ff0000" << 255 << 0;
  QTest::newRow("dark red") << 0x000080 << "#800000" << 128 << 0;
  QTest::newRow("tool tip yellow") << 0xE1FFFF << "#ffffe1" << 255 << 0xE1;
  QTest::newRow("object colour default") << 200 << "#c80000" << 200 << 0;
  QTest::newRow("mixed") << 0x123456 << "#563412" << 0x56 << 0x12;
}

void TestRedScreen::colorValues() {
  QFETCH(int, value);
  QTEST(CssColor(value), "css");
  QTEST(RedOf(value), "red");
  QTEST(BlueOf(value), "blue");
  QCOMPARE(RedLowValue(RedOf(value), GreenOf(value), BlueOf(value)), value);
}

void TestRedScreen::tables() {
  TestEnv env;
  RedScreen red(*env.state);
  red.snapshot();
  const SysColorTables& t = red.tables();
  const QColor base = QApplication::palette().color(QPalette::Active, QPalette::Base);
  // The snapshot reads the window colour from the base role.
  QCOMPARE(t.SavedSysColors[SysColor::Window], RedLowValue(base.red(), base.green(), base.blue()));
  // The red palette paints forms in button face and edit fields in window colour.
  const QPalette p = RedScreen::paletteFor(t.RedSysColors, QApplication::palette());
  QCOMPARE(p.color(QPalette::Active, QPalette::Window), QColor(128, 0, 0));
  QCOMPARE(p.color(QPalette::Active, QPalette::HighlightedText), QColor(255, 0, 0));
  QCOMPARE(p.color(QPalette::Disabled, QPalette::Text), QColor(128, 128, 128));
  QCOMPARE(p.color(QPalette::Active, QPalette::ToolTipBase), QColor(255, 255, 225));
}

void TestRedScreen::roundTrip() {
  TestEnv env;
  Buttons b = makeButtons();
  const QPalette startPalette = QApplication::palette();
  RedScreen red(*env.state);
  red.snapshot();

  red.toggle(b.list);
  QVERIFY(env.state->RedScreenOn);
  QCOMPARE(QApplication::palette().color(QPalette::Window), QColor(128, 0, 0));
  QVERIFY(qApp->styleSheet().startsWith(startSheet_));
  QVERIFY(qApp->styleSheet().contains(QLatin1String("QToolTip")));
  for (QAbstractButton* button : b.list) {
    QCOMPARE(button->toolTip(), QString());
    QVERIFY(button->styleSheet().contains(QLatin1String("rgb(127, 0, 0)")));
  }

  red.toggle(b.list);
  QVERIFY(!env.state->RedScreenOn);
  QVERIFY(QApplication::palette() == startPalette);
  QCOMPARE(qApp->styleSheet(), startSheet_);
  for (int i = 0; i < 6; ++i) {
    QCOMPARE(b.list[i]->toolTip(), QString::fromLatin1(kTips[i]));
    QCOMPARE(b.list[i]->styleSheet(), i == 2 ? QStringLiteral("padding: 3px;") : QString());
  }

  // A second round gives the same.
  red.toggle(b.list);
  red.toggle(b.list);
  QVERIFY(QApplication::palette() == startPalette);
  QCOMPARE(qApp->styleSheet(), startSheet_);
  QVERIFY(env.prompter.entries.isEmpty());
}

void TestRedScreen::exitWhileOn() {
  TestEnv env;
  Buttons b = makeButtons();
  const QPalette startPalette = QApplication::palette();
  RedScreen red(*env.state);
  red.snapshot();
  red.toggle(b.list);
  red.restoreForExit();
  QVERIFY(QApplication::palette() == startPalette);
  QCOMPARE(qApp->styleSheet(), startSheet_);
  // The process ends next: the flag and the buttons are left alone.
  QVERIFY(env.state->RedScreenOn);
  QCOMPARE(b.list[0]->toolTip(), QString());
}

void TestRedScreen::exitWhileOff() {
  TestEnv env;
  RedScreen red(*env.state);
  red.snapshot();
  // Whatever the desktop did since start-up is not undone on exit while off.
  const QPalette before = QApplication::palette();
  QPalette changed = before;
  changed.setColor(QPalette::Window, QColor(1, 2, 3));
  QApplication::setPalette(changed);
  red.restoreForExit();
  QCOMPARE(QApplication::palette().color(QPalette::Window), QColor(1, 2, 3));
  QApplication::setPalette(before);
}

void TestRedScreen::workspaceTurnsBlack() {
  TestEnv env;
  RedScreen red(*env.state);
  red.snapshot();
  QMdiArea area;
  area.resize(200, 150);
  area.show();
  const QRgb before = area.grab().toImage().pixel(100, 75);
  red.toggle({});
  QCOMPARE(QColor(area.grab().toImage().pixel(100, 75)), QColor(0, 0, 0));
  red.toggle({});
  QCOMPARE(area.grab().toImage().pixel(100, 75), before);
}

// While on, no picture shines (a white page, the disabled Print picture); after, each has its
// own colours again, none left pink from the red palette.
void TestRedScreen::picturesFollowTheMode() {
  TestEnv env;
  Buttons b = makeButtons();
  QPixmap white(16, 16);
  white.fill(Qt::white);
  for (QAbstractButton* button : b.list) button->setIcon(QIcon(white));
  b.list[2]->setEnabled(false);
  const auto picture = [](QAbstractButton* button, QIcon::Mode mode) {
    return button->icon().pixmap(QSize(16, 16), 1.0, mode).toImage().convertToFormat(QImage::Format_RGB32);
  };
  const QImage normal = picture(b.list[0], QIcon::Normal);
  const QImage disabled = picture(b.list[2], QIcon::Disabled);
  RedScreen red(*env.state);
  red.snapshot();
  red.toggle(b.list);
  for (QIcon::Mode mode : {QIcon::Normal, QIcon::Disabled}) {
    const QImage image = picture(b.list[2], mode);
    for (int y = 0; y < image.height(); ++y)
      for (int x = 0; x < image.width(); ++x) {
        const QColor c = image.pixelColor(x, y);
        QVERIFY2(c.green() == 0 && c.blue() == 0 && c.red() <= 0xC0, qPrintable(c.name()));
      }
  }
  red.toggle(b.list);
  QCOMPARE(picture(b.list[0], QIcon::Normal), normal);
  QCOMPARE(picture(b.list[2], QIcon::Disabled), disabled);
}

QTEST_MAIN(TestRedScreen)
#include "tst_redscreen.moc"
