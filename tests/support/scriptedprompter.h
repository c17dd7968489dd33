#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include "core/prompter.h"

// A Prompter for tests: records every box and answers questions from a prepared queue
// (the default answer when the queue is empty).
class ScriptedPrompter : public Prompter {
 public:
  struct Entry {
    QString title;
    QString text;
    bool question = false;
  };

  void message(const QString& title, const QString& text) override;
  Answer ask(const QString& title, const QString& text, Buttons buttons,
             Answer defaultAnswer) override;
  void beep() override { ++beeps; }

  void answer(Answer a) { answers.append(a); }
  QStringList texts() const;
  void clear() {
    entries.clear();
    beeps = 0;
  }

  QList<Entry> entries;
  QList<Answer> answers;
  int beeps = 0;
};
