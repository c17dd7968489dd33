#include <QHeaderView>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include "catalog/catalogpages.h"
#include "catalog/datagrid.h"
#include "core/twips.h"
#include "fixturedb.h"
#include "lists/listsort.h"

namespace {

// A list document of rows 1..n in display order, in a grid of 600 by 300 pixels.
struct Grid {
  Grid(const QTemporaryDir& dir, int n, bool shown = false)
      : rs(fixture::list(dir.filePath(QStringLiteral("g%1.tlf").arg(++count)), rows(n)),
           ListRecordSource(QStringLiteral("ORDER BY DisplayOrder"))) {
    grid.resize(600, 300);
    grid.setRecordset(&rs);
    if (shown) {
      grid.show();
      QVERIFY(QTest::qWaitForWindowExposed(&grid));
    }
  }
  static QList<int> rows(int n) {
    QList<int> out;
    for (int i = 1; i <= n; ++i) out << i;
    return out;
  }
  QString cell(int row, int column) const {
    return grid.model()->index(row, column).data().toString();
  }
  static inline int count = 0;
  Recordset rs;
  DataGrid grid;
};

}  // namespace

class TestDataGrid : public QObject {
  Q_OBJECT
  QTemporaryDir dir_;

 private slots:
  void gridAndRecordsetFollowEachOther() {
    Grid g(dir_, 4);
    QSignalSpy changes(&g.grid, &DataGrid::rowColChange);
    QCOMPARE(g.grid.model()->rowCount(), 4);
    QCOMPARE(g.grid.currentIndex().row(), 0);
    g.rs.MoveLast();
    QCOMPARE(g.grid.currentIndex().row(), 3);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes.last().at(0).toLongLong(), 1);  // the row before, by bookmark
    g.grid.setCurrentIndex(g.grid.model()->index(1, 5));
    QCOMPARE(g.rs.AbsolutePosition(), 1);
    QCOMPARE(g.grid.columnText(QStringLiteral("Name")), QStringLiteral("R2"));
    QCOMPARE(changes.count(), 2);
  }

  // A typed cell is written by the next move; a new row shows, and stays the current one,
  // until it is deleted.
  void editing() {
    Grid g(dir_, 2);
    QAbstractItemModel* m = g.grid.model();
    g.grid.setAllowUpdate(true);
    g.grid.setColumnText(QStringLiteral("Observed"), QStringLiteral("Y"));
    QCOMPARE(g.cell(0, 2), QStringLiteral("Y"));
    g.rs.MoveNext();
    g.rs.Requery();
    QCOMPARE(g.cell(0, 2), QStringLiteral("Y"));
    QVERIFY(m->setData(m->index(1, 1), QStringLiteral("Y")));
    QCOMPARE(g.rs.AbsolutePosition(), 1);
    g.rs.AddNew();
    QCOMPARE(m->rowCount(), 3);
    g.grid.setColumnText(QStringLiteral("Name"), QStringLiteral("Added"));
    QCOMPARE(g.grid.columnText(QStringLiteral("Name")), QStringLiteral("Added"));
    g.rs.MoveLast();
    QCOMPARE(m->rowCount(), 3);
    QCOMPARE(g.grid.currentIndex().row(), 2);
    g.rs.Delete();
    QCOMPARE(m->rowCount(), 2);
    g.grid.setAllowUpdate(false);
    QVERIFY(!(m->flags(m->index(0, 1)) & Qt::ItemIsEditable));
  }

  void layoutAndRowHeight() {
    auto db = fixture::catalog(dir_.filePath(QStringLiteral("c.mdb")));
    fixture::insert(*db, QStringLiteral("MessierObjects"),
                    {"Messier", 1, "Crab", "", "", "8.4", "", 5, 34.5, "+", 22, 1});
    Recordset rs(db, QStringLiteral("SELECT ObjectNum, Name, Type, Constellation, Magnitude, Info, "
                                    "RAHour, RAMinute, DecSign, DecDeg, DecMinute, Category From "
                                    "MessierObjects WHERE True ORDER BY ObjectNum;"));
    DataGrid grid;
    grid.setRecordset(&rs);
    grid.applyLayout(PageByTab(0).editListColumns);
    // Captions and widths are checked through the list window's grid.
    QAbstractItemModel* m = grid.model();
    QVERIFY(grid.isColumnHidden(11));
    QCOMPARE(PixelsToTwips(grid.logicalDpiY() / 2.0, &grid), 720);
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
    Grid g(dir_, 200, true);
    DataGrid& grid = g.grid;
    g.rs.setAbsolutePosition(start);
    const int h = grid.viewport()->height();
    QVERIFY(h / grid.rowHeightPixels() > 3);
    if (target < 0) target = grid.rowAt(h - 1) + 1;
    g.rs.setAbsolutePosition(target);
    const QRect r = grid.visualRect(grid.model()->index(target, 0));
    QVERIFY(grid.viewport()->rect().contains(r));
    // The grid scrolls by whole rows, so "in the middle" is the middle half of the view.
    if (centred) QVERIFY(r.top() >= h / 4 && r.bottom() <= h * 3 / 4);
    else QVERIFY(r.bottom() >= h - 2 * grid.rowHeightPixels());
  }
};

QTEST_MAIN(TestDataGrid)
#include "tst_datagrid.moc"
