#pragma once

#include <QDialog>
#include <QString>
#include <functional>
#include <memory>

#include "printing/painterprintsurface.h"

class AppState;
class QComboBox;
class QGroupBox;
class QLabel;
class QPagedPaintDevice;
class QPrinter;
class QPushButton;
class QRadioButton;
class UpDownField;

// What is printed: the list of a list window, or the alignment star chart.
enum class PrintKind { List, AlignmentChart };

struct PrintRequest {
  PrintKind kind = PrintKind::List;
  QString documentPath;   // the list document (lists only)
  QString documentTitle;  // its title, printed at the head of each page
  QString style;          // PrintStyle (lists only)
  int copies = 1;
};

// The entry of the printer list that writes a PDF file instead; it is always offered.
QString SaveAsPdfChoice();

// A printer of the printer list: a printer by its name, or a PDF (its file still to be set).
std::unique_ptr<QPrinter> NewPrinter(const QString& choice);

// Prints the request on a device: a printer, a PDF or the preview.
void PrintToDevice(const AppState& state, const PrintRequest& request, QPagedPaintDevice& device,
                   PainterPrintSurface::Documents documents, const AppError& openError);

// PrintOptions ("Print List") and AlignPrintOptions ("Print Alignment Chart"): the printer,
// the number of copies and, for a list, the style. Print hands the job to the worker window;
// Preview shows the same pages on screen first.
class PrintOptions : public QDialog {
  Q_OBJECT
 public:
  PrintOptions(AppState& state, const PrintRequest& request, QWidget* parent = nullptr);
  ~PrintOptions() override;

  void OKButton_Click();
  void cmdPreview_Click();

  // Where a PDF goes: a file dialog starting at the suggested name; empty when cancelled.
  std::function<QString(const QString& suggested)> choosePdfFile;
  // The date and time of a list's chart (frmUserDate, modal).
  std::function<void()> askUserDate;
  // Shows the preview: paint draws the pages on the printer it is given.
  std::function<void(QPrinter& printer, const std::function<void(QPrinter&)>& paint)> showPreview;

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void Form_Load();
  PrintRequest chosenRequest();
  std::unique_ptr<QPrinter> makePrinter(const QString& choice, bool preview);
  QString runPdfDialog(const QString& suggested);
  void runPreviewDialog(QPrinter& printer, const std::function<void(QPrinter&)>& paint);

  AppState& state_;
  PrintRequest request_;
  QComboBox* cmbCurrentPrinter = nullptr;
  UpDownField* txtCopies = nullptr;
  QGroupBox* Frame1 = nullptr;
  QRadioButton* optCompact = nullptr;
  QRadioButton* optComments = nullptr;
  QRadioButton* optChart = nullptr;
  QRadioButton* optChartNoLabels = nullptr;
  QPushButton* OKButton = nullptr;
  QPushButton* cmdPreview = nullptr;
  QPushButton* CancelButton = nullptr;
};

// PrintingWait and AlignPrintingWait: the small window that stands while a job prints. The
// job runs when it is shown; then it closes itself.
class PrintingWait : public QDialog {
  Q_OBJECT
 public:
  PrintingWait(AppState& state, const PrintRequest& request, QPrinter& printer,
               QWidget* parent = nullptr);

  void Form_Activate();

  std::function<void()> askUserDate;

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  AppState& state_;
  PrintRequest request_;
  QPrinter& printer_;
  bool started_ = false;
};

// File, Print: the options for the list of the active list window (modal).
void ShowPrintOptions(AppState& state, const QString& documentPath, const QString& documentTitle,
                      QWidget* parent);
// The alignment chart's Print button: the options for the chart, not modal, one at a time.
void ShowAlignPrintOptions(AppState& state, QWidget* parent);
