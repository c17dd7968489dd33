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
#include "support/listdocument.h"
#include "support/testenv.h"

class TestEditList : public QObject {
  Q_OBJECT
  std::unique_ptr<TestEnv> env;
  std::unique_ptr<TavorineListMain> main;
  std::unique_ptr<EditList> editor;
  QString path;

  // The editor on a list of the first n of Andromeda, the Pleiades and the Orion Nebula.
  EditList* open(int n) {
    std::vector<ListRow> rows = {
        NamedRow("Andromeda Galaxy", SkyPosition::of(0, 42.7, "+", 41, 16)),
        NamedRow("Pleiades", SkyPosition::of(3, 47, "+", 24, 7)),
        NamedRow("Orion Nebula", SkyPosition::of(5, 35.3, "-", 5, 23))};
    rows.resize(size_t(n));
    path = env->path("Tonight.tlf");
    MakeListDocument(*env->state, path, rows);
    editor = std::make_unique<EditList>(*env->state, *main, path, "Objects - Tonight", nullptr);
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
    for (PageQuery& q : env->state->Pages) {
      q.Filter = filter;
      q.Where = where;
    }
    env->state->filter.FltAlt = true;
    env->state->FilterOn = on;
  }

 private slots:
  void init() {
    env = std::make_unique<TestEnv>();
    env->fixedOffsetHours = 9;
    env->state->UserDate = QDateTime(QDate(2026, 11, 21), QTime(21, 0));
    main = std::make_unique<TavorineListMain>(*env->state);
  }
  void cleanup() {
    editor.reset();
    main.reset();
    env.reset();
  }

  void opens() {
    EditList* e = open(3);
    QCOMPARE((QStringList{e->windowTitle(), e->findChild<QLabel*>("Label2")->text(),
                          e->findChild<QLabel*>("lblUserDate")->text(), counter()}),
             (QStringList{"Edit - Tonight", "Your Object List:",
                          UserDateLabel(env->state->UserDate), " Obj: 1 of 3"}));
    QVERIFY(e->findChild<QLabel*>("lblFilter")->isHidden());
    // Every command button shows its whole caption, with a little room at each side.
    for (const char* name : {"cmdDelete", "cmdMoveUp", "cmdMoveDown", "cmdAutoSort", "cmdClose",
                             "cmdFilterAlt", "cmdUserDate", "cmdAddMessier"}) {
      auto* b = e->findChild<QPushButton*>(name);
      const int textWidth = b->fontMetrics().horizontalAdvance(b->text().remove(QLatin1Char('&')));
      QVERIFY2(b->width() >= textWidth + 8, name);
    }

    // Andromeda stands high in the evening: the first row is marked in the object colour.
    QCOMPARE(e->markerSource(), 1);
    const QPointF andromeda(e->sky()->chart().MarkerX, e->sky()->chart().MarkerY);
    QVERIFY(andromeda.x() != 3000 && andromeda.y() != 3000);
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
    QVERIFY(env->prompter.entries.isEmpty());
  }

  // The Close button, the close box and Escape each give the menu entry back.
  void menuEntryComesBack() {
    auto* entry = main->findChild<QAction*>("mnuEditUserList");
    for (int how = 0; how < 3; ++how) {
      editor.reset();
      EditList* e = open(1);
      QVERIFY(!entry->isEnabled());
      if (how == 0) click("cmdClose");
      else if (how == 1) e->close();
      else QTest::keyClick(e, Qt::Key_Escape);
      QVERIFY2(entry->isEnabled() && !e->isVisible(), qPrintable(QString::number(how)));
    }
  }

  // The window asks and calls the edits; the edits' rules are the logic test's.
  void deleteMoveAndSort() {
    EditList* e = open(3);
    e->listRecordset()->setAbsolutePosition(1);
    env->prompter.answer(Prompter::Answer::No);
    click("cmdDelete");
    QCOMPARE(column("DisplayOrder"), QStringLiteral("1,2,3"));
    env->prompter.answer(Prompter::Answer::Yes);
    click("cmdDelete");
    QCOMPARE(seen(), QStringLiteral("Andromeda Galaxy,Orion Nebula|Orion Nebula| Obj: 2 of 2"));
    click("cmdMoveUp");
    QCOMPARE(seen(), QStringLiteral("Orion Nebula,Andromeda Galaxy|Orion Nebula| Obj: 1 of 2"));

    Database(path, Database::Mode::ReadWrite)
        .exec("UPDATE Objects SET DisplayOrder = 10 - DisplayOrder");
    e->listRecordset()->Requery();
    env->prompter.answer(Prompter::Answer::No);
    click("cmdAutoSort");
    QCOMPARE(column("DisplayOrder"), QStringLiteral("7,9"));
    env->prompter.answer(Prompter::Answer::Yes);
    click("cmdAutoSort");
    QCOMPARE(column("DisplayOrder"), QStringLiteral("1,2"));

    // Emptied, the question still comes, and nothing else.
    for (int i = 0; i < 3; ++i) {
      env->prompter.answer(Prompter::Answer::Yes);
      click("cmdDelete");
    }
    QCOMPARE(column("DisplayOrder") + counter(), QString());
    QCOMPARE(env->prompter.texts(),
             QStringList({"Delete this object?", "Delete this object?",
                          "Permanently re-sort the list?", "Permanently re-sort the list?",
                          "Delete this object?", "Delete this object?", "Delete this object?"}));
    QCOMPARE(env->prompter.entries[0].title, QStringLiteral("Confirm"));
  }

  void filterButton_data() {
    QTest::addColumn<bool>("filterOn");
    QTest::addColumn<bool>("cancel");
    QTest::addColumn<bool>("onAfter");
    QTest::newRow("on: turned off") << true << false << false;
    QTest::newRow("off: dialog cancelled") << false << true << false;
    QTest::newRow("off: dialog accepted") << false << false << true;
  }
  void filterButton() {
    QFETCH(bool, filterOn);
    QFETCH(bool, cancel);
    QFETCH(bool, onAfter);
    AppState& s = *env->state;
    filterPages("WHERE (Type = 'Galaxy')",
                filterOn ? "WHERE (Type = 'Galaxy') and old" : "WHERE True", filterOn);
    s.filter.FltMinAlt = 20;
    EditList* e = open(2);
    int shown = 0;
    e->showFilterDialog = [&](QWidget*) {
      ++shown;
      QVERIFY(s.FilterCancelled);  // set before the dialog
      s.FilterCancelled = cancel;
    };
    click("cmdFilterAlt");
    QCOMPARE(shown, filterOn ? 0 : 1);
    QCOMPARE(s.FilterOn, onAfter);
    QCOMPARE(e->findChild<QLabel*>("lblFilter")->isVisible(), onAfter);
    // The clause itself is the filter logic test's.
    const QString where = s.Pages[4].Where;
    QVERIFY2(onAfter ? where.startsWith("WHERE (Type = 'Galaxy') and (Atn(")
                     : where == "WHERE True",
             qPrintable(where));
    QVERIFY(env->prompter.entries.isEmpty());
  }

  // Opened with the filter on, then a new date from the real dialog, driven by its fields'
  // names: the pages' queries are built for the date.
  void filterOnAndDateChange() {
    AppState& s = *env->state;
    filterPages("WHERE True", "WHERE True", true);
    EditList* e = open(3);
    QCOMPARE(e->findChild<QLabel*>("lblFilter")->text(), QStringLiteral("Filter On!!!"));
    QVERIFY(e->findChild<QLabel*>("lblFilter")->isVisible());
    for (const PageQuery& q : s.Pages) QVERIFY(q.Where.startsWith("WHERE True and (Atn("));
    const QString whereBefore = s.Pages[4].Where;
    QTimer::singleShot(0, [] {
      auto* dialog = qobject_cast<frmUserDate*>(QApplication::activeModalWidget());
      if (!dialog) return;
      dialog->findChild<UpDownField*>("PickTimeHour")->setText("23");
      dialog->findChild<QPushButton*>("OKButton")->click();
    });
    click("cmdUserDate");
    QCOMPARE(s.UserDate.time().hour(), 23);
    QCOMPARE(e->findChild<QLabel*>("lblUserDate")->text(), UserDateLabel(s.UserDate));
    QVERIFY(s.Pages[4].Where.startsWith("WHERE True and (Atn("));
    QVERIFY(s.Pages[4].Where != whereBefore);
    QVERIFY(env->prompter.entries.isEmpty());
  }
};

QTEST_MAIN(TestEditList)
#include "tst_editlist.moc"
