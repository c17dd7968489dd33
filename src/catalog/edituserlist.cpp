#include "catalog/edituserlist.h"

#include <QCloseEvent>
#include <QFocusEvent>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>
#include <QVBoxLayout>

#include "catalog/catalogwindowlogic.h"
#include "catalog/database.h"
#include "catalog/recordset.h"
#include "catalog/searchcriteria.h"
#include "catalog/userobjectlogic.h"
#include "core/appstate.h"
#include "core/handler.h"
#include "core/selectall.h"
#include "core/widgetkit.h"
#include "core/windowplacement.h"

namespace {

enum Which { FindFirst, FindNext, FindPrev };

}  // namespace

// ---- the data control ---------------------------------------------------------------------

UserDataControl::UserDataControl(QWidget* parent) : QWidget(parent) {
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  auto arrow = [&](const char* text, const char* name, void (UserDataControl::*signal)()) {
    auto* b = new QToolButton(this);
    b->setObjectName(QLatin1String(name));
    b->setText(QString::fromUtf8(text));
    b->setFocusPolicy(Qt::NoFocus);
    connect(b, &QToolButton::clicked, this, signal);
    layout->addWidget(b);
  };
  arrow("|\u25C0", "btnFirst", &UserDataControl::moveFirst);
  arrow("\u25C0", "btnPrevious", &UserDataControl::movePrevious);
  caption_ = new QLabel(this);
  caption_->setObjectName(QStringLiteral("lblCaption"));
  caption_->setFrameShape(QFrame::StyledPanel);
  caption_->setMinimumWidth(160);
  layout->addWidget(caption_, 1);
  arrow("\u25B6", "btnNext", &UserDataControl::moveNext);
  arrow("\u25B6|", "btnLast", &UserDataControl::moveLast);
}

void UserDataControl::setCaption(const QString& caption) { caption_->setText(caption); }
QString UserDataControl::caption() const { return caption_->text(); }

// ---- the editor ---------------------------------------------------------------------------

QString EditUserList::fieldName(int index) {
  static const char* names[] = {"Category",  "ObjectNum", "Name",          "Type",
                                "RAHour",    "RAMinute",  "DecSign",       "DecDeg",
                                "DecMinute", "Magnitude", "Constellation", "Info"};
  return QString::fromLatin1(names[index]);
}

EditUserList::EditUserList(AppState& state, QWidget* parent) : QDialog(parent), state_(state) {
  setObjectName(QStringLiteral("EditUserList"));
  KeepWindowPlacement(this, state);
  setWindowTitle(QStringLiteral("User Supplied Objects"));
  setModal(true);
  build();
  RunGuarded(state_.prompter(), [this] { load(); });
  enableFields();
}

EditUserList::~EditUserList() = default;

void EditUserList::build() {
  auto* root = new QVBoxLayout(this);
  auto* body = new QHBoxLayout;
  auto* grid = new QGridLayout;
  for (int i = 0; i < 12; ++i) {
    txtFields[i] = named(new QLineEdit(this), QStringLiteral("txtFields%1").arg(i));
    txtFields[i]->setProperty("index", i);
    SelectAllOnFocus(txtFields[i]);
    txtFields[i]->installEventFilter(this);
    connect(txtFields[i], &QLineEdit::textEdited, this, [this, i] {
      if (failedField_ == i) failedField_ = -1;
      writeField(i);
    });
  }
  auto label = [&](const char* text) { return new QLabel(QString::fromUtf8(text), this); };
  auto small = [](QLineEdit* e) {
    e->setFixedWidth(52);
    return e;
  };
  auto sample = [&](const char* text, const char* name) {
    auto* l = named(new QLabel(QString::fromLatin1(text), this), QString::fromLatin1(name));
    l->setEnabled(false);
    return l;
  };
  // A caption and a box across the five columns to its right.
  auto wholeRow = [&](const char* caption, int field, int row) {
    grid->addWidget(label(caption), row, 0);
    grid->addWidget(txtFields[field], row, 1, 1, 5);
  };
  wholeRow("Category (MGC, PGC, etc.)", 0, 0);
  wholeRow("Object Number", 1, 1);
  wholeRow("Common/Alt Name", 2, 2);
  wholeRow("Type (sub-category)", 3, 3);

  grid->addWidget(label("Right Ascension"), 4, 0);
  grid->addWidget(small(txtFields[4]), 4, 2);
  grid->addWidget(label("h"), 4, 3);
  grid->addWidget(small(txtFields[5]), 4, 4);
  grid->addWidget(label("m"), 4, 5);
  grid->addWidget(sample("13", "lblSampleRAHour"), 5, 2);
  grid->addWidget(sample("28.69", "lblSampleRAMinute"), 5, 4);

  grid->addWidget(label("Declination"), 6, 0);
  cmdDecSign = named(new QPushButton(QStringLiteral("+"), this), QStringLiteral("cmdDecSign"));
  cmdDecSign->setFixedWidth(32);
  grid->addWidget(cmdDecSign, 6, 1);
  txtFields[6]->setVisible(false);  // the sign shows on cmdDecSign
  grid->addWidget(small(txtFields[7]), 6, 2);
  grid->addWidget(label("\u00B0"), 6, 3);
  grid->addWidget(small(txtFields[8]), 6, 4);
  grid->addWidget(label("'"), 6, 5);
  grid->addWidget(sample("21", "lblSampleDecDeg"), 7, 2);
  grid->addWidget(sample("45.7", "lblSampleDecMinute"), 7, 4);

  grid->addWidget(named(new QLabel(QStringLiteral("Entries above this line are required"), this),
                        QStringLiteral("lblRequired")),
                  8, 0, 1, 6);
  Line1 = named(new QFrame(this), QStringLiteral("Line1"));
  Line1->setFrameShape(QFrame::HLine);
  Line1->setFrameShadow(QFrame::Sunken);
  grid->addWidget(Line1, 9, 0, 1, 6);
  grid->addWidget(named(new QLabel(QStringLiteral("Entries below this line are optional"), this),
                        QStringLiteral("lblOptional")),
                  10, 0, 1, 6);
  wholeRow("Magnitude", 9, 11);
  wholeRow("Constellation", 10, 12);
  wholeRow("Additional Information", 11, 13);
  grid->setColumnStretch(6, 1);
  body->addLayout(grid, 1);

  // A calculator for the user: it stores nothing.
  auto* converter = named(new QGroupBox(QStringLiteral("Seconds to Decimal"), this),
                          QStringLiteral("fraSeconds"));
  auto* cg = new QGridLayout(converter);
  txtSeconds = named(new QLineEdit(converter), QStringLiteral("txtSeconds"));
  txtDecimal = named(new QLineEdit(converter), QStringLiteral("txtDecimal"));
  txtSeconds->setFixedWidth(60);
  txtDecimal->setFixedWidth(60);
  cg->addWidget(txtSeconds, 0, 0);
  cg->addWidget(new QLabel(QStringLiteral("="), converter), 0, 1);
  cg->addWidget(txtDecimal, 0, 2);
  connect(txtSeconds, &QLineEdit::textChanged, this,
          [this](const QString& t) { txtDecimal->setText(SecondsToDecimalText(t)); });
  auto* side = new QVBoxLayout;
  side->addWidget(converter);
  side->addStretch(1);
  body->addLayout(side);
  root->addLayout(body);

  datUserRS = named(new UserDataControl(this), QStringLiteral("datUserRS"));
  root->addWidget(datUserRS);
  connect(datUserRS, &UserDataControl::moveFirst, this,
          [this] { moveRecord(int(UserEditorKey::First)); });
  connect(datUserRS, &UserDataControl::movePrevious, this,
          [this] { moveRecord(int(UserEditorKey::Previous)); });
  connect(datUserRS, &UserDataControl::moveNext, this,
          [this] { moveRecord(int(UserEditorKey::Next)); });
  connect(datUserRS, &UserDataControl::moveLast, this,
          [this] { moveRecord(int(UserEditorKey::Last)); });

  auto* buttons = new QHBoxLayout;
  auto button = [&](const char* caption, const char* name) {
    auto* b = named(new QPushButton(QString::fromLatin1(caption), this), QString::fromLatin1(name));
    b->setAutoDefault(false);
    buttons->addWidget(b);
    return b;
  };
  cmdAdd = button("&Add", "cmdAdd");
  cmdDelete = button("&Delete", "cmdDelete");
  cmdRefresh = button("&Re-Sort", "cmdRefresh");
  cmdFind = button("&Search", "cmdFind");
  cmdClose = button("&Close", "cmdClose");
  cmdDecSign->setAutoDefault(false);
  root->addLayout(buttons);

  connect(cmdDecSign, &QPushButton::clicked, this, &EditUserList::onDecSign);
  connect(cmdAdd, &QPushButton::clicked, this, &EditUserList::onAdd);
  connect(cmdDelete, &QPushButton::clicked, this, &EditUserList::onDelete);
  connect(cmdRefresh, &QPushButton::clicked, this, &EditUserList::onRefresh);
  connect(cmdFind, &QPushButton::clicked, this, &EditUserList::onFind);
  connect(cmdClose, &QPushButton::clicked, this,
          [this] { RunIgnoringErrors([this] { close(); }); });

  // The form sees its keys before its controls.
  installEventFilter(this);
  for (QWidget* w : findChildren<QWidget*>()) w->installEventFilter(this);
}

void EditUserList::load() {
  db_ = Database::open(state_.userListPath(), Database::Mode::ReadWrite);
  rs_ = std::make_unique<Recordset>(db_, UserObjectsSelect());
  connect(rs_.get(), &Recordset::currentChanged, this, [this] { reposition(); });
  mbAddNewFlag = false;
  mbFirstActivate = true;
}

void EditUserList::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  if (mbFirstActivate) RunGuarded(state_.prompter(), [this] { firstActivate(); });
}

void EditUserList::firstActivate() {
  mbFirstActivate = false;
  if (!rs_) return;
  // An empty table opens on an empty form, where Add works.
  CountAndGoFirst(*rs_);
  reposition();
}

void EditUserList::reposition() {
  if (!rs_ || mbAddNewFlag) return;
  datUserRS->setCaption(UserRecordPosition(rs_->AbsolutePosition() + 1, rs_->RecordCount()));
  showRecord();
  if (rs_->hasCurrentRow() && txtFields[9]->text().isEmpty()) {
    showing_ = true;
    txtFields[9]->setText(QStringLiteral(" "));
    showing_ = false;
  }
  showDecSign();
  enableFields();
}

void EditUserList::showRecord() {
  failedField_ = -1;
  showing_ = true;
  const bool row = rs_ && (rs_->hasCurrentRow() || rs_->editMode() == Recordset::EditMode::AddNew);
  for (int i = 0; i < 12; ++i) txtFields[i]->setText(row ? rs_->text(fieldName(i)) : QString());
  showing_ = false;
}

void EditUserList::showDecSign() { cmdDecSign->setText(DecSignCaption(txtFields[6]->text())); }

void EditUserList::enableFields() {
  const bool row = rs_ && (mbAddNewFlag || rs_->hasCurrentRow() ||
                           rs_->editMode() == Recordset::EditMode::AddNew);
  for (QLineEdit* f : txtFields) f->setEnabled(row);
  cmdDecSign->setEnabled(row);
}

void EditUserList::writeField(int index) {
  if (showing_ || !rs_) return;
  const QString text = txtFields[index]->text();
  RunGuarded(state_.prompter(), [&] {
    rs_->setValue(fieldName(index), text.isEmpty() ? QVariant() : QVariant(text));
  });
}

bool EditUserList::leaveField(int index) {
  const QString before = txtFields[index]->text();
  UserFieldCheck check;
  // The field test has a silent trap.
  if (!RunGuarded([&] { check = ValidateUserField(index, before, txtFields[7]->text()); },
                  [](const AppError&) {}))
    return true;
  if (check.text != before) {
    txtFields[index]->setText(check.text);
    writeField(index);
  }
  if (check.ok()) {
    if (failedField_ == index) failedField_ = -1;
    return true;
  }
  failedField_ = index;
  refocusing_ = true;
  state_.prompter().beep();
  state_.prompter().message(UserFieldErrorTitle(), check.message);
  txtFields[index]->setFocus(Qt::OtherFocusReason);
  refocusing_ = false;
  return false;
}

// Keys and the data control move the record without taking the focus from the field being
// typed in, so its test runs here before the record is written; a failed test stops the move.
bool EditUserList::checkFocusedField() {
  for (int i = 0; i < 12; ++i) {
    if (!txtFields[i]->hasFocus() || !txtFields[i]->isEnabled()) continue;
    // Its message was just shown, as the focus left for a button that then went ahead.
    if (failedField_ == i) {
      state_.prompter().beep();
      return false;
    }
    return leaveField(i);
  }
  return true;
}

// A record being typed is written as the window goes, as it would be by a move.
bool EditUserList::finishEditing() {
  if (!checkFocusedField()) return false;
  if (rs_ && rs_->editMode() != Recordset::EditMode::None)
    return RunGuarded(state_.prompter(), [this] { rs_->Update(); });
  return true;
}

bool EditUserList::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusOut && !refocusing_) {
    auto* edit = qobject_cast<QLineEdit*>(watched);
    const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
    if (edit && reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason) {
      for (int i = 0; i < 12; ++i)
        if (txtFields[i] == edit && edit->isEnabled()) leaveField(i);
    }
  } else if (event->type() == QEvent::KeyPress) {
    auto* key = static_cast<QKeyEvent*>(event);
    const UserEditorKey action = UserEditorKeyAction(key->key(), key->modifiers());
    switch (action) {
      case UserEditorKey::None: break;
      case UserEditorKey::FocusFirst: txtFields[0]->setFocus(Qt::OtherFocusReason); return true;
      case UserEditorKey::FocusLast: txtFields[11]->setFocus(Qt::OtherFocusReason); return true;
      default: moveRecord(int(action)); return true;
    }
  }
  return QDialog::eventFilter(watched, event);
}

void EditUserList::moveRecord(int key) {
  // A new record leaves only by Save.
  if (!rs_ || mbAddNewFlag) return;
  if (!checkFocusedField()) return;
  RunGuarded(state_.prompter(), [&] { ApplyUserEditorMove(*rs_, UserEditorKey(key)); });
}

void EditUserList::ToggleButtons() {
  const bool on = !mbAddNewFlag;
  for (QWidget* w : {static_cast<QWidget*>(datUserRS), static_cast<QWidget*>(cmdAdd),
                     static_cast<QWidget*>(cmdDelete), static_cast<QWidget*>(cmdFind),
                     static_cast<QWidget*>(cmdClose)})
    w->setEnabled(on);
  cmdRefresh->setText(ToggleButtonsCaption(mbAddNewFlag));
}

void EditUserList::onDecSign() {
  RunGuarded(state_.prompter(), [this] {
    const QString sign = ToggledDecSign(txtFields[6]->text());
    txtFields[6]->setText(sign);
    cmdDecSign->setText(sign);
    writeField(6);
  });
}

void EditUserList::onAdd() {
  if (!checkFocusedField()) return;
  RunGuarded(state_.prompter(), [this] {
    if (!rs_) throw AppError::of(ErrNo::NoCurrentRecord);
    rs_->AddNew();
    mbAddNewFlag = true;
    ToggleButtons();
    datUserRS->setCaption(UserNewRecordPosition(rs_->RecordCount()));
    showRecord();
    enableFields();
    txtFields[6]->setText(QStringLiteral("+"));
    cmdDecSign->setText(QStringLiteral("+"));
    writeField(6);
    txtFields[0]->setFocus(Qt::OtherFocusReason);
  });
}

void EditUserList::onRefresh() {
  if (!checkFocusedField()) return;
  RunGuarded(state_.prompter(), [this] {
    if (!rs_) throw AppError::of(ErrNo::NoCurrentRecord);
    rs_->Requery();  // writes an edited or a new record, and sorts
    mbAddNewFlag = false;
    CountAndGoFirst(*rs_);
    ToggleButtons();
    reposition();
    showDecSign();
  });
}

void EditUserList::onDelete() {
  RunGuarded(state_.prompter(), [this] {
    if (state_.prompter().ask(UserDeleteTitle(), UserDeleteQuestion(), Prompter::Buttons::YesNo,
                              Prompter::Answer::Yes) != Prompter::Answer::Yes)
      return;
    if (!rs_) throw AppError::of(ErrNo::NoCurrentRecord);
    DeleteUserRecord(*rs_);
    reposition();
    showDecSign();
  });
}

void EditUserList::onFind() {
  if (!checkFocusedField()) return;
  RunGuarded(state_.prompter(), [this] {
    SearchUser search(state_, rs_.get(), this);
    search.exec();
  });
}

void EditUserList::closeEvent(QCloseEvent* event) {
  if (!finishEditing()) {
    event->ignore();
    return;
  }
  while (QGuiApplication::overrideCursor()) QGuiApplication::restoreOverrideCursor();
  QDialog::closeEvent(event);
}

// Escape goes the same way as the close box.
void EditUserList::reject() {
  if (!finishEditing()) return;
  while (QGuiApplication::overrideCursor()) QGuiApplication::restoreOverrideCursor();
  QDialog::reject();
}

// ---- search ---------------------------------------------------------------------------------

SearchUser::SearchUser(AppState& state, Recordset* rs, QWidget* parent)
    : QDialog(parent), state_(state), rs_(rs) {
  setObjectName(QStringLiteral("SearchUser"));
  setWindowTitle(QStringLiteral("Search User Supplied List"));
  setModal(true);
  auto* root = new QVBoxLayout(this);
  root->addWidget(new QLabel(QStringLiteral("Search for:"), this));
  txtSearchString = named(new QLineEdit(this), QStringLiteral("txtSearchString"));
  SelectAllOnFocus(txtSearchString);
  root->addWidget(txtSearchString);
  Frame1 = named(new QGroupBox(QStringLiteral("Column to Search"), this), QStringLiteral("Frame1"));
  auto* fl = new QVBoxLayout(Frame1);
  Option1 =
      named(new QRadioButton(QStringLiteral("Object Number"), Frame1), QStringLiteral("Option1"));
  Option2 = named(new QRadioButton(QStringLiteral("Common/Alternate Name"), Frame1),
                  QStringLiteral("Option2"));
  fl->addWidget(Option1);
  fl->addWidget(Option2);
  root->addWidget(Frame1);
  Label3 = named(new QLabel(QStringLiteral("Not found."), this), QStringLiteral("Label3"));
  Label3->setVisible(false);
  root->addWidget(Label3);
  auto* buttons = new QHBoxLayout;
  cmdFind = named(new QPushButton(QStringLiteral("&Find First"), this), QStringLiteral("cmdFind"));
  cmdFindNext =
      named(new QPushButton(QStringLiteral("Find &Next"), this), QStringLiteral("cmdFindNext"));
  cmdFindPrev =
      named(new QPushButton(QStringLiteral("Find &Previous"), this), QStringLiteral("cmdFindPrev"));
  cmdClose = named(new QPushButton(QStringLiteral("&Close"), this), QStringLiteral("cmdClose"));
  for (QPushButton* b : {cmdFind, cmdFindNext, cmdFindPrev, cmdClose}) {
    b->setAutoDefault(false);
    buttons->addWidget(b);
  }
  root->addLayout(buttons);

  txtSearchString->setText(state_.UserSearchText);
  cmdFind->setDefault(true);
  if (UserSearchOptionOf(state_.UserSearchField) == SearchOption::Number) Option1->setChecked(true);
  else Option2->setChecked(true);

  connect(txtSearchString, &QLineEdit::textChanged, this, [this] { cmdFind->setDefault(true); });
  for (QRadioButton* o : {Option1, Option2})
    connect(o, &QRadioButton::clicked, this, [this] { cmdFind->setDefault(true); });
  connect(cmdFind, &QPushButton::clicked, this, [this] { find(FindFirst); });
  connect(cmdFindNext, &QPushButton::clicked, this, [this] { find(FindNext); });
  connect(cmdFindPrev, &QPushButton::clicked, this, [this] { find(FindPrev); });
  connect(cmdClose, &QPushButton::clicked, this, &QDialog::accept);
}

void SearchUser::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  Label3->setVisible(false);
  txtSearchString->setFocus(Qt::OtherFocusReason);
  txtSearchString->selectAll();
}

void SearchUser::find(int which) {
  Label3->setVisible(false);
  cmdClose->setEnabled(false);
  RunGuarded(state_.prompter(), [&] {
    if (which == FindFirst) cmdFindNext->setDefault(true);
    txtSearchString->setFocus(Qt::OtherFocusReason);
    repaint();
    state_.UserSearchField =
        UserSearchFieldOf(Option1->isChecked() ? SearchOption::Number : SearchOption::Name);
    const QString criteria = SearchUserCriteria(state_.UserSearchField, txtSearchString->text());
    bool matched = false;
    if (rs_) {
      if (which == FindFirst) rs_->FindFirst(criteria);
      else if (which == FindNext) rs_->FindNext(criteria);
      else rs_->FindPrevious(criteria);
      matched = !rs_->NoMatch();
    }
    if (!matched) {
      Label3->setVisible(true);
      state_.prompter().beep();
    }
    state_.UserSearchText = txtSearchString->text();
  });
  // Even after an error the dialog can be closed.
  cmdClose->setEnabled(true);
}
