#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

#include "catalog/catalogdialogs.h"
#include "catalog/catalogwindowrules.h"
#include "catalog/filterdialog.h"
#include "core/numtext.h"
#include "core/settings.h"
#include "core/twips.h"
#include "core/setupdialog.h"
#include "support/testenv.h"

namespace {

const QByteArray kDefaults =
    "#TRUE#,20,#TRUE#,0,12,#TRUE#,0,12,#TRUE#,0,12,#TRUE#,0,12,#TRUE#,0,12,30,2,-2,10,10,0,-2,12"
    "\r\n";

template <typename T>
T* child(QWidget* w, const char* name) {
  T* c = w->findChild<T*>(QLatin1String(name));
  if (!c) qFatal("no control %s", name);
  return c;
}

QLineEdit* field(QWidget* w, const char* name) { return child<QLineEdit>(w, name); }
void click(QWidget* w, const char* name) { child<QPushButton>(w, name)->click(); }

struct Chooser {
  QString answer;
  QString title, folder, filter;
  int calls = 0;
  Filter::FileChooser fn() {
    return [this](QWidget*, const QString& t, const QString& f, const QString& flt) {
      ++calls;
      title = t;
      folder = f;
      filter = flt;
      return answer;
    };
  }
};

}  // namespace

class TestFilterDialog : public QObject {
  Q_OBJECT

 private slots:
  void loadsTheSettingsAndTicksEnableTheirFields() {
    TestEnv env;
    env.state->filter.FltOC = false;
    env.state->filter.FltAlt = false;
    env.state->filter.FltDSMagMax = -2.5f;
    Filter dialog(*env.state);
    QCOMPARE(field(&dialog, "txtGalMin")->text(), QStringLiteral("12"));
    QCOMPARE(field(&dialog, "txtDSMagMax")->text(), QStringLiteral("-2.5"));
    QVERIFY(!child<QCheckBox>(&dialog, "chkOC")->isChecked());
    QVERIFY(!field(&dialog, "txtOCMin")->isEnabled() && !field(&dialog, "txtOCMax")->isEnabled());
    QVERIFY(!field(&dialog, "txtMinAltFilter")->isEnabled());
    QVERIFY(!child<UpDownButtons>(&dialog, "UpDown1")->isEnabled());
    QVERIFY(field(&dialog, "txtGalMin")->isEnabled());
    child<QCheckBox>(&dialog, "chkOC")->click();
    QVERIFY(field(&dialog, "txtOCMin")->isEnabled() && field(&dialog, "txtOCMax")->isEnabled());
    child<QCheckBox>(&dialog, "chkAltFilter")->click();
    QVERIFY(field(&dialog, "txtMinAltFilter")->isEnabled());
    child<QCheckBox>(&dialog, "chkGal")->click();
    QVERIFY(!field(&dialog, "txtGalMax")->isEnabled());
  }

  void ok_data() {
    QTest::addColumn<QString>("minAlt");
    QTest::addColumn<bool>("closes");
    QTest::newRow("80 passes") << "80" << true;
    QTest::newRow("80.5") << "80.5" << false;
    QTest::newRow("no number counts as 0") << "abc" << true;
  }
  void ok() {
    QFETCH(QString, minAlt);
    QFETCH(bool, closes);
    TestEnv env;
    env.state->FilterCancelled = true;
    Filter dialog(*env.state);
    dialog.show();
    field(&dialog, "txtMinAltFilter")->setText(minAlt);
    field(&dialog, "txtUserMagMax")->setText(QStringLiteral("-2"));
    field(&dialog, "txtUserMagMin")->setText(QStringLiteral("10"));
    click(&dialog, "OKButton");
    if (!closes) {
      QCOMPARE(env.prompter.entries.size(), 1);
      QCOMPARE(env.prompter.entries[0].title, QStringLiteral("Error"));
      QCOMPARE(env.prompter.entries[0].text, QStringLiteral("Please select a value between 0 and 80"));
      QVERIFY(dialog.isVisible());
      QVERIFY(env.state->FilterCancelled);
      QVERIFY(env.state->Pages[7].Filter.isEmpty());
      QVERIFY(!QFileInfo::exists(env.state->filterPath()));
      return;
    }
    QVERIFY(env.prompter.entries.isEmpty());
    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QVERIFY(!env.state->FilterCancelled);
    QCOMPARE(env.state->Pages[6].Filter, QStringLiteral("WHERE True"));
    QCOMPARE(env.state->Pages[7].Filter,
             QStringLiteral("WHERE (val(Magnitude) between  10 and -2)"));
    QCOMPARE(env.state->filter.FltMinAlt, qint16(qRound(Val(minAlt))));
    QByteArray expected = kDefaults;
    expected.replace("#TRUE#,20,", "#TRUE#," + QByteArray::number(qRound(Val(minAlt))) + ",");
    expected.replace("-2,12\r\n", "-2,10\r\n");
    QCOMPARE(env.readFile(QStringLiteral("config/Filter.ini")), expected);
  }

  void cancelEscapeAndTheCloseBox() {
    TestEnv env;
    env.state->Pages[4].Filter = QStringLiteral("WHERE (old)");
    {
      env.state->FilterCancelled = false;
      Filter dialog(*env.state);
      dialog.show();
      field(&dialog, "txtGalMin")->setText(QStringLiteral("5"));
      click(&dialog, "cmdCancel");
      QVERIFY(!dialog.isVisible());
      QVERIFY(env.state->FilterCancelled);
      QCOMPARE(env.state->Pages[4].Filter, QStringLiteral("WHERE (old)"));
      QCOMPARE(env.state->filter.FltGalMin, 12.0f);
    }
    {
      env.state->FilterCancelled = false;
      Filter dialog(*env.state);
      dialog.show();
      QTest::keyClick(&dialog, Qt::Key_Escape);
      QVERIFY(!dialog.isVisible());
      QVERIFY(env.state->FilterCancelled);
    }
    for (bool before : {false, true}) {
      env.state->FilterCancelled = before;
      Filter dialog(*env.state);
      dialog.show();
      dialog.close();
      QVERIFY(!dialog.isVisible());
      QCOMPARE(env.state->FilterCancelled, before);
    }
    QVERIFY(!QFileInfo::exists(env.state->filterPath()));
  }

  void openReadsAFileIntoTheControlsOnly() {
    TestEnv env;
    env.state->settings.DataDir = env.path(QStringLiteral("lists/"));
    QByteArray record = kDefaults;
    record.replace("#TRUE#,20,#TRUE#,0,12,#TRUE#,0,12", "#FALSE#,35,#TRUE#,1.5,11,#FALSE#,0,12");
    env.writeFile(QStringLiteral("lists/mine.flt"), record);
    Filter dialog(*env.state);
    Chooser chooser;
    dialog.setOpenChooser(chooser.fn());

    chooser.answer.clear();  // cancelled: nothing, not even a box
    click(&dialog, "cmdOpen");
    QCOMPARE(chooser.title, QStringLiteral("Open filter settings file..."));
    QCOMPARE(chooser.folder, env.state->settings.DataDir);
    QCOMPARE(chooser.filter, QStringLiteral("Filter Settings Files (*.flt)"));
    QVERIFY(env.prompter.entries.isEmpty());

    chooser.answer = env.path(QStringLiteral("lists/mine.flt"));
    click(&dialog, "cmdOpen");
    QVERIFY(env.prompter.entries.isEmpty());
    QVERIFY(!child<QCheckBox>(&dialog, "chkAltFilter")->isChecked());
    QCOMPARE(field(&dialog, "txtMinAltFilter")->text(), QStringLiteral("35"));
    QVERIFY(!field(&dialog, "txtMinAltFilter")->isEnabled());
    QCOMPARE(field(&dialog, "txtGalMax")->text(), QStringLiteral("1.5"));
    QCOMPARE(field(&dialog, "txtGalMin")->text(), QStringLiteral("11"));
    QVERIFY(!field(&dialog, "txtGCMin")->isEnabled());
    // Nothing takes effect before OK.
    QVERIFY(env.state->filter.FltAlt);
    QVERIFY(!QFileInfo::exists(env.state->filterPath()));
    QVERIFY(env.state->Pages[4].Filter.isEmpty());

    // A file of the wrong form: the error box, and the controls keep their values.
    env.writeFile(QStringLiteral("lists/bad.flt"), "#TRUE#,20,#TRUE#\r\n");
    chooser.answer = env.path(QStringLiteral("lists/bad.flt"));
    click(&dialog, "cmdOpen");
    QCOMPARE(env.prompter.entries.size(), 1);
    QCOMPARE(env.prompter.entries[0].text,
             QStringLiteral("Input past end of file: %1 - 62").arg(chooser.answer));
    QCOMPARE(field(&dialog, "txtMinAltFilter")->text(), QStringLiteral("35"));
    QCOMPARE(field(&dialog, "txtGalMax")->text(), QStringLiteral("1.5"));

    // Opened and accepted, the file's values reach Filter.ini unchanged.
    chooser.answer = env.path(QStringLiteral("lists/mine.flt"));
    click(&dialog, "cmdOpen");
    click(&dialog, "OKButton");
    QCOMPARE(env.readFile(QStringLiteral("config/Filter.ini")), record);
  }

  void saveAsAsksBeforeOverwriting() {
    TestEnv env;
    env.state->settings.DataDir = env.path(QStringLiteral("lists/"));
    Filter dialog(*env.state);
    dialog.show();
    Chooser chooser;
    dialog.setSaveChooser(chooser.fn());
    const QString file = env.path(QStringLiteral("lists/night.flt"));
    chooser.answer = file;
    // Saved as they stand, without the altitude test.
    field(&dialog, "txtMinAltFilter")->setText(QStringLiteral("85"));
    click(&dialog, "cmdSave");
    QCOMPARE(chooser.title, QStringLiteral("Name filter settings file..."));
    QVERIFY(env.prompter.entries.isEmpty());
    QVERIFY(dialog.isVisible());
    QByteArray expected = kDefaults;
    expected.replace("#TRUE#,20,", "#TRUE#,85,");
    QCOMPARE(env.readFile(QStringLiteral("lists/night.flt")), expected);

    field(&dialog, "txtMinAltFilter")->setText(QStringLiteral("30"));
    env.prompter.answer(Prompter::Answer::No);
    click(&dialog, "cmdSave");
    QCOMPARE(env.prompter.entries.size(), 1);
    QVERIFY(env.prompter.entries[0].question);
    QCOMPARE(env.prompter.entries[0].title, QStringLiteral("Confirm"));
    QCOMPARE(env.prompter.entries[0].text,
             QStringLiteral("This file\n") + file + QStringLiteral("\nalready exists.  Overwrite?"));
    QCOMPARE(env.readFile(QStringLiteral("lists/night.flt")), expected);

    env.prompter.answer(Prompter::Answer::Yes);
    click(&dialog, "cmdSave");
    expected.replace("#TRUE#,85,", "#TRUE#,30,");
    QCOMPARE(env.readFile(QStringLiteral("lists/night.flt")), expected);
    QVERIFY(!QFileInfo::exists(env.state->filterPath()));
  }

  void aFailedSaveIsReported() {
    TestEnv env;
    Filter dialog(*env.state);
    Chooser chooser;
    env.writeFile(QStringLiteral("plain"), "a file, not a folder");
    chooser.answer = env.path(QStringLiteral("plain/x.flt"));
    dialog.setSaveChooser(chooser.fn());
    click(&dialog, "cmdSave");
    QCOMPARE(env.prompter.entries.size(), 1);
    QVERIFY(!env.prompter.entries[0].question);
    QVERIFY(env.prompter.entries[0].text.endsWith(QStringLiteral(" - 75")));
  }

  void spinButtonStaysWithinTheRange() {
    TestEnv env;
    Filter dialog(*env.state);
    auto* updown = child<UpDownButtons>(&dialog, "UpDown1");
    field(&dialog, "txtMinAltFilter")->setText(QStringLiteral("79"));
    emit updown->stepped(1);
    emit updown->stepped(1);
    QCOMPARE(field(&dialog, "txtMinAltFilter")->text(), QStringLiteral("80"));
    field(&dialog, "txtMinAltFilter")->setText(QStringLiteral("0"));
    emit updown->stepped(-1);
    QCOMPARE(field(&dialog, "txtMinAltFilter")->text(), QStringLiteral("0"));
    QCOMPARE(FilterUpDownStep(QStringLiteral("12.5"), 1), QStringLiteral("13.5"));
  }

  void theCallerPlacesTheTop() {
    TestEnv env;
    env.state->FilterFormTop = 1500;
    Filter dialog(*env.state);
    dialog.show();
    QCOMPARE(dialog.y(), TwipsToPixels(1500, &dialog));
  }

  void showFilterDialogRunsModally() {
    TestEnv env;
    env.state->FilterCancelled = false;
    QTimer::singleShot(0, [] {
      QWidget* w = QApplication::activeModalWidget();
      QVERIFY(w);
      QCOMPARE(w->objectName(), QStringLiteral("Filter"));
      w->findChild<QPushButton*>(QStringLiteral("OKButton"))->click();
    });
    ShowFilterDialog(*env.state, nullptr);
    QVERIFY(!env.state->FilterCancelled);
    QCOMPARE(env.readFile(QStringLiteral("config/Filter.ini")), kDefaults);
    QCOMPARE(env.state->Pages[4].Filter.left(34),
             QStringLiteral("WHERE (False or (Type = 'Galaxy' a"));
  }
};

QTEST_MAIN(TestFilterDialog)
#include "tst_filterdialog.moc"
