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
void seed(TestEnv& env, int rows) {
  EnsureUserList(*env.state);
  auto db = Database::open(env.state->userListPath(), Database::Mode::ReadWrite);
  const fixture::Obj objects[] = {
      {"PGC", QStringLiteral("        12"), "Twelve", "Galaxy", "And", "", "", 1, 30, "+", 41, 16},
      {"MGC", 7, "Seven Nebula", "Nebula", "Ori", "8", "", 5, 35, "-", 5, 23},
      {"PGC", 3, "Three", "Galaxy", "Peg", "11.5", "", 22, 10, "+", 90, 0},
  };
  for (int i = 0; i < rows; ++i) fixture::insert(*db, QStringLiteral("UserObjects"), objects[i]);
}

// One column of the user list as stored, in the editor's order.
QStringList stored(TestEnv& env, const QString& expr) {
  auto db = Database::open(env.state->userListPath(), Database::Mode::ReadOnly);
  Statement st = db->prepare(
      QStringLiteral("SELECT %1 FROM UserObjects ORDER BY Category, ObjectNum").arg(expr));
  QStringList out;
  while (st.step()) out << FieldText(st.value(0));
  return out;
}
QStringList objectNums(TestEnv& env) {
  return stored(env, QStringLiteral("Category || ' ' || trim(ObjectNum)"));
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
  // The rules themselves are tested on their own; these rows prove the editor applies them
  // whichever way the field is left: to another field, or by keys, the data control and
  // Escape, which leave the record without taking the focus from the field. The test runs
  // before anything is written, and a failed one stops the move.
  void fieldTestedWhenLeft_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("decDeg");  // typed first when not empty
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("key");  // with its modifiers; 0: the focus moves to another field
    QTest::addColumn<QString>("left");  // the field's text, or what is stored
    QTest::addColumn<QString>("message");
    const int pgDn = Qt::Key_PageDown, esc = Qt::Key_Escape;
    const QString hour = QStringLiteral("RA Hour must be a value between 0 and 23");
    QTest::newRow("number padded") << 1 << "" << "12" << 0 << "        12" << "";
    QTest::newRow("90 and more") << 8 << "90" << "0.01" << 0 << "0.01"
                                 << "Declination Minute must be a value of 0 when Degree is 90";
    QTest::newRow("quote, escape") << 2 << "" << "M\"31" << esc << "M31" << "";
    QTest::newRow("minus, ctrl page down")
        << 7 << "" << "-45" << (pgDn | int(Qt::ControlModifier)) << "45" << "";
    QTest::newRow("hour 30, page down") << 4 << "" << "30" << pgDn << "" << hour;
    QTest::newRow("hour 30, escape") << 4 << "" << "30" << esc << "" << hour;
  }
  void fieldTestedWhenLeft() {
    QFETCH(int, index);
    QFETCH(QString, decDeg);
    QFETCH(QString, typed);
    QFETCH(int, key);
    QFETCH(QString, left);
    QFETCH(QString, message);
    TestEnv env;
    seed(env, 2);
    // MGC 7, the record being edited, comes first by category.
    const QString column = QStringLiteral("trim(%1)").arg(EditUserList::fieldName(index));
    const QString before = stored(env, column)[0];
    Shown s(*env.state);
    if (!decDeg.isEmpty()) s.enter(7, decDeg, 0);
    QLineEdit* f = s.txt(index);
    s.focus(index);
    f->selectAll();
    QTest::keyClicks(f, typed);
    env.prompter.clear();
    if (key) {
      QTest::keyClick(f, Qt::Key(key & ~Qt::KeyboardModifierMask),
                      Qt::KeyboardModifiers(key & Qt::KeyboardModifierMask));
    } else {
      s.focus(0);
      QCOMPARE(f->text(), left);
    }
    if (message.isEmpty()) {
      QVERIFY(env.prompter.entries.isEmpty());
      QCOMPARE(env.prompter.beeps, 0);
      if (!key) s.button("cmdRefresh")->click();
      QCOMPARE(stored(env, column)[0], left.trimmed());
      return;
    }
    QCOMPARE(boxes(env.prompter), QStringList{"Error: " + message});
    QCOMPARE(env.prompter.beeps, 1);
    QVERIFY(s.editor.isVisible());
    QCOMPARE(QApplication::focusWidget(), f);
    // Leaving by a button after the message: the focus leaving shows it once more, the
    // button itself is refused with a beep and no further box.
    QTest::mouseClick(s.button("cmdClose"), Qt::LeftButton);
    QVERIFY(s.editor.isVisible());
    QCOMPARE(env.prompter.entries.size(), 2);
    QTest::keyClick(f, Qt::Key_PageDown);
    QCOMPARE(env.prompter.entries.size(), 2);
    QCOMPARE(s.caption(), QStringLiteral(" Record: 1 of 2"));
    QCOMPARE(stored(env, column)[0], before);
  }

  void twoBadFieldsDoNotChaseEachOther() {
    TestEnv env;
    seed(env, 1);
    Shown s(*env.state);
    s.enter(4, QStringLiteral("30"), 5);
    // The hour takes the focus back from the minutes; the minutes are not tested meanwhile.
    QCOMPARE(env.prompter.entries.size(), 1);
    QCOMPARE(QApplication::focusWidget(), s.txt(4));
  }

  void addSaveResortDelete() {
    TestEnv env;
    seed(env, 2);
    Shown s(*env.state);
    s.button("cmdAdd")->click();
    QCOMPARE(s.caption(), QStringLiteral(" Record: New of 3"));
    QCOMPARE(s.button("cmdRefresh")->text(), QStringLiteral("&Save"));
    for (const char* name : {"cmdAdd", "cmdDelete", "cmdFind", "cmdClose"})
      QVERIFY2(!s.button(name)->isEnabled(), name);
    QVERIFY(!control<UserDataControl>(&s.editor, "datUserRS")->isEnabled());
    QCOMPARE(QApplication::focusWidget(), s.txt(0));
    // Page keys do not leave a new record.
    QTest::keyClick(&s.editor, Qt::Key_PageDown);
    QVERIFY(s.editor.addNewFlag());

    s.enter(0, QStringLiteral("AAA"), 1);
    s.enter(1, QStringLiteral("5"), 2);
    s.button("cmdDecSign")->click();
    s.button("cmdRefresh")->click();
    QVERIFY(s.button("cmdClose")->isEnabled());
    // After a save the form stands on the first record, which the new one is by the order.
    QCOMPARE(s.caption(), QStringLiteral(" Record: 1 of 3"));
    QCOMPARE(s.button("cmdDecSign")->text(), QStringLiteral("-"));
    QCOMPARE(objectNums(env), (QStringList{"AAA 5", "MGC 7", "PGC 12"}));

    // An edit re-sorted.
    s.enter(0, QStringLiteral("ZZZ"), 2);
    s.button("cmdRefresh")->click();
    QCOMPARE(s.txt(0)->text(), QStringLiteral("MGC"));
    QCOMPARE(objectNums(env), (QStringList{"MGC 7", "PGC 12", "ZZZ 5"}));

    // Deleting the last record moves to the new last one; No deletes nothing.
    QTest::keyClick(&s.editor, Qt::Key_PageDown, Qt::ControlModifier);
    env.prompter.answer(Prompter::Answer::No);
    s.button("cmdDelete")->click();
    QCOMPARE(boxes(env.prompter).last(), QStringLiteral("Confirm: Delete this object?"));
    QCOMPARE(objectNums(env).size(), 3);
    env.prompter.answer(Prompter::Answer::Yes);
    s.button("cmdDelete")->click();
    QCOMPARE(s.caption(), QStringLiteral(" Record: 2 of 2"));
    QCOMPARE(objectNums(env), (QStringList{"MGC 7", "PGC 12"}));

    // Closing writes a record being typed.
    s.enter(2, QStringLiteral("Renamed"), 3);
    s.button("cmdClose")->click();
    QVERIFY(!s.editor.isVisible());
    QCOMPARE(stored(env, QStringLiteral("Name")), (QStringList{"Seven Nebula", "Renamed"}));
  }

  // The list is made on opening; an empty one opens where Add works, and deleting its one
  // record leaves the fields blank and disabled again.
  void anEmptyListOpensWhereAddWorks() {
    TestEnv env;
    onModal(QStringLiteral("EditUserList"), [](QWidget* w) { w->close(); });
    ShowEditUserList(*env.state, nullptr);
    QVERIFY(env.prompter.entries.isEmpty());
    Shown s(*env.state);
    QCOMPARE(s.caption(), QStringLiteral(" Record: 0 of 0"));
    QVERIFY(!s.txt(0)->isEnabled());
    s.button("cmdAdd")->click();
    s.enter(0, QStringLiteral("Mine"), 1);
    s.button("cmdRefresh")->click();
    QCOMPARE(s.caption(), QStringLiteral(" Record: 1 of 1"));
    env.prompter.answer(Prompter::Answer::Yes);
    s.button("cmdDelete")->click();
    QCOMPARE(objectNums(env), QStringList());
    QVERIFY(!s.txt(0)->isEnabled());
    QCOMPARE(s.txt(0)->text(), QString());
  }

  // The order, the keys that move and stop at the ends, then the search dialog.
  void keysAndSearch() {
    TestEnv env;
    seed(env, 3);
    Shown s(*env.state);
    QCOMPARE(s.editor.windowTitle(), QStringLiteral("User Supplied Objects"));
    QCOMPARE(s.txt(0)->text(), QStringLiteral("MGC"));
    s.txt(2)->setFocus();
    auto press = [&](Qt::Key key, Qt::KeyboardModifiers mods = {}) {
      QTest::keyClick(QApplication::focusWidget(), key, mods);
      return s.caption().mid(9);
    };
    QCOMPARE(press(Qt::Key_PageUp), QStringLiteral("1 of 3"));
    QCOMPARE(press(Qt::Key_PageDown, Qt::KeypadModifier), QStringLiteral("2 of 3"));
    QCOMPARE(s.txt(9)->text(), QStringLiteral("11.5"));
    QCOMPARE(press(Qt::Key_PageDown), QStringLiteral("3 of 3"));
    QCOMPARE(s.txt(9)->text(), QStringLiteral(" "));  // a blank magnitude shows as one blank
    QCOMPARE(s.button("cmdDecSign")->text(), QStringLiteral("+"));
    QCOMPARE(press(Qt::Key_PageDown), QStringLiteral("3 of 3"));
    QCOMPARE(press(Qt::Key_PageUp, Qt::ControlModifier), QStringLiteral("1 of 3"));
    // Ctrl with Shift is a plain page key.
    QCOMPARE(press(Qt::Key_PageDown, Qt::ControlModifier | Qt::ShiftModifier),
             QStringLiteral("2 of 3"));
    QCOMPARE(press(Qt::Key_PageDown, Qt::ControlModifier), QStringLiteral("3 of 3"));
    press(Qt::Key_End, Qt::ControlModifier);
    press(Qt::Key_Home);
    QCOMPARE(QApplication::focusWidget(), s.txt(11));
    press(Qt::Key_Home, Qt::ControlModifier);
    QCOMPARE(QApplication::focusWidget(), s.txt(0));

    // The search dialog; its criteria are the search's own. The remembered field and text, the
    // default button, Find Next and Prev, and the label instead of a box.
    env.state->UserSearchField = QStringLiteral("Name");
    env.state->UserSearchText = QStringLiteral("old");
    SearchUser search(*env.state, s.editor.recordset(), &s.editor);
    search.show();
    auto* box = control<QLineEdit>(&search, "txtSearchString");
    auto* notFound = control<QLabel>(&search, "Label3");
    auto* first = control<QPushButton>(&search, "cmdFind");
    auto find = [&](const char* button) {
      control<QPushButton>(&search, button)->click();
      return notFound->isVisible() ? QStringLiteral("Not found") : s.txt(2)->text();
    };
    QCOMPARE(box->text(), QStringLiteral("old"));
    QVERIFY(control<QRadioButton>(&search, "Option2")->isChecked());
    QVERIFY(!notFound->isVisible() && first->isDefault());
    box->setText(QStringLiteral("E"));  // Seven Nebula, Three, Twelve
    QCOMPARE(find("cmdFind"), QStringLiteral("Seven Nebula"));
    QVERIFY(control<QPushButton>(&search, "cmdFindNext")->isDefault());
    find("cmdFindNext");
    QCOMPARE(find("cmdFindNext"), QStringLiteral("Twelve"));
    QCOMPARE(find("cmdFindNext"), QStringLiteral("Not found"));
    QCOMPARE(env.prompter.beeps, 1);
    QCOMPARE(s.txt(2)->text(), QStringLiteral("Twelve"));
    QCOMPARE(find("cmdFindPrev"), QStringLiteral("Three"));
    control<QRadioButton>(&search, "Option1")->click();
    QVERIFY(first->isDefault());
    box->setText(QStringLiteral("12"));  // padded in the table, found through the trim
    QCOMPARE(find("cmdFind"), QStringLiteral("Twelve"));
    QCOMPARE(env.state->UserSearchField, QStringLiteral("ObjectNum"));
    QCOMPARE(env.state->UserSearchText, QStringLiteral("12"));
    QVERIFY(env.prompter.entries.isEmpty());
    find("cmdClose");
    QVERIFY(!search.isVisible());
  }
};

QTEST_MAIN(TestEditUserList)
#include "tst_edituserlist.moc"
