#include "sky/userdatedialog.h"

#include <QCalendarWidget>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/appstate.h"
#include "core/handler.h"
#include "sky/observingclock.h"

UpDownField::UpDownField(int maximum, const QString& mask, QWidget* parent)
    : QAbstractSpinBox(parent), maximum_(maximum), mask_(mask) {
  setAlignment(Qt::AlignRight);
  setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("0000")) + 32);
}

void UpDownField::setText(const QString& text) { lineEdit()->setText(text); }

void UpDownField::stepBy(int steps) {
  lineEdit()->setText(StepNumberText(text(), steps, maximum_, mask_));
  selectAll();
}

// Anything may be typed; OK decides what it means.
QValidator::State UpDownField::validate(QString&, int&) const { return QValidator::Acceptable; }

QAbstractSpinBox::StepEnabled UpDownField::stepEnabled() const {
  return StepUpEnabled | StepDownEnabled;
}

frmUserDate::frmUserDate(AppState& state, QWidget* parent) : QDialog(parent), state_(state) {
  setObjectName(QStringLiteral("frmUserDate"));
  setWindowTitle(QStringLiteral("Select Date and Time for Chart"));

  PickDate = new QCalendarWidget(this);
  PickDate->setObjectName(QStringLiteral("PickDate"));
  PickDate->setGridVisible(true);

  PickTimeHour = new UpDownField(23, QStringLiteral("0"), this);
  PickTimeHour->setObjectName(QStringLiteral("PickTimeHour"));
  PickTimeMinute = new UpDownField(59, QStringLiteral("00"), this);
  PickTimeMinute->setObjectName(QStringLiteral("PickTimeMinute"));

  OKButton = new QPushButton(QStringLiteral("OK"), this);
  OKButton->setObjectName(QStringLiteral("OKButton"));
  OKButton->setDefault(true);
  CancelButton = new QPushButton(QStringLiteral("Cancel"), this);
  CancelButton->setObjectName(QStringLiteral("CancelButton"));

  auto* time = new QHBoxLayout;
  time->addStretch();
  time->addWidget(PickTimeHour);
  time->addWidget(new QLabel(QStringLiteral(":"), this));
  time->addWidget(PickTimeMinute);
  time->addStretch();

  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(OKButton);
  buttons->addWidget(CancelButton);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(PickDate);
  layout->addLayout(time);
  layout->addLayout(buttons);

  connect(PickDate, &QCalendarWidget::clicked, this, [this] { OKButton->setFocus(); });
  connect(OKButton, &QPushButton::clicked, this, &frmUserDate::OKButton_Click);
  connect(CancelButton, &QPushButton::clicked, this, &QDialog::reject);

  load();
}

void frmUserDate::showEvent(QShowEvent* event) {
  load();
  QDialog::showEvent(event);
}

void frmUserDate::load() {
  const UserDateFields f = UserDateFieldsOf(state_.UserDate);
  PickDate->setSelectedDate(f.date);
  PickTimeHour->setText(f.hour);
  PickTimeMinute->setText(f.minute);
}

void frmUserDate::OKButton_Click() {
  QDateTime chosen;
  const bool ok = RunGuarded(state_.prompter(), [&] {
    chosen =
        UserDateFromFields(PickDate->selectedDate(), PickTimeHour->text(), PickTimeMinute->text());
  });
  if (!ok) return;
  state_.UserDate = chosen;
  accept();
}

void ShowUserDateDialog(AppState& state, QWidget* parent) {
  frmUserDate dialog(state, parent);
  dialog.exec();
}
