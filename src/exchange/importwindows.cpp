#include "exchange/importwindows.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScopeGuard>
#include <QTimer>
#include <QVBoxLayout>

#include "catalog/catalogpages.h"
#include "catalog/database.h"
#include "core/appstate.h"
#include "core/handler.h"
#include "core/hourglass.h"

namespace {

// What tells the three imports apart.
struct ImportForm {
  const char* name;
  ImportFormat format;
  ImportTarget target;
  bool tour;
};

const ImportForm& formOf(ImportKind kind) {
  static const ImportForm forms[] = {
      {"frmImportCurrent", ImportFormat::Csv, ImportTarget::CurrentList, false},
      {"frmImportUserList", ImportFormat::Csv, ImportTarget::UserList, false},
      {"ImporthcTour", ImportFormat::Tour, ImportTarget::CurrentList, true},
  };
  return forms[int(kind)];
}

QLabel* label(QWidget* parent, const char* name, const QString& text) {
  auto* l = new QLabel(text, parent);
  l->setObjectName(QString::fromLatin1(name));
  return l;
}

}  // namespace

QString ChooseImportFile(QWidget* parent, const QString& title, const QString& folder,
                         const QString& filter) {
  QFileDialog dialog(parent, title, folder, filter);
  dialog.setAcceptMode(QFileDialog::AcceptOpen);
  dialog.setFileMode(QFileDialog::ExistingFile);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return QString();
  return dialog.selectedFiles().constFirst();
}

ImportWindow::ImportWindow(ImportKind kind, AppState& state, QString dataSource, QWidget* parent)
    : QDialog(parent), kind_(kind), state_(state), dataSource_(std::move(dataSource)) {
  const ImportForm& form = formOf(kind);
  setObjectName(QString::fromLatin1(form.name));
  setWindowTitle(QStringLiteral("Importing"));
  setModal(true);
  auto* layout = new QVBoxLayout(this);
  lblFile = label(this, "lblFile", QString());
  lblFile->setMinimumWidth(360);
  layout->addWidget(lblFile);
  Label1_ = label(this, "Label1", QStringLiteral("Importing, please wait..."));
  Label1_->setAlignment(Qt::AlignCenter);
  Label1_->setMinimumHeight(40);
  layout->addWidget(Label1_);
  if (form.tour) return;
  Label1_->hide();
  auto* header = new QHBoxLayout;
  Label2_ = label(this, "Label2", QStringLiteral("Import File has header line:"));
  chkImportHasHeader = new QCheckBox(this);
  chkImportHasHeader->setObjectName(QStringLiteral("chkImportHasHeader"));
  Label2_->setBuddy(chkImportHasHeader);
  header->addWidget(Label2_);
  header->addWidget(chkImportHasHeader);
  header->addStretch();
  layout->addLayout(header);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  cmdOK = new QPushButton(QStringLiteral("Import"), this);
  cmdOK->setObjectName(QStringLiteral("cmdOK"));
  cmdOK->setDefault(true);
  cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
  cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
  buttons->addWidget(cmdOK);
  buttons->addWidget(cmdCancel);
  layout->addLayout(buttons);
  connect(cmdOK, &QPushButton::clicked, this, &ImportWindow::cmdOK_Click);
  connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

ImportWindow::~ImportWindow() = default;

bool ImportWindow::load(const ImportFileChooser& choose) {
  const ImportForm& form = formOf(kind_);
  // Any failure here, a cancelled dialog included, closes the window without a word.
  return RunGuarded(
      [&] {
        QString folder = state_.LastImportFolder;
        if (form.target == ImportTarget::UserList) {
          EnsureUserList(state_);
          datPrimaryRS_ = Database::open(state_.userListPath(), Database::Mode::ReadWrite);
        } else {
          datPrimaryRS_ = Database::open(dataSource_, Database::Mode::ReadWrite);
        }
        if (form.tour) {
          folder = TourImportFolder(FindTourFolders(state_.windowsDriveC), folder);
        } else {
          chkImportHasHeader->setChecked(state_.ImportHasHeader);
        }
        file_ = choose(QStringLiteral("Select file to import from..."), folder,
                       form.tour ? QStringLiteral("hcAnywhere Tour Files (*.hct)")
                                 : QStringLiteral("Comma Separated File (*.csv *.txt);;"
                                                  "All Files (*)"));
        if (file_.isEmpty()) throw AppError::of(ErrNo::DialogCancelled);
        lblFile->setText(QDir::toNativeSeparators(file_));
      },
      [](const AppError&) {});
}

void ImportWindow::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  if (started_ || !formOf(kind_).tour) return;
  started_ = true;
  QTimer::singleShot(0, this, &ImportWindow::cmdOK_Click);
}

void ImportWindow::cmdOK_Click() {
  const ImportForm& form = formOf(kind_);
  if (!form.tour) {
    for (QWidget* w :
         std::initializer_list<QWidget*>{cmdOK, cmdCancel, Label2_, chkImportHasHeader})
      w->hide();
    state_.ImportHasHeader = chkImportHasHeader->isChecked();
  }
  Label1_->show();
  repaint();
  bool imported = false;
  {
    const Hourglass hourglass;
    RunGuarded(
        [&] {
          imported =
              ImportFile(form.format, file_, state_.ImportHasHeader, datPrimaryRS_, form.target);
        },
        [](const AppError&) {});
  }
  state_.prompter().message(AppTitle(),
                            imported ? ImportCompleteText(form.target) : IncorrectFileFormatText());
  accept();
}

bool ShowImportWindow(ImportKind kind, AppState& state, const QString& dataSource,
                      const ImportFileChooser& choose, QWidget* parent) {
  ImportWindow window(kind, state, dataSource, parent);
  if (!window.load(choose)) return false;
  window.exec();
  return true;
}
