#pragma once

#include "core/prompter.h"

// Benchmarks answer every question with its default and show nothing.
class SilentPrompter : public Prompter {
 public:
  void message(const QString&, const QString&) override {}
  Answer ask(const QString&, const QString&, Buttons, Answer d) override { return d; }
  void beep() override {}
};
