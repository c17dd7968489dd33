#include <QtTest>

#include "core/listdocuments.h"
#include "core/opendocuments.h"
#include "support/scriptedprompter.h"

static QString pathOf(int n) { return QStringLiteral("/home/ann/Data/list%1.tlf").arg(n); }

class TestOpenDocuments : public QObject {
  Q_OBJECT
 private slots:
  void closeThirdOfFiveThenOpen() {
    ScriptedPrompter prompter;
    AppState state(prompter);
    for (int n = 1; n <= 5; ++n)
      QCOMPARE(RegisterOpen(state, QStringLiteral("list%1.tlf").arg(n), pathOf(n)), n);
    QVERIFY(!RegisterClose(state, pathOf(3), 3));
    QCOMPARE(state.OpenFileCount, qint16(4));
    // Rows stay packed in order of opening; the slot stays free until taken.
    const QStringList rows = {pathOf(1), pathOf(2), pathOf(4), pathOf(5), QString()};
    for (int row = 1; row <= 5; ++row) QCOMPARE(state.OpenFiles[row].path, rows[row - 1]);
    QCOMPARE(state.OpenFiles[3].title, QStringLiteral("list4.tlf"));
    QCOMPARE(state.OpenSlotFile[3], QString());
    QCOMPARE(state.OpenSlotFile[4], pathOf(4));
    // Paths compare as text; a free slot is no document.
    QVERIFY(!IsAlreadyOpen(state, pathOf(3)) && IsAlreadyOpen(state, pathOf(4)));
    QVERIFY(!IsAlreadyOpen(state, pathOf(4).toUpper()));
    QVERIFY(!IsAlreadyOpen(state, QString()));
    QCOMPARE(RegisterOpen(state, QStringLiteral("new.tlf"), pathOf(6)), 3);
    QCOMPARE(state.OpenFiles[5].path, pathOf(6));
    QCOMPARE(state.OpenSlotFile[3], pathOf(6));
    // Closing all: only the last one says so.
    const int slotOf[] = {1, 2, 4, 5, 3};
    const int docs[] = {1, 2, 4, 5, 6};
    for (int i = 0; i < 5; ++i) QCOMPARE(RegisterClose(state, pathOf(docs[i]), slotOf[i]), i == 4);
    for (int row = 1; row <= 10; ++row) QVERIFY(state.OpenFiles[row].path.isEmpty());
    for (int slot = 1; slot <= 9; ++slot) QVERIFY(state.OpenSlotFile[slot].isEmpty());
  }

  void listFolder_data() {
    QTest::addColumn<QString>("fullName");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("folder");
    QTest::newRow("case") << "/home/ann/Data/Messier.TLF" << "messier.tlf" << "/home/ann/Data/";
    QTest::newRow("folder holds the name")
        << "/home/ann/messier.tlf.d/messier.tlf" << "messier.tlf" << "/home/ann/";
    QTest::newRow("windows") << "D:\\Lists\\a.tlf" << "a.tlf" << "D:\\Lists\\";
    QTest::newRow("title not in the name") << "/home/ann/Data/a.tlf" << "b.tlf"
                                           << "/home/ann/Data/";
  }
  void listFolder() {
    QFETCH(QString, fullName);
    QFETCH(QString, title);
    QTEST(ListFolderOf(fullName, title), "folder");
  }

  // The list window is the compact one below 10000 twips of screen.
  void compactWindow_data() {
    QTest::addColumn<int>("pixels");
    QTest::addColumn<double>("dpi");
    QTest::addColumn<int>("twips");
    QTest::addColumn<bool>("compact");
    QTest::newRow("600 pixels") << 600 << 96.0 << 9000 << true;
    QTest::newRow("9999 twips") << 6666 << 960.0 << 9999 << true;
    QTest::newRow("10000 twips") << 1000 << 144.0 << 10000 << false;
  }
  void compactWindow() {
    QFETCH(int, pixels);
    QFETCH(double, dpi);
    QFETCH(int, twips);
    QCOMPARE(ScreenHeightTwips(pixels, dpi), twips);
    QTEST(UseCompactListWindow(twips), "compact");
  }
};

QTEST_GUILESS_MAIN(TestOpenDocuments)
#include "tst_opendocuments.moc"
