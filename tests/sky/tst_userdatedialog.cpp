#include <QAbstractSpinBox>
#include <QCalendarWidget>
#include <QPushButton>
#include <QtTest>

#include "sky/userdatedialog.h"
#include "support/testenv.h"

namespace {

struct Dialog {
  explicit Dialog(TestEnv& env) : dlg(*env.state) {
    date = dlg.findChild<QCalendarWidget*>(QStringLiteral("PickDate"));
    hour = dlg.findChild<QAbstractSpinBox*>(QStringLiteral("PickTimeHour"));
    minute = dlg.findChild<QAbstractSpinBox*>(QStringLiteral("PickTimeMinute"));
    ok = dlg.findChild<QPushButton*>(QStringLiteral("OKButton"));
    cancel = dlg.findChild<QPushButton*>(QStringLiteral("CancelButton"));
    dlg.show();
  }

  void type(QAbstractSpinBox* field, const QString& text) {
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Delete);
    QTest::keyClicks(field, text);
  }

  frmUserDate dlg;
  QCalendarWidget* date;
  QAbstractSpinBox* hour;
  QAbstractSpinBox* minute;
  QPushButton* ok;
  QPushButton* cancel;
};

const QDateTime kSmallHours(QDate(2026, 11, 21), QTime(3, 7, 42));

}  // namespace

class TestUserDateDialog : public QObject {
  Q_OBJECT
 private slots:
  void opensOnUserDate();
  void okWithoutChangeDropsTheSecondsOnly();
  void okTakesTheChosenDateAndTime();
  void notADateKeepsTheDialogOpen();
  void cancelChangesNothing();
  void arrowsStepTheFields();
  void pickingADateMovesTheFocusToOK();
};

void TestUserDateDialog::opensOnUserDate() {
  TestEnv env;
  env.state->UserDate = kSmallHours;
  Dialog d(env);
  QVERIFY(d.date && d.hour && d.minute && d.ok && d.cancel);
  QCOMPARE(d.dlg.windowTitle(), QStringLiteral("Select Date and Time for Chart"));
  QCOMPARE(d.ok->text(), QStringLiteral("OK"));
  QCOMPARE(d.cancel->text(), QStringLiteral("Cancel"));
  QCOMPARE(d.date->selectedDate(), QDate(2026, 11, 21));
  QCOMPARE(d.hour->text(), QStringLiteral("3"));
  QCOMPARE(d.minute->text(), QStringLiteral("07"));
}

void TestUserDateDialog::okWithoutChangeDropsTheSecondsOnly() {
  TestEnv env;
  env.state->UserDate = kSmallHours;
  Dialog d(env);
  QTest::mouseClick(d.ok, Qt::LeftButton);
  QCOMPARE(env.state->UserDate, QDateTime(QDate(2026, 11, 21), QTime(3, 7)));
  QCOMPARE(d.dlg.result(), int(QDialog::Accepted));
  QVERIFY(!d.dlg.isVisible());
  QVERIFY(env.prompter.entries.isEmpty());
}

void TestUserDateDialog::okTakesTheChosenDateAndTime() {
  TestEnv env;
  env.state->UserDate = kSmallHours;
  Dialog d(env);
  d.date->setSelectedDate(QDate(2026, 12, 24));
  d.type(d.hour, QStringLiteral("21"));
  d.type(d.minute, QStringLiteral("5"));
  QTest::mouseClick(d.ok, Qt::LeftButton);
  QCOMPARE(env.state->UserDate, QDateTime(QDate(2026, 12, 24), QTime(21, 5)));
}

void TestUserDateDialog::notADateKeepsTheDialogOpen() {
  TestEnv env;
  env.state->UserDate = kSmallHours;
  Dialog d(env);
  d.type(d.hour, QStringLiteral("25"));
  QCOMPARE(d.hour->text(), QStringLiteral("25"));
  QTest::mouseClick(d.ok, Qt::LeftButton);
  QCOMPARE(env.prompter.entries.size(), 1);
  QCOMPARE(env.prompter.entries[0].title, QStringLiteral("Tavorine"));
  QCOMPARE(env.prompter.entries[0].text, QStringLiteral("Type mismatch - 13"));
  QCOMPARE(env.state->UserDate, kSmallHours);
  QVERIFY(d.dlg.isVisible());

  // Put right, the same dialog takes it.
  d.type(d.hour, QStringLiteral("23"));
  QTest::mouseClick(d.ok, Qt::LeftButton);
  QCOMPARE(env.state->UserDate, QDateTime(QDate(2026, 11, 21), QTime(23, 7)));
  QVERIFY(!d.dlg.isVisible());
}

void TestUserDateDialog::cancelChangesNothing() {
  TestEnv env;
  env.state->UserDate = kSmallHours;
  Dialog d(env);
  d.date->setSelectedDate(QDate(2027, 1, 2));
  d.type(d.hour, QStringLiteral("20"));
  QTest::mouseClick(d.cancel, Qt::LeftButton);
  QCOMPARE(env.state->UserDate, kSmallHours);
  QCOMPARE(d.dlg.result(), int(QDialog::Rejected));
  QVERIFY(!d.dlg.isVisible());

  // Opened again, it shows UserDate, not what was left in it.
  d.dlg.show();
  QCOMPARE(d.date->selectedDate(), QDate(2026, 11, 21));
  QCOMPARE(d.hour->text(), QStringLiteral("3"));
}

void TestUserDateDialog::arrowsStepTheFields() {
  TestEnv env;
  env.state->UserDate = QDateTime(QDate(2026, 11, 21), QTime(9, 59));
  Dialog d(env);
  QTest::keyClick(d.hour, Qt::Key_Up);
  QCOMPARE(d.hour->text(), QStringLiteral("10"));
  QTest::keyClick(d.minute, Qt::Key_Up);
  QCOMPARE(d.minute->text(), QStringLiteral("59"));
  d.minute->stepBy(-55);
  QCOMPARE(d.minute->text(), QStringLiteral("04"));
}

void TestUserDateDialog::pickingADateMovesTheFocusToOK() {
  TestEnv env;
  env.state->UserDate = kSmallHours;
  Dialog d(env);
  d.dlg.activateWindow();
  QVERIFY(QTest::qWaitForWindowActive(&d.dlg));
  d.hour->setFocus();
  QTRY_VERIFY(d.hour->hasFocus());
  emit d.date->clicked(QDate(2026, 11, 25));
  QTRY_VERIFY(d.ok->hasFocus());
}

QTEST_MAIN(TestUserDateDialog)
#include "tst_userdatedialog.moc"
