#include "core/widgetprompter.h"

#include <QApplication>
#include <QMessageBox>

namespace {
QWidget* owner() { return QApplication::activeWindow(); }

QMessageBox::StandardButton toButton(Prompter::Answer a) {
  switch (a) {
    case Prompter::Answer::Ok: return QMessageBox::Ok;
    case Prompter::Answer::Cancel: return QMessageBox::Cancel;
    case Prompter::Answer::Yes: return QMessageBox::Yes;
    case Prompter::Answer::No: return QMessageBox::No;
  }
  return QMessageBox::Ok;
}
}  // namespace

void WidgetPrompter::message(const QString& title, const QString& text) {
  QMessageBox box(QMessageBox::NoIcon, title, text, QMessageBox::Ok, owner());
  box.exec();
}

Prompter::Answer WidgetPrompter::ask(const QString& title, const QString& text, Buttons buttons,
                                     Answer defaultAnswer) {
  QMessageBox::StandardButtons set = QMessageBox::Ok;
  switch (buttons) {
    case Buttons::Ok: set = QMessageBox::Ok; break;
    case Buttons::YesNo: set = QMessageBox::Yes | QMessageBox::No; break;
    case Buttons::OkCancel: set = QMessageBox::Ok | QMessageBox::Cancel; break;
    case Buttons::YesNoCancel:
      set = QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
      break;
  }
  QMessageBox box(QMessageBox::Question, title, text, set, owner());
  box.setDefaultButton(toButton(defaultAnswer));
  switch (box.exec()) {
    case QMessageBox::Yes: return Answer::Yes;
    case QMessageBox::No: return Answer::No;
    case QMessageBox::Cancel: return Answer::Cancel;
    default: return Answer::Ok;
  }
}

void WidgetPrompter::beep() { QApplication::beep(); }
