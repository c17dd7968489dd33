#include <QtTest>

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <cmath>

#include "catalog/datagrid.h"
#include "catalog/recordset.h"
#include "charts/skywidget.h"
#include "core/apperror.h"
#include "core/mainwindow.h"
#include "core/numtext.h"
#include "core/twips.h"
#include "lists/listview.h"
#include "lists/listwindow.h"
#include "scope/scopecontrol.h"
#include "support/listdocument.h"
#include "support/scopesim.h"
#include "support/testenv.h"

namespace {

// A place in tonight's sky of the test clock: hours east of the meridian and a declination.
SkyPosition skyAt(const AppState& state, double hoursFromMeridian, double dec) {
  const double lst = std::fmod(std::fmod(SiderealDegreesNow(state), 360) + 360, 360) / 15;
  double ra = std::fmod(lst + hoursFromMeridian + 24, 24);
  const double h = std::floor(ra);
  const double m = std::round((ra - h) * 600) / 10;
  return SkyPosition::of(h, m, dec < 0 ? QStringLiteral("-") : QStringLiteral("+"),
                         std::floor(std::fabs(dec)), 0);
}

// Mizar high, Albireo and Deneb up, Canopus below the horizon.
std::vector<ListRow> stars() {
  TestEnv probe;
  const AppState& s = *probe.state;
  return {NamedRow(QStringLiteral("Mizar"), skyAt(s, 0, 54)),
          NamedRow(QStringLiteral("Albireo"), skyAt(s, 1, 27)),
          NamedRow(QStringLiteral("Canopus"), skyAt(s, -1, -70)),
          NamedRow(QStringLiteral("Deneb"), skyAt(s, 2, 45))};
}

// A main window and one list window on a document of the given rows.
struct Rig {
  TestEnv env;
  std::unique_ptr<TavorineListMain> main;
  std::unique_ptr<CurrentList> list;
  QString path;

  explicit Rig(const std::vector<ListRow>& rows = stars(),
               ListVariant variant = ListVariant::CurrentList) {
    path = env.path(QStringLiteral("tonight.tlf"));
    MakeListDocument(*env.state, path, rows);
    main = std::make_unique<TavorineListMain>(*env.state);
    main->findChild<QLineEdit*>(QStringLiteral("txtFileName"))->setText(path);
    main->findChild<QLineEdit*>(QStringLiteral("txtFileTitle"))->setText(QStringLiteral("tonight"));
    list = std::make_unique<CurrentList>(variant, *env.state, *main);
    list->Form_Activate();
  }
  AppState& state() { return *env.state; }
  Recordset& rs() { return *list->datPrimary(); }
  DataGrid* grid() { return list->grdDataGrid(); }
  QString cell(int row, int column) { return grid()->model()->index(row, column).data().toString(); }
  QString counter() const {
    return list->findChild<QLineEdit*>(QStringLiteral("txtRecordCounter"))->text();
  }
  QString field(int n) const {
    return list->findChild<QLineEdit*>(QStringLiteral("Text%1").arg(n))->text();
  }
  void key(int k, Qt::KeyboardModifiers mods = Qt::NoModifier) {
    QTest::keyClick(grid(), Qt::Key(k), mods);
  }
  QStringList names() {
    QStringList out;
    for (int r = 0; r < rs().RecordCount(); ++r) out << rs().rowValue(r, 5).toString();
    return out;
  }
  void show() {
    list->show();
    QVERIFY(QTest::qWaitForWindowExposed(list.get()));
  }
};

// Answers the next ClearGoto dialog with a button, or with its close box for "".
void answerClearGoto(const QString& button) {
  QTimer::singleShot(0, [button] {
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    QVERIFY(dialog);
    QCOMPARE(dialog->windowTitle(), QStringLiteral("Confirm"));
    if (button.isEmpty()) dialog->reject();
    else dialog->findChild<QPushButton*>(button)->click();
  });
}

}  // namespace

class TestListWindow : public QObject {
  Q_OBJECT
 private slots:
  // Opening, stepping to both ends (a beep past them), and the chart marker on the way.
  void opensAndSteps() {
    Rig rig;
    CurrentList& w = *rig.list;
    const std::vector<ListRow> rows = stars();
    QCOMPARE(w.windowTitle(), QStringLiteral("Objects - tonight"));
    QCOMPARE(w.findChild<QLineEdit*>(QStringLiteral("txtDataSource"))->text(), rig.path);
    QCOMPARE(w.findChild<QLineEdit*>(QStringLiteral("txtObserverTitle"))->text(),
             QStringLiteral("tonight"));
    QCOMPARE(rig.counter(), QStringLiteral(" Object: 1 of 4"));
    QCOMPARE(rig.field(3), QStringLiteral("Mizar"));
    QCOMPARE(rig.field(13), PlainNumber(AltitudeNow(rig.state(), rows[0].position)));
    QCOMPARE(w.timerAltitude()->interval(), 60000);
    QVERIFY(w.timerAltitude()->isActive());
    QCOMPARE(int(w.mapStars().size()), 5044);
    QVERIFY(!w.firstActivatePending());
    QCOMPARE(rig.grid()->columnWidth(5), 2300 / 15);
    QVERIFY(!rig.grid()->allowUpdate());

    const ChartConstants& c = w.Sky()->constants();
    const SkyChart& chart = w.Sky()->chart();
    auto marker = [&] { return QPointF(chart.MarkerX, chart.MarkerY); };
    auto expected = [&](int i) {
      const SkyPosition p = rows[size_t(i)].position;
      return ProjectSky(c, AltitudeNow(rig.state(), p), AzimuthNow(rig.state(), p));
    };
    QCOMPARE(marker(), expected(0));
    w.cmdPrevious_Click();
    QCOMPARE(rig.env.prompter.beeps, 1);
    QCOMPARE(rig.counter(), QStringLiteral(" Object: 1 of 4"));
    w.cmdNext_Click();
    QCOMPARE(marker(), expected(1));
    QCOMPARE(rig.field(13), PlainNumber(AltitudeNow(rig.state(), rows[1].position)));
    // Canopus is below the horizon: the marker stays where it was stored.
    w.cmdNext_Click();
    QVERIFY(AltitudeNow(rig.state(), rows[2].position) <= 0);
    QCOMPARE(marker(), expected(1));
    rig.grid()->setCurrentIndex(rig.grid()->model()->index(3, 5));
    QCOMPARE(marker(), expected(3));
    QCOMPARE(rig.counter(), QStringLiteral(" Object: 4 of 4"));
    QCOMPARE(rig.env.prompter.beeps, 1);
    w.cmdNext_Click();
    QCOMPARE(rig.env.prompter.beeps, 2);
    QCOMPARE(rig.counter(), QStringLiteral(" Object: 4 of 4"));
    QCOMPARE(rig.field(3), QStringLiteral("Deneb"));
    QVERIFY(rig.env.prompter.entries.isEmpty());
  }

  void keys_data() {
    QTest::addColumn<int>("startRow");
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("ctrl");
    QTest::addColumn<int>("endRow");
    QTest::newRow("end") << 1 << int(Qt::Key_End) << false << 3;
    QTest::newRow("ctrl end") << 1 << int(Qt::Key_End) << true << 3;
    QTest::newRow("home") << 2 << int(Qt::Key_Home) << false << 0;
    QTest::newRow("up") << 2 << int(Qt::Key_Up) << false << 1;
    QTest::newRow("page up") << 2 << int(Qt::Key_PageUp) << false << 1;
    QTest::newRow("ctrl up") << 2 << int(Qt::Key_Up) << true << 0;
    QTest::newRow("down") << 1 << int(Qt::Key_Down) << false << 2;
    QTest::newRow("page down") << 1 << int(Qt::Key_PageDown) << false << 2;
    QTest::newRow("ctrl page down") << 1 << int(Qt::Key_PageDown) << true << 3;
  }
  void keys() {
    QFETCH(int, startRow);
    QFETCH(int, key);
    QFETCH(bool, ctrl);
    QFETCH(int, endRow);
    Rig rig;
    rig.rs().setAbsolutePosition(startRow);
    rig.key(key, ctrl ? Qt::ControlModifier : Qt::NoModifier);
    QCOMPARE(rig.rs().AbsolutePosition(), endRow);
    QCOMPARE(rig.counter(), QStringLiteral(" Object: %1 of 4").arg(endRow + 1));
    QCOMPARE(rig.grid()->currentIndex().row(), endRow);
  }

  void emptyList() {
    Rig rig(std::vector<ListRow>{});
    QCOMPARE(rig.counter(), QString());
    rig.list->cmdNext_Click();
    rig.list->cmdPrevious_Click();
    rig.key(Qt::Key_End);
    rig.list->cmdObserved_Click();
    rig.list->cmdGoto_Click();
    rig.list->cmdCDC_Click();
    rig.list->grdDataGrid_HeadClick(5);
    rig.list->timerAltitude_Timer();
    QCOMPARE(rig.env.prompter.beeps, 0);
    QVERIFY2(rig.env.prompter.entries.isEmpty(), qPrintable(rig.env.prompter.texts().join('|')));
    QCOMPARE(rig.counter(), QString());
    QCOMPARE(rig.field(13), QString());
  }

  void observedToggles() {
    Rig rig;
    rig.list->cmdNext_Click();
    rig.list->cmdObserved_Click();
    QCOMPARE(ListColumn(rig.path, "Observed"), (QStringList{"<null>", "Y", "<null>", "<null>"}));
    QCOMPARE(rig.cell(1, 2), QStringLiteral("Y"));
    QCOMPARE(rig.counter(), QStringLiteral(" Object: 2 of 4"));
    rig.list->cmdObserved_Click();
    QCOMPARE(ListColumn(rig.path, "Observed"), (QStringList{"<null>", " ", "<null>", "<null>"}));
    QVERIFY(!rig.grid()->allowUpdate());
    rig.list->cmdObserved_Click();
    QCOMPARE(ListColumn(rig.path, "Observed")[1], QStringLiteral("Y"));

    // A write that fails is reported once and leaves the grid read-only, the row showing what
    // the file holds, and the window free to move on.
    {
      Database other(rig.path, Database::Mode::ReadWrite);
      other.exec(QStringLiteral("CREATE TRIGGER refuse BEFORE UPDATE ON Objects "
                                "BEGIN SELECT RAISE(ABORT, 'attempt to write a readonly database'); END"));
    }
    rig.env.prompter.clear();
    rig.list->cmdObserved_Click();
    QCOMPARE(rig.env.prompter.entries.size(), 1);
    QVERIFY(!rig.grid()->allowUpdate());
    QCOMPARE(rig.cell(1, 2), QStringLiteral("Y"));
    rig.list->cmdNext_Click();
    rig.list->cmdPrevious_Click();
    rig.list->cmdPrevious_Click();
    QCOMPARE(rig.env.prompter.entries.size(), 1);
    QCOMPARE(rig.counter(), QStringLiteral(" Object: 1 of 4"));
  }

  void clearGoto_data() {
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("choice");
    QTest::addColumn<QStringList>("marks");
    QTest::newRow("this") << "cmdThis" << "This" << QStringList{"Y", " ", "Y", "Y"};
    QTest::newRow("all") << "Command1" << "All" << QStringList{" ", " ", " ", " "};
    QTest::newRow("cancel") << "cmdCancel" << "None" << QStringList{"Y", "Y", "Y", "Y"};
    QTest::newRow("close box") << "" << "None" << QStringList{"Y", "Y", "Y", "Y"};
  }
  void clearGoto() {
    QFETCH(QString, button);
    QFETCH(QString, choice);
    QFETCH(QStringList, marks);
    std::vector<ListRow> rows = stars();
    for (ListRow& r : rows) r.gotoMark = QStringLiteral("Y");
    Rig rig(rows);
    rig.state().ClearGotoChoice = QStringLiteral("All");  // left over from an earlier time
    rig.list->cmdNext_Click();
    answerClearGoto(button);
    rig.list->cmdClearGoto_Click();
    QCOMPARE(rig.state().ClearGotoChoice, choice);
    QCOMPARE(ListColumn(rig.path, "Goto"), marks);
    QCOMPARE(rig.counter(), QStringLiteral(" Object: %1 of 4").arg(choice == "All" ? 1 : 2));
  }

  void headerSort_data() {
    QTest::addColumn<QList<int>>("clicks");
    QTest::addColumn<QString>("sortKey");
    QTest::addColumn<QStringList>("names");
    const QString dec = QStringLiteral("ORDER BY (val(DecSign & '1') * (DecDeg + DecMinute/60)) ");
    QTest::newRow("name") << QList<int>{5} << "ORDER BY Name"
                          << QStringList{"Albireo", "Canopus", "Deneb", "Mizar"};
    QTest::newRow("name twice") << QList<int>{5, 5} << "ORDER BY Name DESC"
                                << QStringList{"Mizar", "Deneb", "Canopus", "Albireo"};
    QTest::newRow("dec north first") << QList<int>{13} << dec + "DESC"
                                     << QStringList{"Mizar", "Deneb", "Albireo", "Canopus"};
    QTest::newRow("dec minutes then sign") << QList<int>{14, 12} << dec
                                           << QStringList{"Canopus", "Albireo", "Deneb", "Mizar"};
    QTest::newRow("number head goes descending") << QList<int>{0} << "ORDER BY DisplayOrder Desc"
                                                 << QStringList{"Deneb", "Canopus", "Albireo", "Mizar"};
    QTest::newRow("observed blanks first") << QList<int>{2} << "ORDER BY Observed, DisplayOrder"
                                           << QStringList{"Mizar", "Canopus", "Deneb", "Albireo"};
  }
  void headerSort() {
    QFETCH(QList<int>, clicks);
    QFETCH(QString, sortKey);
    QFETCH(QStringList, names);
    std::vector<ListRow> rows = stars();
    rows[1].observed = QStringLiteral("Y");
    for (size_t i : {0, 2, 3}) rows[i].observed = QStringLiteral(" ");
    Rig rig(rows);
    rig.list->cmdNext_Click();
    for (int c : clicks) rig.list->grdDataGrid_HeadClick(c);
    QCOMPARE(rig.list->sortState().ListSortKey, sortKey);
    QCOMPARE(rig.names(), names);
    QCOMPARE(rig.counter(), QStringLiteral(" Object: 1 of 4"));
    QCOMPARE(rig.field(3), names.first());
    QCOMPARE(rig.grid()->model()->headerData(0, Qt::Horizontal).toString(), QStringLiteral("#"));
    QCOMPARE(ListColumn(rig.path, "DisplayOrder"), (QStringList{"1", "2", "3", "4"}));
  }

  void sortKeptAfterEditing() {
    Rig rig;
    rig.list->grdDataGrid_HeadClick(5);
    rig.list->cmdNext_Click();
    rig.list->cmdNext_Click();
    bool timerStopped = false;
    bool pointerHeld = true;
    rig.list->openEditor = [&](CurrentList& w) {
      timerStopped = !w.timerAltitude()->isActive();
      // Nothing of the list window's may stay over the editor's pointer.
      pointerHeld = QGuiApplication::overrideCursor() != nullptr;
      Database db(rig.path, Database::Mode::ReadWrite);
      db.exec(QStringLiteral("INSERT INTO Objects (DisplayOrder, Name, RAHour, RAMinute, DecSign, "
                             "DecDeg, DecMinute) VALUES (5, 'Aldebaran', 4, 36, '+', 16, 31)"));
    };
    rig.list->findChild<QPushButton*>(QStringLiteral("cmdEdit"))->click();
    QVERIFY(timerStopped);
    QVERIFY(!pointerHeld);
    QVERIFY(rig.list->timerAltitude()->isActive());
    QCOMPARE(rig.list->sortState().ListSortKey, QStringLiteral("ORDER BY Name"));
    QCOMPARE(rig.names(), (QStringList{"Albireo", "Aldebaran", "Canopus", "Deneb", "Mizar"}));
    QCOMPARE(rig.counter(), QStringLiteral(" Object: 1 of 5"));
    QCOMPARE(rig.field(3), QStringLiteral("Albireo"));

    // An editor that fails to open leaves the altitude running.
    rig.list->openEditor = [](CurrentList&) { throw AppError::of(ErrNo::FileNotFound); };
    rig.env.prompter.clear();
    rig.list->cmdEdit_Click();
    QCOMPARE(rig.env.prompter.entries.size(), 1);
    QVERIFY(rig.list->timerAltitude()->isActive());
  }

  // Against the telescope simulator on a pseudo-terminal.
  void gotoMarksRow_data() {
    QTest::addColumn<QString>("situation");
    QTest::addColumn<QString>("mark");
    QTest::newRow("slew") << "slew" << "Y";
    QTest::newRow("double click") << "double click" << "Y";
    QTest::newRow("declined") << "declined" << "<null>";
    QTest::newRow("no such device") << "no device" << "<null>";
  }
  void gotoMarksRow() {
    QFETCH(QString, situation);
    QFETCH(QString, mark);
    ScopeSim sim;
    QVERIFY(sim.start(QStringLiteral("GT")));
    Rig rig;
    AppState& s = rig.state();
    s.settings.ScopeType = QStringLiteral("GT");
    s.settings.CommPort = sim.address;
    s.settings.UseAltLimit = true;
    s.settings.MinAlt = 0;
    s.settings.MaxAlt = situation == "declined" ? 10 : 90;
    if (situation == "declined") rig.env.prompter.answer(Prompter::Answer::No);
    if (situation == "no device") s.settings.CommPort = QStringLiteral("/dev/tavorine-no-such-port");
    rig.list->cmdNext_Click();
    if (situation == "double click") {
      rig.show();
      const QRect cell = rig.grid()->visualRect(rig.grid()->model()->index(1, 5));
      // The view takes a double click as such only after the press that starts it.
      QTest::mouseClick(rig.grid()->viewport(), Qt::LeftButton, {}, cell.center());
      QTest::mouseDClick(rig.grid()->viewport(), Qt::LeftButton, {}, cell.center());
    } else {
      rig.list->findChild<QPushButton*>(QStringLiteral("cmdGoto"))->click();
    }
    QCOMPARE(ListColumn(rig.path, "Goto"), (QStringList{"<null>", mark, "<null>", "<null>"}));
    QCOMPARE(rig.cell(1, 1), mark == "Y" ? mark : QString());
    QCOMPARE(!sim.received().isEmpty(), mark == "Y");
    QVERIFY(!rig.grid()->allowUpdate());
    if (situation == "declined")
      QCOMPARE(rig.env.prompter.entries.value(0).title, QStringLiteral("Altitude Alert!"));
    QCOMPARE(rig.env.prompter.entries.isEmpty(), mark == "Y");
  }

  // Sizes in twips; the tops of GoTo, the counter, Edit and Close (-1: not moved).
  void resizeRule_data() {
    QTest::addColumn<bool>("compact");
    QTest::addColumn<bool>("maximized");
    QTest::addColumn<QSize>("area");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QString>("result");
    const QSize big(20000, 20000);
    QTest::newRow("large at size") << false << false << big << QSize(10900, 7400)
        << "10900x7400 grid 6660x6425 sky -1 tops 6545 6545 6995 -1";
    QTest::newRow("large grown") << false << false << big << QSize(14000, 9000)
        << "14000x9000 grid 9760x8025 sky -1 tops 8145 8145 8595 -1";
    QTest::newRow("large too small") << false << false << big << QSize(9000, 5000)
        << "10900x7400 grid 6660x6425 sky -1 tops 6545 6545 6995 -1";
    QTest::newRow("large maximized in small area") << false << true << QSize(10600, 9000)
        << QSize(10600, 9000) << "restore";
    QTest::newRow("large maximized fits") << false << true << QSize(10700, 7200)
        << QSize(10700, 7200) << "10700x7200 grid 6460x6225 sky -1 tops 6345 6345 6795 -1";
    QTest::newRow("compact at size") << true << false << big << QSize(11820, 4935)
        << "11820x4935 grid 3615x4455 sky 7680 tops 4530 4530 4530 4530";
    QTest::newRow("compact wider") << true << false << big << QSize(13000, 6000)
        << "13000x6000 grid 4795x5520 sky 8860 tops 5595 5595 5595 5595";
    QTest::newRow("compact too narrow") << true << false << big << QSize(11000, 6000)
        << "11820x6000 grid 3615x5520 sky 7680 tops 5595 5595 5595 5595";
  }
  void resizeRule() {
    QFETCH(bool, compact);
    QFETCH(bool, maximized);
    QFETCH(QSize, area);
    QFETCH(QSize, size);
    QFETCH(QString, result);
    const ListResize r =
        ListResizeRule(compact ? ListVariant::CurrentListFixed : ListVariant::CurrentList,
                       maximized, area.width(), area.height(), size.width(), size.height());
    auto top = [&](const char* name) {
      for (const auto& [n, t] : r.tops)
        if (n == QLatin1String(name)) return t;
      return -1;
    };
    const QString got = r.restoreNormal
        ? QStringLiteral("restore")
        : QStringLiteral("%1x%2 grid %3x%4 sky %5 tops %6 %7 %8 %9")
              .arg(r.width).arg(r.height).arg(r.gridWidth).arg(r.gridHeight).arg(r.skyLeft)
              .arg(top("cmdGoto")).arg(top("txtRecordCounter")).arg(top("cmdEdit"))
              .arg(top("cmdClose"));
    QCOMPARE(got, result);
  }

  void compactWindowFollowsItsWidth() {
    Rig rig(stars(), ListVariant::CurrentListFixed);
    CurrentList& w = *rig.list;
    QCOMPARE(w.objectName(), QStringLiteral("CurrentListFixed"));
    rig.show();
    w.resize(TwipsToPixels(13000, &w), TwipsToPixels(6000, &w));
    QTRY_COMPARE(w.width(), TwipsToPixels(13000, &w));
    QCOMPARE(w.Sky()->x(), TwipsToPixels(13000 - 4140, &w));
    QCOMPARE(w.findChild<QPushButton*>(QStringLiteral("cmdGoto"))->y(),
             TwipsToPixels(6000 - 405, &w));
    QCOMPARE(rig.grid()->height(), TwipsToPixels(6000 - 480, &w));
    // The detail panel goes along between the wider grid and the chart, over neither.
    const QRect details = w.findChild<QWidget*>(QStringLiteral("fraDetails"))->geometry();
    QVERIFY(details.left() > rig.grid()->geometry().right());
    QVERIFY(details.right() < w.Sky()->x());
  }

  // At the telescope the panel is read at a glance: a long name from its start, the minutes whole.
  void detailsReadable_data() {
    QTest::addColumn<bool>("compact");
    QTest::newRow("CurrentList") << false;
    QTest::newRow("CurrentListFixed") << true;
  }
  void detailsReadable() {
    QFETCH(bool, compact);
    std::vector<ListRow> rows = stars();
    rows[1].name = QStringLiteral("Albireo,Beta-1 Cygni,6 Cygni,ADS 12540,WDS 19307+2758,STFA 43");
    rows[1].position.decMinutes = QStringLiteral("57.6");
    Rig rig(rows, compact ? ListVariant::CurrentListFixed : ListVariant::CurrentList);
    rig.show();
    rig.key(Qt::Key_Down);
    auto* name = rig.list->findChild<QLineEdit*>(QStringLiteral("Text3"));
    QCOMPARE(name->text(), rows[1].name);
    QCOMPARE(name->cursorPosition(), 0);
    auto* minutes = rig.list->findChild<QLineEdit*>(QStringLiteral("Text11"));
    QCOMPARE(minutes->text(), QStringLiteral("57.6"));
    QVERIFY2(minutes->width() >= minutes->fontMetrics().horizontalAdvance(QStringLiteral("57.6")) + 8,
             qPrintable(QString::number(minutes->width())));
  }
};

QTEST_MAIN(TestListWindow)
#include "tst_listwindow.moc"
