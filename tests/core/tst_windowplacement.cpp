#include <QtTest>

#include "core/windowfit.h"
#include "core/windowplacement.h"
#include "support/testenv.h"

class TestWindowPlacement : public QObject {
  Q_OBJECT
 private slots:
  void fit_data() {
    QTest::addColumn<QRect>("frame");
    QTest::addColumn<QSize>("minimum");
    QTest::addColumn<QRect>("fitted");
    const QSize none(0, 0);
    // The free area is 1024 x 570 below a 30 pixel panel.
    QTest::newRow("too tall: shrunk, top on the area")
        << QRect(12, 20, 1000, 720) << none << QRect(12, 30, 1000, 570);
    QTest::newRow("off the right and bottom: moved back")
        << QRect(900, 500, 300, 200) << none << QRect(724, 400, 300, 200);
    QTest::newRow("smallest size larger than the area: title bar stays on")
        << QRect(100, 100, 1100, 800) << QSize(1050, 600) << QRect(0, 30, 1050, 600);
  }
  void fit() {
    QFETCH(QRect, frame);
    QFETCH(QSize, minimum);
    QFETCH(QRect, fitted);
    QCOMPARE(FitFrame(frame, minimum, QRect(0, 30, 1024, 570)), fitted);
  }

  // A window comes back where it was left; each window has its own place.
  void remembered() {
    TestEnv env;
    const QRect left(40, 60, 320, 200);
    QWidget first, again, other;
    for (auto [w, name] : {std::pair{&first, "Probe"}, {&again, "Probe"}, {&other, "Other"}}) {
      w->setObjectName(QString::fromLatin1(name));
      w->resize(300, 150);
      KeepWindowPlacement(w, *env.state);
    }
    first.show();
    first.setGeometry(left);
    first.hide();
    again.show();
    other.show();
    QCOMPARE(again.geometry(), left);
    QCOMPARE(other.size(), QSize(300, 150));
  }
};

QTEST_MAIN(TestWindowPlacement)
#include "tst_windowplacement.moc"
