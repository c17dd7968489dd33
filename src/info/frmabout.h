#pragma once

#include <QDialog>

class AppState;

// "About Tavorine": the program, its version and what it runs on.
class frmAbout : public QDialog {
  Q_OBJECT
 public:
  explicit frmAbout(AppState& state, QWidget* parent = nullptr);
};
