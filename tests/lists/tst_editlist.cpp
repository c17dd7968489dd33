#include <QtTest>

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "catalog/catalogbrowser.h"
#include "catalog/database.h"
#include "catalog/recordset.h"
#include "charts/skywidget.h"
#include "core/mainwindow.h"
#include "lists/editlist.h"
#include "lists/editlistlogic.h"
#include "sky/userdatedialog.h"
#include "support/testenv.h"

namespace {

// Twelve well-known objects, in list order.
struct Row {
  const char* category;
  int num;
  const char* name;
  const char* type;
  double raH, raM;
  const char* sign;
  double decD, decM;
};
const Row kRows[] = {
    {"Messier", 31, "Andromeda Galaxy", "Galaxy", 0, 42.7, "+", 41, 16},
    {"Messier", 45, "Pleiades", "Open Cluster", 3, 47, "+", 24, 7},
    {"Messier", 42, "Orion Nebula", "Nebula", 5, 35.3, "-", 5, 23},
    {"Messier", 1, "Crab Nebula", "Supernova Remnant", 5, 34.5, "+", 22, 1},
    {"NGC", 869, "Double Cluster", "Open Cluster", 2, 19, "+", 57, 9},
    {"Messier", 33, "Triangulum Galaxy", "Galaxy", 1, 33.9, "+", 30, 39},
    {"Messier", 57, "Ring Nebula", "Planetary Nebula", 18, 53.6, "+", 33, 2},
    {"Messier", 27, "Dumbbell Nebula", "Planetary Nebula", 19, 59.6, "+", 22, 43},
    {"Messier", 15, "", "Globular Cluster", 21, 30, "+", 12, 10},
    {"Messier", 2, "", "Globular Cluster", 21, 33.5, "-", 0, 49},
    {"Caldwell", 14, "Double Cluster", "Open Cluster", 2, 20, "+", 57, 8},
    {"NGC", 7293, "Helix Nebula", "Planetary Nebula", 22, 29.6, "-", 20, 50},
};

QList<int> orders(const QString& path) {
  auto db = Database::open(path, Database::Mode::ReadOnly);
  QList<int> out;
  Statement st = db->prepare("SELECT DisplayOrder FROM Objects ORDER BY DisplayOrder, rowid");
  while (st.step()) out << int(st.int64Value(0));
  return out;
}

QStringList names(const QString& path) {
  auto db = Database::open(path, Database::Mode::ReadOnly);
  QStringList out;
  Statement st = db->prepare("SELECT Name FROM Objects ORDER BY DisplayOrder, rowid");
  while (st.step()) out << st.value(0).toString();
  return out;
}

}  // namespace

class TestEditList : public QObject {
  Q_OBJECT
 private slots:
  void init();
  void cleanup();
  void opens();
  void menuEntryComesBack_data();
  void menuEntryComesBack();
  void deleteAsks();
  void moveButtons();
  void autoSortButton();
  void filterButton_data();
  void filterButton();
  void openedWithFilterOn();
  void dateChange();
  void dateDialogDrivenByName();
  void tabsAndCaptions();
  void markerFollowsTheList();

 private:
  // A list document of the first n objects with DisplayOrder 1..n.
  QString makeList(int n);
  EditList* openEditor(const QString& path);

  std::unique_ptr<TestEnv> env;
  std::unique_ptr<TavorineListMain> main;
  std::unique_ptr<EditList> editor;
};

void TestEditList::init() {
  env = std::make_unique<TestEnv>();
  env->fixedOffsetHours = 9;
  env->state->UserDate = QDateTime(QDate(2026, 11, 21), QTime(21, 0));
  main = std::make_unique<TavorineListMain>(*env->state);
}

void TestEditList::cleanup() {
  editor.reset();
  main.reset();
  env.reset();
}

QString TestEditList::makeList(int n) {
  const QString path = env->path("Tonight.tlf");
  QFile::remove(path);
  QFile::copy(env->state->templatePath(), path);
  QFile(path).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
  auto db = Database::open(path, Database::Mode::ReadWrite);
  for (int i = 0; i < n; ++i) {
    const Row& r = kRows[i];
    Statement st = db->prepare(
        "INSERT INTO Objects (DisplayOrder, Category, ObjectNum, Name, Type, Constellation, "
        "Magnitude, RAHour, RAMinute, DecSign, DecDeg, DecMinute, Info) "
        "VALUES (?1, ?2, ?3, ?4, ?5, ' ', ' ', ?6, ?7, ?8, ?9, ?10, ' ')");
    const QVariantList v{i + 1, r.category, r.num, r.name, r.type, r.raH, r.raM, r.sign, r.decD,
                         r.decM};
    for (int k = 0; k < v.size(); ++k) st.bind(k + 1, v[k]);
    st.step();
  }
  return path;
}

EditList* TestEditList::openEditor(const QString& path) {
  editor = std::make_unique<EditList>(*env->state, *main, path, "Objects - Tonight", nullptr);
  editor->show();
  return editor.get();
}

void TestEditList::opens() {
  EditList* e = openEditor(makeList(3));
  QCOMPARE(e->windowTitle(), QStringLiteral("Edit - Tonight"));
  QCOMPARE(e->findChild<QLabel*>("Label2")->text(), QStringLiteral("Your Object List:"));
  QCOMPARE(e->findChild<QLabel*>("lblUserDate")->text(),
           UserDateLabel(env->state->UserDate));
  QCOMPARE(e->findChild<QLineEdit*>("txtRecordCounter")->text(), QStringLiteral(" Obj: 1 of 3"));
  QVERIFY(e->findChild<QLabel*>("lblFilter")->isHidden());
  // Every command button shows its whole caption, with a little room at each side.
  for (const char* name : {"cmdDelete", "cmdMoveUp", "cmdMoveDown", "cmdAutoSort", "cmdClose",
                           "cmdFilterAlt", "cmdUserDate", "cmdAddMessier"}) {
    auto* b = e->findChild<QPushButton*>(name);
    QVERIFY2(b, name);
    const int textWidth = b->fontMetrics().horizontalAdvance(b->text().remove(QLatin1Char('&')));
    QVERIFY2(b->width() >= textWidth + 8, name);
  }
  // The window keeps a least size.
  e->resize(100, 100);
  QVERIFY(e->width() > 100 && e->height() > 100);
  QVERIFY(env->prompter.entries.isEmpty());
}

void TestEditList::menuEntryComesBack_data() {
  QTest::addColumn<QString>("how");
  QTest::newRow("Close button") << "cmdClose";
  QTest::newRow("close box") << "close";
  QTest::newRow("Escape") << "escape";
}

void TestEditList::menuEntryComesBack() {
  QFETCH(QString, how);
  auto* entry = main->findChild<QAction*>("mnuEditUserList");
  QVERIFY(entry);
  EditList* e = openEditor(makeList(1));
  QVERIFY(!entry->isEnabled());
  if (how == "cmdClose") e->findChild<QPushButton*>("cmdClose")->click();
  else if (how == "close") e->close();
  else QTest::keyClick(e, Qt::Key_Escape);
  QVERIFY(entry->isEnabled());
  QVERIFY(!e->isVisible());
}

void TestEditList::deleteAsks() {
  const QString path = makeList(3);
  EditList* e = openEditor(path);
  e->listRecordset()->setAbsolutePosition(1);
  env->prompter.answer(Prompter::Answer::No);
  e->findChild<QPushButton*>("cmdDelete")->click();
  QCOMPARE(env->prompter.entries.size(), 1);
  QCOMPARE(env->prompter.entries[0].title, QStringLiteral("Confirm"));
  QCOMPARE(env->prompter.entries[0].text, QStringLiteral("Delete this object?"));
  QCOMPARE(orders(path), (QList<int>{1, 2, 3}));
  env->prompter.answer(Prompter::Answer::Yes);
  e->findChild<QPushButton*>("cmdDelete")->click();
  QCOMPARE(orders(path), (QList<int>{1, 3}));
  QCOMPARE(e->listRecordset()->text("Name"), QStringLiteral("Orion Nebula"));
  QCOMPARE(e->findChild<QLineEdit*>("txtRecordCounter")->text(), QStringLiteral(" Obj: 2 of 2"));
  for (int i = 0; i < 2; ++i) {
    env->prompter.answer(Prompter::Answer::Yes);
    e->findChild<QPushButton*>("cmdDelete")->click();
  }
  QCOMPARE(orders(path), QList<int>{});
  QCOMPARE(e->findChild<QLineEdit*>("txtRecordCounter")->text(), QString());
  // With no rows the question still comes, and nothing else.
  env->prompter.clear();
  env->prompter.answer(Prompter::Answer::Yes);
  e->findChild<QPushButton*>("cmdDelete")->click();
  QCOMPARE(env->prompter.texts(), QStringList{"Delete this object?"});
}

void TestEditList::moveButtons() {
  const QString path = makeList(3);
  EditList* e = openEditor(path);
  auto* counter = e->findChild<QLineEdit*>("txtRecordCounter");
  e->findChild<QPushButton*>("cmdMoveDown")->click();
  QCOMPARE(names(path), (QStringList{"Pleiades", "Andromeda Galaxy", "Orion Nebula"}));
  QCOMPARE(e->listRecordset()->text("Name"), QStringLiteral("Andromeda Galaxy"));
  QCOMPARE(counter->text(), QStringLiteral(" Obj: 2 of 3"));
  e->findChild<QPushButton*>("cmdMoveUp")->click();
  e->findChild<QPushButton*>("cmdMoveUp")->click();  // on the first row: nothing
  QCOMPARE(names(path), (QStringList{"Andromeda Galaxy", "Pleiades", "Orion Nebula"}));
  QCOMPARE(e->listRecordset()->AbsolutePosition(), 0);
  QCOMPARE(counter->text(), QStringLiteral(" Obj: 1 of 3"));
  QVERIFY(env->prompter.entries.isEmpty());
}

void TestEditList::autoSortButton() {
  const QString path = makeList(12);
  EditList* e = openEditor(path);
  {
    auto db = Database::open(path, Database::Mode::ReadWrite);
    db->exec("UPDATE Objects SET DisplayOrder = DisplayOrder * 10");
  }
  e->listRecordset()->Requery();
  env->prompter.answer(Prompter::Answer::No);
  e->findChild<QPushButton*>("cmdAutoSort")->click();
  QCOMPARE(orders(path).first(), 10);
  env->prompter.answer(Prompter::Answer::Yes);
  e->findChild<QPushButton*>("cmdAutoSort")->click();
  QCOMPARE(env->prompter.entries.size(), 2);
  QCOMPARE(env->prompter.entries[1].title, QStringLiteral("Confirm"));
  QCOMPARE(env->prompter.entries[1].text, QStringLiteral("Permanently re-sort the list?"));
  QCOMPARE(orders(path), (QList<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
  QCOMPARE(e->listRecordset()->AbsolutePosition(), 0);
  QCOMPARE(e->findChild<QLineEdit*>("txtRecordCounter")->text(), QStringLiteral(" Obj: 1 of 12"));
}

void TestEditList::filterButton_data() {
  QTest::addColumn<bool>("filterOn");
  QTest::addColumn<bool>("cancel");
  QTest::addColumn<bool>("onAfter");
  QTest::addColumn<int>("dialogs");
  QTest::newRow("on: turned off") << true << false << false << 0;
  QTest::newRow("off: dialog cancelled") << false << true << false << 1;
  QTest::newRow("off: dialog accepted") << false << false << true << 1;
}

void TestEditList::filterButton() {
  QFETCH(bool, filterOn);
  QFETCH(bool, cancel);
  QFETCH(bool, onAfter);
  QFETCH(int, dialogs);
  AppState& s = *env->state;
  for (PageQuery& q : s.Pages) {
    q.Filter = "WHERE (Type = 'Galaxy')";
    q.Where = filterOn ? "WHERE (Type = 'Galaxy') and old" : "WHERE True";
  }
  s.filter.FltAlt = true;
  s.filter.FltMinAlt = 20;
  s.FilterOn = filterOn;
  EditList* e = openEditor(makeList(2));
  int shown = 0;
  e->showFilterDialog = [&](QWidget*) {
    ++shown;
    QVERIFY(s.FilterCancelled);  // set before the dialog
    s.FilterCancelled = cancel;
  };
  s.FilterFormTop = -1;
  e->findChild<QPushButton*>("cmdFilterAlt")->click();
  QCOMPARE(shown, dialogs);
  QCOMPARE(s.FilterOn, onAfter);
  QCOMPARE(e->findChild<QLabel*>("lblFilter")->isVisible(), onAfter);
  for (const PageQuery& q : s.Pages) {
    QCOMPARE(q.Filter, QStringLiteral("WHERE (Type = 'Galaxy')"));
    if (filterOn) QCOMPARE(q.Where, QStringLiteral("WHERE True"));
    else if (cancel) QCOMPARE(q.Where, QStringLiteral("WHERE True"));
    else {
      QVERIFY(q.Where.startsWith("WHERE (Type = 'Galaxy') and (Atn("));
      QVERIFY(q.Where.endsWith(" >= 20"));
    }
  }
  if (dialogs) QVERIFY(s.FilterFormTop != -1);
  QVERIFY(env->prompter.entries.isEmpty());
}

void TestEditList::openedWithFilterOn() {
  AppState& s = *env->state;
  for (PageQuery& q : s.Pages) q.Filter = q.Where = "WHERE True";
  s.filter.FltAlt = true;
  s.FilterOn = true;
  EditList* e = openEditor(makeList(1));
  QVERIFY(e->findChild<QLabel*>("lblFilter")->isVisible());
  QCOMPARE(e->findChild<QLabel*>("lblFilter")->text(), QStringLiteral("Filter On!!!"));
  for (const PageQuery& q : s.Pages) QVERIFY(q.Where.startsWith("WHERE True and (Atn("));
}

void TestEditList::dateChange() {
  AppState& s = *env->state;
  for (PageQuery& q : s.Pages) q.Filter = q.Where = "WHERE True";
  s.filter.FltAlt = true;
  s.FilterOn = true;
  EditList* e = openEditor(makeList(3));
  const QString whereBefore = s.Pages[4].Where;
  auto* label = e->findChild<QLabel*>("lblUserDate");

  // Unchanged: nothing is rebuilt.
  e->showUserDateDialog = [](QWidget*) {};
  s.Pages[4].Where = "untouched";
  e->findChild<QPushButton*>("cmdUserDate")->click();
  QCOMPARE(s.Pages[4].Where, QStringLiteral("untouched"));

  s.Pages[4].Where = whereBefore;
  const QDateTime later(QDate(2026, 11, 22), QTime(3, 30));
  e->showUserDateDialog = [&](QWidget*) { s.UserDate = later; };
  e->findChild<QPushButton*>("cmdUserDate")->click();
  QCOMPARE(label->text(), UserDateLabel(later));
  QVERIFY(s.Pages[4].Where.startsWith("WHERE True and (Atn("));
  QVERIFY(s.Pages[4].Where != whereBefore);
  QVERIFY(env->prompter.entries.isEmpty());
}

void TestEditList::dateDialogDrivenByName() {
  EditList* e = openEditor(makeList(1));
  bool seen = false;
  QTimer::singleShot(0, [&] {
    auto* dialog = qobject_cast<frmUserDate*>(QApplication::activeModalWidget());
    if (!dialog) return;
    seen = true;
    dialog->findChild<UpDownField*>("PickTimeHour")->setText("23");
    dialog->findChild<QPushButton*>("OKButton")->click();
  });
  e->findChild<QPushButton*>("cmdUserDate")->click();
  QVERIFY(seen);
  QCOMPARE(env->state->UserDate.time().hour(), 23);
  QCOMPARE(e->findChild<QLabel*>("lblUserDate")->text(), UserDateLabel(env->state->UserDate));
}

void TestEditList::tabsAndCaptions() {
  EditList* e = openEditor(makeList(2));
  CatalogBrowser* tabs = e->browser();
  QCOMPARE(tabs->currentIndex(), 0);
  QTest::keyClick(tabs->searchBox(0), Qt::Key_Tab, Qt::ControlModifier | Qt::ShiftModifier);
  QCOMPARE(tabs->currentIndex(), 7);
  QCOMPARE(e->findChild<QPushButton*>("cmdAddDouble")->text(), QStringLiteral("&Add <--"));
  QCOMPARE(e->findChild<QPushButton*>("cmdAddMessier")->text(), QStringLiteral("Add <--"));
  QCOMPARE(e->markerSource(), 2);
  QTest::keyClick(tabs->searchBox(7), Qt::Key_Tab, Qt::ControlModifier);
  QCOMPARE(tabs->currentIndex(), 0);
  QTest::keyClick(tabs->searchBox(0), Qt::Key_Tab, Qt::ControlModifier);
  QCOMPARE(tabs->currentIndex(), 1);
  QCOMPARE(e->findChild<QPushButton*>("cmdAddCaldwell")->text(), QStringLiteral("&Add <--"));
  int withKey = 0;
  for (auto* b : e->findChildren<QPushButton*>())
    if (b->objectName().startsWith("cmdAdd") && b->text() == "&Add <--") ++withKey;
  QCOMPARE(withKey, 1);
  QVERIFY(env->prompter.entries.isEmpty());
}

void TestEditList::markerFollowsTheList() {
  EditList* e = openEditor(makeList(3));
  // Andromeda stands high in the evening: the first row is marked in the object colour.
  QCOMPARE(e->markerSource(), 1);
  const double x = e->sky()->chart().MarkerX, y = e->sky()->chart().MarkerY;
  QVERIFY(x != 3000 && y != 3000);
  e->listRecordset()->MoveNext();  // Pleiades, elsewhere in the sky
  QVERIFY(e->sky()->chart().MarkerX != x || e->sky()->chart().MarkerY != y);
  e->browser()->setCurrentIndex(2);
  QCOMPARE(e->markerSource(), 2);
}

QTEST_MAIN(TestEditList)
#include "tst_editlist.moc"
