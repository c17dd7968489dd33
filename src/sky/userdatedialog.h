#pragma once

#include <QAbstractSpinBox>
#include <QDialog>

class AppState;
class QCalendarWidget;
class QPushButton;

// A number typed as text with an up-down control beside it. The text is kept exactly as
// typed; the arrows step the number inside 0..maximum.
class UpDownField : public QAbstractSpinBox {
  Q_OBJECT
 public:
  UpDownField(int maximum, const QString& mask, QWidget* parent = nullptr);

  void setText(const QString& text);
  void stepBy(int steps) override;
  QValidator::State validate(QString& input, int& pos) const override;

 protected:
  StepEnabled stepEnabled() const override;

 private:
  int maximum_;
  QString mask_;
};

// The dialog that sets the observing date and time (UserDate).
class frmUserDate : public QDialog {
  Q_OBJECT
 public:
  explicit frmUserDate(AppState& state, QWidget* parent = nullptr);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void load();
  void OKButton_Click();

  AppState& state_;
  QCalendarWidget* PickDate;
  UpDownField* PickTimeHour;
  UpDownField* PickTimeMinute;
  QPushButton* OKButton;
  QPushButton* CancelButton;
};

// Shows frmUserDate modally; UserDate tells afterwards what was chosen.
void ShowUserDateDialog(AppState& state, QWidget* parent);
