#pragma once

#include <QStringList>

#include "core/prompter.h"

// Benchmarks answer every question with its default and show nothing; the texts are kept.
class SilentPrompter : public Prompter {
 public:
  void message(const QString&, const QString& text) override { messages << text; }
  Answer ask(const QString&, const QString&, Buttons, Answer d) override { return d; }
  void beep() override {}
  QStringList messages;
};
