#pragma once

#include <QDialog>

class AppState;

// "Software License": the licence text of the program, read-only.
class frmLicense : public QDialog {
  Q_OBJECT
 public:
  explicit frmLicense(AppState& state, QWidget* parent = nullptr);
};
