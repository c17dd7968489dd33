#include <QDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "catalog/catalogbrowser.h"
#include "catalog/database.h"
#include "catalog/datagrid.h"
#include "fixturedb.h"
#include "formtest.h"
#include "support/testenv.h"

namespace {

constexpr int kMessier = 0, kUser = 5;

// A browser in a host window of its own, a dialog as the list editor's or a plain window as the
// hand control's, shown and active so that clicks and keys reach it.
struct Host {
  Host(AppState& state, BrowserHost kind) {
    window.reset(kind == BrowserHost::EditList ? new QDialog : new QWidget);
    auto* layout = new QVBoxLayout(window.get());
    browser = new CatalogBrowser(state, kind, window.get());
    layout->addWidget(browser);
    window->resize(1100, 700);
    browser->bindPages();
    browser->applyLayouts();
    window->show();
    QApplication::setActiveWindow(window.get());
  }
  template <typename T>
  T* child(const char* name) const {
    return control<T>(browser, name);
  }
  std::unique_ptr<QWidget> window;
  CatalogBrowser* browser = nullptr;
};

void clickRow(DataGrid* grid, int row, Qt::KeyboardModifiers mods = {}) {
  grid->scrollTo(grid->model()->index(row, 0));
  const QRect r = grid->visualRect(grid->model()->index(row, 0));
  QTest::mouseClick(grid->viewport(), Qt::LeftButton, mods, r.center());
}

QSet<qint64> selection(DataGrid* grid) {
  const auto& s = grid->selectedBookmarks();
  return QSet<qint64>(s.begin(), s.end());
}

}  // namespace

class TestCatalogBrowser : public QObject {
  Q_OBJECT

 private slots:
  // One walk of the list editor's browser, then the hand control's. Enter presses the page's
  // default find button (one handler in either host): Find First, then Find Next until the text
  // or the option changes; a failed find says so and leaves the row. Shift and Ctrl clicks
  // select in the editor; a search clears them. The page's order lives in the shared state, so
  // a header click holds in the next browser. The hand control's clicks only move the row; its
  // Edit button requeries the user page. A filter the engine refuses leaves the pages as they
  // were, one box for each different error. What the criteria find is the search's own test.
  void walk() {
    TestEnv env;
    Host host(*env.state, BrowserHost::EditList);
    QVERIFY(host.browser->pageRecordset(kUser)->isUpdatable());
    QVERIFY(!host.browser->pageRecordset(kMessier)->isUpdatable());
    auto* first = host.child<QPushButton>("cmdFindMessier");
    auto* next = host.child<QPushButton>("cmdMessierNext");
    auto* box = host.child<QLineEdit>("txtSearchMessier");
    DataGrid* grid = host.browser->pageGrid(kMessier);
    Recordset* rs = host.browser->pageRecordset(kMessier);
    QSet<qint64> expected;
    for (int row = 2; row <= 5; ++row) expected.insert(rs->bookmarkAt(row));
    clickRow(grid, 2);
    QCOMPARE(grid->selectedBookmarkCount(), 0);
    clickRow(grid, 5, Qt::ShiftModifier);
    QCOMPARE(selection(grid), expected);
    QVERIFY(grid->model()->index(3, 0).data(RecordsetModel::MarkedRole).toBool());

    host.child<QRadioButton>("optMessierName")->click();
    box->setFocus();
    QTest::keyClicks(box, QStringLiteral("nebula"));
    QTest::keyClick(box, Qt::Key_Return);
    QCOMPARE(grid->selectedBookmarkCount(), 0);
    QVERIFY(next->isDefault() && !first->isDefault());
    QCOMPARE(grid->currentColumn(), 1);
    const QString firstMatch = rs->text(QStringLiteral("ObjectNum"));
    QTest::keyClick(grid, Qt::Key_Return);
    QVERIFY(rs->text(QStringLiteral("ObjectNum")).toInt() > firstMatch.toInt());
    host.child<QPushButton>("cmdMessierPrev")->click();
    QCOMPARE(rs->text(QStringLiteral("ObjectNum")), firstMatch);
    host.child<QRadioButton>("optMessierNum")->click();
    QVERIFY(first->isDefault());
    box->setText(QStringLiteral("999"));
    QTest::keyClick(grid, Qt::Key_Return);
    QCOMPARE(boxes(env.prompter), QStringList{": Not Found."});
    QCOMPARE(env.prompter.beeps, 1);
    QCOMPARE(rs->text(QStringLiteral("ObjectNum")), firstMatch);
    QVERIFY(next->isDefault());
    box->setText(QStringLiteral("1"));
    QVERIFY(first->isDefault());
    env.prompter.clear();

    clickRow(grid, 5);
    clickRow(grid, 2, Qt::ShiftModifier);
    QCOMPARE(selection(grid), expected);
    clickRow(grid, 8, Qt::ControlModifier);
    expected.insert(rs->bookmarkAt(8));
    QCOMPARE(selection(grid), expected);
    // A plain click neither adds nor clears; Ctrl with Shift is neither rule.
    clickRow(grid, 9);
    clickRow(grid, 11, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(selection(grid), expected);
    emit grid->horizontalHeader()->sectionClicked(0);
    QCOMPARE(host.browser->pageRecordset(kMessier)->text(QStringLiteral("ObjectNum")),
             QStringLiteral("110"));

    Host hhc(*env.state, BrowserHost::HHC);
    QCOMPARE(hhc.browser->pageRecordset(kMessier)->text(QStringLiteral("ObjectNum")),
             QStringLiteral("110"));
    QSignalSpy rows(hhc.browser, &CatalogBrowser::pageRowChanged);
    clickRow(hhc.browser->pageGrid(kMessier), 2);
    clickRow(hhc.browser->pageGrid(kMessier), 5, Qt::ShiftModifier);
    clickRow(hhc.browser->pageGrid(kMessier), 7, Qt::ControlModifier);
    QCOMPARE(hhc.browser->pageGrid(kMessier)->selectedBookmarkCount(), 0);
    QCOMPARE(rows.count(), 3);
    onModal(QStringLiteral("EditUserList"), [&](QWidget* editor) {
      auto other = Database::open(env.state->userListPath(), Database::Mode::ReadWrite);
      fixture::insert(*other, QStringLiteral("UserObjects"),
                      {"Mine", 7, "Seven", "Galaxy", "And", "9", " ", 1, 2, "+", 3, 4});
      editor->close();
    });
    hhc.child<QPushButton>("cmdEditUser")->click();
    QCOMPARE(env.state->EditUserListCaller, QStringLiteral("Form"));
    QCOMPARE(hhc.browser->pageRecordset(kUser)->RecordCount(), 1);
    QVERIFY(env.prompter.entries.isEmpty());

    for (PageQuery& q : env.state->Pages) q.Filter = QStringLiteral("WHERE (NoSuchColumn = 1)");
    env.state->filter.FltAlt = false;
    env.state->FilterOn = true;
    host.browser->refreshFilter(0);
    QVERIFY(!QGuiApplication::overrideCursor());
    QVERIFY(!env.prompter.entries.isEmpty() && env.prompter.entries.size() <= 2);
    QCOMPARE(host.browser->pageRecordset(kMessier)->RecordCount(), 110);
  }

  // An older user list without the Info column, and no catalog at all: one box for each, and
  // pages that still work. The editor's browser then falls back on the table as it is.
  void olderUserListAndNoCatalog() {
    TestEnv env;
    env.state->programFolder = env.path(QStringLiteral("nowhere"));
    QDir().mkpath(env.state->settings.DataDir);
    fixture::userList(env.state->userListPath())
        ->exec(QStringLiteral("ALTER TABLE UserObjects DROP COLUMN Info; INSERT INTO "
                              "UserObjects VALUES ('Mine', 1, 'Old one', 'Galaxy', 'And', '9', "
                              "1, 2, '+', 3, 4);"));
    Host editor(*env.state, BrowserHost::EditList);
    QCOMPARE(env.prompter.entries.size(), 2);
    QVERIFY(env.prompter.texts().join('|').contains(QStringLiteral(" - 3000")));
    QVERIFY(!editor.browser->pageRecordset(kUser) && !editor.browser->pageRecordset(kMessier));
    env.prompter.clear();
    editor.child<QPushButton>("cmdFindMessier")->click();
    QCOMPARE(env.prompter.texts(), QStringList{QStringLiteral("Not Found.")});
    env.prompter.clear();
    emit editor.browser->pageGrid(kUser)->headClicked(7);
    QCOMPARE(boxes(env.prompter).size(), 1);
    QVERIFY(boxes(env.prompter)[0].startsWith(
        QStringLiteral("Alert!: Your User List needs to be updated in order to sort on RA.\n")));
    QCOMPARE(editor.browser->pageRecordset(kUser)->RecordCount(), 1);
  }
};

QTEST_MAIN(TestCatalogBrowser)
#include "tst_catalogbrowser.moc"
