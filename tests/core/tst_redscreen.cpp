#include <QtTest>

#include <QApplication>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QStyle>
#include <QToolButton>

#include "core/redscreen.h"
#include "support/testenv.h"

namespace {

// The largest green or blue of any pixel.
int mostGreenOrBlue(const QImage& image) {
  int most = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      most = qMax(most, qMax(image.pixelColor(x, y).green(), image.pixelColor(x, y).blue()));
  return most;
}

}  // namespace

class TestRedScreen : public QObject {
  Q_OBJECT
 private slots:
  // On and off again, the toolbar's buttons with a white picture, an old tip, Print disabled
  // and with a style of its own. While on, no picture shines; after, each has its own colours
  // again, none left pink from the red palette.
  void roundTrip() {
    const QString startSheet = QStringLiteral("QLabel#lblNote { color: blue; }");
    qApp->setStyleSheet(startSheet);
    TestEnv env;
    QWidget owner;
    QList<QAbstractButton*> buttons;
    QPixmap white(16, 16);
    white.fill(Qt::white);
    for (const char* name : {"cmdNew", "cmdPrint", "cmdHHC"}) {
      auto* b = new QToolButton(&owner);
      b->setObjectName(QLatin1String(name));
      b->setToolTip(QStringLiteral("old"));
      b->setIcon(QIcon(white));
      buttons << b;
    }
    QAbstractButton* print = buttons[1];
    print->setStyleSheet(QStringLiteral("padding: 3px;"));
    print->setEnabled(false);
    const auto picture = [](QAbstractButton* button, QIcon::Mode mode) {
      const QPixmap p = button->icon().pixmap(QSize(16, 16), 1.0, mode);
      return p.toImage().convertToFormat(QImage::Format_RGB32);
    };
    const QImage normal = picture(buttons[0], QIcon::Normal);
    const QImage disabled = picture(print, QIcon::Disabled);
    const QPalette startPalette = QApplication::palette();
    RedScreen red(*env.state);
    red.snapshot();
    // Whatever the desktop did since start-up is not undone on exit while off.
    QPalette changed = startPalette;
    changed.setColor(QPalette::Window, QColor(1, 2, 3));
    QApplication::setPalette(changed);
    red.restoreForExit();
    QCOMPARE(QApplication::palette().color(QPalette::Window), QColor(1, 2, 3));
    QApplication::setPalette(startPalette);

    // The list workspace turns black.
    QMdiArea area;
    area.resize(200, 150);
    area.show();
    const QRgb workspace = area.grab().toImage().pixel(100, 75);
    red.toggle(buttons);
    QCOMPARE(QColor(area.grab().toImage().pixel(100, 75)), QColor(0, 0, 0));
    QVERIFY(env.state->RedScreenOn);
    QCOMPARE(QApplication::palette().color(QPalette::Window), QColor(128, 0, 0));
    QVERIFY(qApp->styleSheet().startsWith(startSheet));
    QVERIFY(qApp->styleSheet().contains(QLatin1String("QToolTip")));
    QVERIFY(QCoreApplication::testAttribute(Qt::AA_DontUseNativeDialogs));
    for (QAbstractButton* button : buttons) {
      QCOMPARE(button->toolTip(), QString());
      QVERIFY(button->styleSheet().contains(QLatin1String("rgb(127, 0, 0)")));
    }
    for (QIcon::Mode mode : {QIcon::Normal, QIcon::Disabled}) {
      const QImage image = picture(print, mode);
      QCOMPARE(mostGreenOrBlue(image), 0);
      for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
          QVERIFY2(image.pixelColor(x, y).red() <= 0xC0, qPrintable(image.pixelColor(x, y).name()));
    }

    red.toggle(buttons);
    QVERIFY(!env.state->RedScreenOn);
    QCOMPARE(area.grab().toImage().pixel(100, 75), workspace);
    QVERIFY(QApplication::palette() == startPalette);
    QCOMPARE(qApp->styleSheet(), startSheet);
    QVERIFY(!QCoreApplication::testAttribute(Qt::AA_DontUseNativeDialogs));
    QCOMPARE(buttons[2]->toolTip(), QStringLiteral("Hyper Hand Control"));
    QCOMPARE(print->toolTip() + print->styleSheet(), QStringLiteral("Printpadding: 3px;"));
    QCOMPARE(buttons[0]->styleSheet(), QString());
    QCOMPARE(picture(buttons[0], QIcon::Normal), normal);
    QCOMPARE(picture(print, QIcon::Disabled), disabled);
    QVERIFY(env.prompter.entries.isEmpty());

    // Exit while on puts the colours back.
    red.toggle(buttons);
    red.restoreForExit();
    QVERIFY(QApplication::palette() == startPalette);
    QCOMPARE(qApp->styleSheet(), startSheet);
    qApp->setStyleSheet(QString());
  }

  void titleBarsFollowTheMode_data() {
    QTest::addColumn<bool>("maximised");
    QTest::addColumn<bool>("openedWhileOn");
    QTest::newRow("side by side") << false << false;
    QTest::newRow("side by side, opened while on") << false << true;
    QTest::newRow("maximised") << true << false;
    QTest::newRow("maximised, opened while on") << true << true;
  }

  // While on, no pixel of a title bar, active or not, nor of a maximised list's buttons in the
  // menu bar, has more than a trace of green or blue; after, once the list windows are done with
  // the title bars they noted while the styles changed, each looks exactly as before.
  void titleBarsFollowTheMode() {
    QFETCH(bool, maximised);
    QFETCH(bool, openedWhileOn);
    TestEnv env;
    RedScreen red(*env.state);
    red.snapshot();
    QMainWindow main;
    main.menuBar()->addMenu(QStringLiteral("&File"));
    auto* area = new QMdiArea;
    main.setCentralWidget(area);
    main.resize(600, 400);
    main.show();
    QPixmap picture(16, 16);
    picture.fill(QColor(40, 90, 255));
    const QIcon own(picture);
    if (openedWhileOn) red.toggle({});
    QList<QMdiSubWindow*> frames;
    for (int i = 0; i < 2; ++i) {
      auto* frame = new QMdiSubWindow;
      frame->setWidget(new QWidget);
      frame->setWindowTitle(QStringLiteral("List %1").arg(i));
      frame->setWindowIcon(own);
      area->addSubWindow(frame);
      frame->setGeometry(i * 200, i * 100, 300, 200);
      frame->show();
      frames << frame;
    }
    if (maximised) frames[1]->showMaximized();
    const auto bars = [&] {
      QTest::qWait(RedScreen::kTitleBarPauseMs);
      QList<QImage> out;
      for (QMdiSubWindow* frame : frames) {
        const int bar = frame->style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, frame);
        out << (maximised ? main.menuBar()->grab().toImage()
                          : frame->grab(QRect(0, 0, frame->width(), bar)).toImage());
      }
      return out;
    };
    QList<QImage> before;
    if (!openedWhileOn) {
      before = bars();
      red.toggle({});
    }
    for (const QImage& image : bars()) QCOMPARE_LE(mostGreenOrBlue(image), 8);
    red.toggle({});
    const QList<QImage> after = bars();
    for (QMdiSubWindow* frame : frames) QCOMPARE(frame->windowIcon().cacheKey(), own.cacheKey());
    if (!openedWhileOn) QVERIFY(after == before);
  }
};

QTEST_MAIN(TestRedScreen)
#include "tst_redscreen.moc"
