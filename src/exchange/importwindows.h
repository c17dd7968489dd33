#pragma once

#include <QDialog>
#include <functional>
#include <memory>

#include "exchange/exchangejobs.h"

class AppState;
class Database;
class QCheckBox;
class QLabel;
class QPushButton;

// The open-file dialog of an import: its title, start folder and filter; an empty answer is a
// cancelled dialog.
using ImportFileChooser =
    std::function<QString(const QString& title, const QString& folder, const QString& filter)>;
QString ChooseImportFile(QWidget* parent, const QString& title, const QString& folder,
                         const QString& filter);

// The three imports: a CSV file into the open list (frmImportCurrent) or into the user's
// objects (frmImportUserList), and a tour into the open list (ImporthcTour).
enum class ImportKind { CsvIntoList, CsvIntoUserList, TourIntoList };

// An import window. Its load binds the target and asks for the file before the window shows;
// the CSV windows then wait for Import with the header tick, the tour window imports as soon
// as it is shown. It ends with the completion message or "Incorrect File Format".
class ImportWindow : public QDialog {
  Q_OBJECT
 public:
  // dataSource: the open list's document (not used for the user's objects).
  ImportWindow(ImportKind kind, AppState& state, QString dataSource, QWidget* parent = nullptr);
  ~ImportWindow() override;

  // False when the window is not to be shown: the file dialog was cancelled, or the target
  // could not be opened.
  bool load(const ImportFileChooser& choose);
  void cmdOK_Click();

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  ImportKind kind_;
  AppState& state_;
  QString dataSource_;
  QString file_;
  std::shared_ptr<Database> datPrimaryRS_;
  bool started_ = false;
  QLabel* Label1_ = nullptr;
  QLabel* Label2_ = nullptr;
  QLabel* lblFile = nullptr;
  QCheckBox* chkImportHasHeader = nullptr;
  QPushButton* cmdOK = nullptr;
  QPushButton* cmdCancel = nullptr;
};

// Shows an import window modally when its load succeeds; true when it was shown.
bool ShowImportWindow(ImportKind kind, AppState& state, const QString& dataSource,
                      const ImportFileChooser& choose, QWidget* parent);
