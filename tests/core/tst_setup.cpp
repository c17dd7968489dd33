#include <QtTest>

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>

#include "core/apperror.h"
#include "core/setupdialog.h"
#include "core/settings.h"
#include "core/setuplogic.h"
#include "support/testenv.h"

class TestSetup : public QObject {
  Q_OBJECT
 private slots:
  void openingFields_data();
  void openingFields();
  void commPortEditing_data();
  void commPortEditing();
  void okWritesAllFields();
  void okFolderVariants_data();
  void okFolderVariants();
  void okMissingFolderOnFirstRun();
  void okConversions_data();
  void okConversions();
  void okLettersInCoordinate_data();
  void okLettersInCoordinate();
  void cancel();
  void indiRoute_data();
  void indiRoute();

  void foundPortsShowThePortInUse();
  void dialogMissingFolder();
  void dialogHemisphereThenCancel();
  void dialogAltitudeOffThenOk();
  void dialogLettersInCoordinate();
  void dialogPortRoutes();
  void dialogColorAndBrowse();
  void dialogEscapeIsCancel();
  void dialogUnwritableConfigFolder();
};

namespace {

SetupFields validFields(const QString& folder) {
  SetupFields f = SetupOpeningFields(ProgramSettings{});
  f.dataDir = folder;
  return f;
}

template <typename T>
T* child(QWidget& w, const char* name) {
  T* c = w.findChild<T*>(QLatin1String(name));
  if (!c) qFatal("no control %s", name);
  return c;
}

// Check boxes and options answer clicks on their indicator and text, not on the empty space
// the layout gives them: click near the left edge.
void clickBox(QAbstractButton* b) {
  QTest::mouseClick(b, Qt::LeftButton, {}, QPoint(6, b->height() / 2));
}

}  // namespace

void TestSetup::openingFields_data() {
  QTest::addColumn<QString>("scopeType");
  QTest::addColumn<QString>("commPort");
  QTest::addColumn<int>("index");
  QTest::addColumn<bool>("serial");
  QTest::addColumn<QString>("shown");
  QTest::newRow("defaults") << "GT" << "1" << 0 << true << "1";
  QTest::newRow("last family") << "ULTIMA" << "3" << 8 << true << "3";
  QTest::newRow("unknown family") << "XYZ" << "2" << 0 << true << "2";
  QTest::newRow("proxy") << "GPS" << "HCD" << 3 << false << "HCD";
  QTest::newRow("proxy address") << "I" << "HCD 127.0.0.1:2001" << 2 << false
                                 << "HCD 127.0.0.1:2001";
  QTest::newRow("zero") << "GT" << "0" << 0 << false << "";
  QTest::newRow("letters in front") << "GT" << "COM3" << 0 << false << "";
  QTest::newRow("device path") << "CGE" << "/dev/ttyUSB0" << 4 << true << "/dev/ttyUSB0";
}

void TestSetup::openingFields() {
  QFETCH(QString, scopeType);
  QFETCH(QString, commPort);
  ProgramSettings s;
  s.ScopeType = scopeType;
  s.CommPort = commPort;
  s.LongHemi = QStringLiteral("W");
  s.LatDeg = -5;
  s.UseWindowsTimeZone = false;
  s.MyTimeZone = -7.5f;
  const SetupFields f = SetupOpeningFields(s);
  QTEST(f.scopeIndex, "index");
  QTEST(f.commPortSelected, "serial");
  QTEST(f.commPort, "shown");
  QCOMPARE(f.eastWest, QStringLiteral("West"));
  QCOMPARE(f.northSouth, QStringLiteral("North"));
  QCOMPARE(f.longDeg, QStringLiteral("127"));
  QCOMPARE(f.latDeg, QStringLiteral("-5"));
  QCOMPARE(f.myTimeZone, QStringLiteral("-7.5"));
  s.UseWindowsTimeZone = true;
  QCOMPARE(SetupOpeningFields(s).myTimeZone, QString());
}

void TestSetup::commPortEditing_data() {
  QTest::addColumn<QString>("text");
  QTest::addColumn<QString>("onSelect");
  QTest::addColumn<QString>("up");
  QTest::addColumn<QString>("down");
  QTest::newRow("number") << "3" << "3" << "4" << "2";
  QTest::newRow("lowest") << "1" << "1" << "2" << "1";
  QTest::newRow("highest") << "256" << "256" << "256" << "255";
  QTest::newRow("empty") << "" << "1" << "1" << "1";
  QTest::newRow("zero") << "0" << "1" << "1" << "1";
  QTest::newRow("proxy") << "HCD" << "1" << "HCD" << "HCD";
  QTest::newRow("device") << "/dev/ttyUSB0" << "/dev/ttyUSB0" << "/dev/ttyUSB1" << "/dev/ttyUSB0";
  QTest::newRow("device 9") << "/dev/ttyS9" << "/dev/ttyS9" << "/dev/ttyS10" << "/dev/ttyS8";
  QTest::newRow("device without number") << "/dev/scope" << "/dev/scope" << "/dev/scope"
                                         << "/dev/scope";
}

void TestSetup::commPortEditing() {
  QFETCH(QString, text);
  QTEST(CommPortTextOnSelect(text), "onSelect");
  QTEST(StepCommPort(text, 1), "up");
  QTEST(StepCommPort(text, -1), "down");
}

void TestSetup::okWritesAllFields() {
  TestEnv env;
  AppState& st = *env.state;
  const QString folder = env.path(QStringLiteral("lists"));
  QDir().mkpath(folder);
  SetupFields f = validFields(folder);
  f.scopeIndex = 3;
  f.commPort = QStringLiteral("/dev/ttyUSB0");
  f.longDeg = QStringLiteral("2");
  f.longMin = QStringLiteral("21");
  f.latDeg = QStringLiteral("48");
  f.latMin = QStringLiteral("51");
  f.useWindowsTimeZone = false;
  f.myTimeZone = QStringLiteral("1");
  f.minAlt = QStringLiteral("15");
  f.maxAlt = QStringLiteral("80");
  QVERIFY(SetupOk(st, f));
  QCOMPARE(f.dataDir, folder + QLatin1Char('/'));
  QCOMPARE(st.settings.FirstRun, qint16(0));
  QCOMPARE(env.readFile(QStringLiteral("config/TavorineList.ini")),
           QByteArray("\"GPS\",\"/dev/ttyUSB0\",\"") + folder.toLatin1() +
               "/\",0,#TRUE#,1,\"E\",2,21,\"N\",48,51,15,80,#TRUE#,200\r\n");
  QVERIFY(env.prompter.entries.isEmpty());
}

void TestSetup::okFolderVariants_data() {
  QTest::addColumn<QString>("typed");  // "@" stands for the temporary folder
  QTest::addColumn<QString>("stored");
  QTest::newRow("without separator") << "@/lists" << "@/lists/";
  QTest::newRow("with separator") << "@/lists/" << "@/lists/";
  QTest::newRow("blanks around") << "  @/lists  " << "@/lists/";
  QTest::newRow("root keeps one separator") << "/" << "/";
}

void TestSetup::okFolderVariants() {
  QFETCH(QString, typed);
  QFETCH(QString, stored);
  TestEnv env;
  QDir().mkpath(env.path(QStringLiteral("lists")));
  SetupFields f = validFields(typed.replace(QLatin1Char('@'), env.dir.path()));
  QVERIFY(SetupOk(*env.state, f));
  stored.replace(QLatin1Char('@'), env.dir.path());
  QCOMPARE(f.dataDir, stored);
  QCOMPARE(env.state->settings.DataDir, stored);
}

void TestSetup::okMissingFolderOnFirstRun() {
  TestEnv env;
  AppState& st = *env.state;
  const QString folder = env.path(QStringLiteral("nowhere"));
  SetupFields f = validFields(folder);
  f.scopeIndex = 8;
  f.commPortSelected = false;
  f.useAltLimit = false;
  QVERIFY(!SetupOk(st, f));
  QCOMPARE(env.prompter.entries.size(), 1);
  QCOMPARE(env.prompter.entries[0].title, QStringLiteral("Problem"));
  QCOMPARE(env.prompter.entries[0].text,
           QStringLiteral("This folder: \n") + folder + QStringLiteral("\ndoes not exist."));
  QCOMPARE(st.settings.FirstRun, qint16(1));
  QVERIFY(!QFile::exists(st.settingsPath()));
  // The earlier steps stay in memory.
  QCOMPARE(st.settings.ScopeType, QStringLiteral("ULTIMA"));
  QCOMPARE(st.settings.CommPort, QStringLiteral("HCD"));
  QCOMPARE(st.settings.MinAlt, qint16(20));
  QCOMPARE(f.dataDir, folder);
}

void TestSetup::okConversions_data() {
  QTest::addColumn<int>("scopeIndex");
  QTest::addColumn<bool>("serial");
  QTest::addColumn<QString>("commPort");
  QTest::addColumn<QString>("longMin");
  QTest::addColumn<bool>("windowsZone");
  QTest::addColumn<QString>("zone");
  QTest::addColumn<bool>("altLimit");
  QTest::addColumn<QString>("minAlt");
  QTest::addColumn<QString>("maxAlt");
  // Expected.
  QTest::addColumn<QString>("scopeType");
  QTest::addColumn<QString>("storedPort");
  QTest::addColumn<int>("storedLongMin");
  QTest::addColumn<float>("storedZone");
  QTest::addColumn<int>("storedMin");
  QTest::addColumn<int>("storedMax");

  QTest::newRow("plain") << 1 << true << "2" << "40" << true << "5" << true << "10" << "85"
                         << "BIG" << "2" << 40 << 0.0f << 10 << 85;
  QTest::newRow("index 9") << 9 << true << "2" << "40" << true << "" << true << "10" << "85"
                           << "GT" << "2" << 40 << 0.0f << 10 << 85;
  QTest::newRow("letters in front of the port pass") << 0 << true << "x5" << "40" << true << ""
                                                     << true << "20" << "90" << "GT" << "x5"
                                                     << 40 << 0.0f << 20 << 90;
  QTest::newRow("proxy keeps its address") << 2 << false << " HCD 10.0.0.2:2001 " << "40" << true
                                           << "" << true << "20" << "90" << "I"
                                           << "HCD 10.0.0.2:2001" << 40 << 0.0f << 20 << 90;
  QTest::newRow("proxy drops a port number") << 2 << false << "4" << "40" << true << "" << true
                                             << "20" << "90" << "I" << "HCD" << 40 << 0.0f << 20
                                             << 90;
  QTest::newRow("half to even down") << 0 << true << "1" << "40.5" << true << "" << true
                                     << "20.5" << "89.5" << "GT" << "1" << 40 << 0.0f << 20
                                     << 90;
  QTest::newRow("half to even up") << 0 << true << "1" << "41.5" << true << "" << true << "21.5"
                                   << "90.5" << "GT" << "1" << 42 << 0.0f << 22 << 90;
  QTest::newRow("typed zone") << 0 << true << "1" << "40" << false << "-7.5h" << true << "20"
                              << "90" << "GT" << "1" << 40 << -7.5f << 20 << 90;
  QTest::newRow("limits off reset") << 0 << true << "1" << "40" << true << "" << false << "5"
                                    << "50" << "GT" << "1" << 40 << 0.0f << 20 << 90;
  QTest::newRow("limits as leading numbers") << 0 << true << "1" << "40" << true << "" << true
                                             << "30 deg" << "abc" << "GT" << "1" << 40 << 0.0f
                                             << 30 << 0;
  QTest::newRow("min above max kept") << 0 << true << "1" << "40" << true << "" << true << "70"
                                      << "30" << "GT" << "1" << 40 << 0.0f << 70 << 30;
}

void TestSetup::okConversions() {
  QFETCH(int, scopeIndex);
  QFETCH(bool, serial);
  QFETCH(QString, commPort);
  QFETCH(QString, longMin);
  QFETCH(bool, windowsZone);
  QFETCH(QString, zone);
  QFETCH(bool, altLimit);
  QFETCH(QString, minAlt);
  QFETCH(QString, maxAlt);
  TestEnv env;
  env.state->settings.MyTimeZone = 3;
  SetupFields f = validFields(env.dir.path());
  f.scopeIndex = scopeIndex;
  f.commPortSelected = serial;
  f.commPort = commPort;
  f.longMin = longMin;
  f.useWindowsTimeZone = windowsZone;
  f.myTimeZone = zone;
  f.useAltLimit = altLimit;
  f.minAlt = minAlt;
  f.maxAlt = maxAlt;
  QVERIFY(SetupOk(*env.state, f));
  const ProgramSettings& s = env.state->settings;
  QTEST(s.ScopeType, "scopeType");
  QTEST(s.CommPort, "storedPort");
  QTEST(int(s.LongMin), "storedLongMin");
  QTEST(s.MyTimeZone, "storedZone");
  QTEST(int(s.MinAlt), "storedMin");
  QTEST(int(s.MaxAlt), "storedMax");
}

void TestSetup::okLettersInCoordinate_data() {
  QTest::addColumn<int>("field");  // 0 LongDeg .. 3 LatMin
  QTest::addColumn<int>("converted");
  QTest::newRow("longitude degrees") << 0 << 0;
  QTest::newRow("latitude degrees") << 2 << 2;
  QTest::newRow("latitude minutes") << 3 << 3;
}

void TestSetup::okLettersInCoordinate() {
  QFETCH(int, field);
  QFETCH(int, converted);
  TestEnv env;
  AppState& st = *env.state;
  SetupFields f = validFields(env.dir.path());
  f.scopeIndex = 4;
  f.commPort = QStringLiteral("7");
  f.longDeg = QStringLiteral("11");
  f.longMin = QStringLiteral("12");
  f.latDeg = QStringLiteral("13");
  f.latMin = QStringLiteral("14");
  QString* fields[] = {&f.longDeg, &f.longMin, &f.latDeg, &f.latMin};
  *fields[field] = QStringLiteral("12a");
  try {
    SetupOk(st, f);
    QFAIL("no error");
  } catch (const AppError& e) {
    QCOMPARE(e.text(), QStringLiteral("Type mismatch - 13"));
  }
  QCOMPARE(st.settings.ScopeType, QStringLiteral("CGE"));
  QCOMPARE(st.settings.CommPort, QStringLiteral("7"));
  const qint16 stored[] = {st.settings.LongDeg, st.settings.LongMin, st.settings.LatDeg,
                           st.settings.LatMin};
  const qint16 defaults[] = {127, 40, 26, 20};
  for (int i = 0; i < 4; ++i)
    QCOMPARE(stored[i], i < converted ? qint16(11 + i) : defaults[i]);
  QCOMPARE(st.settings.FirstRun, qint16(1));
  QVERIFY(!QFile::exists(st.settingsPath()));
}

void TestSetup::cancel() {
  TestEnv env;
  AppState& st = *env.state;
  st.settings.LongHemi = QStringLiteral("W");
  st.settings.DataDir = QStringLiteral("/home/ann/Data");
  SetupCancel(st);
  QCOMPARE(env.readFile(QStringLiteral("config/TavorineList.ini")),
           QByteArray("\"GT\",\"1\",\"/home/ann/Data\",1,#TRUE#,0,\"W\",127,40,\"N\",26,20,20,90,"
                      "#TRUE#\r\n"));
  // Once the file exists, Cancel writes nothing.
  env.writeFile(QStringLiteral("config/TavorineList.ini"), "kept");
  st.settings.LatHemi = QStringLiteral("S");
  SetupCancel(st);
  QCOMPARE(env.readFile(QStringLiteral("config/TavorineList.ini")), QByteArray("kept"));
}

// A port typed by hand that is not among those found leaves none of them shown as chosen.
void TestSetup::foundPortsShowThePortInUse() {
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

void TestSetup::dialogMissingFolder() {
  TestEnv env;
  Setup dlg(*env.state);
  dlg.show();
  const QString folder = env.path(QStringLiteral("gone"));
  child<QLineEdit>(dlg, "txtDataDir")->setText(folder);
  QTest::mouseClick(child<QPushButton>(dlg, "OKButton"), Qt::LeftButton);
  QCOMPARE(env.prompter.texts(), QStringList(FolderMissingText(folder)));
  QVERIFY(dlg.isVisible());
  QCOMPARE(env.state->settings.FirstRun, qint16(1));
  QVERIFY(!QFile::exists(env.state->settingsPath()));

  // With the folder made, the same OK goes through and closes the dialog.
  QDir().mkpath(folder);
  QTest::mouseClick(child<QPushButton>(dlg, "OKButton"), Qt::LeftButton);
  QVERIFY(!dlg.isVisible());
  QCOMPARE(dlg.result(), int(QDialog::Accepted));
  QCOMPARE(child<QLineEdit>(dlg, "txtDataDir")->text(), folder + QLatin1Char('/'));
  QCOMPARE(env.state->settings.FirstRun, qint16(0));
}

void TestSetup::dialogHemisphereThenCancel() {
  TestEnv env;
  Setup dlg(*env.state);
  dlg.show();
  auto* ew = child<QPushButton>(dlg, "cmdEastWest");
  QTest::mouseClick(ew, Qt::LeftButton);
  QCOMPARE(ew->text(), QStringLiteral("West"));
  QCOMPARE(env.state->settings.LongHemi, QStringLiteral("W"));
  auto* ns = child<QPushButton>(dlg, "cmdNorthSouth");
  QTest::mouseClick(ns, Qt::LeftButton);
  QTest::mouseClick(ns, Qt::LeftButton);
  QCOMPARE(ns->text(), QStringLiteral("North"));
  auto* tz = child<QCheckBox>(dlg, "chkUseWindowsTimeZone");
  clickBox(tz);
  QVERIFY(!env.state->settings.UseWindowsTimeZone);
  QVERIFY(child<QLineEdit>(dlg, "txtMyTimeZone")->isEnabled());
  QVERIFY(child<QLabel>(dlg, "lblMyTimeZone")->isEnabled());
  // A typed field does not reach the settings without OK.
  child<QLineEdit>(dlg, "txtLongDeg")->setText(QStringLiteral("3"));
  QTest::mouseClick(child<QPushButton>(dlg, "CancelButton"), Qt::LeftButton);
  QVERIFY(!dlg.isVisible());
  QCOMPARE(env.state->settings.LongHemi, QStringLiteral("W"));
  QCOMPARE(env.state->settings.LongDeg, qint16(127));
  const QByteArray file = env.readFile(QStringLiteral("config/TavorineList.ini"));
  QCOMPARE(file.count(','), 14);
  QVERIFY(file.contains(",1,#FALSE#,0,\"W\",127,"));
}

void TestSetup::dialogAltitudeOffThenOk() {
  TestEnv env;
  env.state->settings.MinAlt = 35;
  env.state->settings.MaxAlt = 70;
  Setup dlg(*env.state);
  dlg.show();
  child<QLineEdit>(dlg, "txtDataDir")->setText(env.dir.path());
  auto* alt = child<QCheckBox>(dlg, "chkUseAltLimit");
  clickBox(alt);
  QVERIFY(!env.state->settings.UseAltLimit);
  for (const char* n : {"lblMinAlt", "txtMinAlt", "lblMaxAlt", "txtMaxAlt"})
    QVERIFY2(!child<QWidget>(dlg, n)->isEnabled(), n);
  QTest::mouseClick(child<QPushButton>(dlg, "OKButton"), Qt::LeftButton);
  QVERIFY(!dlg.isVisible());
  QVERIFY(env.readFile(QStringLiteral("config/TavorineList.ini"))
              .endsWith(",20,90,#FALSE#,200\r\n"));
}

void TestSetup::dialogLettersInCoordinate() {
  TestEnv env;
  Setup dlg(*env.state);
  dlg.show();
  child<QLineEdit>(dlg, "txtDataDir")->setText(env.dir.path());
  child<QLineEdit>(dlg, "txtLatMin")->setText(QStringLiteral("twenty"));
  QTest::mouseClick(child<QPushButton>(dlg, "OKButton"), Qt::LeftButton);
  QCOMPARE(env.prompter.entries.size(), 1);
  QCOMPARE(env.prompter.entries[0].title, AppTitle());
  QCOMPARE(env.prompter.entries[0].text, QStringLiteral("Type mismatch - 13"));
  QVERIFY(dlg.isVisible());
  QVERIFY(!QFile::exists(env.state->settingsPath()));
}

// The INDI route: CommPort "INDI" in the settings record, the server and device in a file of
// their own, read back at the next start.
void TestSetup::indiRoute_data() {
  QTest::addColumn<QStringList>("typed");  // host, port, device
  QTest::addColumn<QByteArray>("file");
  QTest::newRow("typed") << QStringList{" scope.local ", "7625", " EQMod Mount "}
                         << QByteArray("\"scope.local\",7625,\"EQMod Mount\"\r\n");
  QTest::newRow("blank host, port too high") << QStringList{"", "70000", "Telescope Simulator"}
                         << QByteArray("\"localhost\",7624,\"Telescope Simulator\"\r\n");
  QTest::newRow("letters in the port") << QStringList{"localhost", "76a", ""}
                                       << QByteArray("\"localhost\",7624,\"\"\r\n");
}

void TestSetup::indiRoute() {
  QFETCH(QStringList, typed);
  QFETCH(QByteArray, file);
  TestEnv env;
  SetupFields f = validFields(env.dir.path());
  f.commPortSelected = false;
  f.indiSelected = true;
  f.indiHost = typed[0];
  f.indiPort = typed[1];
  f.indiDevice = typed[2];
  QVERIFY(SetupOk(*env.state, f));
  QVERIFY(env.readFile(QStringLiteral("config/TavorineList.ini")).startsWith("\"GT\",\"INDI\","));
  QCOMPARE(env.readFile(QStringLiteral("config/TavorineINDI.ini")), file);

  env.state->indi = IndiSettings{};
  LoadIndiSettings(*env.state);
  const SetupFields shown = SetupOpeningFields(env.state->settings, env.state->indi);
  QVERIFY(shown.indiSelected && !shown.commPortSelected);
  QCOMPARE(IndiRecord(IndiSettingsOf(shown)), file);
}

void TestSetup::dialogPortRoutes() {
  TestEnv env;
  env.state->settings.CommPort = QStringLiteral("HCD 192.168.1.9:2000");
  Setup dlg(*env.state);
  dlg.show();
  auto* port = child<QLineEdit>(dlg, "txtCommPort");
  QCOMPARE(port->text(), QStringLiteral("HCD 192.168.1.9:2000"));
  QVERIFY(!port->isEnabled());
  clickBox(child<QRadioButton>(dlg, "optCommPort"));
  QVERIFY(port->isEnabled());
  QCOMPARE(port->text(), QStringLiteral("1"));
  auto* upDown = child<QWidget>(dlg, "UpDown1");
  auto arrows = upDown->findChildren<QToolButton*>();
  QCOMPARE(arrows.size(), 2);
  QTest::mouseClick(arrows[0], Qt::LeftButton);
  QTest::mouseClick(arrows[0], Qt::LeftButton);
  QCOMPARE(port->text(), QStringLiteral("3"));
  clickBox(child<QRadioButton>(dlg, "optHCD"));
  QVERIFY(!port->isEnabled());
  QVERIFY(!upDown->isEnabled());
  QCOMPARE(dlg.fields().commPortSelected, false);
  auto* indiHost = child<QLineEdit>(dlg, "txtIndiHost");
  QVERIFY(!indiHost->isEnabled());
  clickBox(child<QRadioButton>(dlg, "optIndi"));
  QVERIFY(indiHost->isEnabled() && child<QComboBox>(dlg, "cmbIndiDevice")->isEnabled());
  QVERIFY(!port->isEnabled());
  QCOMPARE(dlg.fields().indiSelected, true);
  QCOMPARE(dlg.fields().indiPort + dlg.fields().indiDevice, QStringLiteral("7624Telescope Simulator"));

  // The focus selects the whole text.
  auto* deg = child<QLineEdit>(dlg, "txtLatDeg");
  dlg.activateWindow();
  deg->setFocus(Qt::TabFocusReason);
  QTRY_COMPARE(deg->selectedText(), QStringLiteral("26"));
}

void TestSetup::dialogColorAndBrowse() {
  TestEnv env;
  env.state->settings.DataDir = QStringLiteral("/srv/lists/");
  Setup dlg(*env.state);
  QString startedAt;
  dlg.setFolderPicker([&](QWidget*, const QString& start) {
    startedAt = start;
    return QStringLiteral("/tmp/chosen");
  });
  qint32 offered = -2;
  qint32 answer = 0x123456;
  dlg.setColorChooser([&](QWidget*, qint32 initial) {
    offered = initial;
    return answer;
  });
  dlg.show();
  QTest::mouseClick(child<QPushButton>(dlg, "cmmdBrowse"), Qt::LeftButton);
  QCOMPARE(startedAt, QStringLiteral("/srv/lists/"));
  QCOMPARE(child<QLineEdit>(dlg, "txtDataDir")->text(), QStringLiteral("/tmp/chosen"));
  QCOMPARE(env.state->settings.DataDir, QStringLiteral("/srv/lists/"));

  QTest::mouseClick(child<QPushButton>(dlg, "cmdColor"), Qt::LeftButton);
  QCOMPARE(offered, 200);
  QCOMPARE(env.state->settings.ObjectColor, 0x123456);
  QVERIFY(child<QWidget>(dlg, "shpObjectColor")->styleSheet().contains(QLatin1String("#563412")));
  answer = -1;  // cancelled
  QTest::mouseClick(child<QPushButton>(dlg, "cmdColor"), Qt::LeftButton);
  QCOMPARE(env.state->settings.ObjectColor, 0x123456);
  QVERIFY(env.prompter.entries.isEmpty());
}

void TestSetup::dialogEscapeIsCancel() {
  TestEnv env;
  Setup dlg(*env.state);
  dlg.show();
  QTest::keyClick(&dlg, Qt::Key_Escape);
  QVERIFY(!dlg.isVisible());
  QCOMPARE(env.readFile(QStringLiteral("config/TavorineList.ini")).count(','), 14);
}

// A first run whose settings folder cannot be made: OK and Cancel say which file and why; OK
// stays open, Cancel closes.
void TestSetup::dialogUnwritableConfigFolder() {
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

QTEST_MAIN(TestSetup)
#include "tst_setup.moc"
