#include "catalog/filterdialog.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include "catalog/catalogwindowlogic.h"
#include "core/appstate.h"
#include "core/handler.h"
#include "core/selectall.h"
#include "core/settings.h"
#include "core/twips.h"
#include "core/widgetkit.h"
#include "core/windowplacement.h"

namespace {

QString chooseWithDialog(QWidget* parent, const QString& title, const QString& folder,
                         const QString& filter, bool save) {
  QFileDialog dialog(parent, title, folder, filter);
  if (save) {
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    // The program asks its own overwrite question.
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    dialog.setDefaultSuffix(QStringLiteral("flt"));
  } else {
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setOption(QFileDialog::ReadOnly);
  }
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
  return dialog.selectedFiles().first();
}

}  // namespace

Filter::Filter(AppState& state, QWidget* parent) : QDialog(parent), state_(state) {
  setObjectName(QStringLiteral("Filter"));
  KeepWindowPlacement(this, state);
  setWindowTitle(QStringLiteral("Filter Settings"));
  setModal(true);
  chooseOpen_ = [](QWidget* p, const QString& t, const QString& f, const QString& filter) {
    return chooseWithDialog(p, t, f, filter, false);
  };
  chooseSave_ = [](QWidget* p, const QString& t, const QString& f, const QString& filter) {
    return chooseWithDialog(p, t, f, filter, true);
  };
  build();
  RunGuarded(state_.prompter(), [this] { setForm(FilterFormFrom(state_.filter)); });
}

void Filter::build() {
  auto* root = new QVBoxLayout(this);
  auto field = [](QWidget* parent, const char* name) {
    auto* e = named(new QLineEdit(parent), name);
    e->setFixedWidth(56);
    SelectAllOnFocus(e);
    return e;
  };

  // The minimum altitude.
  auto* altRow = new QHBoxLayout;
  chkAltFilter = named(new QCheckBox(QStringLiteral("Minimum altitude:"), this), "chkAltFilter");
  txtMinAltFilter = field(this, "txtMinAltFilter");
  UpDown1 = named(new UpDownButtons(this), "UpDown1");
  altRow->addWidget(chkAltFilter);
  altRow->addWidget(txtMinAltFilter);
  altRow->addWidget(UpDown1);
  altRow->addSpacing(12);
  auto* altNote = named(
      new QLabel(QStringLiteral(
                     "Remove the check mark to list all objects, even those below the horizon."),
                 this),
      "lblAltNote");
  altNote->setWordWrap(true);
  altRow->addWidget(altNote, 1);
  root->addLayout(altRow);

  // Object types.
  auto* objects =
      named(new QGroupBox(QStringLiteral("Magnitude of Messier, Caldwell, NGC, IC, DSO"), this),
            "fraObjects");
  auto* og = new QGridLayout(objects);
  og->addWidget(new QLabel(QStringLiteral("Brightest:"), objects), 0, 1);
  og->addWidget(new QLabel(QStringLiteral("Faintest:"), objects), 0, 2);
  struct Row {
    const char* tick;
    const char* caption;
    const char* brightest;
    const char* faintest;
  };
  const Row rows[] = {
      {"chkGal", "Galaxy:", "txtGalMax", "txtGalMin"},
      {"chkGC", "Globular Cluster:", "txtGCMax", "txtGCMin"},
      {"chkOC", "Open Cluster:", "txtOCMax", "txtOCMin"},
      {"chkPN", "Planetary Nebula:", "txtPNMax", "txtPNMin"},
      {"chkNeb", "Nebula:", "txtNebMax", "txtNebMin"},
  };
  int r = 1;
  for (const Row& row : rows) {
    og->addWidget(named(new QCheckBox(QString::fromLatin1(row.caption), objects), row.tick), r, 0);
    og->addWidget(field(objects, row.brightest), r, 1);
    og->addWidget(field(objects, row.faintest), r, 2);
    ++r;
  }
  auto* typeNote = named(
      new QLabel(
          QStringLiteral(
              "Clearing the checkmark will remove that type of object from the filtered lists.  For "
              "example, if you are not interested in viewing Open Clusters, remove the check mark next "
              "to that object type."),
          objects),
      "lblTypeNote");
  typeNote->setWordWrap(true);
  typeNote->setMinimumWidth(200);
  og->addWidget(typeNote, 1, 3, 5, 1);
  og->setColumnStretch(3, 1);

  // Double stars and the user's objects.
  auto* lower = new QHBoxLayout;
  auto* doubles = named(new QGroupBox(QStringLiteral("Double Stars"), this), "fraDoubles");
  auto* dg = new QGridLayout(doubles);
  auto rangeRow = [&](QGridLayout* g, QWidget* parent, int row, const char* caption,
                      const char* lowCaption, const char* lowName, const char* highCaption,
                      const char* highName) {
    g->addWidget(new QLabel(QString::fromLatin1(caption), parent), row, 0);
    g->addWidget(new QLabel(QString::fromLatin1(lowCaption), parent), row, 1, Qt::AlignRight);
    g->addWidget(field(parent, lowName), row, 2);
    g->addWidget(new QLabel(QString::fromLatin1(highCaption), parent), row, 3, Qt::AlignRight);
    g->addWidget(field(parent, highName), row, 4);
  };
  rangeRow(dg, doubles, 0, "Separation:", "Least:", "txtDSSepMin", "Greatest:", "txtDSSepMax");
  rangeRow(dg, doubles, 1, "Primary's Magnitude:", "Faintest:", "txtDSMagMin",
           "Brightest:", "txtDSMagMax");
  rangeRow(dg, doubles, 2, "Mag. Difference:", "Least:", "txtDSMagDifMin",
           "Greatest:", "txtDSMagDifMax");
  dg->addWidget(named(new QLabel(QStringLiteral("(Primary - Secondary)"), doubles), "lblDifNote"),
                3, 0, 1, 5);
  lower->addWidget(doubles);

  auto* user = named(new QGroupBox(QStringLiteral("User Supplied Objects"), this), "fraUser");
  auto* ug = new QGridLayout(user);
  rangeRow(ug, user, 0, "Magnitude:", "Faintest:", "txtUserMagMin", "Brightest:", "txtUserMagMax");
  ug->setRowStretch(1, 1);
  lower->addWidget(user, 0, Qt::AlignTop);
  root->addWidget(objects);
  root->addLayout(lower);

  auto* patience = named(
      new QLabel(
          QStringLiteral(
              "Please be patient after clicking OK; on slower computers filtering may take 2 full "
              "minutes."),
          this),
      "lblPatience");
  patience->setWordWrap(true);
  root->addWidget(patience);

  auto* buttons = new QHBoxLayout;
  cmdOpen = named(new QPushButton(QStringLiteral("&Open..."), this), "cmdOpen");
  cmdSave = named(new QPushButton(QStringLiteral("&Save As..."), this), "cmdSave");
  OKButton = named(new QPushButton(QStringLiteral("OK"), this), "OKButton");
  cmdCancel = named(new QPushButton(QStringLiteral("Cancel"), this), "cmdCancel");
  OKButton->setDefault(true);
  buttons->addWidget(cmdOpen);
  buttons->addWidget(cmdSave);
  buttons->addStretch(1);
  buttons->addWidget(OKButton);
  buttons->addWidget(cmdCancel);
  root->addLayout(buttons);

  for (const FilterField& field : FilterFields())
    if (field.tick)
      connect(tickBox(field.control), &QCheckBox::toggled, this, [this] { enableFields(); });
  connect(UpDown1, &UpDownButtons::stepped, this, [this](int delta) {
    txtMinAltFilter->setText(FilterUpDownStep(txtMinAltFilter->text(), delta));
  });
  connect(OKButton, &QPushButton::clicked, this, &Filter::onOk);
  connect(cmdCancel, &QPushButton::clicked, this, &Filter::onCancel);
  connect(cmdOpen, &QPushButton::clicked, this, &Filter::onOpen);
  connect(cmdSave, &QPushButton::clicked, this, &Filter::onSave);
}

void Filter::enableFields() {
  UpDown1->setEnabled(chkAltFilter->isChecked());
  for (const FilterField& field : FilterFields())
    if (field.enabledBy) box(field)->setEnabled(tickBox(field.enabledBy)->isChecked());
}

QCheckBox* Filter::tickBox(const char* control) const {
  return findChild<QCheckBox*>(QLatin1String(control));
}

QLineEdit* Filter::box(const FilterField& field) const {
  return findChild<QLineEdit*>(QLatin1String(field.control));
}

FilterForm Filter::form() const {
  FilterForm f;
  for (const FilterField& field : FilterFields()) {
    if (field.tick) f.*field.tick = tickBox(field.control)->isChecked();
    else f.*field.text = box(field)->text();
  }
  return f;
}

void Filter::setForm(const FilterForm& f) {
  for (const FilterField& field : FilterFields()) {
    if (field.tick) tickBox(field.control)->setChecked(f.*field.tick);
    else box(field)->setText(f.*field.text);
  }
  enableFields();
}

void Filter::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  // The caller places the dialog's top; keep it on the screen all the same.
  int top = TwipsToPixels(state_.FilterFormTop, this);
  if (const QScreen* s = screen()) {
    const QRect area = s->availableGeometry();
    top = qBound(area.top(), top, qMax(area.top(), area.bottom() - frameGeometry().height()));
  }
  move(x(), top);
}

void Filter::onOk() {
  RunGuarded(state_.prompter(), [this] {
    if (FilterOk(state_, form())) accept();
  });
}

void Filter::onCancel() {
  RunGuarded(state_.prompter(), [this] {
    state_.FilterCancelled = true;
    done(QDialog::Rejected);
  });
}

void Filter::reject() {
  // The close box leaves FilterCancelled as it was; Escape is Cancel.
  if (!closeBox_) state_.FilterCancelled = true;
  QDialog::reject();
}

void Filter::closeEvent(QCloseEvent* event) {
  closeBox_ = true;
  QDialog::closeEvent(event);
  closeBox_ = false;
}

void Filter::onOpen() {
  RunGuarded(state_.prompter(), [this] {
    const QString file =
        chooseOpen_(this, FilterOpenTitle(), state_.settings.DataDir, FilterFileFilter());
    if (file.isEmpty()) return;  // cancelled
    FilterSettings read;
    ReadFilterFile(file, read);
    setForm(FilterFormFrom(read));
  });
}

void Filter::onSave() {
  RunGuarded(state_.prompter(), [this] {
    const QString file =
        chooseSave_(this, FilterSaveTitle(), state_.settings.DataDir, FilterFileFilter());
    if (file.isEmpty()) return;  // cancelled
    if (QFileInfo::exists(file) &&
        state_.prompter().ask(FilterOverwriteTitle(), FilterOverwriteQuestion(file),
                              Prompter::Buttons::YesNo,
                              Prompter::Answer::No) != Prompter::Answer::Yes)
      return;
    WriteFilterFile(file, FilterFormToSettings(form()));
  });
}
