#include <QDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "catalog/catalogbrowser.h"
#include "catalog/catalogpages.h"
#include "catalog/catalogwindowlogic.h"
#include "catalog/database.h"
#include "catalog/datagrid.h"
#include "core/paths.h"
#include "fixturedb.h"
#include "formtest.h"
#include "support/testenv.h"

namespace {

constexpr int kMessier = 0, kDeepSky = 4, kUser = 5, kDoubles = 7;

// A browser in a host window of its own, shown so that clicks and keys reach it.
struct Host {
  Host(AppState& state, BrowserHost kind, bool dialog = true) {
    window.reset(dialog ? new QDialog : new QWidget);
    auto* layout = new QVBoxLayout(window.get());
    browser = new CatalogBrowser(state, kind, window.get());
    layout->addWidget(browser);
    window->resize(1100, 700);
    browser->bindPages();
    browser->applyLayouts();
    window->show();
  }
  template <typename T>
  T* child(const char* name) const {
    return control<T>(browser, name);
  }
  std::unique_ptr<QWidget> window;
  CatalogBrowser* browser = nullptr;
};

void clickRow(DataGrid* grid, int row, Qt::KeyboardModifiers mods = {}) {
  grid->scrollTo(grid->model()->index(row, 1));
  const QRect r = grid->visualRect(grid->model()->index(row, 1));
  QTest::mouseClick(grid->viewport(), Qt::LeftButton, mods, r.center());
}

void clickHead(DataGrid* grid, int column) {
  QHeaderView* h = grid->horizontalHeader();
  h->setSectionHidden(column, false);
  const int x = h->sectionViewportPosition(column) + h->sectionSize(column) / 2;
  QTest::mouseClick(h->viewport(), Qt::LeftButton, {}, QPoint(x, h->height() / 2));
}

QSet<qint64> selection(DataGrid* grid) {
  const auto& s = grid->selectedBookmarks();
  return QSet<qint64>(s.begin(), s.end());
}

}  // namespace

class TestCatalogBrowser : public QObject {
  Q_OBJECT

 private slots:
  // The search's wiring: the page's option and query set, the column it leaves current, and the
  // box and beep of a failed find. The criteria and what they find are the search's own tests.
  void search() {
    TestEnv env;
    Host host(*env.state, BrowserHost::HHC);
    auto find = [&](int tab, bool byName, const QString& text) {
      const CatalogPage& p = PageByTab(tab);
      host.browser->setCurrentIndex(tab);
      control<QRadioButton>(host.browser, byName ? p.nameOption : p.numberOption)->click();
      host.browser->searchBox(tab)->setText(text);
      control<QPushButton>(host.browser, p.findFirst)->click();
      return host.browser->pageGrid(tab)->currentColumn();
    };
    QCOMPARE(find(kDoubles, false, QStringLiteral("STF 122")), 1);
    QCOMPARE(host.browser->pageGrid(kDoubles)->columnText(QStringLiteral("Name")),
             QStringLiteral("ADS 1148,WDS 01269+0332,STF 122"));
    QVERIFY(env.prompter.entries.isEmpty());
    Recordset* rs = host.browser->pageRecordset(kDeepSky);
    rs->MoveLast();
    const qint64 before = rs->Bookmark();
    QCOMPARE(find(kDeepSky, true, QStringLiteral("zzzz")), 2);
    QCOMPARE(boxes(env.prompter), QStringList{": Not Found."});
    QCOMPARE(env.prompter.beeps, 1);
    QCOMPARE(rs->Bookmark(), before);
  }

  void enterFollowsTheDefaultButton_data() {
    QTest::addColumn<bool>("dialog");
    QTest::newRow("dialog host") << true;
    QTest::newRow("plain window host") << false;
  }
  void enterFollowsTheDefaultButton() {
    QFETCH(bool, dialog);
    TestEnv env;
    Host host(*env.state, BrowserHost::EditList, dialog);
    QApplication::setActiveWindow(host.window.get());
    auto* first = host.child<QPushButton>("cmdFindMessier");
    auto* next = host.child<QPushButton>("cmdMessierNext");
    auto* box = host.child<QLineEdit>("txtSearchMessier");
    host.child<QRadioButton>("optMessierName")->click();
    box->setFocus();
    QTest::keyClicks(box, QStringLiteral("nebula"));
    QVERIFY(first->isDefault());
    QTest::keyClick(box, Qt::Key_Return);  // Find First
    QVERIFY(next->isDefault() && !first->isDefault());
    QCOMPARE(host.browser->pageGrid(kMessier)->currentColumn(), 1);
    Recordset* rs = host.browser->pageRecordset(kMessier);
    const QString firstMatch = rs->text(QStringLiteral("ObjectNum"));
    DataGrid* grid = host.browser->pageGrid(kMessier);
    QTest::keyClick(grid, Qt::Key_Return);  // Find Next
    QVERIFY(rs->text(QStringLiteral("ObjectNum")).toInt() > firstMatch.toInt());
    QVERIFY(next->isDefault());
    host.child<QPushButton>("cmdMessierPrev")->click();
    QCOMPARE(rs->text(QStringLiteral("ObjectNum")), firstMatch);
    // A changed text or option makes Find First the default again.
    host.child<QRadioButton>("optMessierNum")->click();
    QVERIFY(first->isDefault());
    QTest::keyClick(grid, Qt::Key_Return);
    QVERIFY(next->isDefault());
    box->setText(QStringLiteral("1"));
    QVERIFY(first->isDefault());
    QVERIFY(env.prompter.entries.size() <= 1);  // "nebula" is no number
  }

  // The page's order lives in the shared state: a click in one browser holds in the next.
  void headerSortHoldsAcrossBrowsers() {
    TestEnv env;
    auto firstNum = [](CatalogBrowser* b) {
      return b->pageRecordset(kMessier)->text(QStringLiteral("ObjectNum"));
    };
    {
      Host a(*env.state, BrowserHost::EditList);
      clickHead(a.browser->pageGrid(kMessier), 0);
      QCOMPARE(env.state->Pages[4].OrderBy, QStringLiteral("ORDER BY ObjectNum DESC"));
      QCOMPARE(firstNum(a.browser), QStringLiteral("110"));
    }
    Host b(*env.state, BrowserHost::HHC);
    QCOMPARE(firstNum(b.browser), QStringLiteral("110"));
    clickHead(b.browser->pageGrid(kMessier), 0);
    QCOMPARE(firstNum(b.browser), QStringLiteral("1"));
    QVERIFY(env.prompter.entries.isEmpty());
  }

  void shiftAndCtrlSelection() {
    TestEnv env;
    Host host(*env.state, BrowserHost::EditList);
    DataGrid* grid = host.browser->pageGrid(kMessier);
    Recordset* rs = host.browser->pageRecordset(kMessier);
    QSet<qint64> expected;
    for (int row = 2; row <= 5; ++row) expected.insert(rs->bookmarkAt(row));
    clickRow(grid, 2);
    QCOMPARE(grid->selectedBookmarkCount(), 0);
    clickRow(grid, 5, Qt::ShiftModifier);
    QCOMPARE(selection(grid), expected);
    QVERIFY(grid->model()->index(3, 0).data(RecordsetModel::MarkedRole).toBool());
    QCOMPARE(rs->AbsolutePosition(), 5);
    // A search clears the selection.
    host.child<QLineEdit>("txtSearchMessier")->setText(QStringLiteral("2"));
    host.child<QPushButton>("cmdFindMessier")->click();
    QCOMPARE(grid->selectedBookmarkCount(), 0);
    clickRow(grid, 5);
    clickRow(grid, 2, Qt::ShiftModifier);
    QCOMPARE(selection(grid), expected);
    QCOMPARE(rs->AbsolutePosition(), 2);

    clickRow(grid, 8, Qt::ControlModifier);
    expected.insert(rs->bookmarkAt(8));
    QCOMPARE(selection(grid), expected);
    // A plain click neither adds nor clears; Ctrl with Shift is neither rule.
    clickRow(grid, 9);
    clickRow(grid, 11, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(selection(grid), expected);

    // The hand control's browser selects nothing; its clicks only move the row.
    Host hhc(*env.state, BrowserHost::HHC);
    grid = hhc.browser->pageGrid(kMessier);
    QSignalSpy rows(hhc.browser, &CatalogBrowser::pageRowChanged);
    clickRow(grid, 2);
    clickRow(grid, 5, Qt::ShiftModifier);
    clickRow(grid, 7, Qt::ControlModifier);
    QCOMPARE(grid->selectedBookmarkCount(), 0);
    QCOMPARE(rows.count(), 3);
  }

  void olderUserTableFallsBackOnTheEditor() {
    TestEnv env;
    QDir().mkpath(env.state->settings.DataDir);
    // An older user list: no Info column.
    fixture::userList(env.state->userListPath())
        ->exec(QStringLiteral("ALTER TABLE UserObjects DROP COLUMN Info; INSERT INTO "
                              "UserObjects VALUES ('Mine', 1, 'Old one', 'Galaxy', 'And', '9', "
                              "1, 2, '+', 3, 4);"));
    Host editor(*env.state, BrowserHost::EditList);
    // Binding fails like any page whose source fails: the usual box, an empty page.
    QCOMPARE(env.prompter.entries.size(), 1);
    QVERIFY(env.prompter.entries[0].text.endsWith(QStringLiteral(" - 3000")));
    QVERIFY(!editor.browser->pageRecordset(kUser));
    env.prompter.clear();
    emit editor.browser->pageGrid(kUser)->headClicked(7);
    QCOMPARE(boxes(env.prompter).size(), 1);
    QVERIFY(boxes(env.prompter)[0].startsWith(
        QStringLiteral("Alert!: Your User List needs to be updated in order to sort on RA.\n")));
    QCOMPARE(editor.browser->pageRecordset(kUser)->recordSource(), QStringLiteral("UserObjects"));
    QCOMPARE(editor.browser->pageRecordset(kUser)->RecordCount(), 1);

    Host hhc(*env.state, BrowserHost::HHC);
    env.prompter.clear();
    emit hhc.browser->pageGrid(kUser)->headClicked(7);
    QCOMPARE(env.prompter.entries.size(), 1);
    QCOMPARE(env.prompter.entries[0].title, AppTitle());
    QVERIFY(!hhc.browser->pageRecordset(kUser));
  }

  void aMissingCatalogGivesOneBoxAndEmptyPages() {
    TestEnv env;
    env.state->programFolder = env.path(QStringLiteral("nowhere"));
    QDir().mkpath(env.state->settings.DataDir);
    QFile::copy(SourceDataFolder() + QStringLiteral("/TavorineUserList.tmp"),
                env.state->userListPath());
    QFile::setPermissions(env.state->userListPath(), QFile::ReadOwner | QFile::WriteOwner);
    Host host(*env.state, BrowserHost::HHC);
    QCOMPARE(env.prompter.entries.size(), 1);
    QVERIFY(!host.browser->pageRecordset(kMessier));
    QVERIFY(host.browser->pageRecordset(kUser));
    env.prompter.clear();
    host.child<QPushButton>("cmdFindMessier")->click();
    QCOMPARE(env.prompter.texts(), QStringList{QStringLiteral("Not Found.")});
  }

  // The user list is made from the empty template and opened for writing. A filter the engine
  // refuses leaves the pages as they were, with one box for each different error.
  void pagesOpenAndARefusedFilterKeepsThem() {
    TestEnv env;
    Host host(*env.state, BrowserHost::EditList);
    QVERIFY(host.browser->pageRecordset(kUser)->isUpdatable());
    QVERIFY(!host.browser->pageRecordset(kMessier)->isUpdatable());
    QVERIFY(env.prompter.entries.isEmpty());
    for (PageQuery& q : env.state->Pages) q.Filter = QStringLiteral("WHERE (NoSuchColumn = 1)");
    env.state->filter.FltAlt = false;
    env.state->FilterOn = true;
    host.browser->refreshFilter(0);
    QVERIFY(!QGuiApplication::overrideCursor());
    QVERIFY(!env.prompter.entries.isEmpty() && env.prompter.entries.size() <= 2);
    QCOMPARE(host.browser->pageRecordset(kMessier)->RecordCount(), 110);
  }

  void editButtonRequeriesTheUserPage() {
    TestEnv env;
    Host host(*env.state, BrowserHost::HHC);
    QCOMPARE(host.browser->pageRecordset(kUser)->RecordCount(), 0);
    onModal(QStringLiteral("EditUserList"), [&](QWidget* editor) {
      auto other = Database::open(env.state->userListPath(), Database::Mode::ReadWrite);
      fixture::insert(*other, QStringLiteral("UserObjects"),
                      {"Mine", 7, "Seven", "Galaxy", "And", "9", " ", 1, 2, "+", 3, 4});
      editor->close();
    });
    host.child<QPushButton>("cmdEditUser")->click();
    QCOMPARE(env.state->EditUserListCaller, QStringLiteral("Form"));
    QCOMPARE(host.browser->pageRecordset(kUser)->RecordCount(), 1);
  }
};

QTEST_MAIN(TestCatalogBrowser)
#include "tst_catalogbrowser.moc"
