#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>

#include "catalog/filterdialog.h"
#include "core/widgetkit.h"
#include "formtest.h"
#include "support/testenv.h"

namespace {

const QByteArray kDefaults =
    "#TRUE#,20,#TRUE#,0,12,#TRUE#,0,12,#TRUE#,0,12,#TRUE#,0,12,#TRUE#,0,12,30,2,-2,10,10,0,-2,12"
    "\r\n";

QLineEdit* field(QWidget* w, const char* name) { return control<QLineEdit>(w, name); }
QCheckBox* box(QWidget* w, const char* name) { return control<QCheckBox>(w, name); }
void click(QWidget* w, const char* name) { control<QPushButton>(w, name)->click(); }

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
    QVERIFY(!QFileInfo::exists(env.state->filterPath()));
  }

  // Save As writes the controls as they stand, without the altitude test, and asks before
  // overwriting; Open reads a file into the controls only; a file of the wrong form gives the
  // error box and leaves them. OK refused keeps the dialog open; accepted, it takes the controls
  // unchanged. What OK refuses and writes is the filter logic's.
  void saveOpenAndOk() {
    TestEnv env;
    env.state->settings.DataDir = env.path(QStringLiteral("lists/"));
    env.state->FilterCancelled = true;
    Filter d(*env.state);
    d.show();
    QString answer;  // the file dialogs' answer, and how they were asked
    QStringList asked;
    auto chooser = [&](QWidget*, const QString& title, const QString& dir, const QString& flt) {
      asked = QStringList{title, dir, flt};
      return answer;
    };
    d.setOpenChooser(chooser);
    d.setSaveChooser(chooser);
    click(&d, "cmdOpen");  // cancelled: nothing, not even a box
    QCOMPARE(asked, (QStringList{"Open filter settings file...", env.state->settings.DataDir,
                                 "Filter Settings Files (*.flt)"}));
    answer = env.path(QStringLiteral("lists/night.flt"));
    box(&d, "chkAltFilter")->click();
    field(&d, "txtMinAltFilter")->setText(QStringLiteral("85"));
    click(&d, "cmdSave");
    QCOMPARE(asked.first(), QStringLiteral("Name filter settings file..."));
    const QByteArray at85 = QByteArray(kDefaults).replace("#TRUE#,20,", "#FALSE#,85,");
    QCOMPARE(env.readFile(QStringLiteral("lists/night.flt")), at85);

    field(&d, "txtMinAltFilter")->setText(QStringLiteral("30"));
    env.prompter.answer(Prompter::Answer::No);
    click(&d, "cmdSave");
    QCOMPARE(boxes(env.prompter),
             QStringList{"Confirm: This file\n" + answer + "\nalready exists.  Overwrite?"});
    QCOMPARE(env.readFile(QStringLiteral("lists/night.flt")), at85);
    env.prompter.answer(Prompter::Answer::Yes);
    click(&d, "cmdSave");
    QCOMPARE(env.readFile(QStringLiteral("lists/night.flt")),
             QByteArray(at85).replace(",85,", ",30,"));

    const QByteArray at35 = QByteArray(at85).replace(",85,", ",35,");
    env.writeFile(QStringLiteral("lists/mine.flt"), at35);
    answer = env.path(QStringLiteral("lists/mine.flt"));
    box(&d, "chkAltFilter")->click();
    click(&d, "cmdOpen");
    QVERIFY(env.state->filter.FltAlt);
    QVERIFY(!QFileInfo::exists(env.state->filterPath()));
    env.prompter.clear();
    env.writeFile(QStringLiteral("lists/bad.flt"), "#TRUE#,20,#TRUE#\r\n");
    answer = env.path(QStringLiteral("lists/bad.flt"));
    click(&d, "cmdOpen");
    QCOMPARE(env.prompter.texts(),
             QStringList{QStringLiteral("Input past end of file: %1 - 62").arg(answer)});

    field(&d, "txtMinAltFilter")->setText(QStringLiteral("80.5"));
    click(&d, "OKButton");
    QVERIFY(d.isVisible() && env.state->FilterCancelled);
    QCOMPARE(env.prompter.entries.size(), 2);
    field(&d, "txtMinAltFilter")->setText(QStringLiteral("35"));
    click(&d, "OKButton");
    QVERIFY(!d.isVisible() && !env.state->FilterCancelled);
    QCOMPARE(env.readFile(QStringLiteral("config/Filter.ini")), at35);
  }
};

QTEST_MAIN(TestFilterDialog)
#include "tst_filterdialog.moc"
