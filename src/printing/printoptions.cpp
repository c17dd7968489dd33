#include "printing/printoptions.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QVBoxLayout>

#include "catalog/database.h"
#include "catalog/recordset.h"
#include "core/appstate.h"
#include "core/handler.h"
#include "core/hourglass.h"
#include "core/numtext.h"
#include "printing/alignprinting.h"
#include "printing/listprinting.h"
#include "scope/scopecontrol.h"
#include "sky/userdatedialog.h"

QString SaveAsPdfChoice() { return QStringLiteral("Save as PDF…"); }

namespace {

const char* kBrightStars = "MapStars to 4_5";

}  // namespace

void PrintToDevice(const AppState& state, const PrintRequest& request, QPagedPaintDevice& device,
                   PainterPrintSurface::Documents documents, const AppError& openError) {
  const auto catalog = Database::open(state.catalogPath(), Database::Mode::ReadOnly);
  Recordset datMapStars(catalog, QString::fromLatin1(kBrightStars));
  PainterPrintSurface surface(device, documents, openError);
  if (request.kind == PrintKind::List) {
    const auto document = Database::open(request.documentPath, Database::Mode::ReadOnly);
    Recordset datPrint(document, QStringLiteral("Objects"));
    PrintingJob(state, surface, datPrint, datMapStars, request.documentTitle)
        .Run(request.style, request.copies);
  } else {
    AlignPrintingJob(state, surface, datMapStars).Run(request.copies);
  }
}

// ---------------------------------------------------------------------------------------------

PrintOptions::PrintOptions(AppState& state, const PrintRequest& request, QWidget* parent)
    : QDialog(parent), state_(state), request_(request) {
  const bool list = request.kind == PrintKind::List;
  setObjectName(list ? QStringLiteral("PrintOptions") : QStringLiteral("AlignPrintOptions"));
  setWindowTitle(list ? QStringLiteral("Print List") : QStringLiteral("Print Alignment Chart"));
  choosePdfFile = [this](const QString& suggested) { return runPdfDialog(suggested); };
  askUserDate = [this] { frmUserDate(state_, this).exec(); };
  showPreview = [this](QPrinter& printer, const std::function<void(QPrinter&)>& paint) {
    runPreviewDialog(printer, paint);
  };

  auto* fields = new QGridLayout;
  auto* Label2 = new QLabel(QStringLiteral("Output to:"), this);
  Label2->setObjectName(QStringLiteral("Label2"));
  cmbCurrentPrinter = new QComboBox(this);
  cmbCurrentPrinter->setObjectName(QStringLiteral("cmbCurrentPrinter"));
  cmbCurrentPrinter->setMinimumContentsLength(24);
  Label2->setBuddy(cmbCurrentPrinter);
  auto* Label1 = new QLabel(QStringLiteral("Number of Copies:"), this);
  Label1->setObjectName(QStringLiteral("Label1"));
  txtCopies = new UpDownField(99, QStringLiteral("0"), this);
  txtCopies->setObjectName(QStringLiteral("txtCopies"));
  txtCopies->setText(PlainNumber(state_.PrintCopies));
  Label1->setBuddy(txtCopies);
  fields->addWidget(Label2, 0, 0);
  fields->addWidget(cmbCurrentPrinter, 0, 1, 1, 2);
  fields->addWidget(Label1, 1, 0);
  fields->addWidget(txtCopies, 1, 1);
  fields->setColumnStretch(2, 1);

  auto* layout = new QVBoxLayout(this);
  layout->addLayout(fields);
  if (list) {
    Frame1 = new QGroupBox(QStringLiteral("Print Style"), this);
    Frame1->setObjectName(QStringLiteral("Frame1"));
    auto* styles = new QVBoxLayout(Frame1);
    const auto option = [&](const char* name, const char* caption) {
      auto* b = new QRadioButton(QString::fromUtf8(caption), Frame1);
      b->setObjectName(QString::fromLatin1(name));
      styles->addWidget(b);
      return b;
    };
    optCompact = option("optCompact", "Compact List");
    optComments = option("optComments", "List with Comment Area");
    optChart = option("optChart", "Star Chart with Labels");
    optChartNoLabels = option("optChartNoLabels", "Star Chart no Labels");
    // The style printed last is on again; the first time, the compact list.
    const QString style = state_.PrintStyle;
    QRadioButton* on = style == PrintStyleComments()        ? optComments
                       : style == PrintStyleChart()         ? optChart
                       : style == PrintStyleChartNoLabels() ? optChartNoLabels
                                                            : optCompact;
    on->setChecked(true);
    layout->addWidget(Frame1);
  }

  OKButton = new QPushButton(QStringLiteral("Print"), this);
  OKButton->setObjectName(QStringLiteral("OKButton"));
  OKButton->setDefault(true);
  cmdPreview = new QPushButton(QStringLiteral("Pre&view"), this);
  cmdPreview->setObjectName(QStringLiteral("cmdPreview"));
  CancelButton = new QPushButton(QStringLiteral("Cancel"), this);
  CancelButton->setObjectName(QStringLiteral("CancelButton"));
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(OKButton);
  buttons->addWidget(cmdPreview);
  buttons->addWidget(CancelButton);
  layout->addLayout(buttons);

  connect(OKButton, &QPushButton::clicked, this, &PrintOptions::OKButton_Click);
  connect(cmdPreview, &QPushButton::clicked, this, &PrintOptions::cmdPreview_Click);
  connect(CancelButton, &QPushButton::clicked, this, &QDialog::reject);

  Form_Load();
}

PrintOptions::~PrintOptions() = default;

// The printers the system knows, then the PDF file. The printer of the last print-out is the
// current one; the first time, the system's default printer.
void PrintOptions::Form_Load() {
  const QStringList printers = QPrinterInfo::availablePrinterNames();
  if (state_.CurrentPrinter.isEmpty()) {
    const QString system = QPrinterInfo::defaultPrinterName();
    state_.CurrentPrinter = system.isEmpty() ? SaveAsPdfChoice() : system;
  }
  cmbCurrentPrinter->addItems(printers);
  cmbCurrentPrinter->addItem(SaveAsPdfChoice());
}

void PrintOptions::showEvent(QShowEvent* event) {
  const int index = cmbCurrentPrinter->findText(state_.CurrentPrinter);
  if (index >= 0) cmbCurrentPrinter->setCurrentIndex(index);
  QDialog::showEvent(event);
}

PrintRequest PrintOptions::chosenRequest() {
  PrintRequest r = request_;
  if (r.kind == PrintKind::List)
    r.style =
        PrintStyleOf(optCompact->isChecked(), optComments->isChecked(), optChart->isChecked());
  r.copies = CInt(txtCopies->text());
  return r;
}

void PrintOptions::OKButton_Click() {
  const bool ran = RunGuarded(state_.prompter(), [&] {
    const PrintRequest r = chosenRequest();
    if (r.kind == PrintKind::List) state_.PrintStyle = r.style;
    state_.PrintCopies = qint16(r.copies);
    // The screen is clean before the long job.
    hide();
    QApplication::processEvents();
    WaitMs(250);
    state_.CurrentPrinter = cmbCurrentPrinter->currentText();
    const std::unique_ptr<QPrinter> printer = makePrinter(state_.CurrentPrinter, false);
    if (!printer) return;  // no file chosen for the PDF
    PrintingWait wait(state_, r, *printer, parentWidget());
    wait.askUserDate = askUserDate;
    wait.exec();
  });
  // A fault before the dialog went away (the number of copies) leaves it up to be corrected.
  if (ran || isHidden()) done(ran ? QDialog::Accepted : QDialog::Rejected);
}

void PrintOptions::cmdPreview_Click() {
  RunGuarded(state_.prompter(), [&] {
    const PrintRequest r = chosenRequest();
    if (r.kind == PrintKind::List && IsChartStyle(r.style)) askUserDate();
    const std::unique_ptr<QPrinter> printer = makePrinter(cmbCurrentPrinter->currentText(), true);
    showPreview(*printer, [&](QPrinter& target) {
      RunGuarded(state_.prompter(), [&] {
        Hourglass hourglass;
        PrintToDevice(state_, r, target, PainterPrintSurface::Documents::OneFile,
                      AppError::of(ErrNo::PrinterError));
      });
    });
  });
}

std::unique_ptr<QPrinter> NewPrinter(const QString& choice) {
  auto printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
  if (choice != SaveAsPdfChoice()) {
    printer->setPrinterName(choice);
    return printer;
  }
  printer->setOutputFormat(QPrinter::PdfFormat);
  // A PDF has no unprintable edge; leave the one a printer would.
  printer->setPageMargins(QMarginsF(0.25, 0.25, 0.25, 0.25), QPageLayout::Inch);
  return printer;
}

std::unique_ptr<QPrinter> PrintOptions::makePrinter(const QString& choice, bool preview) {
  auto printer = NewPrinter(choice);
  if (preview || choice != SaveAsPdfChoice()) return printer;
  const QString& title = request_.documentTitle;
  const QString folder = request_.kind == PrintKind::List
                             ? QFileInfo(request_.documentPath).absolutePath()
                             : state_.settings.DataDir;
  QString path = choosePdfFile(QDir(folder).filePath(title + QStringLiteral(".pdf")));
  if (path.isEmpty()) return nullptr;
  if (QFileInfo(path).suffix().isEmpty()) path += QStringLiteral(".pdf");
  printer->setOutputFileName(path);
  printer->setDocName(title);
  return printer;
}

QString PrintOptions::runPdfDialog(const QString& suggested) {
  return QFileDialog::getSaveFileName(this, QStringLiteral("Save as PDF"), suggested,
                                      QStringLiteral("PDF Files (*.pdf)"));
}

void PrintOptions::runPreviewDialog(QPrinter& printer,
                                    const std::function<void(QPrinter&)>& paint) {
  QPrintPreviewDialog preview(&printer, this);
  preview.setObjectName(QStringLiteral("PrintPreview"));
  preview.setWindowTitle(windowTitle() + QStringLiteral(" - Preview"));
  connect(&preview, &QPrintPreviewDialog::paintRequested, this,
          [&](QPrinter* target) { paint(*target); });
  preview.resize(900, 1000);
  preview.exec();
}

// ---------------------------------------------------------------------------------------------

PrintingWait::PrintingWait(AppState& state, const PrintRequest& request, QPrinter& printer,
                           QWidget* parent)
    : QDialog(parent), state_(state), request_(request), printer_(printer) {
  setObjectName(request.kind == PrintKind::List ? QStringLiteral("PrintingWait")
                                                : QStringLiteral("AlignPrintingWait"));
  setWindowTitle(QStringLiteral("Printing"));
  askUserDate = [this] { frmUserDate(state_, this).exec(); };
  auto* label = new QLabel(QStringLiteral("Printing, please wait..."), this);
  label->setObjectName(QStringLiteral("Label1"));
  QFont arial(QStringLiteral("Arial"));
  arial.setPointSize(12);
  label->setFont(arial);
  label->setAlignment(Qt::AlignCenter);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(36, 24, 36, 24);
  layout->addWidget(label);
}

void PrintingWait::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  if (started_) return;
  started_ = true;
  QTimer::singleShot(0, this, &PrintingWait::Form_Activate);
}

// The job. A printer gets each copy as a job of its own; a PDF holds them one after the other.
// Whatever happens, the pages printed so far are delivered and the pointer comes back.
void PrintingWait::Form_Activate() {
  RunGuarded(state_.prompter(), [&] {
    if (request_.kind == PrintKind::List && IsChartStyle(request_.style)) askUserDate();
    Hourglass hourglass;
    if (parentWidget()) parentWidget()->repaint();
    repaint();
    const bool pdf = printer_.outputFormat() == QPrinter::PdfFormat;
    const AppError openError =
        pdf ? AppError(ErrNo::PathFileAccess,
                       QStringLiteral("Unable to write the file ") +
                           QDir::toNativeSeparators(printer_.outputFileName()))
            : AppError::of(ErrNo::PrinterError);
    PrintToDevice(
        state_, request_, printer_,
        pdf ? PainterPrintSurface::Documents::OneFile : PainterPrintSurface::Documents::Separate,
        openError);
  });
  accept();
}

// ---------------------------------------------------------------------------------------------

void ShowPrintOptions(AppState& state, const QString& documentPath, const QString& documentTitle,
                      QWidget* parent) {
  PrintRequest request;
  request.documentPath = documentPath;
  request.documentTitle = documentTitle;
  PrintOptions dialog(state, request, parent);
  dialog.exec();
}

void ShowAlignPrintOptions(AppState& state, QWidget* parent) {
  auto* dialog =
      parent ? parent->findChild<PrintOptions*>(QStringLiteral("AlignPrintOptions")) : nullptr;
  if (!dialog) {
    PrintRequest request;
    request.kind = PrintKind::AlignmentChart;
    request.documentTitle = QStringLiteral("Alignment Star Chart");
    dialog = new PrintOptions(state, request, parent);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
  }
  dialog->show();
  dialog->raise();
  dialog->activateWindow();
}
