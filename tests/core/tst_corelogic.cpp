#include <QtTest>

#include <QDir>
#include <map>

#include "core/apperror.h"
#include "core/commandline.h"
#include "core/listdocuments.h"
#include "core/numtext.h"
#include "core/opendocuments.h"
#include "core/recordfile.h"
#include "core/settings.h"
#include "core/setuplogic.h"
#include "support/commalocale.h"
#include "support/testenv.h"

namespace {

const QByteArray kDefaultFilter(
    "#TRUE#,20,#TRUE#,0,12,#TRUE#,0,12,#TRUE#,0,12,#TRUE#,0,12,#TRUE#,0,12,30,2,-2,10,10,0,-2,"
    "12\r\n");

QString pathOf(int n) { return QStringLiteral("/home/ann/Data/list%1.tlf").arg(n); }

// The opening fields of fresh settings with edits "field=text" ("@": the temporary folder).
SetupFields fieldsWith(const QStringList& edits, const QString& folder) {
  static const std::map<QString, QString SetupFields::*> texts = {
      {"commPort", &SetupFields::commPort}, {"longDeg", &SetupFields::longDeg},
      {"longMin", &SetupFields::longMin},   {"latDeg", &SetupFields::latDeg},
      {"latMin", &SetupFields::latMin},     {"myTimeZone", &SetupFields::myTimeZone},
      {"minAlt", &SetupFields::minAlt},     {"maxAlt", &SetupFields::maxAlt},
      {"dataDir", &SetupFields::dataDir},   {"indiHost", &SetupFields::indiHost},
      {"indiPort", &SetupFields::indiPort}, {"indiDevice", &SetupFields::indiDevice}};
  SetupFields f = SetupOpeningFields(ProgramSettings{});
  f.dataDir = folder;
  for (QString e : edits) {
    e.replace(QLatin1Char('@'), folder);
    const QString key = e.section(QLatin1Char('='), 0, 0), value = e.section(QLatin1Char('='), 1);
    if (key == "scope") f.scopeIndex = value.toInt();
    else if (key == "route") {  // port, hcd or indi
      f.commPortSelected = value == "port";
      f.indiSelected = value == "indi";
    } else if (key == "windowsZone") f.useWindowsTimeZone = value == "1";
    else if (key == "altLimit") f.useAltLimit = value == "1";
    else f.*texts.at(key) = value;
  }
  return f;
}

}  // namespace

class TestCoreLogic : public QObject {
  Q_OBJECT
 private slots:
  // clang-format off
  void val_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");
    QTest::newRow("letters") << "HCD" << 0.0;
    QTest::newRow("no leading zero") << ".5" << 0.5;
    QTest::newRow("plus") << "+1" << 1.0;
    QTest::newRow("double sign") << "--1" << 0.0;
    QTest::newRow("exponent D") << "2D2" << 200.0;
    QTest::newRow("exponent without digits") << "5e" << 5.0;
    QTest::newRow("hex") << "&H1F" << 31.0;
    QTest::newRow("hex 16-bit wraps") << "&HFFFF" << -1.0;
    QTest::newRow("octal") << "&O17" << 15.0;
    QTest::newRow("tab and line feed skipped") << "\t4\n2" << 42.0;
    QTest::newRow("every exponent digit") << "1e0000001" << 10.0;
    QTest::newRow("every digit") << "0.000000000000000000000000000000000000000000001" << 1e-45;
    QTest::newRow("50 digits") << QString(50, QLatin1Char('9')) << 1e50;
    QTest::newRow("beyond a double") << "1e400" << 0.0;
  }
  // clang-format on
  void val() {
    QFETCH(QString, text);
    QTEST(Val(text), "value");
  }

  // The same texts under a decimal-comma locale.
  // clang-format off
  void plainAndPrinted_data() {
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("plain");
    QTest::addColumn<QString>("printed");
    QTest::newRow("zero") << 0.0 << "0" << " 0";
    QTest::newRow("half") << 0.5 << "0.5" << " .5";
    QTest::newRow("minus half") << -0.5 << "-0.5" << "-.5";
    QTest::newRow("third") << 1.0 / 3 << "0.333333333333333" << " .333333333333333";
    QTest::newRow("large") << 1e15 << "1E+15" << " 1E+15";
    QTest::newRow("fifteen digits") << 123456789012345.0 << "123456789012345"
                                    << " 123456789012345";
    QTest::newRow("small") << 0.00001 << "1E-05" << " 1E-05";
    QTest::newRow("small fixed") << 0.0001 << "0.0001" << " .0001";
  }
  // clang-format on
  void plainAndPrinted() {
    QFETCH(double, value);
    QTEST(PlainNumber(value), "plain");
    QTEST(PrintedNumber(value), "printed");
    CommaLocale comma;
    REQUIRE_COMMA_LOCALE(comma);
    QTEST(PlainNumber(value), "plain");
    QTEST(PrintedNumber(value), "printed");
  }

  // The shortest text that reads back as the same single; rounding sends halves to the even
  // neighbour at any number of decimals; Int floors and Fix truncates. CInt rounds halves to
  // even after blanks; anything else but a number is error 13, and a number beyond 16 bits
  // error 6. A format mask pads with zeros and rounds its decimals.
  void singlesAndRounding() {
    CommaLocale comma;
    REQUIRE_COMMA_LOCALE(comma);
    QCOMPARE(ShortestSingle(0.1f), QStringLiteral("0.1"));
    QCOMPARE(RoundHalfEven(-2.5, 0), -2.0);
    QCOMPARE(RoundHalfEven(0.25, 1), 0.2);
    QCOMPARE(RoundHalfEven(0.7, 2), 0.7);
    QCOMPARE(Int(-2.1), -3.0);
    QCOMPARE(Fix(-2.7), -2.0);
    const auto cint = [](const QString& text) {
      try {
        return QString::number(CInt(text));
      } catch (const AppError& e) {
        return QStringLiteral("error %1").arg(e.number);
      }
    };
    QCOMPARE(cint(" 40 "), QStringLiteral("40"));
    QCOMPARE(cint("12.5"), QStringLiteral("12"));
    QCOMPARE(cint("13.5"), QStringLiteral("14"));
    QCOMPARE(cint("12a"), QStringLiteral("error 13"));
    QCOMPARE(cint(""), QStringLiteral("error 13"));
    QCOMPARE(cint("1,5"), QStringLiteral("error 13"));
    QCOMPARE(cint("40000"), QStringLiteral("error 6"));
    QCOMPARE(FormatMask(123.0, QStringLiteral("00")), QStringLiteral("123"));
    QCOMPARE(FormatMask(5.25, QStringLiteral("00.0")), QStringLiteral("05.3"));
    QCOMPARE(FormatMask(-3.0, QStringLiteral("00")), QStringLiteral("-03"));
  }

  // A short date of the locale reads back to the same date, with a time behind it; an hour of
  // 25 is no date. The date serial counts days and the fraction of the day. The observing date
  // starts at the present, to the second, before 06:00; from then on at 22:00 of the same day.
  void dates() {
    const QDate d(2026, 11, 21);
    QCOMPARE(CDate(ShortDate(d) + QStringLiteral(" 22:05")), QDateTime(d, QTime(22, 5)));
    QVERIFY_THROWS_EXCEPTION(AppError, CDate(ShortDate(d) + QStringLiteral(" 25:00")));
    QCOMPARE(DateSerial(QDateTime(QDate(1899, 12, 31), QTime(12, 0))), 1.5);
    QCOMPARE(DateSerial(QDateTime(QDate(2000, 1, 1), QTime(0, 0))), 36526.0);
    QCOMPARE(InitialUserDate(QDateTime(d, QTime(5, 59, 59, 870))), QDateTime(d, QTime(5, 59, 59)));
    QCOMPARE(InitialUserDate(QDateTime(d, QTime(6, 0))), QDateTime(d, QTime(22, 0)));
  }

  // Fields may stand between blanks, a record may end in a line feed alone, and reading past
  // the end raises an error (62, which the start-up repairs show).
  void readerFields() {
    RecordReader r(QByteArray("\"a,b\"\r\n \"x\" , -3 ,#FALSE#\n"));
    QCOMPARE(r.text(), QStringLiteral("a,b"));
    QCOMPARE(r.text(), QStringLiteral("x"));
    QCOMPARE(r.int16(), qint16(-3));
    QVERIFY(!r.boolean());
    QVERIFY_THROWS_EXCEPTION(AppError, r.text());
  }

  // Folders and list titles come back as they were written, whatever letters they hold; a
  // single-byte file from before keeps reading as such.
  // clang-format off
  void textFieldEncoding_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("latin-1") << QStringLiteral("/home/ren\u00E9e/Donn\u00E9es/")
                             << QByteArray("/home/ren\xE9" "e/Donn\xE9" "es/");
    QTest::newRow("beyond latin-1")
        << QStringLiteral("/home/\u0141ucja/\u041D\u0430\u0431\u043B/")
        << QStringLiteral("/home/\u0141ucja/\u041D\u0430\u0431\u043B/").toUtf8();
    QTest::newRow("a quote") << "/l/my\"list.tlf" << QByteArray("/l/my\"\"list.tlf");
    QTest::newRow("leading byte order mark") << QStringLiteral("\uFEFFTonight")
                                             << QByteArray("\xEF\xBB\xBFTonight");
    // Its single-byte form would read as UTF-8 (as "Caf\u00E9"), so it goes in UTF-8.
    QTest::newRow("single-byte form is UTF-8") << QStringLiteral("Caf\u00C3\u00A9")
                                               << QByteArray("Caf\xC3\x83\xC2\xA9");
  }
  // clang-format on
  void textFieldEncoding() {
    QFETCH(QString, text);
    QFETCH(QByteArray, bytes);
    RecordWriter w;
    w.text(text).text(QStringLiteral("next")).endRecord();
    QCOMPARE(w.bytes(), QByteArray("\"") + bytes + QByteArray("\",\"next\"\r\n"));
    RecordReader r(w.bytes());
    QCOMPARE(r.text(), text);
    QCOMPARE(r.text(), QStringLiteral("next"));
  }

  // Start-up, here of a German user where the machine has the locale: the files hold the
  // program's own number form. A settings file cut short (Setup cancelled on a first run leaves
  // 15 fields) or empty is read to its end and written again whole, with colour 200; a filter
  // file that does not read whole is written again from the filter in force, and reading past
  // its end rewrites the settings file too. A bad field keeps its value. "@": the temp folder.
  // clang-format off
  void startupRepairs_data() {
    QTest::addColumn<QByteArray>("settings");  // null: none
    QTest::addColumn<QByteArray>("filter");  // empty: none, so the default is written
    QTest::addColumn<QStringList>("boxes");
    QTest::addColumn<QByteArray>("held");  // the settings record in force after start-up
    QTest::addColumn<bool>("rewritten");   // whether the settings file holds it now
    QTest::addColumn<QByteArray>("filterAfter");
    const QByteArray site = R"(,"E",127,40,"N",26,20,20,90,#TRUE#)";
    QTest::newRow("first start") << QByteArray() << QByteArray() << QStringList()
                                 << R"("GT","1","@/data/Data",1,#TRUE#,0)" + site + ",200\r\n"
                                 << false << kDefaultFilter;
    QTest::newRow("settings cut short, typed zone")
        << R"("GT","1","@/",1,#TRUE#,-7.5)" + site << QByteArray() << QStringList()
        << R"("GT","1","@/",1,#TRUE#,-7.5)" + site + ",200\r\n" << true << kDefaultFilter;
    QTest::newRow("settings empty") << QByteArray("") << QByteArray() << QStringList()
                                    << R"("GT","1","@/data/Data",1,#TRUE#,0)" + site + ",200\r\n"
                                    << true << kDefaultFilter;
    QTest::newRow("bad settings field")
        << QByteArray(R"("GPS","3","/tmp/",0,#TRUE#,0,"W",abc,30,"N",45,0,15,85,#FALSE#,255)")
        << QByteArray() << QStringList("Type mismatch: @/config/TavorineList.ini - 13")
        << QByteArray(R"("GPS","3","/tmp/",0,#TRUE#,0,"W",127,30,"N",45,0,15,85,#FALSE#,255)"
                      "\r\n")
        << false << kDefaultFilter;
    const QByteArray good = R"("GT","1","@/lists/",0,#TRUE#,0)" + site + ",4242\r\n";
    const QByteArray repaired = R"("GT","1","@/lists/",0,#TRUE#,0)" + site + ",200\r\n";
    QTest::newRow("filter too short")
        << good << QByteArray("#FALSE#,30,#TRUE#,1\r\n") << QStringList() << repaired << true
        << QByteArray(kDefaultFilter).replace(0, 19, "#FALSE#,30,#TRUE#,1,");
    // A truth value read into a number is -1.
    const QString mismatch = QStringLiteral("Type mismatch: @/config/Filter.ini - 13");
    QTest::newRow("filter garbage")
        << good << QByteArray("abc,#TRUE#,xyz\r\n") << QStringList{mismatch, mismatch}
        << repaired << true << QByteArray(kDefaultFilter).replace(0, 10, "#TRUE#,-1,");
    QTest::newRow("one bad filter field")
        << good << QByteArray(kDefaultFilter).replace("30", "3O") << QStringList{mismatch} << good
        << false << kDefaultFilter;
  }
  // clang-format on
  void startupRepairs() {
    QFETCH(QByteArray, settings);
    QFETCH(QByteArray, filter);
    QFETCH(QStringList, boxes);
    QFETCH(QByteArray, held);
    QFETCH(bool, rewritten);
    CommaLocale comma;
    TestEnv env;
    const QByteArray folder = env.dir.path().toUtf8();
    env.state->settings.DataDir.clear();  // as a fresh program holds it before start-up
    if (!settings.isNull()) env.writeFile("config/TavorineList.ini", settings.replace('@', folder));
    if (!filter.isEmpty()) env.writeFile("config/Filter.ini", filter);
    LoadStartupState(*env.state);
    QCOMPARE(env.prompter.texts(), boxes.replaceInStrings("@", env.dir.path()));
    QCOMPARE(SettingsRecord(env.state->settings, true), held.replace('@', folder));
    QVERIFY(QFileInfo::exists(env.state->defaultDataDir));
    QCOMPARE(env.state->LastListFolder, env.state->settings.DataDir);
    QCOMPARE(env.readFile("config/TavorineList.ini"), rewritten ? held : settings);
    QTEST(env.readFile("config/Filter.ini"), "filterAfter");
  }

  // Five of seven records are read; a document already in the table moves to the top; extra
  // records are gone after writing; a new document pushes the oldest out.
  void recentFiles() {
    TestEnv env;
    QByteArray seven;
    for (char i = '1'; i < '8'; ++i) seven += QByteArray("\"L") + i + "\",\"/l/" + i + ".tlf\"\r\n";
    env.writeFile("config/TVRNMRU.dat", seven);
    LoadStartupState(*env.state);
    RecordRecentFile(*env.state, QStringLiteral("Third again"), QStringLiteral("/l/3.tlf"));
    QCOMPARE(env.readFile("config/TVRNMRU.dat"),
             QByteArray("\"Third again\",\"/l/3.tlf\"\r\n\"L1\",\"/l/1.tlf\"\r\n"
                        "\"L2\",\"/l/2.tlf\"\r\n\"L4\",\"/l/4.tlf\"\r\n\"L5\",\"/l/5.tlf\"\r\n"));
    RecordRecentFile(*env.state, QStringLiteral("New"), QStringLiteral("/n.tlf"));
    QCOMPARE(env.state->MRUFiles[0].title, QStringLiteral("New"));
    QCOMPARE(env.state->MRUFiles[4].title, QStringLiteral("L4"));
    // From an empty file nothing is shown; the first list makes one record.
    TestEnv empty;
    empty.writeFile("config/TVRNMRU.dat", QByteArray());
    LoadStartupState(*empty.state);
    QVERIFY(!empty.state->MRUSeparatorShown && !empty.state->MRUShown[0]);
    RecordRecentFile(*empty.state, QStringLiteral("Messier marathon"), QStringLiteral("/m.tlf"));
    QCOMPARE(empty.readFile("config/TVRNMRU.dat"),
             QByteArray("\"Messier marathon\",\"/m.tlf\"\r\n"));
  }

  // Closing a document packs the rows behind it, so the next one takes none of theirs; paths
  // compare as text; a closed document and a free slot are none.
  void openDocuments() {
    TestEnv env;
    AppState& state = *env.state;
    for (int n = 1; n <= 5; ++n) RegisterOpen(state, pathOf(n), pathOf(n));
    QVERIFY(!RegisterClose(state, pathOf(3), 3));
    RegisterOpen(state, pathOf(6), pathOf(6));
    QVERIFY(!IsAlreadyOpen(state, pathOf(3)) && IsAlreadyOpen(state, pathOf(5)));
    QVERIFY(!IsAlreadyOpen(state, pathOf(4).toUpper()) && !IsAlreadyOpen(state, QString()));
  }

  // A list's folder is its name up to the title in any case, else up to the last separator.
  // The list window is the compact one below 10000 twips of screen.
  void listFolderAndCompactWindow() {
    QCOMPARE(ListFolderOf("/home/ann/Data/Messier.TLF", "messier.tlf"), "/home/ann/Data/");
    QCOMPARE(ListFolderOf("/home/ann/messier.tlf.d/messier.tlf", "messier.tlf"), "/home/ann/");
    QCOMPARE(ListFolderOf("/home/ann/Data/a.tlf", "b.tlf"), "/home/ann/Data/");
    QCOMPARE(ListFolderOf("D:\\Lists\\a.tlf", "b.tlf"), "D:\\Lists\\");
    QCOMPARE(ScreenHeightTwips(600, 96.0), 9000);
    QCOMPARE(ScreenHeightTwips(6666, 960.0), 9999);
    QCOMPARE(ScreenHeightTwips(1000, 144.0), 10000);
    QVERIFY(UseCompactListWindow(9999) && !UseCompactListWindow(10000));
  }

  // The command line answers -v (before any fault) and --help, which names the folders; it
  // refuses other options, except those the window system may own.
  void answers() {
    QCoreApplication::setApplicationName(QStringLiteral("tavorine"));
    QCoreApplication::setApplicationVersion(QStringLiteral("1.2.3"));
    TestEnv env;
    const auto answer = [&](const QStringList& args, bool refuseOthers) {
      const auto a = AnswerCommandLine(QStringList{"tavorine"} + args, *env.state, refuseOthers);
      if (!a) return QStringLiteral("starts");
      return QStringLiteral("%1|%2|%3").arg(a->exitCode).arg(a->out, a->err);
    };
    QCOMPARE(answer({}, true), QStringLiteral("starts"));
    QCOMPARE(answer({"--bogus", "-v"}, true), QStringLiteral("0|tavorine 1.2.3\n|"));
    QCOMPARE(answer({"-platform", "xcb"}, false), QStringLiteral("starts"));
    QCOMPARE(answer({"--bogus"}, true),
             "1||tavorine: Unknown option 'bogus'.\nTry 'tavorine --help'.\n");
    const QString help = answer({"--help"}, false);
    QVERIFY(help.startsWith(QLatin1String("0|")) && help.endsWith(QLatin1Char('|')));
    for (const QString& part : {QStringLiteral("--version"), env.state->programFolder,
                                env.state->configFolder, env.state->defaultDataDir})
      QVERIFY2(help.contains(part), qPrintable(part));
  }

  // The dialog opens on the family in the settings and
  // on the port route with a number or a device path, else on the proxy route; letters before
  // a number show no port. Hemispheres, degrees and a typed zone show as held. Choosing the
  // port route keeps a number or a device path, else starts at 1; the arrows step a number
  // within 1 to 256, or the number that ends a device path.
  void openingFieldsAndPortEditing() {
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
    QCOMPARE(opened("I", "HCD 127.0.0.1:2001"), QStringLiteral("2|0|HCD 127.0.0.1:2001"));
    QCOMPARE(opened("GT", "COM3"), QStringLiteral("0|0|"));
    QCOMPARE(opened("CGE", "/dev/ttyUSB0"), QStringLiteral("4|1|/dev/ttyUSB0"));
    const SetupFields f = SetupOpeningFields(s);
    QCOMPARE(QStringList({f.eastWest, f.northSouth, f.longDeg, f.latDeg, f.myTimeZone}),
             QStringList({"West", "North", "127", "-5", "-7.5"}));
    const auto edits = [](const QString& text) {
      return QStringList{CommPortTextOnSelect(text), StepCommPort(text, 1), StepCommPort(text, -1)};
    };
    QCOMPARE(edits("1"), QStringList({"1", "2", "1"}));
    QCOMPARE(edits("256"), QStringList({"256", "256", "255"}));
    QCOMPARE(edits(""), QStringList({"1", "1", "1"}));
    QCOMPARE(edits("HCD"), QStringList({"1", "HCD", "HCD"}));
    QCOMPARE(edits("/dev/ttyUSB0"), QStringList({"/dev/ttyUSB0", "/dev/ttyUSB1", "/dev/ttyUSB0"}));
    QCOMPARE(edits("/dev/ttyS9"), QStringList({"/dev/ttyS9", "/dev/ttyS10", "/dev/ttyS8"}));
  }

  // OK writes the whole settings file (and the INDI file for that route), which reads back.
  // clang-format off
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
        << QStringList{"route=indi", "indiHost=", "indiPort=70000", "indiDevice=Simulator"}
        << indi << R"("localhost",7624,"Simulator")";
  }
  // clang-format on
  void ok() {
    QFETCH(QStringList, edits);
    QFETCH(QString, record);
    QFETCH(QString, indiFile);
    TestEnv env;
    env.state->settings.MyTimeZone = 3;
    for (const char* folder : {"lists", "l"}) QDir().mkpath(env.path(QLatin1String(folder)));
    SetupFields f = fieldsWith(edits, env.dir.path());
    QVERIFY(SetupOk(*env.state, f));
    record.replace('@', env.dir.path());
    QCOMPARE(env.readFile(QStringLiteral("config/TavorineList.ini")), record.toUtf8() + "\r\n");
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
};

QTEST_GUILESS_MAIN(TestCoreLogic)
#include "tst_corelogic.moc"
