#include <QtTest>

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>
#include <map>

#include "core/setupdialog.h"
#include "core/settings.h"
#include "core/setuplogic.h"
#include "support/testenv.h"

namespace {

// The opening fields of fresh settings, with edits "field=text" on top ("@" stands for the
// temporary folder; route is port, hcd or indi).
SetupFields fieldsWith(const QStringList& edits, const QString& folder) {
  static const std::map<QString, QString SetupFields::*> texts = {
      {"commPort", &SetupFields::commPort},     {"longDeg", &SetupFields::longDeg},
      {"longMin", &SetupFields::longMin},       {"latDeg", &SetupFields::latDeg},
      {"latMin", &SetupFields::latMin},         {"myTimeZone", &SetupFields::myTimeZone},
      {"minAlt", &SetupFields::minAlt},         {"maxAlt", &SetupFields::maxAlt},
      {"dataDir", &SetupFields::dataDir},       {"indiHost", &SetupFields::indiHost},
      {"indiPort", &SetupFields::indiPort},     {"indiDevice", &SetupFields::indiDevice}};
  SetupFields f = SetupOpeningFields(ProgramSettings{});
  f.dataDir = folder;
  for (QString e : edits) {
    e.replace(QLatin1Char('@'), folder);
    const QString key = e.section(QLatin1Char('='), 0, 0), value = e.section(QLatin1Char('='), 1);
    if (key == QLatin1String("scope")) f.scopeIndex = value.toInt();
    else if (key == QLatin1String("route")) {
      f.commPortSelected = value == QLatin1String("port");
      f.indiSelected = value == QLatin1String("indi");
    } else if (key == QLatin1String("windowsZone")) f.useWindowsTimeZone = value == QLatin1String("1");
    else if (key == QLatin1String("altLimit")) f.useAltLimit = value == QLatin1String("1");
    else f.*texts.at(key) = value;
  }
  return f;
}

QByteArray withFolder(const QString& record, const TestEnv& env) {
  return record.toUtf8().replace('@', env.dir.path().toUtf8()) + "\r\n";
}

template <typename T>
T* child(QWidget& w, const char* name) {
  T* c = w.findChild<T*>(QLatin1String(name));
  if (!c) qFatal("no control %s", name);
  return c;
}

void click(QWidget& w, const char* button) {
  QTest::mouseClick(child<QPushButton>(w, button), Qt::LeftButton);
}

// Check boxes and options answer clicks on their indicator and text, not on the empty space
// the layout gives them: click near the left edge.
void clickBox(QAbstractButton* b) {
  QTest::mouseClick(b, Qt::LeftButton, {}, QPoint(6, b->height() / 2));
}

}  // namespace

class TestSetup : public QObject {
  Q_OBJECT
 private slots:
  // The dialog opens on the family in the settings (the first for one it does not know) and
  // on the port route with a number or a device path, else on the proxy route; letters before
  // a number show no port. Hemispheres, degrees and a typed zone show as held.
  void openingFields() {
    ProgramSettings s;
    s.LongHemi = QStringLiteral("W");
    s.LatDeg = -5;
    s.UseWindowsTimeZone = false;
    s.MyTimeZone = -7.5f;
    const auto opened = [&](const char* scopeType, const char* commPort) {
      s.ScopeType = QLatin1String(scopeType);
      s.CommPort = QLatin1String(commPort);
      const SetupFields f = SetupOpeningFields(s);
      return QStringLiteral("%1|%2|%3").arg(f.scopeIndex).arg(f.commPortSelected).arg(f.commPort);
    };
    QCOMPARE(opened("ULTIMA", "3"), QStringLiteral("8|1|3"));
    QCOMPARE(opened("XYZ", "2"), QStringLiteral("0|1|2"));
    QCOMPARE(opened("I", "HCD 127.0.0.1:2001"), QStringLiteral("2|0|HCD 127.0.0.1:2001"));
    QCOMPARE(opened("GT", "COM3"), QStringLiteral("0|0|"));
    QCOMPARE(opened("CGE", "/dev/ttyUSB0"), QStringLiteral("4|1|/dev/ttyUSB0"));
    const SetupFields f = SetupOpeningFields(s);
    QCOMPARE(QStringList({f.eastWest, f.northSouth, f.longDeg, f.latDeg, f.myTimeZone}),
             QStringList({"West", "North", "127", "-5", "-7.5"}));
    s.UseWindowsTimeZone = true;
    QCOMPARE(SetupOpeningFields(s).myTimeZone, QString());
  }

  // Choosing the port route keeps a number or a device path, else starts at 1; the arrows step
  // a number within 1 to 256, or the number that ends a device path.
  void commPortEditing() {
    const auto edits = [](const QString& text) {
      return QStringList{CommPortTextOnSelect(text), StepCommPort(text, 1), StepCommPort(text, -1)};
    };
    QCOMPARE(edits("1"), QStringList({"1", "2", "1"}));
    QCOMPARE(edits("256"), QStringList({"256", "256", "255"}));
    QCOMPARE(edits(""), QStringList({"1", "1", "1"}));
    QCOMPARE(edits("HCD"), QStringList({"1", "HCD", "HCD"}));
    QCOMPARE(edits("/dev/ttyUSB0"), QStringList({"/dev/ttyUSB0", "/dev/ttyUSB1", "/dev/ttyUSB0"}));
    QCOMPARE(edits("/dev/ttyS9"), QStringList({"/dev/ttyS9", "/dev/ttyS10", "/dev/ttyS8"}));
    QCOMPARE(edits("/dev/scope"), QStringList(3, "/dev/scope"));
  }

  // OK writes the whole settings file (and the INDI file for that route), which reads back.
  void ok_data() {
    QTest::addColumn<QStringList>("edits");
    QTest::addColumn<QString>("record");    // "@": the temporary folder
    QTest::addColumn<QString>("indiFile");  // empty: not the INDI route
    const QString plain = R"("GT","1","@/",0,#TRUE#,0,"E",127,40,"N",26,20,20,90,#TRUE#,200)";
    QTest::newRow("every field")
        << QStringList{"scope=3", "commPort=/dev/ttyUSB0", "dataDir=@/lists", "longDeg=2",
                       "longMin=21", "latDeg=48", "latMin=51", "windowsZone=0", "myTimeZone=1",
                       "minAlt=15", "maxAlt=80"}
        << R"("GPS","/dev/ttyUSB0","@/lists/",0,#TRUE#,1,"E",2,21,"N",48,51,15,80,#TRUE#,200)"
        << "";
    QTest::newRow("index 9, windows zone clears the typed one")
        << QStringList{"scope=9", "myTimeZone=5"} << plain << "";
    QTest::newRow("proxy keeps its address, folder with blanks around")
        << QStringList{"scope=2", "route=hcd", "commPort= HCD 10.0.0.2:2001 ", "dataDir=  @/l  "}
        << R"("I","HCD 10.0.0.2:2001","@/l/",0,#TRUE#,0,"E",127,40,"N",26,20,20,90,#TRUE#,200)"
        << "";
    QTest::newRow("proxy drops a port number, half to even")
        << QStringList{"scope=2", "route=hcd", "commPort=4", "longMin=41.5", "minAlt=20.5",
                       "maxAlt=90.5"}
        << R"("I","HCD","@/",0,#TRUE#,0,"E",127,42,"N",26,20,20,90,#TRUE#,200)" << "";
    QTest::newRow("typed zone, limits as leading numbers, min above max kept")
        << QStringList{"windowsZone=0", "myTimeZone=-7.5h", "minAlt=70 deg", "maxAlt=abc"}
        << R"("GT","1","@/",0,#TRUE#,-7.5,"E",127,40,"N",26,20,70,0,#TRUE#,200)" << "";
    QTest::newRow("limits off reset, root keeps one separator")
        << QStringList{"altLimit=0", "minAlt=5", "maxAlt=50", "dataDir=/"}
        << QString(plain).replace("\"@/\"", "\"/\"") << "";
    // The INDI route: CommPort "INDI", the server and device in a file of their own.
    const QString indi = QString(plain).replace("\"1\"", "\"INDI\"");
    QTest::newRow("INDI typed")
        << QStringList{"route=indi", "indiHost= scope.local ", "indiPort=7625",
                       "indiDevice= EQMod Mount "}
        << indi << R"("scope.local",7625,"EQMod Mount")";
    QTest::newRow("INDI blank host, port too high")
        << QStringList{"route=indi", "indiHost=", "indiPort=70000", "indiDevice=Telescope Simulator"}
        << indi << R"("localhost",7624,"Telescope Simulator")";
    QTest::newRow("INDI letters in the port")
        << QStringList{"route=indi", "indiHost=localhost", "indiPort=76a", "indiDevice="} << indi
        << R"("localhost",7624,"")";
  }
  void ok() {
    QFETCH(QStringList, edits);
    QFETCH(QString, record);
    QFETCH(QString, indiFile);
    TestEnv env;
    env.state->settings.MyTimeZone = 3;
    QDir().mkpath(env.path(QStringLiteral("lists")));
    QDir().mkpath(env.path(QStringLiteral("l")));
    SetupFields f = fieldsWith(edits, env.dir.path());
    QVERIFY(SetupOk(*env.state, f));
    QCOMPARE(env.readFile(QStringLiteral("config/TavorineList.ini")), withFolder(record, env));
    QCOMPARE(f.dataDir, env.state->settings.DataDir);
    QVERIFY(env.prompter.entries.isEmpty());
    if (indiFile.isEmpty()) return;
    const QByteArray indiRecord = indiFile.toUtf8() + "\r\n";
    QCOMPARE(env.readFile(QStringLiteral("config/TavorineINDI.ini")), indiRecord);
    // Read back at the next start.
    env.state->indi = IndiSettings{};
    LoadIndiSettings(*env.state);
    const SetupFields shown = SetupOpeningFields(env.state->settings, env.state->indi);
    QVERIFY(shown.indiSelected && !shown.commPortSelected);
    QCOMPARE(IndiRecord(IndiSettingsOf(shown)), indiRecord);
  }

  // A port typed by hand that is not among those found leaves none of them shown as chosen.
  void foundPortsShowThePortInUse() {
    TestEnv env;
    env.state->settings.CommPort = QStringLiteral("/dev/pts/99");
    Setup typed(*env.state);
    auto* typedPorts = child<QComboBox>(typed, "cmbFoundPorts");
    QCOMPARE(child<QLineEdit>(typed, "txtCommPort")->text(), QStringLiteral("/dev/pts/99"));
    if (typedPorts->itemData(0).toString().isEmpty()) {
      QCOMPARE(typedPorts->itemText(0), QStringLiteral("(no ports found)"));
      return;
    }
    QCOMPARE(typedPorts->currentIndex(), -1);
    env.state->settings.CommPort = typedPorts->itemData(0).toString();
    Setup found(*env.state);
    QCOMPARE(child<QComboBox>(found, "cmbFoundPorts")->currentIndex(), 0);
  }

  // One walk through the dialog. The routes enable their fields and the arrows step the port;
  // the buttons and boxes change the live settings at once; Escape leaves as Cancel does (a
  // typed field does not reach the settings without OK), and a second time writes nothing.
  // OK refused keeps the dialog open with the box (an error raised or a box of its own) and
  // writes nothing; put right, the same OK closes it.
  void dialogWalk() {
    TestEnv env;
    env.state->settings.CommPort = QStringLiteral("HCD 192.168.1.9:2000");
    env.state->settings.DataDir = QStringLiteral("/srv/lists/");
    Setup dlg(*env.state);
    const QString gone = env.path(QStringLiteral("gone"));
    QString startedAt;
    dlg.setFolderPicker([&](QWidget*, const QString& start) {
      startedAt = start;
      return gone;
    });
    qint32 offered = -2, answer = 0x123456;
    dlg.setColorChooser([&](QWidget*, qint32 initial) {
      offered = initial;
      return answer;
    });
    dlg.show();
    auto* port = child<QLineEdit>(dlg, "txtCommPort");
    QCOMPARE(port->text(), QStringLiteral("HCD 192.168.1.9:2000"));
    QVERIFY(!port->isEnabled());
    clickBox(child<QRadioButton>(dlg, "optCommPort"));
    QVERIFY(port->isEnabled());
    QCOMPARE(port->text(), QStringLiteral("1"));
    auto* upDown = child<QWidget>(dlg, "UpDown1");
    QTest::mouseClick(upDown->findChildren<QToolButton*>().value(0), Qt::LeftButton);
    QCOMPARE(port->text(), QStringLiteral("2"));
    clickBox(child<QRadioButton>(dlg, "optHCD"));
    QVERIFY(!port->isEnabled() && !upDown->isEnabled() && !dlg.fields().commPortSelected);
    auto* indiHost = child<QLineEdit>(dlg, "txtIndiHost");
    QVERIFY(!indiHost->isEnabled());
    clickBox(child<QRadioButton>(dlg, "optIndi"));
    QVERIFY(indiHost->isEnabled() && child<QComboBox>(dlg, "cmbIndiDevice")->isEnabled());
    QVERIFY(!port->isEnabled() && dlg.fields().indiSelected);
    auto* deg = child<QLineEdit>(dlg, "txtLatDeg");
    dlg.activateWindow();
    deg->setFocus(Qt::TabFocusReason);
    QTRY_COMPARE(deg->selectedText(), QStringLiteral("26"));

    auto* ew = child<QPushButton>(dlg, "cmdEastWest");
    QTest::mouseClick(ew, Qt::LeftButton);
    QCOMPARE(ew->text() + env.state->settings.LongHemi, QStringLiteral("WestW"));
    auto* ns = child<QPushButton>(dlg, "cmdNorthSouth");
    QTest::mouseClick(ns, Qt::LeftButton);
    QCOMPARE(ns->text() + env.state->settings.LatHemi, QStringLiteral("SouthS"));
    clickBox(child<QCheckBox>(dlg, "chkUseWindowsTimeZone"));
    QVERIFY(child<QLineEdit>(dlg, "txtMyTimeZone")->isEnabled());
    clickBox(child<QCheckBox>(dlg, "chkUseAltLimit"));
    QVERIFY(!env.state->settings.UseAltLimit);
    for (const char* n : {"lblMinAlt", "txtMinAlt", "lblMaxAlt", "txtMaxAlt"})
      QVERIFY2(!child<QWidget>(dlg, n)->isEnabled(), n);
    click(dlg, "cmdColor");
    QCOMPARE(offered, 200);
    QCOMPARE(env.state->settings.ObjectColor, 0x123456);
    QVERIFY(child<QWidget>(dlg, "shpObjectColor")->styleSheet().contains(QLatin1String("#563412")));
    answer = -1;  // cancelled
    click(dlg, "cmdColor");
    QCOMPARE(env.state->settings.ObjectColor, 0x123456);

    child<QLineEdit>(dlg, "txtLongDeg")->setText(QStringLiteral("3"));
    QTest::keyClick(&dlg, Qt::Key_Escape);
    QVERIFY(!dlg.isVisible());
    QCOMPARE(env.state->settings.LongDeg, qint16(127));
    const QByteArray file = env.readFile(QStringLiteral("config/TavorineList.ini"));
    QCOMPARE(file, QByteArray("\"GT\",\"HCD 192.168.1.9:2000\",\"/srv/lists/\",1,#FALSE#,0,\"W\","
                              "127,40,\"S\",26,20,20,90,#FALSE#\r\n"));
    dlg.show();
    QTest::mouseClick(ew, Qt::LeftButton);
    QTest::keyClick(&dlg, Qt::Key_Escape);
    QCOMPARE(env.readFile(QStringLiteral("config/TavorineList.ini")), file);

    dlg.show();
    click(dlg, "cmmdBrowse");
    QCOMPARE(startedAt, QStringLiteral("/srv/lists/"));
    // Each step of OK keeps what it stored before a later one fails.
    const QString held = R"("GT","INDI","/srv/lists/",1,#FALSE#,0,"E",3,40,"S",26,%1,20,90,#FALSE#)";
    child<QLineEdit>(dlg, "txtLatMin")->setText(QStringLiteral("twenty"));
    click(dlg, "OKButton");
    QCOMPARE(SettingsRecord(env.state->settings, false), held.arg(20).toUtf8() + "\r\n");
    child<QLineEdit>(dlg, "txtLatMin")->setText(QStringLiteral("21"));
    click(dlg, "OKButton");
    QCOMPARE(SettingsRecord(env.state->settings, false), held.arg(21).toUtf8() + "\r\n");
    QCOMPARE(child<QLineEdit>(dlg, "txtDataDir")->text(), gone);
    QStringList said;
    for (const auto& e : env.prompter.entries) said << e.title + ": " + e.text;
    QCOMPARE(said, QStringList({AppTitle() + ": Type mismatch - 13",
                                "Problem: This folder: \n" + gone + "\ndoes not exist."}));
    QVERIFY(dlg.isVisible());
    QCOMPARE(env.state->settings.FirstRun, qint16(1));
    QCOMPARE(env.readFile(QStringLiteral("config/TavorineList.ini")), file);
    QDir().mkpath(gone);
    click(dlg, "OKButton");
    QVERIFY(!dlg.isVisible());
    QCOMPARE(dlg.result(), int(QDialog::Accepted));
    QCOMPARE(child<QLineEdit>(dlg, "txtDataDir")->text(), gone + '/');
    QCOMPARE(env.state->settings.FirstRun, qint16(0));
    QCOMPARE(env.readFile(QStringLiteral("config/TavorineINDI.ini")),
             QByteArray("\"localhost\",7624,\"Telescope Simulator\"\r\n"));
  }

  // A first run whose settings folder cannot be made: OK and Cancel say which file and why; OK
  // stays open, Cancel closes.
  void dialogUnwritableConfigFolder() {
    TestEnv env;
    env.writeFile(QStringLiteral("blocker"), "a file where the folder should be");
    env.state->configFolder = env.path(QStringLiteral("blocker/config"));
    env.state->settings.DataDir = env.dir.path();
    Setup dlg(*env.state);
    dlg.show();
    child<QPushButton>(dlg, "OKButton")->click();
    QVERIFY(dlg.isVisible());
    child<QPushButton>(dlg, "CancelButton")->click();
    QVERIFY(!dlg.isVisible());
    const QString text = QStringLiteral("Path/File access error: %1/TavorineList.ini (the folder %1 "
                                        "cannot be made) - 75")
                             .arg(env.state->configFolder);
    QCOMPARE(env.prompter.texts(), QStringList({text, text}));
  }
};

QTEST_MAIN(TestSetup)
#include "tst_setup.moc"
