#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QtTest>

#include "catalog/catalogdialogs.h"
#include "catalog/catalogpages.h"
#include "catalog/catalogwindowrules.h"
#include "catalog/edituserlist.h"
#include "catalog/recordset.h"
#include "fixturedb.h"
#include "support/testenv.h"

namespace {

template <typename T>
T* child(QWidget* w, const QString& name) {
  T* c = w->findChild<T*>(name);
  if (!c) qFatal("no control %s", qPrintable(name));
  return c;
}

QLineEdit* txt(QWidget* w, int index) {
  return child<QLineEdit>(w, QStringLiteral("txtFields%1").arg(index));
}
QPushButton* button(QWidget* w, const char* name) {
  return child<QPushButton>(w, QLatin1String(name));
}
QString caption(QWidget* w) {
  return child<UserDataControl>(w, QStringLiteral("datUserRS"))->caption();
}

// The user list with a few objects of our own.
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

// The editor shown and active, so that focus moves as the user's would.
struct Shown {
  explicit Shown(AppState& state) : editor(state) {
    editor.show();
    QApplication::setActiveWindow(&editor);
    QVERIFY(QTest::qWaitForWindowActive(&editor));
  }
  // Types into a field and leaves it for another.
  void enter(int index, const QString& text, int next) {
    QLineEdit* f = txt(&editor, index);
    f->setFocus();
    QCoreApplication::processEvents();
    QTest::keyClicks(f, text);
    txt(&editor, next)->setFocus();
    QCoreApplication::processEvents();
  }
  EditUserList editor;
};

QStringList objectNums(const QString& path) {
  auto db = Database::open(path, Database::Mode::ReadOnly);
  Statement st = db->prepare(QStringLiteral(
      "SELECT Category || ' ' || trim(ObjectNum) FROM UserObjects ORDER BY Category, ObjectNum"));
  QStringList out;
  while (st.step()) out << st.value(0).toString();
  return out;
}

}  // namespace

class TestEditUserList : public QObject {
  Q_OBJECT

 private slots:
  void opensOnTheFirstRecordInOrder() {
    TestEnv env;
    seed(env, 3);
    Shown s(*env.state);
    QCOMPARE(s.editor.windowTitle(), QStringLiteral("User Supplied Objects"));
    QCOMPARE(caption(&s.editor), QStringLiteral(" Record: 1 of 3"));
    QCOMPARE(txt(&s.editor, 0)->text(), QStringLiteral("MGC"));
    // A blank magnitude shows as one blank.
    QTest::keyClick(&s.editor, Qt::Key_PageDown);
    QCOMPARE(caption(&s.editor), QStringLiteral(" Record: 2 of 3"));
    QCOMPARE(txt(&s.editor, 9)->text(), QStringLiteral("11.5"));
    QTest::keyClick(&s.editor, Qt::Key_PageDown);
    QCOMPARE(caption(&s.editor), QStringLiteral(" Record: 3 of 3"));
    QCOMPARE(txt(&s.editor, 0)->text(), QStringLiteral("PGC"));
    QCOMPARE(txt(&s.editor, 9)->text(), QStringLiteral(" "));
    QCOMPARE(button(&s.editor, "cmdDecSign")->text(), QStringLiteral("+"));
    QVERIFY(env.prompter.entries.isEmpty());
  }

  // The rules themselves are tested on their own; these rows prove the editor applies them.
  void fieldRules_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("decDeg");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("left");
    QTest::addColumn<QString>("message");
    QTest::newRow("number padded") << 1 << "" << "12" << "        12" << "";
    QTest::newRow("hour 24") << 4 << "" << "24" << "24" << "RA Hour must be a value between 0 and 23";
    QTest::newRow("90 and more") << 8 << "90" << "0.01" << "0.01"
                                 << "Declination Minute must be a value of 0 when Degree is 90";
    QTest::newRow("quotes go") << 2 << "" << "M\"31\"" << "M31" << "";
  }
  void fieldRules() {
    QFETCH(int, index);
    QFETCH(QString, decDeg);
    QFETCH(QString, typed);
    QFETCH(QString, left);
    QFETCH(QString, message);
    TestEnv env;
    seed(env, 1);
    Shown s(*env.state);
    if (!decDeg.isEmpty()) s.enter(7, decDeg, 0);
    env.prompter.clear();
    s.enter(index, typed, index == 0 ? 2 : 0);
    QLineEdit* f = txt(&s.editor, index);
    QCOMPARE(f->text(), left);
    if (message.isEmpty()) {
      QVERIFY(env.prompter.entries.isEmpty());
      QCOMPARE(env.prompter.beeps, 0);
    } else {
      QCOMPARE(env.prompter.beeps, 1);
      QCOMPARE(env.prompter.entries.size(), 1);
      QCOMPARE(env.prompter.entries[0].title, QStringLiteral("Error"));
      QCOMPARE(env.prompter.entries[0].text, message);
      QCOMPARE(QApplication::focusWidget(), f);
    }
    // What the field left behind is what the record gets.
    button(&s.editor, "cmdRefresh")->click();
    Recordset* rs = s.editor.recordset();
    QCOMPARE(rs->text(EditUserList::fieldName(index)).trimmed(), left.trimmed());
  }

  // Keys, the data control and Escape leave the record without taking the focus from the
  // field: its test still runs before anything is written, and a failed test stops them.
  void fieldTestedBeforeTheRecordIsLeft_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("key");  // with its modifiers
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("message");
    QTest::newRow("quote, page down") << 2 << "M\"31" << int(Qt::Key_PageDown) << "M31" << "";
    QTest::newRow("quote, escape") << 2 << "M\"31" << int(Qt::Key_Escape) << "M31" << "";
    QTest::newRow("minus, ctrl page down")
        << 7 << "-45" << (int(Qt::Key_PageDown) | int(Qt::ControlModifier)) << "45" << "";
    QTest::newRow("hour 30, page down") << 4 << "30" << int(Qt::Key_PageDown) << "1"
                                        << "RA Hour must be a value between 0 and 23";
    QTest::newRow("hour 30, escape") << 4 << "30" << int(Qt::Key_Escape) << "1"
                                     << "RA Hour must be a value between 0 and 23";
  }
  void fieldTestedBeforeTheRecordIsLeft() {
    QFETCH(int, index);
    QFETCH(QString, typed);
    QFETCH(int, key);
    QFETCH(QString, stored);
    QFETCH(QString, message);
    TestEnv env;
    seed(env, 2);
    // The first record in order is MGC 7.
    auto stored_now = [&] {
      auto db = Database::open(env.state->userListPath(), Database::Mode::ReadOnly);
      Statement st = db->prepare(
          QStringLiteral("SELECT %1 FROM UserObjects WHERE Category = 'MGC'")
              .arg(EditUserList::fieldName(index)));
      return st.step() ? FieldText(st.value(0)) : QString();
    };
    Shown s(*env.state);
    QLineEdit* f = txt(&s.editor, index);
    f->setFocus();
    QCoreApplication::processEvents();
    f->selectAll();
    QTest::keyClicks(f, typed);
    env.prompter.clear();
    QTest::keyClick(f, Qt::Key(key & ~Qt::KeyboardModifierMask),
                    Qt::KeyboardModifiers(key & Qt::KeyboardModifierMask));
    if (message.isEmpty()) {
      QVERIFY(env.prompter.entries.isEmpty());
      QCOMPARE(stored_now(), stored);
      return;
    }
    QCOMPARE(env.prompter.entries.size(), 1);
    QCOMPARE(env.prompter.entries[0].text, message);
    QVERIFY(s.editor.isVisible());
    QCOMPARE(caption(&s.editor), QStringLiteral(" Record: 1 of 2"));
    QCOMPARE(QApplication::focusWidget(), f);
    // Leaving by a button after the message: the focus leaving shows it once more, the
    // button itself is refused with a beep and no further box.
    QTest::mouseClick(button(&s.editor, "cmdClose"), Qt::LeftButton);
    QVERIFY(s.editor.isVisible());
    QCOMPARE(env.prompter.entries.size(), 2);
    QTest::keyClick(f, Qt::Key_PageDown);
    QCOMPARE(env.prompter.entries.size(), 2);
    QCOMPARE(caption(&s.editor), QStringLiteral(" Record: 1 of 2"));
    QCOMPARE(stored_now(), QStringLiteral("5"));
  }

  void twoBadFieldsDoNotChaseEachOther() {
    TestEnv env;
    seed(env, 1);
    Shown s(*env.state);
    s.enter(4, QStringLiteral("30"), 5);
    // The hour takes the focus back from the minutes; the minutes are not tested meanwhile.
    QCOMPARE(env.prompter.entries.size(), 1);
    QCOMPARE(QApplication::focusWidget(), txt(&s.editor, 4));
  }

  void addSaveResortDelete() {
    TestEnv env;
    seed(env, 2);
    Shown s(*env.state);
    button(&s.editor, "cmdAdd")->click();
    QVERIFY(s.editor.addNewFlag());
    QCOMPARE(caption(&s.editor), QStringLiteral(" Record: New of 3"));
    QCOMPARE(button(&s.editor, "cmdRefresh")->text(), QStringLiteral("&Save"));
    for (const char* name : {"cmdAdd", "cmdDelete", "cmdFind", "cmdClose"})
      QVERIFY2(!button(&s.editor, name)->isEnabled(), name);
    QVERIFY(!child<UserDataControl>(&s.editor, QStringLiteral("datUserRS"))->isEnabled());
    QCOMPARE(button(&s.editor, "cmdDecSign")->text(), QStringLiteral("+"));
    QCOMPARE(QApplication::focusWidget(), txt(&s.editor, 0));
    QCOMPARE(txt(&s.editor, 2)->text(), QString());
    // Page keys do not leave a new record.
    QTest::keyClick(&s.editor, Qt::Key_PageDown);
    QVERIFY(s.editor.addNewFlag());

    s.enter(0, QStringLiteral("AAA"), 1);
    s.enter(1, QStringLiteral("5"), 2);
    s.enter(2, QStringLiteral("Mine"), 3);
    button(&s.editor, "cmdDecSign")->click();
    button(&s.editor, "cmdRefresh")->click();
    QVERIFY(!s.editor.addNewFlag());
    QCOMPARE(button(&s.editor, "cmdRefresh")->text(), QStringLiteral("&Re-sort"));
    QVERIFY(button(&s.editor, "cmdClose")->isEnabled());
    // After a save the form stands on the first record, which the new one is by the order.
    QCOMPARE(caption(&s.editor), QStringLiteral(" Record: 1 of 3"));
    QCOMPARE(txt(&s.editor, 0)->text(), QStringLiteral("AAA"));
    QCOMPARE(button(&s.editor, "cmdDecSign")->text(), QStringLiteral("-"));
    QCOMPARE(objectNums(env.state->userListPath()),
             (QStringList{"AAA 5", "MGC 7", "PGC 12"}));

    // An edit re-sorted.
    s.enter(0, QStringLiteral("ZZZ"), 2);
    button(&s.editor, "cmdRefresh")->click();
    QCOMPARE(txt(&s.editor, 0)->text(), QStringLiteral("MGC"));
    QCOMPARE(objectNums(env.state->userListPath()),
             (QStringList{"MGC 7", "PGC 12", "ZZZ 5"}));

    // Deleting the last record moves to the new last one; No deletes nothing.
    QTest::keyClick(&s.editor, Qt::Key_PageDown, Qt::ControlModifier);
    QCOMPARE(caption(&s.editor), QStringLiteral(" Record: 3 of 3"));
    env.prompter.answer(Prompter::Answer::No);
    button(&s.editor, "cmdDelete")->click();
    QCOMPARE(env.prompter.entries.last().title, QStringLiteral("Confirm"));
    QCOMPARE(env.prompter.entries.last().text, QStringLiteral("Delete this object?"));
    QCOMPARE(objectNums(env.state->userListPath()).size(), 3);
    env.prompter.answer(Prompter::Answer::Yes);
    button(&s.editor, "cmdDelete")->click();
    QCOMPARE(caption(&s.editor), QStringLiteral(" Record: 2 of 2"));
    QCOMPARE(txt(&s.editor, 0)->text(), QStringLiteral("PGC"));
    QCOMPARE(objectNums(env.state->userListPath()), (QStringList{"MGC 7", "PGC 12"}));
  }

  void anEmptyTableOpensWhereAddWorks() {
    TestEnv env;
    seed(env, 0);
    Shown s(*env.state);
    QVERIFY(env.prompter.entries.isEmpty());
    QCOMPARE(caption(&s.editor), QStringLiteral(" Record: 0 of 0"));
    QVERIFY(!txt(&s.editor, 0)->isEnabled());
    button(&s.editor, "cmdAdd")->click();
    QVERIFY(txt(&s.editor, 0)->isEnabled());
    s.enter(0, QStringLiteral("Mine"), 1);
    s.enter(1, QStringLiteral("1"), 2);
    button(&s.editor, "cmdRefresh")->click();
    QCOMPARE(caption(&s.editor), QStringLiteral(" Record: 1 of 1"));
    env.prompter.answer(Prompter::Answer::Yes);
    button(&s.editor, "cmdDelete")->click();
    QCOMPARE(objectNums(env.state->userListPath()), QStringList());
    QVERIFY(!txt(&s.editor, 0)->isEnabled());
    QCOMPARE(txt(&s.editor, 0)->text(), QString());
  }

  void closingWritesARecordBeingTyped() {
    TestEnv env;
    seed(env, 1);
    {
      Shown s(*env.state);
      s.enter(2, QStringLiteral("Renamed"), 3);
      button(&s.editor, "cmdClose")->click();
      QVERIFY(!s.editor.isVisible());
    }
    auto db = Database::open(env.state->userListPath(), Database::Mode::ReadOnly);
    Statement st = db->prepare(QStringLiteral("SELECT Name FROM UserObjects"));
    QVERIFY(st.step());
    QCOMPARE(st.value(0).toString(), QStringLiteral("Renamed"));
  }

  void keys_data() {
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<int>("action");
    const int ctrl = Qt::ControlModifier, shift = Qt::ShiftModifier;
    QTest::newRow("Home") << int(Qt::Key_Home) << 0 << int(UserEditorKey::None);
    QTest::newRow("Ctrl+Home") << int(Qt::Key_Home) << ctrl << int(UserEditorKey::FocusFirst);
    QTest::newRow("PgUp") << int(Qt::Key_PageUp) << 0 << int(UserEditorKey::Previous);
    QTest::newRow("Ctrl+Shift+PgDn is alone") << int(Qt::Key_PageDown) << (ctrl | shift)
                                              << int(UserEditorKey::Next);
    QTest::newRow("Ctrl+PgDn") << int(Qt::Key_PageDown) << ctrl << int(UserEditorKey::Last);
    QTest::newRow("keypad PgDn") << int(Qt::Key_PageDown) << int(Qt::KeypadModifier)
                                 << int(UserEditorKey::Next);
  }
  void keys() {
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(int, action);
    QCOMPARE(int(UserEditorKeyAction(key, Qt::KeyboardModifiers(modifiers))), action);
  }

  void keysMoveAndStopAtTheEnds() {
    TestEnv env;
    seed(env, 3);
    Shown s(*env.state);
    txt(&s.editor, 2)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_PageUp);
    QCOMPARE(caption(&s.editor), QStringLiteral(" Record: 1 of 3"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_PageDown, Qt::ControlModifier);
    QCOMPARE(caption(&s.editor), QStringLiteral(" Record: 3 of 3"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_PageDown);
    QCOMPARE(caption(&s.editor), QStringLiteral(" Record: 3 of 3"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_End, Qt::ControlModifier);
    QCOMPARE(QApplication::focusWidget(), txt(&s.editor, 11));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Home, Qt::ControlModifier);
    QCOMPARE(QApplication::focusWidget(), txt(&s.editor, 0));
  }

  void search() {
    TestEnv env;
    seed(env, 3);
    env.state->UserSearchField = QStringLiteral("Name");
    env.state->UserSearchText = QStringLiteral("old");
    Shown s(*env.state);
    SearchUser search(*env.state, s.editor.recordset(), &s.editor);
    search.show();
    auto* box = child<QLineEdit>(&search, QStringLiteral("txtSearchString"));
    auto* notFound = child<QLabel>(&search, QStringLiteral("Label3"));
    QCOMPARE(box->text(), QStringLiteral("old"));
    QVERIFY(child<QRadioButton>(&search, QStringLiteral("Option2"))->isChecked());
    QVERIFY(!notFound->isVisible());
    QVERIFY(button(&search, "cmdFind")->isDefault());

    child<QRadioButton>(&search, QStringLiteral("Option1"))->click();
    box->setText(QStringLiteral("12"));  // padded in the table, found through the trim
    button(&search, "cmdFind")->click();
    QVERIFY(button(&search, "cmdFindNext")->isDefault());
    QVERIFY(!notFound->isVisible());
    QCOMPARE(txt(&s.editor, 2)->text(), QStringLiteral("Twelve"));
    QCOMPARE(caption(&s.editor), QStringLiteral(" Record: 3 of 3"));
    QCOMPARE(env.state->UserSearchField, QStringLiteral("ObjectNum"));
    QCOMPARE(env.state->UserSearchText, QStringLiteral("12"));

    child<QRadioButton>(&search, QStringLiteral("Option2"))->click();
    QVERIFY(button(&search, "cmdFind")->isDefault());
    box->setText(QStringLiteral("E"));  // Seven Nebula, Twelve, Three: any case, anywhere
    button(&search, "cmdFind")->click();
    QCOMPARE(txt(&s.editor, 2)->text(), QStringLiteral("Seven Nebula"));
    button(&search, "cmdFindNext")->click();
    button(&search, "cmdFindNext")->click();
    QCOMPARE(txt(&s.editor, 2)->text(), QStringLiteral("Twelve"));
    button(&search, "cmdFindNext")->click();
    QVERIFY(notFound->isVisible());
    QCOMPARE(env.prompter.beeps, 1);
    QCOMPARE(txt(&s.editor, 2)->text(), QStringLiteral("Twelve"));
    button(&search, "cmdFindPrev")->click();
    QVERIFY(!notFound->isVisible());
    QCOMPARE(txt(&s.editor, 2)->text(), QStringLiteral("Three"));

    // A quote is part of the text searched for, not of the query.
    box->setText(QStringLiteral("O'Neil"));
    button(&search, "cmdFind")->click();
    QVERIFY(env.prompter.entries.isEmpty());
    QVERIFY(notFound->isVisible());
    button(&search, "cmdClose")->click();
    QVERIFY(!search.isVisible());
  }

  void showEditUserListMakesTheListFirst() {
    TestEnv env;
    QVERIFY(!QFileInfo::exists(env.state->userListPath()));
    QTimer::singleShot(0, [] {
      QWidget* w = QApplication::activeModalWidget();
      QVERIFY(w);
      QCOMPARE(w->objectName(), QStringLiteral("EditUserList"));
      w->close();
    });
    ShowEditUserList(*env.state, nullptr);
    QVERIFY(QFileInfo::exists(env.state->userListPath()));
    QVERIFY(env.prompter.entries.isEmpty());
  }
};

QTEST_MAIN(TestEditUserList)
#include "tst_edituserlist.moc"
