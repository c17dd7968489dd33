#include "exchange/exportwindows.h"

#include <QApplication>
#include <QEventLoop>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QTimer>
#include <QVBoxLayout>

#include "core/appstate.h"
#include "core/handler.h"
#include "core/hourglass.h"

namespace {

// What tells the four exports apart.
struct ExportForm {
  const char* prompt;
  const char* worker;
  const char* caption;
  const char* text;
};

const ExportForm& formOf(ExportKind kind) {
  static const char* sameFolder =
      "The file will have the same name as the Tavorine List file and will be placed in the "
      "same folder as the Tavorine List file (usually the data directory found in 'Tools, "
      "Setup').";
  static const QByteArray palm =
      QByteArray(
          "This operation creates a TXT file which is compatible with Planetarium for "
          "Palm.  ") +
      sameFolder + "  Refer to the instuctions of this program for futher details.";
  static const QByteArray csv =
      QByteArray(
          "This operation creates a CSV file which is compatible with most spreadsheet "
          "and database programs.  ") +
      sameFolder;
  static const QByteArray brillet =
      QByteArray("This operation creates a CSV file which is compatible with Brillet.  ") +
      sameFolder;
  static const ExportForm forms[] = {
      {"hcTourExport", "hcTourWait", "Export to NexTour/hcTour",
       "This operation creates an 'HCT' file which is compatible with NexRemote/hcAnywhere "
       "(NexTour/hcTour)."},
      {"PalmExport", "PalmWait", "Export to Planetarium for Palm", palm.constData()},
      {"CSVExport", "CSVWait", "Export to CSV", csv.constData()},
      {"BRLTExport", "BRLTWait", "Export to Brillet", brillet.constData()},
  };
  return forms[int(kind)];
}

QPushButton* button(QWidget* parent, const char* name, const QString& caption) {
  auto* b = new QPushButton(caption, parent);
  b->setObjectName(QString::fromLatin1(name));
  return b;
}

QPlainTextEdit* textBox(QWidget* parent, const QString& text) {
  auto* t = new QPlainTextEdit(text, parent);
  t->setObjectName(QStringLiteral("Text1"));
  t->setReadOnly(true);
  t->setFocusPolicy(Qt::NoFocus);
  // Room for the longest of the texts, seven lines.
  t->setFixedSize(t->fontMetrics().averageCharWidth() * 64,
                  t->fontMetrics().lineSpacing() * 7 + 2 * t->frameWidth() + 8);
  return t;
}

QHBoxLayout* buttonRow(std::initializer_list<QPushButton*> buttons) {
  auto* row = new QHBoxLayout;
  row->addStretch();
  for (QPushButton* b : buttons) row->addWidget(b);
  return row;
}

}  // namespace

void PauseBeforeWorker() {
  QEventLoop loop;
  QTimer::singleShot(250, &loop, &QEventLoop::quit);
  loop.exec();
}

// ---- the prompt ---------------------------------------------------------------------------

ExportPrompt::ExportPrompt(ExportKind kind, AppState& state, ExportSource source, QWidget* parent)
    : QDialog(parent), kind_(kind), state_(state), source_(std::move(source)) {
  const ExportForm& form = formOf(kind);
  setObjectName(QString::fromLatin1(form.prompt));
  setWindowTitle(QString::fromLatin1(form.caption));
  setModal(true);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(textBox(this, QString::fromLatin1(form.text)));
  QPushButton* ok = button(this, "OKButton", QStringLiteral("OK"));
  QPushButton* cancel = button(this, "CancelButton", QStringLiteral("Cancel"));
  ok->setDefault(true);
  layout->addLayout(buttonRow({ok, cancel}));
  connect(ok, &QPushButton::clicked, this, &ExportPrompt::OKButton_Click);
  connect(cancel, &QPushButton::clicked, this, &ExportPrompt::CancelButton_Click);
}

void ExportPrompt::OKButton_Click() {
  RunGuarded(state_.prompter(), [&] {
    hide();
    PauseBeforeWorker();
    bool done = false;
    int files = 0;
    {
      ExportWait worker(kind_, state_, source_, parentWidget());
      worker.exec();
      done = worker.succeeded();
      files = worker.fileCount();
    }
    if (done && kind_ != ExportKind::Tour) ExportCompleteWindow(files > 1, parentWidget()).exec();
  });
  accept();
}

void ExportPrompt::CancelButton_Click() { reject(); }

// ---- the worker ---------------------------------------------------------------------------

ExportWait::ExportWait(ExportKind kind, AppState& state, ExportSource source, QWidget* parent)
    : QDialog(parent), kind_(kind), state_(state), source_(std::move(source)) {
  setObjectName(QString::fromLatin1(formOf(kind).worker));
  setWindowTitle(QStringLiteral("Exporting"));
  setModal(true);
  auto* layout = new QVBoxLayout(this);
  Label1_ = new QLabel(QStringLiteral("Creating file, please wait..."), this);
  Label1_->setObjectName(QStringLiteral("Label1"));
  Label1_->setAlignment(Qt::AlignCenter);
  Label1_->setMinimumSize(300, 60);
  layout->addWidget(Label1_);
  Text1_ = textBox(this, QString());
  Text1_->hide();
  layout->addWidget(Text1_);
  OKButton_ = button(this, "OKButton", QStringLiteral("OK"));
  OKButton_->hide();
  layout->addLayout(buttonRow({OKButton_}));
  connect(OKButton_, &QPushButton::clicked, this, &QDialog::accept);
}

void ExportWait::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  if (started_) return;
  started_ = true;
  // Once the window is on the screen with its label.
  QTimer::singleShot(0, this, &ExportWait::work);
}

void ExportWait::work() {
  repaint();
  succeeded_ = RunGuarded(state_.prompter(), [&] {
    const Hourglass hourglass;
    result_ =
        ExportList(kind_, source_.dataSource, source_.title, FindTourFolders(state_.windowsDriveC));
  });
  if (!succeeded_ || kind_ != ExportKind::Tour) {
    done(succeeded_ ? Accepted : Rejected);
    return;
  }
  setWindowTitle(QStringLiteral("Export Complete"));
  Text1_->setPlainText(result_.tourText);
  Label1_->hide();
  Text1_->show();
  OKButton_->show();
  OKButton_->setDefault(true);
  OKButton_->setFocus();
  adjustSize();
}

// ---- completion ---------------------------------------------------------------------------

ExportCompleteWindow::ExportCompleteWindow(bool multipleFiles, QWidget* parent) : QDialog(parent) {
  setObjectName(multipleFiles ? QStringLiteral("ExportMultiFileComplete")
                              : QStringLiteral("ExportComplete"));
  setWindowTitle(QStringLiteral("Export Complete"));
  setModal(true);
  auto* layout = new QVBoxLayout(this);
  const QStringList labels =
      multipleFiles
          ? QStringList{QStringLiteral(
                            "Multiple export files have been created, each with the same"),
                        QStringLiteral("name as the Tavorine List file but with a numeric suffix."),
                        QStringLiteral(
                            "Import all of these files to the same category in Planetarium.")}
          : QStringList{QStringLiteral("The file has been created.")};
  int n = 0;
  for (const QString& text : labels) {
    auto* l = new QLabel(text, this);
    l->setObjectName(QStringLiteral("Label%1").arg(++n));
    layout->addWidget(l);
  }
  QPushButton* ok = button(this, "OKButton", QStringLiteral("OK"));
  ok->setDefault(true);
  layout->addLayout(buttonRow({ok}));
  connect(ok, &QPushButton::clicked, this, &QDialog::accept);
}
