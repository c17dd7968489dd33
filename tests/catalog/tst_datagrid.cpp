#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include "catalog/datagrid.h"
#include "fixturedb.h"
#include "lists/listsort.h"

namespace {

// A list document of rows 1..n in display order, in a grid of 600 by 300 pixels.
struct Grid {
  Grid(const QTemporaryDir& dir, int n)
      : rs(fixture::list(dir.filePath(QStringLiteral("g%1.tlf").arg(++count)), rows(n)),
           ListRecordSource(QStringLiteral("ORDER BY DisplayOrder"))) {
    grid.resize(600, 300);
    grid.setRecordset(&rs);
  }
  static QList<int> rows(int n) {
    QList<int> out;
    for (int i = 1; i <= n; ++i) out << i;
    return out;
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
  // The grid and its recordset follow each other. A typed cell is written by the next move; a
  // new row shows, and stays the current one, until it is deleted.
  void followAndEdit() {
    Grid g(dir_, 4);
    QAbstractItemModel* m = g.grid.model();
    QSignalSpy changes(&g.grid, &DataGrid::rowColChange);
    g.rs.MoveLast();
    QCOMPARE(g.grid.currentIndex().row(), 3);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes.last().at(0).toLongLong(), 1);  // the row before, by bookmark
    g.grid.setCurrentIndex(m->index(1, 5));
    QCOMPARE(g.rs.AbsolutePosition(), 1);
    QCOMPARE(g.grid.columnText(QStringLiteral("Name")), QStringLiteral("R2"));
    QCOMPARE(changes.count(), 2);

    g.grid.setAllowUpdate(true);
    g.grid.setColumnText(QStringLiteral("RAMinute"), QStringLiteral("34.5"));
    g.rs.MoveNext();
    g.rs.Requery();
    QCOMPARE(m->index(1, 11).data().toString(), QStringLiteral("34.5"));
    g.rs.AddNew();
    g.grid.setColumnText(QStringLiteral("Name"), QStringLiteral("Added"));
    g.rs.MoveLast();
    QCOMPARE(m->rowCount(), 5);
    QCOMPARE(g.grid.currentIndex().row(), 4);
    g.rs.Delete();
    QCOMPARE(m->rowCount(), 4);
    g.grid.setAllowUpdate(false);
    QVERIFY(!(m->flags(m->index(0, 1)) & Qt::ItemIsEditable));
  }

  // A step onto the row just past the bottom scrolls by that row; a far jump centres the row
  // instead of leaving it on the bottom edge.
  void farMovesCentreTheRow() {
    Grid g(dir_, 200);
    DataGrid& grid = g.grid;
    grid.show();
    QVERIFY(QTest::qWaitForWindowExposed(&grid));
    const int h = grid.viewport()->height();
    auto shownAt = [&](int row) {
      g.rs.setAbsolutePosition(row);
      const QRect r = grid.visualRect(grid.model()->index(row, 0));
      return grid.viewport()->rect().contains(r) ? r : QRect();
    };
    const QRect step = shownAt(grid.rowAt(h - 1) + 1);
    QVERIFY(step.isValid() && step.bottom() >= h - 2 * grid.rowHeightPixels());
    // The grid scrolls by whole rows, so "in the middle" is the middle half of the view.
    const QRect far = shownAt(150);
    QVERIFY(far.isValid() && far.top() >= h / 4 && far.bottom() <= h * 3 / 4);
  }
};

QTEST_MAIN(TestDataGrid)
#include "tst_datagrid.moc"
