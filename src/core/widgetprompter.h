#pragma once

#include <QPointer>
#include <QWidget>

#include "core/prompter.h"

// The Prompter of the window build: plain message boxes over the active window.
class WidgetPrompter : public Prompter {
 public:
  void message(const QString& title, const QString& text) override;
  Answer ask(const QString& title, const QString& text, Buttons buttons,
             Answer defaultAnswer) override;
  void beep() override;
};
