#pragma once

#include <QDialog>

// "Technical Support": where to report a problem.
class frmSupport : public QDialog {
  Q_OBJECT
 public:
  explicit frmSupport(QWidget* parent = nullptr);
};
