#include <QAbstractSpinBox>
#include <QCalendarWidget>
#include <QPushButton>
#include <QtTest>

#include "core/apperror.h"
#include "sky/observingclock.h"
#include "sky/userdatedialog.h"
#include "support/testenv.h"

namespace {

const QDateTime kSmallHours(QDate(2026, 11, 21), QTime(3, 7, 42));

// The dialog on a state whose observing date is `userDate`, found by its control names.
struct Dialog {
  TestEnv env;
  frmUserDate* dlg;
  QCalendarWidget* date;
  QAbstractSpinBox *hour, *minute;
  QPushButton *ok, *cancel;

  explicit Dialog(const QDateTime& userDate = kSmallHours) {
    env.state->UserDate = userDate;
    dlg = new frmUserDate(*env.state);
    date = dlg->findChild<QCalendarWidget*>(QStringLiteral("PickDate"));
    hour = dlg->findChild<QAbstractSpinBox*>(QStringLiteral("PickTimeHour"));
    minute = dlg->findChild<QAbstractSpinBox*>(QStringLiteral("PickTimeMinute"));
    ok = dlg->findChild<QPushButton*>(QStringLiteral("OKButton"));
    cancel = dlg->findChild<QPushButton*>(QStringLiteral("CancelButton"));
    dlg->show();
  }
  ~Dialog() { delete dlg; }

  void type(QAbstractSpinBox* field, const QString& text) {
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Delete);
    QTest::keyClicks(field, text);
  }
};

}  // namespace

class TestUserDateDialog : public QObject {
  Q_OBJECT
 private slots:
  // The hour and minute fields read by their leading numbers (tst_numtext has the reading), on
  // any date; what is not a time of day is refused.
  void fromFields_data() {
    QTest::addColumn<QString>("hour");
    QTest::addColumn<QString>("minute");
    QTest::addColumn<QTime>("time");  // invalid: refused
    QTest::newRow("last minute of the day") << "23" << "59" << QTime(23, 59);
    QTest::newRow("leading number only") << "7pm" << "15min" << QTime(7, 15);
    QTest::newRow("fractions round in the two-digit form") << "7.6" << "29.5" << QTime(8, 30);
    QTest::newRow("hour 24") << "24" << "0" << QTime();
    QTest::newRow("minute 60") << "12" << "60" << QTime();
    QTest::newRow("negative hour") << "-1" << "0" << QTime();
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

  // The arrows stop at the ends and count text as 0 (the dialog below steps up and down).
  void step() {
    QCOMPARE(StepNumberText("03", -10, 59, "00"), QStringLiteral("00"));
    QCOMPARE(StepNumberText("abc", 1, 23, "0"), QStringLiteral("1"));
  }

  // It opens on the observing date, the hour without a leading zero. Cancel changes nothing,
  // and opened again the dialog shows UserDate, not what was left in it; a time that is not one
  // keeps it open with the message; put right with the arrows (a typed 25 steps down to 23), OK
  // takes the picked date and the fields, without seconds.
  void cancelErrorThenOk() {
    Dialog d;
    QVERIFY(d.date && d.hour && d.minute && d.ok && d.cancel);
    QCOMPARE(QStringList({d.dlg->windowTitle(), d.ok->text(), d.cancel->text()}),
             QStringList({"Select Date and Time for Chart", "OK", "Cancel"}));
    auto shown = [&] { return d.date->selectedDate().toString(Qt::ISODate) + ' ' +
                              d.hour->text() + ':' + d.minute->text(); };
    QCOMPARE(shown(), QStringLiteral("2026-11-21 3:07"));
    d.date->setSelectedDate(QDate(2027, 1, 2));
    d.type(d.hour, QStringLiteral("20"));
    QTest::mouseClick(d.cancel, Qt::LeftButton);
    QCOMPARE(d.env.state->UserDate, kSmallHours);
    QCOMPARE(d.dlg->result(), int(QDialog::Rejected));
    d.dlg->show();
    QCOMPARE(shown(), QStringLiteral("2026-11-21 3:07"));

    d.date->setSelectedDate(QDate(2026, 12, 24));
    d.type(d.hour, QStringLiteral("25"));
    QTest::mouseClick(d.ok, Qt::LeftButton);
    QCOMPARE(d.env.prompter.texts(), QStringList{"Type mismatch - 13"});
    QCOMPARE(d.env.prompter.entries[0].title, QStringLiteral("Tavorine"));
    QCOMPARE(d.env.state->UserDate, kSmallHours);
    QVERIFY(d.dlg->isVisible());
    // The arrows step the fields, within their range and minutes in two digits.
    QTest::keyClick(d.hour, Qt::Key_Down);
    QTest::keyClick(d.minute, Qt::Key_Up);
    QCOMPARE(d.hour->text() + ':' + d.minute->text(), QStringLiteral("23:08"));
    QTest::mouseClick(d.ok, Qt::LeftButton);
    QCOMPARE(d.env.state->UserDate, QDateTime(QDate(2026, 12, 24), QTime(23, 8)));
    QCOMPARE(d.dlg->result(), int(QDialog::Accepted));
    QCOMPARE(d.env.prompter.entries.size(), 1);
  }

  void pickingADateMovesTheFocusToOK() {
    Dialog d;
    d.dlg->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(d.dlg));
    d.hour->setFocus();
    QTRY_VERIFY(d.hour->hasFocus());
    emit d.date->clicked(QDate(2026, 11, 25));
    QTRY_VERIFY(d.ok->hasFocus());
  }
};

QTEST_MAIN(TestUserDateDialog)
#include "tst_userdatedialog.moc"
