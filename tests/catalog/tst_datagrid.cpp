#include <QHeaderView>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include "catalog/catalogpages.h"
#include "catalog/datagrid.h"
#include "lists/listsort.h"
#include "core/twips.h"
#include "fixturedb.h"

class TestDataGrid : public QObject {
  Q_OBJECT

  QTemporaryDir dir_;
  int n_ = 0;
  std::shared_ptr<Database> list(const QList<int>& orders) {
    return fixture::list(dir_.filePath(QStringLiteral("g%1.tlf").arg(++n_)), orders);
  }

 private slots:
  void twips() {
    QWidget w;
    const int dpi = w.logicalDpiY();
    QCOMPARE(TwipsToPixels(1440, &w), dpi);
    QCOMPARE(TwipsToPixels(0, &w), 0);
  }

  void gridAndRecordsetFollowEachOther() {
    auto db = list({1, 2, 3, 4});
    Recordset rs(db, ListRecordSource(QStringLiteral("ORDER BY DisplayOrder")));
    DataGrid grid;
    grid.resize(600, 300);
    grid.setRecordset(&rs);
    QSignalSpy changes(&grid, &DataGrid::rowColChange);
    QCOMPARE(grid.model()->rowCount(), 4);
    QCOMPARE(grid.currentIndex().row(), 0);

    rs.MoveLast();
    QCOMPARE(grid.currentIndex().row(), 3);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes.last().at(0).toLongLong(), 1);  // the row before, by bookmark

    grid.setCurrentIndex(grid.model()->index(1, 5));
    QCOMPARE(rs.AbsolutePosition(), 1);
    QCOMPARE(grid.columnText(QStringLiteral("Name")), QStringLiteral("R2"));
    QCOMPARE(changes.count(), 2);
  }

  void columnTextIsWrittenByTheNextMove() {
    auto db = list({1, 2});
    Recordset rs(db, ListRecordSource(QStringLiteral("ORDER BY DisplayOrder")));
    DataGrid grid;
    grid.setRecordset(&rs);
    grid.setAllowUpdate(true);
    grid.setColumnText(QStringLiteral("Observed"), QStringLiteral("Y"));
    QCOMPARE(grid.model()->index(0, 2).data().toString(), QStringLiteral("Y"));
    rs.MoveNext();
    rs.Requery();
    QCOMPARE(grid.model()->index(0, 2).data().toString(), QStringLiteral("Y"));
    QVERIFY(grid.model()->setData(grid.model()->index(1, 1), QStringLiteral("Y")));
    QCOMPARE(rs.AbsolutePosition(), 1);
    grid.setAllowUpdate(false);
    QVERIFY(!(grid.model()->flags(grid.model()->index(0, 1)) & Qt::ItemIsEditable));
  }

  void addNewShowsAndKeepsTheNewRow() {
    auto db = list({1});
    Recordset rs(db, QStringLiteral("Objects"));
    DataGrid grid;
    grid.setRecordset(&rs);
    rs.AddNew();
    QCOMPARE(grid.model()->rowCount(), 2);
    grid.setColumnText(QStringLiteral("Name"), QStringLiteral("Added"));
    QCOMPARE(grid.columnText(QStringLiteral("Name")), QStringLiteral("Added"));
    rs.MoveLast();
    QCOMPARE(grid.model()->rowCount(), 2);
    QCOMPARE(grid.currentIndex().row(), 1);
    rs.Delete();
    QCOMPARE(grid.model()->rowCount(), 1);
  }

  void layoutAndRowHeight() {
    auto db = fixture::catalog(dir_.filePath(QStringLiteral("c.mdb")));
    fixture::insert(*db, QStringLiteral("MessierObjects"), {"Messier", 1, "Crab", "", "", "8.4", "", 5, 34.5, "+", 22, 1});
    Recordset rs(db, QStringLiteral("SELECT ObjectNum, Name, Type, Constellation, Magnitude, Info, "
                                    "RAHour, RAMinute, DecSign, DecDeg, DecMinute, Category From "
                                    "MessierObjects WHERE True ORDER BY ObjectNum;"));
    DataGrid grid;
    grid.setRecordset(&rs);
    grid.applyLayout(PageByTab(0).editListColumns);
    QAbstractItemModel* m = grid.model();
    QCOMPARE(m->headerData(0, Qt::Horizontal).toString(), QStringLiteral("Number"));
    QCOMPARE(m->headerData(1, Qt::Horizontal).toString(), QStringLiteral("Name"));
    QCOMPARE(m->headerData(8, Qt::Horizontal).toString(), QString());
    QVERIFY(grid.isColumnHidden(11));
    QCOMPARE(grid.columnWidth(1), TwipsToPixels(2300, &grid));
    QVERIFY(m->index(0, 0).data(Qt::TextAlignmentRole).value<Qt::Alignment>() & Qt::AlignRight);
    QCOMPARE(m->index(0, 7).data().toString(), QStringLiteral("34.5"));

    const int h = TwipsToPixels(220, &grid);
    QCOMPARE(grid.rowHeight(0), h);
    grid.verticalHeader()->resizeSection(0, h * 3);
    QCOMPARE(grid.rowHeight(0), h);
  }

  void farMovesCentreTheRow_data() {
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("target");
    QTest::addColumn<bool>("centred");
    QTest::newRow("far down") << 0 << 150 << true;
    QTest::newRow("far up") << 180 << 60 << true;
    QTest::newRow("one row past the bottom") << 0 << -1 << false;
  }

  void farMovesCentreTheRow() {
    QFETCH(int, start);
    QFETCH(int, target);
    QFETCH(bool, centred);
    QList<int> orders;
    for (int i = 1; i <= 200; ++i) orders << i;
    auto db = list(orders);
    Recordset rs(db, ListRecordSource(QStringLiteral("ORDER BY DisplayOrder")));
    DataGrid grid;
    grid.resize(600, 300);
    grid.setRecordset(&rs);
    grid.show();
    QVERIFY(QTest::qWaitForWindowExposed(&grid));
    rs.setAbsolutePosition(start);
    const int visibleRows = grid.viewport()->height() / grid.rowHeightPixels();
    QVERIFY(visibleRows > 3);
    if (target < 0) target = grid.rowAt(grid.viewport()->height() - 1) + 1;
    rs.setAbsolutePosition(target);
    const QRect r = grid.visualRect(grid.model()->index(target, 0));
    QVERIFY(grid.viewport()->rect().contains(r));
    const int h = grid.viewport()->height();
    // The grid scrolls by whole rows, so "in the middle" is the middle half of the view.
    if (centred) QVERIFY(r.top() >= h / 4 && r.bottom() <= h * 3 / 4);
    else QVERIFY(r.bottom() >= h - 2 * grid.rowHeightPixels());
  }

  void bookmarkSelection() {
    auto db = list({1, 2, 3});
    Recordset rs(db, QStringLiteral("Objects"));
    DataGrid grid;
    grid.setRecordset(&rs);
    rs.MoveLast();
    grid.addSelectedBookmark(rs.Bookmark());
    rs.MoveFirst();
    grid.addSelectedBookmark(rs.Bookmark());
    QCOMPARE(grid.selectedBookmarkCount(), 2);
    QVERIFY(grid.model()->index(2, 0).data(RecordsetModel::MarkedRole).toBool());
    QVERIFY(!grid.model()->index(1, 0).data(RecordsetModel::MarkedRole).toBool());
    grid.removeSelectedBookmark(0);
    QCOMPARE(grid.selectedBookmarks(), QList<qint64>({rs.Bookmark()}));
    grid.clearSelectedBookmarks();
    QCOMPARE(grid.selectedBookmarkCount(), 0);
  }

  void signalsOfTheMouse() {
    auto db = list({1, 2});
    Recordset rs(db, QStringLiteral("Objects"));
    DataGrid grid;
    grid.resize(600, 300);
    grid.setRecordset(&rs);
    grid.show();
    QVERIFY(QTest::qWaitForWindowExposed(&grid));
    QSignalSpy press(&grid, &DataGrid::gridMousePressed);
    QSignalSpy head(&grid, &DataGrid::headClicked);
    QSignalSpy dbl(&grid, &DataGrid::gridDoubleClicked);
    const QRect cell = grid.visualRect(grid.model()->index(1, 4));
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, Qt::ShiftModifier, cell.center());
    QCOMPARE(press.count(), 1);
    QCOMPARE(press.first().at(1).value<Qt::KeyboardModifiers>(), Qt::ShiftModifier);
    QCOMPARE(rs.AbsolutePosition(), 1);
    QTest::qWait(QApplication::doubleClickInterval() + 50);
    QHeaderView* hh = grid.horizontalHeader();
    const QPoint at(hh->sectionViewportPosition(3) + hh->sectionSize(3) / 2, hh->height() / 2);
    QCOMPARE(hh->logicalIndexAt(at), 3);
    QTest::mousePress(hh->viewport(), Qt::LeftButton, Qt::NoModifier, at);
    QTest::mouseRelease(hh->viewport(), Qt::LeftButton, Qt::NoModifier, at);
    QCOMPARE(head.count(), 1);
    QCOMPARE(head.first().at(0).toInt(), 3);
    QTest::qWait(QApplication::doubleClickInterval() + 50);
    QTest::mouseDClick(grid.viewport(), Qt::LeftButton, Qt::NoModifier, cell.center());
    QCOMPARE(dbl.count(), 1);
  }
};

QTEST_MAIN(TestDataGrid)
#include "tst_datagrid.moc"
