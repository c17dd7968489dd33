#pragma once

#include <QDialog>
#include <functional>

#include "catalog/filterlogic.h"

class AppState;
class QCheckBox;
class QLineEdit;
class QPushButton;
class UpDownButtons;

// Filter Settings: object types and magnitudes, double star properties and the minimum
// altitude. OK turns the controls into the pages' filter texts, FilterSettings and Filter.ini;
// Open and Save As read and write .flt files without changing anything else.
class Filter : public QDialog {
  Q_OBJECT
 public:
  explicit Filter(AppState& state, QWidget* parent = nullptr);

  // The file dialogs, replaceable for tests: title, start folder and filter in, the chosen
  // file out ("" on cancel).
  using FileChooser = std::function<QString(QWidget* parent, const QString& title,
                                            const QString& folder, const QString& filter)>;
  void setOpenChooser(FileChooser chooser) { chooseOpen_ = std::move(chooser); }
  void setSaveChooser(FileChooser chooser) { chooseSave_ = std::move(chooser); }

  // The controls as they stand.
  FilterForm form() const;
  void setForm(const FilterForm& form);

 public slots:
  // Escape is Cancel.
  void reject() override;

 protected:
  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void build();
  void enableFields();
  // The controls of the filter values, found by name.
  QCheckBox* tickBox(const char* control) const;
  QLineEdit* box(const FilterField& field) const;
  void onOk();
  void onCancel();
  void onOpen();
  void onSave();

  AppState& state_;
  FileChooser chooseOpen_;
  FileChooser chooseSave_;
  bool closeBox_ = false;

  QCheckBox* chkAltFilter = nullptr;
  QLineEdit* txtMinAltFilter = nullptr;
  UpDownButtons* UpDown1 = nullptr;
  QPushButton *cmdOpen = nullptr, *cmdSave = nullptr, *OKButton = nullptr, *cmdCancel = nullptr;
};
