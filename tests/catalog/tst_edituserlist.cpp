#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include "catalog/catalogdialogs.h"
#include "catalog/catalogpages.h"
#include "catalog/edituserlist.h"
#include "catalog/recordset.h"
#include "fixturedb.h"
#include "formtest.h"
#include "support/testenv.h"

namespace {

// The user list with a few objects of our own; in order, MGC 7 comes first.
void seed(TestEnv& env) {
  EnsureUserList(*env.state);
  auto db = Database::open(env.state->userListPath(), Database::Mode::ReadWrite);
  const fixture::Obj objects[] = {
      {"PGC", QStringLiteral("        12"), "Twelve", "Galaxy", "And", "", "", 1, 30, "+", 41, 16},
      {"MGC", 7, "Seven Nebula", "Nebula", "Ori", "8", "", 5, 35, "-", 90, 0},
      {"PGC", 3, "Three", "Galaxy", "Peg", "11.5", "", 22, 10, "+", 90, 0},
  };
  for (const fixture::Obj& o : objects) fixture::insert(*db, QStringLiteral("UserObjects"), o);
}

// One column of the user list as stored, in the editor's order; by default category and number.
QStringList stored(TestEnv& env,
                   const QString& expr = QStringLiteral("Category || ' ' || trim(ObjectNum)")) {
  auto db = Database::open(env.state->userListPath(), Database::Mode::ReadOnly);
  Statement st = db->prepare(
      QStringLiteral("SELECT %1 FROM UserObjects ORDER BY Category, ObjectNum").arg(expr));
  QStringList out;
  while (st.step()) out << FieldText(st.value(0));
  return out;
}

// The editor shown and active, so that focus moves as the user's would.
struct Shown {
  explicit Shown(AppState& state) : editor(state) {
    editor.show();
    QApplication::setActiveWindow(&editor);
    QVERIFY(QTest::qWaitForWindowActive(&editor));
  }
  QLineEdit* txt(int index) const {
    return control<QLineEdit>(&editor, QStringLiteral("txtFields%1").arg(index));
  }
  QPushButton* button(const char* name) const { return control<QPushButton>(&editor, name); }
  QString caption() const { return control<UserDataControl>(&editor, "datUserRS")->caption(); }
  void focus(int index) const {
    txt(index)->setFocus();
    QCoreApplication::processEvents();
  }
  // Types into a field and leaves it for another.
  void enter(int index, const QString& text, int next) const {
    focus(index);
    QTest::keyClicks(txt(index), text);
    focus(next);
  }
  EditUserList editor;
};

}  // namespace

class TestEditUserList : public QObject {
  Q_OBJECT

 private slots:
  // The rules are the rules test's; these rows prove the editor runs them as the focus leaves
  // a field, and before keys, the data control or Escape leave the record (one of those stands
  // for all: they share the check). A failed test stops the move.
  // clang-format off
  void fieldTestedWhenLeft_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("key");  // with its modifiers; 0: the focus moves to another field
    QTest::addColumn<QString>("kept");  // what is stored; empty: refused
    const int ctrlPgDn = Qt::Key_PageDown | int(Qt::ControlModifier);
    QTest::newRow("minute at 90 degrees") << 8 << "0.01" << 0 << "";
    QTest::newRow("minus, ctrl page down") << 7 << "-45" << ctrlPgDn << "45";
    QTest::newRow("hour 30, escape") << 4 << "30" << int(Qt::Key_Escape) << "";
  }
  // clang-format on
  void fieldTestedWhenLeft() {
    QFETCH(int, index);
    QFETCH(QString, typed);
    QFETCH(int, key);
    QFETCH(QString, kept);
    TestEnv env;
    seed(env);
    // MGC 7, the record being edited, comes first by category.
    const QString column = QStringLiteral("trim(%1)").arg(EditUserList::fieldName(index));
    const QString before = stored(env, column)[0];
    Shown s(*env.state);
    QLineEdit* f = s.txt(index);
    s.focus(index);
    f->selectAll();
    QTest::keyClicks(f, typed);
    if (key)
      QTest::keyClick(f, Qt::Key(key & ~Qt::KeyboardModifierMask),
                      Qt::KeyboardModifiers(key & Qt::KeyboardModifierMask));
    else s.focus(0);
    if (!kept.isEmpty()) {
      QVERIFY(env.prompter.entries.isEmpty());
      QCOMPARE(stored(env, column)[0], kept);
      return;
    }
    QCOMPARE(env.prompter.entries.size(), 1);
    QCOMPARE(env.prompter.entries[0].title, QStringLiteral("Error"));
    QCOMPARE(env.prompter.beeps, 1);
    QVERIFY(s.editor.isVisible());
    QCOMPARE(QApplication::focusWidget(), f);
    // Leaving by a button after the message: the focus leaving shows it once more, the
    // button itself is refused with a beep and no further box, and so are the keys.
    QTest::mouseClick(s.button("cmdClose"), Qt::LeftButton);
    QVERIFY(s.editor.isVisible());
    QCOMPARE(env.prompter.entries.size(), 2);
    QTest::keyClick(f, Qt::Key_PageDown);
    QCOMPARE(env.prompter.entries.size(), 2);
    QCOMPARE(s.caption(), QStringLiteral(" Record: 1 of 3"));
    QCOMPARE(stored(env, column)[0], before);
  }

  // The entry point makes the list. The keys that move and stop at the ends; the search
  // dialog; Add, save and re-sort; delete down to an empty list where Add still works; and a
  // record being typed written as the window closes.
  void walk() {
    TestEnv env;
    onModal(QStringLiteral("EditUserList"), [](QWidget* w) { w->close(); });
    ShowEditUserList(*env.state, nullptr);
    QVERIFY(env.prompter.entries.isEmpty());
    seed(env);
    Shown s(*env.state);
    QCOMPARE(s.editor.windowTitle(), QStringLiteral("User Supplied Objects"));
    s.txt(2)->setFocus();
    auto press = [&](Qt::Key key, Qt::KeyboardModifiers mods = {}) {
      QTest::keyClick(QApplication::focusWidget(), key, mods);
      return s.caption().mid(9);
    };
    QCOMPARE(press(Qt::Key_PageUp), QStringLiteral("1 of 3"));
    QCOMPARE(press(Qt::Key_PageDown, Qt::KeypadModifier), QStringLiteral("2 of 3"));
    QCOMPARE(press(Qt::Key_PageDown), QStringLiteral("3 of 3"));
    QCOMPARE(s.txt(9)->text(), QStringLiteral(" "));  // a blank magnitude shows as one blank
    QCOMPARE(press(Qt::Key_PageDown), QStringLiteral("3 of 3"));
    QCOMPARE(press(Qt::Key_PageUp, Qt::ControlModifier), QStringLiteral("1 of 3"));
    // Ctrl with Shift is a plain page key.
    QCOMPARE(press(Qt::Key_PageDown, Qt::ControlModifier | Qt::ShiftModifier),
             QStringLiteral("2 of 3"));
    QCOMPARE(press(Qt::Key_PageDown, Qt::ControlModifier), QStringLiteral("3 of 3"));

    // The search dialog; its criteria are the search's own. The remembered field and text, the
    // default button, Find Next and Prev, and the label instead of a box.
    env.state->UserSearchField = QStringLiteral("Name");
    env.state->UserSearchText = QStringLiteral("old");
    auto search = std::make_unique<SearchUser>(*env.state, s.editor.recordset(), &s.editor);
    search->show();
    auto* box = control<QLineEdit>(search.get(), "txtSearchString");
    auto find = [&](const char* button) {
      control<QPushButton>(search.get(), button)->click();
      return control<QLabel>(search.get(), "Label3")->isVisible() ? QStringLiteral("Not found")
                                                                  : s.txt(2)->text();
    };
    QCOMPARE(box->text(), QStringLiteral("old"));
    QVERIFY(control<QRadioButton>(search.get(), "Option2")->isChecked());
    box->setText(QStringLiteral("E"));  // Seven Nebula, Three, Twelve
    QCOMPARE(find("cmdFind"), QStringLiteral("Seven Nebula"));
    QVERIFY(control<QPushButton>(search.get(), "cmdFindNext")->isDefault());
    find("cmdFindNext");
    QCOMPARE(find("cmdFindNext"), QStringLiteral("Twelve"));
    QCOMPARE(find("cmdFindNext"), QStringLiteral("Not found"));
    QCOMPARE(env.prompter.beeps, 1);
    QCOMPARE(find("cmdFindPrev"), QStringLiteral("Three"));
    control<QRadioButton>(search.get(), "Option1")->click();
    box->setText(QStringLiteral("12"));  // padded in the table, found through the trim
    QCOMPARE(find("cmdFind"), QStringLiteral("Twelve"));
    QCOMPARE(env.state->UserSearchField, QStringLiteral("ObjectNum"));
    QCOMPARE(env.state->UserSearchText, QStringLiteral("12"));
    QVERIFY(env.prompter.entries.isEmpty());
    search.reset();
    QApplication::setActiveWindow(&s.editor);

    s.button("cmdAdd")->click();
    QCOMPARE(s.caption(), QStringLiteral(" Record: New of 4"));
    // Page keys do not leave a new record.
    QTest::keyClick(&s.editor, Qt::Key_PageDown);
    QVERIFY(s.editor.addNewFlag());
    s.enter(0, QStringLiteral("AAA"), 1);
    s.enter(1, QStringLiteral("5"), 2);
    s.button("cmdDecSign")->click();
    s.button("cmdRefresh")->click();
    // After a save the form stands on the first record, which the new one is by the order.
    QCOMPARE(s.caption(), QStringLiteral(" Record: 1 of 4"));
    QCOMPARE(s.button("cmdDecSign")->text(), QStringLiteral("-"));
    QCOMPARE(stored(env), (QStringList{"AAA 5", "MGC 7", "PGC 3", "PGC 12"}));

    // Deleting the last record moves to the new last one; No deletes nothing.
    QTest::keyClick(&s.editor, Qt::Key_PageDown, Qt::ControlModifier);
    env.prompter.answer(Prompter::Answer::No);
    s.button("cmdDelete")->click();
    QCOMPARE(boxes(env.prompter), QStringList{"Confirm: Delete this object?"});
    env.prompter.answer(Prompter::Answer::Yes);
    s.button("cmdDelete")->click();
    QCOMPARE(s.caption(), QStringLiteral(" Record: 3 of 3"));
    QCOMPARE(stored(env), (QStringList{"AAA 5", "MGC 7", "PGC 3"}));
    for (int i = 0; i < 3; ++i) {
      env.prompter.answer(Prompter::Answer::Yes);
      s.button("cmdDelete")->click();
    }
    QVERIFY(!s.txt(0)->isEnabled());
    QCOMPARE(s.txt(0)->text() + s.caption(), QStringLiteral(" Record: 0 of 0"));
    s.button("cmdAdd")->click();
    s.enter(0, QStringLiteral("Mine"), 1);
    s.button("cmdRefresh")->click();
    QCOMPARE(s.caption(), QStringLiteral(" Record: 1 of 1"));

    s.enter(2, QStringLiteral("Renamed"), 3);
    s.button("cmdClose")->click();
    QVERIFY(!s.editor.isVisible());
    QCOMPARE(stored(env, QStringLiteral("Name")), QStringList{"Renamed"});
  }
};

QTEST_MAIN(TestEditUserList)
#include "tst_edituserlist.moc"
