#pragma once

#include <QDialog>

#include "exchange/exchangejobs.h"

class AppState;
class QLabel;
class QPlainTextEdit;
class QPushButton;

// The list an export writes: the active list window's txtDataSource and txtObserverTitle.
struct ExportSource {
  QString dataSource;
  QString title;
};

// The prompt of an export: hcTourExport, PalmExport, CSVExport or BRLTExport. OK hides it,
// pauses a quarter second, shows the worker and, once the worker has written the files, the
// completion window of Palm and CSV exports.
class ExportPrompt : public QDialog {
  Q_OBJECT
 public:
  ExportPrompt(ExportKind kind, AppState& state, ExportSource source, QWidget* parent = nullptr);

  void OKButton_Click();
  void CancelButton_Click();

 private:
  ExportKind kind_;
  AppState& state_;
  ExportSource source_;
};

// The worker of an export (hcTourWait, PalmWait, CSVWait, BRLTWait): it writes the files the
// first time it is shown. A tour's worker then says where the tour went and waits for OK; the
// others close themselves.
class ExportWait : public QDialog {
  Q_OBJECT
 public:
  ExportWait(ExportKind kind, AppState& state, ExportSource source, QWidget* parent = nullptr);

  bool succeeded() const { return succeeded_; }
  int fileCount() const { return result_.files; }

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void work();

  ExportKind kind_;
  AppState& state_;
  ExportSource source_;
  bool started_ = false;
  bool succeeded_ = false;
  ExportResult result_;
  QLabel* Label1_ = nullptr;
  QPlainTextEdit* Text1_ = nullptr;
  QPushButton* OKButton_ = nullptr;
};

// "Export Complete": ExportComplete for one file, ExportMultiFileComplete for several.
class ExportCompleteWindow : public QDialog {
  Q_OBJECT
 public:
  ExportCompleteWindow(bool multipleFiles, QWidget* parent = nullptr);
};

// Processes window events for a quarter of a second: the pause between a prompt and its worker.
void PauseBeforeWorker();
