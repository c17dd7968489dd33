#include "support/scriptedprompter.h"

void ScriptedPrompter::message(const QString& title, const QString& text) {
  entries.append({title, text, false});
}

Prompter::Answer ScriptedPrompter::ask(const QString& title, const QString& text, Buttons,
                                       Answer defaultAnswer) {
  entries.append({title, text, true});
  return answers.isEmpty() ? defaultAnswer : answers.takeFirst();
}

QStringList ScriptedPrompter::texts() const {
  QStringList out;
  for (const auto& e : entries) out << e.text;
  return out;
}
