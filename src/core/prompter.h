#pragma once

#include <QString>

// Every message box and question of the program goes through a Prompter. The window build
// uses message boxes; tests install a scripted one that records the texts and answers.
class Prompter {
 public:
  enum class Buttons { Ok, YesNo, OkCancel, YesNoCancel };
  enum class Answer { Ok, Cancel, Yes, No };

  virtual ~Prompter() = default;
  virtual void message(const QString& title, const QString& text) = 0;
  virtual Answer ask(const QString& title, const QString& text, Buttons buttons,
                     Answer defaultAnswer) = 0;
  virtual void beep() = 0;
};

// The title of a box whose text gives no title of its own.
inline QString AppTitle() { return QStringLiteral("Tavorine"); }
