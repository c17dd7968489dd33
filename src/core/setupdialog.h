#pragma once

#include <QDialog>
#include <functional>

#include "core/setuplogic.h"
#include "scope/indilink.h"

class AppState;
class QCheckBox;
class QComboBox;
class QFrame;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QToolButton;
class UpDownButtons;

// Setup: the telescope, its port, the site, the time zone, the altitude limits, the list folder
// and the object colour. Most fields take effect on OK; the hemisphere buttons, the two check
// boxes and the colour write to the settings at once.
class Setup : public QDialog {
  Q_OBJECT
 public:
  explicit Setup(AppState& state, QWidget* parent = nullptr);

  // The folder picker and the colour dialog, replaceable for tests. The picker gets the start
  // folder and returns the chosen one ("" on cancel); the colour chooser gets the red-low
  // colour and returns the new one, or -1 on cancel.
  using FolderPicker = std::function<QString(QWidget* parent, const QString& start)>;
  using ColorChooser = std::function<qint32(QWidget* parent, qint32 initial)>;
  void setFolderPicker(FolderPicker picker) { pickFolder_ = std::move(picker); }
  void setColorChooser(ColorChooser chooser) { chooseColor_ = std::move(chooser); }
  // The time limits of asking an INDI server for its telescopes.
  void setIndiLimits(const IndiLimits& limits) { indiLimits_ = limits; }

  // The texts and states of the fields as they stand.
  SetupFields fields() const;

 public slots:
  // Escape and the close box leave as Cancel does.
  void reject() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void build();
  void load();
  void fillFoundPorts();
  enum class Route { Serial, Relay, Indi };
  void setCommPortRoute(Route route);
  void setTimeZoneControls(bool useWindows);
  void setAltitudeControls(bool useLimit);
  void showObjectColor();

  void onOk();
  void onCancel();
  void onBrowse();
  void onColor();
  void onFindIndiDevices();

  AppState& state_;
  FolderPicker pickFolder_;
  ColorChooser chooseColor_;
  IndiLimits indiLimits_;

  QComboBox* cmbScopeType = nullptr;
  QRadioButton* optCommPort = nullptr;
  QLineEdit* txtCommPort = nullptr;
  UpDownButtons* upDown1_ = nullptr;
  QComboBox* cmbFoundPorts = nullptr;
  QRadioButton* optHCD = nullptr;
  QRadioButton* optIndi = nullptr;
  QLineEdit* txtIndiHost = nullptr;
  QLineEdit* txtIndiPort = nullptr;
  QComboBox* cmbIndiDevice = nullptr;
  QPushButton* cmdIndiFind = nullptr;
  QList<QWidget*> indiControls_;
  QPushButton* cmdEastWest = nullptr;
  QLineEdit* txtLongDeg = nullptr;
  QLineEdit* txtLongMin = nullptr;
  QPushButton* cmdNorthSouth = nullptr;
  QLineEdit* txtLatDeg = nullptr;
  QLineEdit* txtLatMin = nullptr;
  QCheckBox* chkUseWindowsTimeZone = nullptr;
  QLabel* lblMyTimeZone = nullptr;
  QLineEdit* txtMyTimeZone = nullptr;
  QCheckBox* chkUseAltLimit = nullptr;
  QLabel* lblMinAlt = nullptr;
  QLineEdit* txtMinAlt = nullptr;
  QLabel* lblMaxAlt = nullptr;
  QLineEdit* txtMaxAlt = nullptr;
  QLineEdit* txtDataDir = nullptr;
  QPushButton* cmmdBrowse = nullptr;
  QPushButton* cmdColor = nullptr;
  QFrame* shpObjectColor = nullptr;
  QPushButton* OKButton_ = nullptr;
  QPushButton* CancelButton_ = nullptr;
};
