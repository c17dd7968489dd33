#include <QtTest>

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <cmath>

#include "catalog/catalogbrowser.h"
#include "catalog/database.h"
#include "catalog/datagrid.h"
#include "catalog/recordset.h"
#include "charts/skywidget.h"
#include "core/apperror.h"
#include "core/mainwindow.h"
#include "core/numtext.h"
#include "lists/editlist.h"
#include "lists/editlistlogic.h"
#include "lists/listview.h"
#include "lists/listwindow.h"
#include "scope/scopecontrol.h"
#include "sky/userdatedialog.h"
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
  QString cell(int row, int column) {
    return grid()->model()->index(row, column).data().toString();
  }
  QString text(const char* name) const { return list->findChild<QLineEdit*>(name)->text(); }
  QString counter() const { return text("txtRecordCounter"); }
  QString field(int n) const { return text(qPrintable(QStringLiteral("Text%1").arg(n))); }
  // The counter, the name, the beeps and the boxes so far.
  QString seen() const {
    return QStringLiteral("%1|%2|%3|%4")
        .arg(counter(), field(3))
        .arg(env.prompter.beeps)
        .arg(env.prompter.entries.size());
  }
  void key(int k, Qt::KeyboardModifiers mods = Qt::NoModifier) {
    QTest::keyClick(grid(), Qt::Key(k), mods);
  }
  // The grid's names in its order, and a column of the file in DisplayOrder.
  QString names() {
    QStringList out;
    for (int r = 0; r < rs().RecordCount(); ++r) out << rs().rowValue(r, 5).toString();
    return out.join(',');
  }
  QString column(const char* name) const { return ListColumn(path, name).join(','); }
};

// The list editor on an evening at the default site.
struct Editor {
  TestEnv env;
  std::unique_ptr<TavorineListMain> main;
  std::unique_ptr<EditList> editor;
  QString path;

  Editor() {
    env.fixedOffsetHours = 9;
    env.state->UserDate = QDateTime(QDate(2026, 11, 21), QTime(21, 0));
    main = std::make_unique<TavorineListMain>(*env.state);
  }
  // The editor on a list of the first n of Andromeda, the Pleiades and the Orion Nebula.
  EditList* open(int n) {
    std::vector<ListRow> rows = {
        NamedRow("Andromeda Galaxy", SkyPosition::of(0, 42.7, "+", 41, 16)),
        NamedRow("Pleiades", SkyPosition::of(3, 47, "+", 24, 7)),
        NamedRow("Orion Nebula", SkyPosition::of(5, 35.3, "-", 5, 23))};
    rows.resize(size_t(n));
    path = env.path("Tonight.tlf");
    MakeListDocument(*env.state, path, rows);
    editor = std::make_unique<EditList>(*env.state, *main, path, "Objects - Tonight", nullptr);
    editor->show();
    return editor.get();
  }
  void click(const char* name) { editor->findChild<QPushButton*>(name)->click(); }
  QString counter() { return editor->findChild<QLineEdit*>("txtRecordCounter")->text(); }
  QString column(const char* name) { return ListColumn(path, name).join(','); }
  // The file's names in DisplayOrder, the current row's name and the counter.
  QString seen() {
    return column("Name") + '|' + editor->listRecordset()->text("Name") + '|' + counter();
  }
  // Every catalog page filtered by `filter`, its query `where`, and the altitude filter on.
  void filterPages(const QString& filter, const QString& where, bool on) {
    for (PageQuery& q : env.state->Pages) {
      q.Filter = filter;
      q.Where = where;
    }
    env.state->filter.FltAlt = true;
    env.state->FilterOn = on;
  }
};

}  // namespace

class TestListWindow : public QObject {
  Q_OBJECT
 private slots:
  // Opening, stepping to both ends (a beep past them), and the chart marker on the way.
  void opensAndSteps() {
    Rig rig;
    CurrentList& w = *rig.list;
    const std::vector<ListRow> rows = stars();
    auto altitude = [&](size_t i) {
      return PlainNumber(AltitudeNow(rig.state(), rows[i].position));
    };
    QCOMPARE((QStringList{w.windowTitle(), rig.text("txtDataSource"), rig.text("txtObserverTitle"),
                          rig.field(13)}),
             (QStringList{"Objects - tonight", rig.path, "tonight", altitude(0)}));
    QCOMPARE(rig.seen(), QStringLiteral(" Object: 1 of 4|Mizar|0|0"));
    QCOMPARE(w.timerAltitude()->interval(), 60000);
    QCOMPARE(int(w.mapStars().size()), 5044);
    QVERIFY(!rig.grid()->allowUpdate());

    const SkyChart& chart = w.Sky()->chart();
    auto markedAt = [&](size_t i) {
      const SkyPosition p = rows[i].position;
      return QPointF(chart.MarkerX, chart.MarkerY) == ProjectSky(w.Sky()->constants(),
                                                                 AltitudeNow(rig.state(), p),
                                                                 AzimuthNow(rig.state(), p));
    };
    QVERIFY(markedAt(0));
    w.cmdPrevious_Click();
    QCOMPARE(rig.seen(), QStringLiteral(" Object: 1 of 4|Mizar|1|0"));
    w.cmdNext_Click();
    QVERIFY(markedAt(1));
    QCOMPARE(rig.field(13), altitude(1));
    rig.grid()->setCurrentIndex(rig.grid()->model()->index(3, 5));
    w.cmdNext_Click();
    QCOMPARE(rig.seen(), QStringLiteral(" Object: 4 of 4|Deneb|2|0"));

    // A walk of keys, each from where the last left the grid.
    const int ctrl = int(Qt::ControlModifier);
    const struct {
      int key, row;
    } walk[] = {{Qt::Key_Home, 0},
                {Qt::Key_Down, 1},
                {Qt::Key_End, 3},
                {Qt::Key_PageUp, 2},
                {ctrl | Qt::Key_Up, 0},
                {Qt::Key_PageDown, 1},
                {ctrl | Qt::Key_PageDown, 3},
                {Qt::Key_Up, 2}};
    for (const auto& step : walk) {
      rig.key(step.key & ~Qt::KeyboardModifierMask,
              Qt::KeyboardModifiers(step.key & Qt::KeyboardModifierMask));
      QCOMPARE(rig.counter(), QStringLiteral(" Object: %1 of 4").arg(step.row + 1));
    }
  }

  void emptyList() {
    Rig rig(std::vector<ListRow>{});
    rig.list->cmdNext_Click();
    rig.list->cmdPrevious_Click();
    rig.key(Qt::Key_End);
    rig.list->cmdObserved_Click();
    rig.list->cmdGoto_Click();
    rig.list->cmdCDC_Click();
    rig.list->grdDataGrid_HeadClick(5);
    rig.list->timerAltitude_Timer();
    QCOMPARE(rig.seen() + rig.field(13), QStringLiteral("||0|0"));
  }

  void observedToggles() {
    Rig rig;
    rig.list->cmdNext_Click();
    rig.list->cmdObserved_Click();
    QCOMPARE(rig.column("Observed"), QStringLiteral("<null>,Y,<null>,<null>"));
    QCOMPARE(rig.cell(1, 2), QStringLiteral("Y"));
    rig.list->cmdObserved_Click();
    QCOMPARE(rig.column("Observed"), QStringLiteral("<null>, ,<null>,<null>"));

    // A write that fails is reported once and leaves the grid read-only, the row showing what
    // the file holds, and the window free to move on.
    Database(rig.path, Database::Mode::ReadWrite)
        .exec(QStringLiteral(
            "CREATE TRIGGER refuse BEFORE UPDATE ON Objects "
            "BEGIN SELECT RAISE(ABORT, 'attempt to write a readonly database'); END"));
    rig.list->cmdObserved_Click();
    QVERIFY(!rig.grid()->allowUpdate());
    QCOMPARE(rig.cell(1, 2), QStringLiteral(" "));
    rig.list->cmdNext_Click();
    rig.list->cmdPrevious_Click();
    rig.list->cmdPrevious_Click();
    QCOMPARE(rig.seen(), QStringLiteral(" Object: 1 of 4|Mizar|0|1"));
  }

  // Every row marked; the dialog answered on the second row by each button.
  // clang-format off
  void clearGoto_data() {
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("choice");
    QTest::addColumn<QString>("marks");
    QTest::newRow("this") << "cmdThis" << "This" << "Y, ,Y,Y";
    QTest::newRow("all") << "Command1" << "All" << " , , , ";
    QTest::newRow("cancel") << "cmdCancel" << "None" << "Y,Y,Y,Y";
  }
  // clang-format on
  void clearGoto() {
    QFETCH(QString, button);
    QFETCH(QString, choice);
    QFETCH(QString, marks);
    std::vector<ListRow> rows = stars();
    for (ListRow& r : rows) r.gotoMark = QStringLiteral("Y");
    Rig rig(rows);
    rig.state().ClearGotoChoice = QStringLiteral("All");  // left over from an earlier time
    rig.list->cmdNext_Click();
    QTimer::singleShot(0, [button] {
      auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      QCOMPARE(dialog->windowTitle(), QStringLiteral("Confirm"));
      dialog->findChild<QPushButton*>(button)->click();
    });
    rig.list->cmdClearGoto_Click();
    QCOMPARE(rig.state().ClearGotoChoice, choice);
    QCOMPARE(rig.column("Goto"), marks);
    QCOMPARE(rig.counter(), QStringLiteral(" Object: %1 of 4").arg(choice == "All" ? 1 : 2));
  }

  // Head clicks sort the grid, not the file, and go back to its first row (the declination's,
  // south first, as the database reads it); an edit keeps the sort and gives the pointer back.
  void sortKeptAfterEditing() {
    Rig rig;
    rig.list->cmdNext_Click();
    rig.list->grdDataGrid_HeadClick(14);
    rig.list->grdDataGrid_HeadClick(12);
    QCOMPARE(rig.names(), QStringLiteral("Canopus,Albireo,Deneb,Mizar"));
    QCOMPARE(rig.seen(), QStringLiteral(" Object: 1 of 4|Canopus|0|0"));
    QCOMPARE(rig.column("DisplayOrder"), QStringLiteral("1,2,3,4"));
    rig.list->grdDataGrid_HeadClick(5);
    rig.list->cmdNext_Click();
    bool timerStopped = false;
    bool pointerHeld = true;
    rig.list->openEditor = [&](CurrentList& w) {
      timerStopped = !w.timerAltitude()->isActive();
      pointerHeld = QGuiApplication::overrideCursor() != nullptr;
      Database(rig.path, Database::Mode::ReadWrite)
          .exec(QStringLiteral(
              "INSERT INTO Objects (DisplayOrder, Name, RAHour, RAMinute, "
              "DecSign, DecDeg, DecMinute) VALUES (5, 'Aldebaran', 4, 36, '+', 16, 31)"));
    };
    rig.list->findChild<QPushButton*>(QStringLiteral("cmdEdit"))->click();
    QVERIFY(timerStopped);
    QVERIFY(!pointerHeld);
    QVERIFY(rig.list->timerAltitude()->isActive());
    QCOMPARE(rig.names(), QStringLiteral("Albireo,Aldebaran,Canopus,Deneb,Mizar"));
    QCOMPARE(rig.seen(), QStringLiteral(" Object: 1 of 5|Albireo|0|0"));
    // An editor that fails to open leaves the altitude running.
    rig.list->openEditor = [](CurrentList&) { throw AppError::of(ErrNo::FileNotFound); };
    rig.list->cmdEdit_Click();
    QCOMPARE(rig.env.prompter.entries.size(), 1);
    QVERIFY(rig.list->timerAltitude()->isActive());
  }

  // Against the telescope simulator on a pseudo-terminal: a double click slews and marks the
  // row (the GoTo button runs the same handler). What keeps the mark off is the GoTo flow test's.
  void gotoMarksRow() {
    ScopeSim sim;
    QVERIFY(sim.start(QStringLiteral("GT")));
    Rig rig;
    rig.state().settings.ScopeType = QStringLiteral("GT");
    rig.state().settings.CommPort = sim.address;
    rig.list->show();
    QVERIFY(QTest::qWaitForWindowExposed(rig.list.get()));
    const QRect cell = rig.grid()->visualRect(rig.grid()->model()->index(1, 5));
    // The view takes a double click as such only after the press that starts it.
    QTest::mouseClick(rig.grid()->viewport(), Qt::LeftButton, {}, cell.center());
    QTest::mouseDClick(rig.grid()->viewport(), Qt::LeftButton, {}, cell.center());
    QVERIFY(!sim.received().isEmpty());
    QCOMPARE(rig.column("Goto"), QStringLiteral("<null>,Y,<null>,<null>"));
    QVERIFY(rig.env.prompter.entries.isEmpty());
  }

  void opens() {
    Editor t;
    EditList* e = t.open(3);
    QCOMPARE((QStringList{e->windowTitle(), e->findChild<QLabel*>("Label2")->text(),
                          e->findChild<QLabel*>("lblUserDate")->text(), t.counter()}),
             (QStringList{"Edit - Tonight", "Your Object List:",
                          UserDateLabel(t.env.state->UserDate), " Obj: 1 of 3"}));
    // Andromeda stands high in the evening: the first row is marked in the object colour.
    QCOMPARE(e->markerSource(), 1);
    const QPointF andromeda(e->sky()->chart().MarkerX, e->sky()->chart().MarkerY);
    e->listRecordset()->MoveNext();  // Pleiades, elsewhere in the sky
    QVERIFY(QPointF(e->sky()->chart().MarkerX, e->sky()->chart().MarkerY) != andromeda);

    // Only the page in view has the Alt+A key, and its current row takes the marker.
    e->browser()->setCurrentIndex(7);
    QCOMPARE(e->markerSource(), 2);
    int withKey = 0;
    for (auto* b : e->findChildren<QPushButton*>())
      withKey += b->objectName().startsWith("cmdAdd") && b->text() == "&Add <--";
    QCOMPARE(withKey, 1);
    QCOMPARE(e->findChild<QPushButton*>("cmdAddDouble")->text(), QStringLiteral("&Add <--"));
    QVERIFY(t.env.prompter.entries.isEmpty());

    // The Close button, the close box and Escape each give the menu entry back.
    auto* entry = t.main->findChild<QAction*>("mnuEditUserList");
    for (int how = 0; how < 3; ++how) {
      t.editor.reset();
      EditList* e = t.open(1);
      QVERIFY(!entry->isEnabled());
      if (how == 0) t.click("cmdClose");
      else if (how == 1) e->close();
      else QTest::keyClick(e, Qt::Key_Escape);
      QVERIFY2(entry->isEnabled() && !e->isVisible(), qPrintable(QString::number(how)));
    }
  }

  // The window asks and calls the edits; the edits' rules are the logic test's.
  void deleteMoveAndSort() {
    Editor t;
    EditList* e = t.open(3);
    e->listRecordset()->setAbsolutePosition(1);
    t.env.prompter.answer(Prompter::Answer::No);
    t.click("cmdDelete");
    QCOMPARE(t.column("DisplayOrder"), QStringLiteral("1,2,3"));
    t.env.prompter.answer(Prompter::Answer::Yes);
    t.click("cmdDelete");
    QCOMPARE(t.seen(), QStringLiteral("Andromeda Galaxy,Orion Nebula|Orion Nebula| Obj: 2 of 2"));
    t.click("cmdMoveUp");
    QCOMPARE(t.seen(), QStringLiteral("Orion Nebula,Andromeda Galaxy|Orion Nebula| Obj: 1 of 2"));
    t.click("cmdMoveDown");
    QCOMPARE(t.seen(), QStringLiteral("Andromeda Galaxy,Orion Nebula|Orion Nebula| Obj: 2 of 2"));

    Database(t.path, Database::Mode::ReadWrite)
        .exec("UPDATE Objects SET DisplayOrder = 10 - DisplayOrder");
    e->listRecordset()->Requery();
    t.env.prompter.answer(Prompter::Answer::No);
    t.click("cmdAutoSort");
    QCOMPARE(t.column("DisplayOrder"), QStringLiteral("7,9"));
    t.env.prompter.answer(Prompter::Answer::Yes);
    t.click("cmdAutoSort");
    QCOMPARE(t.column("DisplayOrder"), QStringLiteral("1,2"));

    // Emptied, the question still comes, and nothing else.
    for (int i = 0; i < 3; ++i) {
      t.env.prompter.answer(Prompter::Answer::Yes);
      t.click("cmdDelete");
    }
    QCOMPARE(t.column("DisplayOrder") + t.counter(), QString());
    QCOMPARE(t.env.prompter.texts(),
             QStringList({"Delete this object?", "Delete this object?",
                          "Permanently re-sort the list?", "Permanently re-sort the list?",
                          "Delete this object?", "Delete this object?", "Delete this object?"}));
    QCOMPARE(t.env.prompter.entries[0].title, QStringLiteral("Confirm"));
  }

  // Off, the button shows the dialog (its close box counts as Cancel) and turns the filter on
  // only when it is accepted. The clause itself is the filter logic test's.
  void filterButton() {
    Editor t;
    AppState& s = *t.env.state;
    for (bool cancel : {true, false}) {
      t.editor.reset();
      t.filterPages("WHERE (Type = 'Galaxy')", "WHERE True", false);
      s.filter.FltMinAlt = 20;
      EditList* e = t.open(2);
      e->showFilterDialog = [&](QWidget*) {
        QVERIFY(s.FilterCancelled);  // set before the dialog
        s.FilterCancelled = cancel;
      };
      t.click("cmdFilterAlt");
      QCOMPARE(s.FilterOn, !cancel);
      QCOMPARE(e->findChild<QLabel*>("lblFilter")->isVisible(), !cancel);
      const QString where = s.Pages[4].Where;
      QVERIFY2(
          cancel ? where == "WHERE True" : where.startsWith("WHERE (Type = 'Galaxy') and (Atn("),
          qPrintable(where));
    }
    QVERIFY(t.env.prompter.entries.isEmpty());
  }

  // Opened with the filter on, then a new date from the real dialog, driven by its fields'
  // names: the pages' queries are built for the date. On, the button turns it off at once.
  void filterOnAndDateChange() {
    Editor t;
    AppState& s = *t.env.state;
    t.filterPages("WHERE True", "WHERE True", true);
    EditList* e = t.open(3);
    QCOMPARE(e->findChild<QLabel*>("lblFilter")->text(), QStringLiteral("Filter On!!!"));
    for (const PageQuery& q : s.Pages) QVERIFY(q.Where.startsWith("WHERE True and (Atn("));
    const QString whereBefore = s.Pages[4].Where;
    QTimer::singleShot(0, [] {
      auto* dialog = qobject_cast<frmUserDate*>(QApplication::activeModalWidget());
      if (!dialog) return;
      dialog->findChild<UpDownField*>("PickTimeHour")->setText("23");
      dialog->findChild<QPushButton*>("OKButton")->click();
    });
    t.click("cmdUserDate");
    QCOMPARE(e->findChild<QLabel*>("lblUserDate")->text(), UserDateLabel(s.UserDate));
    QVERIFY(s.Pages[4].Where.startsWith("WHERE True and (Atn("));
    QVERIFY(s.Pages[4].Where != whereBefore);
    e->showFilterDialog = [](QWidget*) { QFAIL("the dialog is not shown"); };
    t.click("cmdFilterAlt");
    QVERIFY(!s.FilterOn && !e->findChild<QLabel*>("lblFilter")->isVisible());
    QCOMPARE(s.Pages[4].Where, QStringLiteral("WHERE True"));
    QVERIFY(t.env.prompter.entries.isEmpty());
  }
};

QTEST_MAIN(TestListWindow)
#include "tst_listwindow.moc"
