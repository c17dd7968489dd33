#include <QtTest>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

#include "catalog/catalogbrowser.h"
#include "catalog/database.h"
#include "catalog/datagrid.h"
#include "catalog/recordset.h"
#include "charts/hhc.h"
#include "charts/hhclogic.h"
#include "charts/skywidget.h"
#include "core/apperror.h"
#include "scope/scopecontrol.h"
#include "support/scopesim.h"
#include "support/testenv.h"

namespace {

constexpr int kMessier = 0, kCaldwell = 1, kDoubles = 7;
constexpr int kMessierSet = 4;

// A hand control window on the shipped catalogs at the default site, 20:30 local time.
struct Rig {
  Rig() {
    env.fixedOffsetHours = 9;
    hhc = std::make_unique<HHC>(*env.state, link);
    hhc->show();
    hhc->Form_Activate();
  }
  AppState& state() { return *env.state; }
  QLineEdit* edit(const char* name) const { return hhc->findChild<QLineEdit*>(QLatin1String(name)); }
  QString text(const char* name) const { return edit(name)->text(); }
  void click(const char* name) const { hhc->findChild<QPushButton*>(QLatin1String(name))->click(); }
  QPointF marker() const { return {hhc->sky()->chart().MarkerX, hhc->sky()->chart().MarkerY}; }
  Recordset* page(int tab) const { return hhc->browser()->pageRecordset(tab); }
  bool filterLabel() const { return hhc->findChild<QLabel*>("lblFilter")->isVisibleTo(hhc.get()); }

  TestEnv env;
  ScopeLink link;
  std::unique_ptr<HHC> hhc;
};

}  // namespace

class TestHHC : public QObject {
  Q_OBJECT
 private slots:
  // A null field shows as one empty box of twelve; a null Messier name, or a null category on
  // any page, stops with the old error.
  void nullRule_data() {
    QTest::addColumn<QString>("field");
    QTest::addColumn<int>("tab");
    QTest::addColumn<QString>("result");
    const QString error = QStringLiteral("Invalid use of Null - 94");
    QTest::newRow("name, Caldwell") << "Name" << kCaldwell << "1 of 12";
    QTest::newRow("info, double stars") << "Info" << kDoubles << "1 of 12";
    QTest::newRow("name, Messier") << "Name" << kMessier << error;
    QTest::newRow("category") << "Category" << kCaldwell << error;
  }
  void nullRule() {
    QFETCH(QString, field);
    QFETCH(int, tab);
    QFETCH(QString, result);
    auto db = Database::open(":memory:", Database::Mode::ReadWrite);
    db->exec("CREATE TABLE T (Category, ObjectNum, Name, Type, Constellation, Magnitude, Info, "
             "RAHour, RAMinute, DecSign, DecDeg, DecMinute)");
    db->exec("INSERT INTO T VALUES ('C', 1, 'N', 'T', 'Ori', '5', 'I', 5, 30, '-', 5, 23)");
    db->exec(QStringLiteral("UPDATE T SET %1 = NULL").arg(field));
    Recordset rs(db, QStringLiteral("T"));
    try {
      const QStringList texts = HHCDetailTexts(rs, tab);
      QCOMPARE(QStringLiteral("%1 of %2").arg(texts.count(QString())).arg(texts.size()), result);
    } catch (const AppError& e) {
      QCOMPARE(e.text(), result);
    }
  }

  // The marker follows the page in view; a page filtered empty blanks the panel and leaves it.
  // Ctrl+Tab and Ctrl+Shift+Tab go round the pages.
  void detailsAndMarker() {
    Rig rig;
    CatalogBrowser* tabs = rig.hhc->browser();
    QTest::keyClick(tabs->searchBox(0), Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(tabs->currentIndex(), kDoubles);
    QTest::keyClick(tabs->searchBox(kDoubles), Qt::Key_Tab, Qt::ControlModifier);
    QCOMPARE(tabs->currentIndex(), kMessier);
    QCOMPARE(rig.text("Text2") + ' ' + rig.text("Text3"), QStringLiteral("1 Crab Nebula; Taurus A"));
    QVERIFY(rig.text("Text13").toDouble() > 0);
    const QPointF crab = rig.marker();
    QVERIFY(crab != QPointF(3000, 3000));
    tabs->setCurrentIndex(kCaldwell);
    QCOMPARE(rig.text("Text1"), QStringLiteral("Caldwell"));
    QVERIFY(rig.marker() != crab);
    tabs->setCurrentIndex(kMessier);
    rig.state().Pages[kMessierSet].Where = QStringLiteral("WHERE False");
    tabs->bindPages();
    rig.hhc->ShowDetails();
    for (int n = 1; n <= 13; ++n)
      QCOMPARE(rig.text(qPrintable(QStringLiteral("Text%1").arg(n))), QString());
    QCOMPARE(rig.marker(), crab);  // the Messier page's, left where it was
    // Nothing is in view: GoTo sends nothing and says nothing.
    rig.state().settings.CommPort = QStringLiteral("/dev/tavorine-no-such-port");
    rig.click("cmdGoto");
    QVERIFY(rig.env.prompter.entries.isEmpty());
  }

  // The filter: its button, its label, a change made in another window, the 21st minute.
  void filter() {
    Rig rig;
    AppState& s = rig.state();
    for (PageQuery& q : s.Pages) q.Filter = QStringLiteral("WHERE True");
    s.filter.FltAlt = true;
    s.filter.FltMinAlt = 20;
    bool cancel = true;
    rig.hhc->showFilterDialog = [&](QWidget*) {
      QVERIFY(!rig.hhc->timer()->isActive());
      s.FilterCancelled = cancel;
    };
    rig.click("cmdFilterAlt");
    QVERIFY(!s.FilterOn && !rig.filterLabel());
    cancel = false;
    rig.click("cmdFilterAlt");
    QVERIFY(s.FilterOn && rig.filterLabel() && rig.hhc->timer()->isActive());
    const int above20 = rig.page(kMessier)->RecordCount();
    QVERIFY(above20 > 0 && above20 < 110);

    // A stricter filter waits for the 21st minute.
    s.filter.FltMinAlt = 60;
    rig.hhc->setAltitudeTicks(19);
    rig.hhc->timerAltitude_Timer();
    QCOMPARE(rig.page(kMessier)->RecordCount(), above20);
    rig.hhc->timerAltitude_Timer();
    QVERIFY(rig.page(kMessier)->RecordCount() < above20);
    QCOMPARE(rig.hhc->altitudeTicks(), qint16(0));

    // Switched off in the list editor: noticed at the next activation; the button turns it off.
    s.FilterOn = false;
    rig.hhc->Form_Activate();
    QVERIFY(!rig.filterLabel() && rig.page(kMessier)->RecordCount() == 110);
    s.FilterOn = true;
    rig.click("cmdFilterAlt");
    QVERIFY(!s.FilterOn && !rig.filterLabel() && rig.page(kMessier)->RecordCount() == 110);
    QVERIFY(rig.env.prompter.entries.isEmpty());
  }

  // Against the telescope simulator on a pseudo-terminal; the limits' alert is the GoTo flow
  // test's.
  void telescope() {
    ScopeSim sim;
    QVERIFY(sim.start(QStringLiteral("GT")));
    Rig rig;
    ProgramSettings& s = rig.state().settings;
    s.ScopeType = QStringLiteral("GT");
    s.CommPort = sim.address;
    s.UseAltLimit = false;

    // A double click on the Crab Nebula's row (RA 5 34.5, Dec +22 0.9).
    DataGrid* grid = rig.hhc->browser()->pageGrid(kMessier);
    QVERIFY(QTest::qWaitForWindowExposed(rig.hhc.get()));
    const QRect cell = grid->visualRect(grid->model()->index(0, 1));
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
    QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
    QCOMPARE(sim.received(), QByteArray("R3B77,0FA7"));

    // Quick GoTo with seconds and the sign flipped: 5 34 30, -22 01 00.
    const char* fields[] = {"txtGotoRAHour", "txtGotoRAMin", "txtGoToRASec",
                            "txtGotoDecDeg", "txtGotoDecMin", "txtGotoDecSec"};
    const QStringList values = {"5", "34", "30", "22", "1", "0"};
    for (int i = 0; i < 6; ++i) rig.edit(fields[i])->setText(values[i]);
    rig.click("cmdDecSign");
    rig.click("cmdQuickGoto");
    QCOMPARE(sim.received(), QByteArray("R3B77,0FA7R3B77,F057"));

    rig.click("cmdGetRA");
    QCOMPARE((QStringList{rig.text("txtRAHour"), rig.text("txtRAMin"), rig.text("txtDecSign"),
                          rig.text("txtDecDeg"), rig.text("txtDecMin")}),
             (QStringList{"5", "34.5", "-", "22", "1"}));
    QVERIFY(rig.env.prompter.entries.isEmpty());
  }
};

QTEST_MAIN(TestHHC)
#include "tst_hhc.moc"
