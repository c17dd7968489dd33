#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>

#include "catalog/catalogdialogs.h"
#include "catalog/filterdialog.h"
#include "core/widgetkit.h"
#include "formtest.h"
#include "support/testenv.h"

namespace {

const QByteArray kDefaults =
    "#TRUE#,20,#TRUE#,0,12,#TRUE#,0,12,#TRUE#,0,12,#TRUE#,0,12,#TRUE#,0,12,30,2,-2,10,10,0,-2,12"
    "\r\n";
const QString kIni = QStringLiteral("config/Filter.ini");

QLineEdit* field(QWidget* w, const char* name) { return control<QLineEdit>(w, name); }
QCheckBox* box(QWidget* w, const char* name) { return control<QCheckBox>(w, name); }
void click(QWidget* w, const char* name) { control<QPushButton>(w, name)->click(); }

// Stands in for the file dialogs: remembers how it was asked, answers `answer`.
struct Chooser {
  QString answer;
  QStringList asked;  // title, folder, filter
  Filter::FileChooser fn() {
    return [this](QWidget*, const QString& t, const QString& f, const QString& flt) {
      asked = QStringList{t, f, flt};
      return answer;
    };
  }
};

}  // namespace

class TestFilterDialog : public QObject {
  Q_OBJECT

 private slots:
  // The settings in force, ticks enabling their fields, and the altitude's spin buttons, which
  // stop at 0 and 80.
  void loadsTheSettingsTicksAndSteps() {
    TestEnv env;
    env.state->filter.FltOC = false;
    env.state->filter.FltAlt = false;
    env.state->filter.FltMinAlt = 35;
    env.state->filter.FltGalMin = 9.5f;
    env.state->filter.FltDSSepMin = 0.1f;
    env.state->filter.FltDSMagMax = -2.5f;
    Filter d(*env.state);
    QStringList texts;  // plain values, a single's 0.1 among them
    for (const char* name : {"txtMinAltFilter", "txtGalMin", "txtGalMax", "txtDSSepMin",
                             "txtDSMagMax", "txtUserMagMax"})
      texts << field(&d, name)->text();
    QCOMPARE(texts, (QStringList{"35", "9.5", "0", "0.1", "-2.5", "-2"}));
    auto* updown = control<UpDownButtons>(&d, "UpDown1");
    QVERIFY(!field(&d, "txtOCMax")->isEnabled() && !updown->isEnabled());
    box(&d, "chkOC")->click();
    box(&d, "chkAltFilter")->click();
    QVERIFY(field(&d, "txtOCMax")->isEnabled() && updown->isEnabled());
    QLineEdit* alt = field(&d, "txtMinAltFilter");
    alt->setText(QStringLiteral("78.5"));
    emit updown->stepped(1);
    QCOMPARE(alt->text(), QStringLiteral("79.5"));
    emit updown->stepped(1);
    QCOMPARE(alt->text(), QStringLiteral("80"));
    alt->setText(QStringLiteral("0"));
    emit updown->stepped(-1);
    QCOMPARE(alt->text(), QStringLiteral("0"));
  }

  // Cancel and Escape set FilterCancelled; the close box leaves it as it was. None of them
  // takes the typed values.
  void cancelEscapeAndTheCloseBox() {
    TestEnv env;
    for (int way : {0, 1, 2}) {
      for (bool before : {false, true}) {
        env.state->FilterCancelled = before;
        Filter d(*env.state);
        d.show();
        field(&d, "txtGalMin")->setText(QStringLiteral("5"));
        if (way == 0) click(&d, "cmdCancel");
        else if (way == 1) QTest::keyClick(&d, Qt::Key_Escape);
        else d.close();
        QVERIFY(!d.isVisible());
        QCOMPARE(env.state->FilterCancelled, way == 2 ? before : true);
      }
    }
    QCOMPARE(env.state->filter.FltGalMin, 12.0f);
    QVERIFY(!QFileInfo::exists(env.state->filterPath()));
  }

  // Save As writes the controls as they stand, without the altitude test, and asks before
  // overwriting; Open reads a file into the controls only, and OK then takes it unchanged. A
  // file of the wrong form gives the error box and leaves the controls as they were.
  void saveAsAndOpen() {
    TestEnv env;
    env.state->settings.DataDir = env.path(QStringLiteral("lists/"));
    Filter d(*env.state);
    d.show();
    Chooser chooser;
    d.setOpenChooser(chooser.fn());
    d.setSaveChooser(chooser.fn());
    click(&d, "cmdOpen");  // cancelled: nothing, not even a box
    QCOMPARE(chooser.asked, (QStringList{"Open filter settings file...",
                                         env.state->settings.DataDir,
                                         "Filter Settings Files (*.flt)"}));
    const QString file = env.path(QStringLiteral("lists/night.flt"));
    chooser.answer = file;
    box(&d, "chkAltFilter")->click();
    field(&d, "txtMinAltFilter")->setText(QStringLiteral("85"));
    click(&d, "cmdSave");
    QCOMPARE(chooser.asked.first(), QStringLiteral("Name filter settings file..."));
    const QByteArray at85 = QByteArray(kDefaults).replace("#TRUE#,20,", "#FALSE#,85,");
    QCOMPARE(env.readFile(QStringLiteral("lists/night.flt")), at85);

    field(&d, "txtMinAltFilter")->setText(QStringLiteral("30"));
    env.prompter.answer(Prompter::Answer::No);
    click(&d, "cmdSave");
    QCOMPARE(boxes(env.prompter),
             QStringList{"Confirm: This file\n" + file + "\nalready exists.  Overwrite?"});
    QCOMPARE(env.readFile(QStringLiteral("lists/night.flt")), at85);
    env.prompter.answer(Prompter::Answer::Yes);
    click(&d, "cmdSave");
    QCOMPARE(env.readFile(QStringLiteral("lists/night.flt")),
             QByteArray(at85).replace(",85,", ",30,"));

    const QByteArray at35 = QByteArray(at85).replace(",85,", ",35,");
    env.writeFile(QStringLiteral("lists/mine.flt"), at35);
    chooser.answer = env.path(QStringLiteral("lists/mine.flt"));
    box(&d, "chkAltFilter")->click();
    click(&d, "cmdOpen");
    QVERIFY(env.state->filter.FltAlt);
    QVERIFY(!QFileInfo::exists(env.state->filterPath()));
    env.prompter.clear();
    env.writeFile(QStringLiteral("lists/bad.flt"), "#TRUE#,20,#TRUE#\r\n");
    chooser.answer = env.path(QStringLiteral("lists/bad.flt"));
    click(&d, "cmdOpen");
    QCOMPARE(env.prompter.texts(),
             QStringList{QStringLiteral("Input past end of file: %1 - 62").arg(chooser.answer)});
    click(&d, "OKButton");
    QCOMPARE(env.readFile(kIni), at35);
  }

  // What OK refuses and writes is the filter logic's; this is the dialog around it: a refused
  // OK keeps it open, an accepted one takes the typed values.
  void showFilterDialogRunsModally() {
    TestEnv env;
    env.state->FilterCancelled = true;
    QStringList refused;  // the refused OK's boxes, then whether it closed
    onModal(QStringLiteral("Filter"), [&](QWidget* d) {
      field(d, "txtUserMagMin")->setText(QStringLiteral("10"));
      field(d, "txtMinAltFilter")->setText(QStringLiteral("80.5"));
      click(d, "OKButton");
      refused = boxes(env.prompter);
      if (!d->isVisible() || !env.state->FilterCancelled) refused << "closed";
      field(d, "txtMinAltFilter")->setText(QStringLiteral("80"));
      click(d, "OKButton");
    });
    ShowFilterDialog(*env.state, nullptr);
    QCOMPARE(refused, QStringList{"Error: Please select a value between 0 and 80"});
    QVERIFY(!env.state->FilterCancelled);
    QCOMPARE(env.readFile(kIni),
             QByteArray(kDefaults).replace(",20,", ",80,").replace("-2,12\r", "-2,10\r"));
  }
};

QTEST_MAIN(TestFilterDialog)
#include "tst_filterdialog.moc"
