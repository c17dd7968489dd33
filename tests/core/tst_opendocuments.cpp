#include <QtTest>

#include "core/opendocuments.h"
#include "support/scriptedprompter.h"

class TestOpenDocuments : public QObject {
  Q_OBJECT
 private slots:
  void closeThirdOfFiveThenOpen();
  void nineOpen();
  void pathsCompareAsText_data();
  void pathsCompareAsText();
  void listFolder_data();
  void listFolder();
  void compactWindow_data();
  void compactWindow();
  void messages();
};

static QString pathOf(int n) { return QStringLiteral("/home/ann/Data/list%1.tlf").arg(n); }

void TestOpenDocuments::closeThirdOfFiveThenOpen() {
  ScriptedPrompter prompter;
  AppState state(prompter);
  for (int n = 1; n <= 5; ++n)
    QCOMPARE(RegisterOpen(state, QStringLiteral("list%1.tlf").arg(n), pathOf(n)), n);
  QCOMPARE(state.OpenFileCount, qint16(5));

  QVERIFY(!RegisterClose(state, pathOf(3), 3));
  QCOMPARE(state.OpenFileCount, qint16(4));
  // Rows stay packed in order of opening; the slot stays free until taken.
  const QStringList rows = {pathOf(1), pathOf(2), pathOf(4), pathOf(5), QString()};
  for (int row = 1; row <= 5; ++row) QCOMPARE(state.OpenFiles[row].path, rows[row - 1]);
  QCOMPARE(state.OpenFiles[3].title, QStringLiteral("list4.tlf"));
  QCOMPARE(state.OpenSlotFile[3], QString());
  QCOMPARE(state.OpenSlotFile[4], pathOf(4));
  QVERIFY(!IsAlreadyOpen(state, pathOf(3)));

  QCOMPARE(RegisterOpen(state, QStringLiteral("new.tlf"), pathOf(6)), 3);
  QCOMPARE(state.OpenFiles[5].path, pathOf(6));
  QCOMPARE(state.OpenSlotFile[3], pathOf(6));

  // Closing all: only the last one says so.
  const int slotOf[] = {1, 2, 4, 5, 3};
  const int docs[] = {1, 2, 4, 5, 6};
  for (int i = 0; i < 5; ++i) QCOMPARE(RegisterClose(state, pathOf(docs[i]), slotOf[i]), i == 4);
  QCOMPARE(state.OpenFileCount, qint16(0));
  for (int row = 1; row <= 10; ++row) QVERIFY(state.OpenFiles[row].path.isEmpty());
  for (int slot = 1; slot <= 9; ++slot) QVERIFY(state.OpenSlotFile[slot].isEmpty());
}

void TestOpenDocuments::nineOpen() {
  ScriptedPrompter prompter;
  AppState state(prompter);
  for (int n = 1; n <= MaxOpenLists; ++n) RegisterOpen(state, QString::number(n), pathOf(n));
  QCOMPARE(state.OpenFileCount, qint16(MaxOpenLists));
  for (int n = 1; n <= MaxOpenLists; ++n) {
    QVERIFY(IsAlreadyOpen(state, pathOf(n)));
    QCOMPARE(state.OpenSlotFile[n], pathOf(n));
  }
  QVERIFY(!IsAlreadyOpen(state, pathOf(10)));
  QVERIFY(!IsAlreadyOpen(state, QString()));
}

void TestOpenDocuments::pathsCompareAsText_data() {
  QTest::addColumn<QString>("other");
  QTest::addColumn<bool>("open");
  QTest::newRow("same") << "/home/ann/Data/list1.tlf" << true;
  QTest::newRow("case differs") << "/home/ann/Data/LIST1.tlf" << false;
  QTest::newRow("double separator") << "/home/ann//Data/list1.tlf" << false;
  QTest::newRow("dot segment") << "/home/ann/./Data/list1.tlf" << false;
}

void TestOpenDocuments::pathsCompareAsText() {
  QFETCH(QString, other);
  QFETCH(bool, open);
  ScriptedPrompter prompter;
  AppState state(prompter);
  RegisterOpen(state, QStringLiteral("list1.tlf"), pathOf(1));
  QCOMPARE(IsAlreadyOpen(state, other), open);
}

void TestOpenDocuments::listFolder_data() {
  QTest::addColumn<QString>("fullName");
  QTest::addColumn<QString>("title");
  QTest::addColumn<QString>("folder");
  QTest::newRow("plain") << "/home/ann/Data/messier.tlf" << "messier.tlf" << "/home/ann/Data/";
  QTest::newRow("case") << "/home/ann/Data/Messier.TLF" << "messier.tlf" << "/home/ann/Data/";
  QTest::newRow("folder holds the name")
      << "/home/ann/messier.tlf.d/messier.tlf" << "messier.tlf" << "/home/ann/";
  QTest::newRow("windows") << "D:\\Lists\\a.tlf" << "a.tlf" << "D:\\Lists\\";
  QTest::newRow("title not in the name") << "/home/ann/Data/a.tlf" << "b.tlf" << "/home/ann/Data/";
}

void TestOpenDocuments::listFolder() {
  QFETCH(QString, fullName);
  QFETCH(QString, title);
  QFETCH(QString, folder);
  QCOMPARE(ListFolderOf(fullName, title), folder);
}

void TestOpenDocuments::compactWindow_data() {
  QTest::addColumn<int>("twips");
  QTest::addColumn<bool>("compact");
  QTest::newRow("600 pixels") << 9000 << true;
  QTest::newRow("9999") << 9999 << true;
  QTest::newRow("10000") << 10000 << false;
  QTest::newRow("768 pixels") << 11520 << false;
}

void TestOpenDocuments::compactWindow() {
  QFETCH(int, twips);
  QFETCH(bool, compact);
  QCOMPARE(UseCompactListWindow(twips), compact);
}

void TestOpenDocuments::messages() {
  const QString p = QStringLiteral("/home/ann/Data/a.tlf");
  QCOMPARE(TooManyFilesMessage(), QStringLiteral("Sorry, you can only open 9 files!"));
  QCOMPARE(OverwriteQuestion(p),
           QStringLiteral("This file\n/home/ann/Data/a.tlf\nalready exists.  Overwrite?"));
  QCOMPARE(UnableToOverwriteMessage(p),
           QStringLiteral("Unable to overwrite - the file\n/home/ann/Data/a.tlf\nis already open"));
  QCOMPARE(AlreadyOpenMessage(p),
           QStringLiteral("This file:\n/home/ann/Data/a.tlf\nis already open"));
  QCOMPARE(RecentFileGoneMessage(QStringLiteral("Autumn")),
           QStringLiteral("This file\nAutumn\nno longer exists or has been moved."));
}

QTEST_GUILESS_MAIN(TestOpenDocuments)
#include "tst_opendocuments.moc"
