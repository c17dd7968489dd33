#pragma once

#include <QDialog>
#include <array>
#include <memory>

class AppState;
class Database;
class QFrame;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QToolButton;
class Recordset;

// The data control of the user objects editor: buttons to the first, previous, next and last
// record around a caption that tells the position.
class UserDataControl : public QWidget {
  Q_OBJECT
 public:
  explicit UserDataControl(QWidget* parent = nullptr);
  void setCaption(const QString& caption);
  QString caption() const;
 signals:
  void moveFirst();
  void movePrevious();
  void moveNext();
  void moveLast();

 private:
  QLabel* caption_;
};

// EditUserList: one record of UserObjects at a time, with add, delete, re-sort and search.
// The twelve boxes are bound to the record: what is typed goes into it, and it is written when
// the record is left, re-sorted or saved.
class EditUserList : public QDialog {
  Q_OBJECT
 public:
  explicit EditUserList(AppState& state, QWidget* parent = nullptr);
  ~EditUserList() override;

  // The field behind txtFields(index).
  static QString fieldName(int index);

  Recordset* recordset() const { return rs_.get(); }
  bool addNewFlag() const { return mbAddNewFlag; }

 protected:
  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void reject() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void build();
  void load();
  void firstActivate();
  void ToggleButtons();
  void reposition();
  void showRecord();
  void showDecSign();
  void writeField(int index);
  bool leaveField(int index);
  bool checkFocusedField();
  bool finishEditing();
  void enableFields();
  void moveRecord(int key);

  void onDecSign();
  void onAdd();
  void onDelete();
  void onRefresh();
  void onFind();

  AppState& state_;
  std::shared_ptr<Database> db_;
  std::unique_ptr<Recordset> rs_;
  bool mbAddNewFlag = false;
  bool mbFirstActivate = true;
  bool showing_ = false;     // the boxes are being filled from the record
  bool refocusing_ = false;  // a failed field is taking the focus back
  int failedField_ = -1;     // the field whose test failed, until it is typed in again

  UserDataControl* datUserRS = nullptr;
  std::array<QLineEdit*, 12> txtFields{};
  QPushButton* cmdDecSign = nullptr;
  QPushButton *cmdAdd = nullptr, *cmdDelete = nullptr, *cmdRefresh = nullptr, *cmdFind = nullptr,
              *cmdClose = nullptr;
  QLineEdit *txtSeconds = nullptr, *txtDecimal = nullptr;
  QFrame* Line1 = nullptr;
};

// SearchUser: finds a user object by number or name on the editor's recordset, which the
// editor behind follows.
class SearchUser : public QDialog {
  Q_OBJECT
 public:
  SearchUser(AppState& state, Recordset* rs, QWidget* parent = nullptr);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void find(int which);

  AppState& state_;
  Recordset* rs_;
  QLineEdit* txtSearchString = nullptr;
  QGroupBox* Frame1 = nullptr;
  QRadioButton *Option1 = nullptr, *Option2 = nullptr;
  QPushButton *cmdFind = nullptr, *cmdFindNext = nullptr, *cmdFindPrev = nullptr,
              *cmdClose = nullptr;
  QLabel* Label3 = nullptr;
};
