#include <QtTest>

#include "catalog/recordset.h"
#include "exchange/codepage.h"
#include "exchange/csvformat.h"
#include "exchange/exportvalues.h"
#include "exchange/palmformat.h"
#include "exchange/tourformat.h"
#include "exchangefixture.h"
#include "support/testenv.h"

namespace {

QString joined(const ImportedObject& o) {
  QStringList out;
  for (const QVariant& v : o) out << FieldText(v);
  return out.join(QLatin1Char('|'));
}

QByteArray lines(std::initializer_list<const char*> all) {
  QByteArray out;
  for (const char* l : all) out += QByteArray(l) + "\r\n";
  return out;
}

}  // namespace

class TestExchangeFormats : public QObject {
  Q_OBJECT
 private slots:
  // clang-format off
  void codePage_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("latin and 0x80-0x9F") << QString::fromUtf8("é€–Ÿ") << QByteArray("\xE9\x80\x96\x9F");
    QTest::newRow("base letters") << QString::fromUtf8("Ő\uFB01") << QByteArray("Ofi");
    QTest::newRow("no stand-in") << QString::fromUtf8("α\U0001F52D.") << QByteArray("??.");
  }
  // clang-format on
  void codePage() {
    QFETCH(QString, text);
    QFETCH(QByteArray, bytes);
    QCOMPARE(EncodeCodePage(text), bytes);
    QCOMPARE(FitCodePage(text), DecodeCodePage(bytes));
    QByteArray all;
    for (int b = 0; b < 256; ++b) all += char(b);
    QCOMPARE(EncodeCodePage(DecodeCodePage(all)), all);
    // What an import takes a file's text to be.
    QCOMPARE(DecodeImportText("\xC3\xA9"), QString::fromUtf8("é"));
    QCOMPARE(DecodeImportText("\xE9\x96"), QString::fromUtf8("é–"));
  }

  // clang-format off
  void writers_data() {
    QTest::addColumn<QString>("format");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("tour") << "tour" << lines({
        "00:42:44.4#+41:16:00#NGC 224#       Andromeda Galaxy - Sb####34####4#######",
        "05:35:18.0#-05:23:00#M42#       Orion Nebula; M42 - size 85'x60'####40####5#######",
        "02:20:30.0#+57:08:00#Cald 14#       Double Cluster, h and chi - NGC 869 & 884####37####6#######",
        "05:06:36.0#-07:13:00#IC 2118#        - ####0####10#######",
        "22:56:48.0#+62:37:00#Sh2 155#       The \"Cave\" Nebula, ? Cep - size 50'####77####5#######",
        "23:59:60.0#-00:30:00#Comet C/2023 A3#       Tsuchinshan\x96" "ATLAS -  1 of 2024####-15####10#######",
        "00:00:36.0#-44:17:24#Double 1#       WDS 00003-4417,I 1477 - 0.4\" PA 327, HR 9077####63####2#######"});
    QTest::newRow("palm") << "palm" << lines({
        "\"Deep.txt",
        "NGC 224, Andromeda Galaxy;Galaxy, Sb;.71;+41.27;1;6;3.4;0",
        "M 42, Orion Nebula, M42;Diffuse Nebula, size 85'x60';5.59;-5.38;1;12;4;0",
        "C 14, Double Cluster, h and chi;Open Cluster, NGC 869 & 884;2.34;+57.13;1;10;3.7;0",
        "IC 2118, ;Reflection Nebula, ;5.11;-7.22;1;6;;0",
        "Sh2 155, The \"\"Cave\"\" Nebula, ? Cep;Bright Nebula, size 50';22.95;+62.62;1;12;7.7;0",
        "Comet C/2023 A3, Tsuchinshan\x96" "ATLAS;Comet, #1 of 2024;24;-.5;1;6;-1.46;0",
        "DS 1, WDS 00003-4417,I 1477;Double Star, 0.4\"\" PA 327, HR;.01;-44.29;1;3;6.3,6.8;0",
        "\",\"0\",\"Unfiled\""});
    const char* header =
        "\"Category\",\"Object Number\",\"Name\",\"Type\",\"Magnitude\",\"Constellation\","
        "\"RA Hour\",\"RA Minute\",\"Dec Sign\",\"Dec Degree\",\"Dec Arcminute\",\"Info\"";
    const std::vector<const char*> rows = {
        "\"NGC\",\"224\",\"Andromeda Galaxy\",\"Galaxy\",\"3.4\",\"And\",0,42.74,\"+\",41,16,\"Sb\"",
        "\"Messier\",\"42\",\"Orion Nebula; M42\",\"Diffuse Nebula\",\"4\",\"Ori\",5,35.3,\"-\",5,23,\"size 85'x60'\"",
        "\"Caldwell\",\"14\",\"Double Cluster, h and chi\",\"Open Cluster\",\"3.7\",\"Per\",2,20.5,\"+\",57,8,\"NGC 869 & 884\"",
        "\"IC\",\"2118\",#NULL#,\"Reflection Nebula\",\" \",\"Eri\",5,6.6,\"-\",7,13,#NULL#",
        "\"Sh2\",\"155\",\"The \"\"Cave\"\" Nebula, ? Cep\",\"Bright Nebula\",\"7.7\",\"Cep\",22,56.8,\"+\",62,37,\"size 50'\"",
        "\"Comet\",\"C/2023 A3\",\"Tsuchinshan\x96" "ATLAS\",\"\",\"-1.46\",\"Vir\",23,59.9993,\"-\",0,30,\"#1 of 2024\"",
        "\"Double Star\",\"1\",\"WDS 00003-4417,I 1477\",\"Double Star\",\"6.3,6.8\",\"Phe\",0,0.6,\"-\",44,17.4,\"0.4\"\" PA 327, HR 9077\""};
    QByteArray csv = QByteArray(header) + "\r\n", brillet;
    brillet = "\"BRLT\",\"7\",\"0\",\"0\",\"0\",\"0\",\"0\",\"0\",\"0\",\"0\",\"0\",\"0\",\"0\",\"0\"\r\n" +
              QByteArray(header) + ",\"Ob\",\"Go\"\r\n";
    for (const char* r : rows) {
      csv += QByteArray(r) + "\r\n";
      brillet += QByteArray(r) + ",\"0\",\"0\"\r\n";
    }
    QTest::newRow("csv") << "csv" << csv;
    QTest::newRow("brillet") << "brillet" << brillet;
  }
  // clang-format on
  void writers() {
    QFETCH(QString, format);
    QFETCH(QByteArray, expected);
    TestEnv env;
    const QString path = env.path(QStringLiteral("Deep.tlf"));
    MakeExchangeList(*env.state, path, AwkwardObjects());
    const Database db(path, Database::Mode::ReadOnly);
    ListRows list(db);
    QByteArray out;
    if (format == QLatin1String("tour")) out = WriteTour(list);
    if (format == QLatin1String("csv")) out = WriteCsv(list, CsvVariant::General);
    if (format == QLatin1String("brillet")) out = WriteCsv(list, CsvVariant::Brillet);
    if (format == QLatin1String("palm"))
      out = WritePalm(list, env.path(QStringLiteral("Deep")), QStringLiteral("Deep")).at(0).bytes;
    QCOMPARE(out, expected);
  }

  // A palm file holds 40 objects, a tour the first 200; a Brillet file counts them all.
  // clang-format off
  void splits_data() {
    QTest::addColumn<int>("count");
    QTest::addColumn<QStringList>("palmFiles");  // "name:objects"
    QTest::newRow("40") << 40 << QStringList{"Deep.txt:40"};
    QTest::newRow("201") << 201 << QStringList{"Deep 1.txt:40", "Deep 2.txt:40", "Deep 3.txt:40",
                                               "Deep 4.txt:40", "Deep 5.txt:40", "Deep 6.txt:1"};
  }
  // clang-format on
  void splits() {
    QFETCH(int, count);
    QFETCH(QStringList, palmFiles);
    TestEnv env;
    const QString path = env.path(QStringLiteral("Deep.tlf"));
    MakeExchangeList(*env.state, path,
                     std::vector<ImportedObject>(size_t(count), AwkwardObjects()[0]));
    const Database db(path, Database::Mode::ReadOnly);
    ListRows palm(db), tour(db), csv(db);
    QStringList made;
    for (const PalmFile& f :
         WritePalm(palm, env.path(QStringLiteral("Deep")), QStringLiteral("Deep"))) {
      const QString name = f.path.mid(f.path.lastIndexOf(QLatin1Char('/')) + 1);
      QVERIFY(f.bytes.startsWith("\"" + name.toLatin1() + "\r\n"));
      made << name + QLatin1Char(':') + QString::number(f.bytes.count("\r\n") - 2);
    }
    QCOMPARE(made, palmFiles);
    QCOMPARE(WriteTour(tour).count("\r\n"), qMin(count, MaxTourObjects));
    const QByteArray brillet = WriteCsv(csv, CsvVariant::Brillet);
    QVERIFY(brillet.startsWith("\"BRLT\",\"" + QByteArray::number(count) + "\",\"0\""));
    QCOMPARE(brillet.count("\r\n"), count + 2);
  }

  // clang-format off
  void readers_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<bool>("header");
    QTest::addColumn<bool>("tour");
    QTest::addColumn<QStringList>("objects");  // {"bad"}: a malformed file
    const QByteArray head = "Category,Object Number,Name,Type,Magnitude,Constellation,RA Hour,"
                            "RA Minute,Dec Sign,Dec Degree,Dec Arcminute,Info\r\n";
    const QByteArray m31 = "\"Messier\",\"031\",\"Andromeda\",\"Galaxy\",\"3.40\",\"And\",0,42.7,\"+\",41,16,\"Sb\"\r\n";
    const QString m31Row = "Messier|        31|Andromeda|Galaxy|3.4|And|0|42.7|+|41|16|Sb";
    QTest::newRow("no header, tick set") << m31 << true << false << QStringList{m31Row};
    QTest::newRow("header, no tick") << head + m31 << false << false
        << QStringList{"Category|Object Number|Name|Type|Magnitude|Constellation|0|0|Dec Sign|0|0|Info", m31Row};
    QTest::newRow("exported Nulls") << QByteArray("#NULL#,\"#NULL#\",,,,,#NULL#,1,,2,3,#NULL#\r\n") << false << false
        << QStringList{" |    #NULL#| | | | |0|1| |2|3| "};
    QTest::newRow("spreadsheet: BOM, doubled quotes, LF, empty line")
        << QByteArray("\xEF\xBB\xBF" "Category,Number,Name,Type,Mag,Con,RAh,RAm,Sign,Decd,Decm,Info\n"
                      "Sh2,155,\"The \"\"Cave\"\", \xC3\xA9t\xC3\xA9\",Nebula,7.7,Cep,22,56.8,+,62,37,\"a\nb\"\n\n")
        << true << false << QStringList{QString::fromUtf8("Sh2|       155|The \"Cave\", été|Nebula|7.7|Cep|22|56.8|+|62|37|a\nb")};
    QTest::newRow("Brillet file") << QByteArray("\"BRLT\",\"1\",\"0\",\"0\",\"0\",\"0\",\"0\",\"0\",\"0\",\"0\",\"0\",\"0\",\"0\",\"0\"\r\n")
                                         + QByteArray(m31).replace("\r\n", ",\"0\",\"0\"\r\n")
                                  << true << false << QStringList{"bad"};

    const QByteArray sample = "00:42:44.4#+41:16:00#NGC 224#       Andromeda Galaxy - Sb####34####4#######\r\n";
    QTest::newRow("tour: sample, blank line after it")
        << sample + "\r\n" << false << true << QStringList{" |NGC 224|NGC 224|Galaxy|3.4| |0|42.7|+|41|16|Andromeda Galaxy - Sb"};
    QTest::newRow("tour: foreign tour: category, codes 3 and 8, LF")
        << QByteArray("05:35:17.3#-05:23:28#M42#Orion####40####3##Messier#####\n"
                      "23:59:59.0#-00:29:31#A very long identifier#x####5####8##Star####\n")
        << false << true
        << QStringList{"Messier|M42|M42|Emission Nebula|4| |5|35.3|-|5|23|Orion",
                       "Star|A very lon|A very long identifier|Probable Star|.5| |23|60|+|0|30|x"};
  }
  // clang-format on
  void readers() {
    QFETCH(QByteArray, file);
    QFETCH(bool, header);
    QFETCH(bool, tour);
    QFETCH(QStringList, objects);
    const ImportReading r = tour ? ReadTour(file) : ReadCsvImport(file, header);
    QCOMPARE(r.wellFormed, objects != QStringList{"bad"});
    if (!r.wellFormed) return;
    QStringList got;
    for (const ImportedObject& o : r.objects) got << joined(o);
    QCOMPARE(got, objects);
  }

  // DisplayOrder counts on from the last row in the list's order; an empty list starts at 2.
  void storing() {
    TestEnv env;
    const QString path = env.path(QStringLiteral("l.tlf"));
    const std::vector<ImportedObject> two(2, AwkwardObjects()[0]);
    MakeExchangeList(*env.state, path, two);
    auto db = Database::open(path, Database::Mode::ReadWrite);
    db->exec(QStringLiteral("UPDATE Objects SET DisplayOrder = 9 WHERE rowid = 1"));
    StoreImportedObjects(db, ImportTarget::CurrentList, two);
    QCOMPARE(ListColumn(path, QStringLiteral("DisplayOrder")), (QStringList{"3", "9", "10", "11"}));
  }
};

QTEST_MAIN(TestExchangeFormats)
#include "tst_exchangeformats.moc"
