#include "core/setupdialog.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QEvent>
#include <QFileDialog>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSerialPortInfo>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include "core/appstate.h"
#include "core/handler.h"
#include "core/hourglass.h"
#include "core/redscreencolors.h"
#include "core/widgetkit.h"
#include "core/windowplacement.h"

namespace {

QLineEdit* numberField(QWidget* parent, const char* name, int width = 48) {
  auto* e = named(new QLineEdit(parent), name);
  e->setFixedWidth(width);
  return e;
}

}  // namespace

Setup::Setup(AppState& state, QWidget* parent) : QDialog(parent), state_(state) {
  setObjectName(QStringLiteral("Setup"));
  KeepWindowPlacement(this, state);
  setWindowTitle(QStringLiteral("Setup"));
  setModal(true);
  pickFolder_ = [](QWidget* p, const QString& start) {
    return QFileDialog::getExistingDirectory(p, QStringLiteral("Select Directory"), start);
  };
  chooseColor_ = [](QWidget* p, qint32 initial) -> qint32 {
    const QColor c =
        QColorDialog::getColor(QColor(RedOf(initial), GreenOf(initial), BlueOf(initial)), p);
    return c.isValid() ? RedLowValue(c.red(), c.green(), c.blue()) : -1;
  };
  build();
  RunGuarded(state_.prompter(), [this] { load(); });
}

void Setup::build() {
  auto* root = new QVBoxLayout(this);

  // Communication Settings.
  auto* comm = named(new QGroupBox(QStringLiteral("Communication Settings"), this), "fraComm");
  auto* commGrid = new QGridLayout(comm);
  commGrid->addWidget(new QLabel(QStringLiteral("Telescope Type:"), comm), 0, 0);
  cmbScopeType = named(new QComboBox(comm), "cmbScopeType");
  commGrid->addWidget(cmbScopeType, 0, 1, 1, 3);
  optCommPort = named(new QRadioButton(QStringLiteral("Comm Port:"), comm), "optCommPort");
  commGrid->addWidget(optCommPort, 1, 0);
  auto* portRow = new QHBoxLayout;
  portRow->setSpacing(2);
  txtCommPort = numberField(comm, "txtCommPort", 140);
  txtCommPort->setToolTip(
      QStringLiteral("A port number, a device such as /dev/ttyUSB0, or HCD host:port"));
  upDown1_ = named(new UpDownButtons(comm), "UpDown1");
  portRow->addWidget(txtCommPort);
  portRow->addWidget(upDown1_);
  commGrid->addLayout(portRow, 1, 1);
  cmbFoundPorts = named(new QComboBox(comm), "cmbFoundPorts");
  cmbFoundPorts->setMinimumWidth(150);
  commGrid->addWidget(cmbFoundPorts, 1, 2, 1, 2);
  optHCD = named(new QRadioButton(QStringLiteral("NexRemote/hcAnywhere Direct"), comm), "optHCD");
  commGrid->addWidget(optHCD, 2, 0, 1, 4);
  // An INDI server's mount: the server, then its telescope device.
  optIndi = named(new QRadioButton(QStringLiteral("INDI server"), comm), "optIndi");
  commGrid->addWidget(optIndi, 3, 0);
  auto* serverRow = new QHBoxLayout;
  auto* hostLabel = new QLabel(QStringLiteral("Host:"), comm);
  txtIndiHost = named(new QLineEdit(comm), "txtIndiHost");
  txtIndiHost->setMinimumWidth(140);
  auto* portLabel = new QLabel(QStringLiteral("Port:"), comm);
  txtIndiPort = numberField(comm, "txtIndiPort", 56);
  txtIndiPort->setValidator(new QIntValidator(1, 65535, txtIndiPort));
  serverRow->addWidget(hostLabel);
  serverRow->addWidget(txtIndiHost, 1);
  serverRow->addWidget(portLabel);
  serverRow->addWidget(txtIndiPort);
  commGrid->addLayout(serverRow, 3, 1, 1, 3);
  auto* deviceRow = new QHBoxLayout;
  auto* deviceLabel = new QLabel(QStringLiteral("Device:"), comm);
  cmbIndiDevice = named(new QComboBox(comm), "cmbIndiDevice");
  cmbIndiDevice->setEditable(true);
  cmbIndiDevice->setMinimumWidth(180);
  cmbIndiDevice->setToolTip(QStringLiteral("The telescope's device name on the INDI server"));
  cmdIndiFind = named(new QPushButton(QStringLiteral("&Find"), comm), "cmdIndiFind");
  cmdIndiFind->setToolTip(QStringLiteral("Ask the server which telescopes it offers"));
  deviceRow->addWidget(deviceLabel);
  deviceRow->addWidget(cmbIndiDevice, 1);
  deviceRow->addWidget(cmdIndiFind);
  commGrid->addLayout(deviceRow, 4, 1, 1, 3);
  indiControls_ = {hostLabel,   txtIndiHost,   portLabel,  txtIndiPort,
                   deviceLabel, cmbIndiDevice, cmdIndiFind};
  commGrid->setColumnStretch(3, 1);
  root->addWidget(comm);

  auto* middle = new QHBoxLayout;
  // Observing Location.
  auto* site = named(new QGroupBox(QStringLiteral("Observing Location"), this), "fraLocation");
  auto* siteGrid = new QGridLayout(site);
  // One row each for longitude and latitude: hemisphere button, degrees, minutes.
  auto siteRow = [&](int row, const QString& caption, const char* hemi, const char* deg,
                     const char* min, QPushButton*& button, QLineEdit*& degField,
                     QLineEdit*& minField) {
    siteGrid->addWidget(new QLabel(caption, site), row, 0);
    button = named(new QPushButton(site), hemi);
    button->setFixedWidth(64);
    degField = numberField(site, deg);
    minField = numberField(site, min);
    siteGrid->addWidget(button, row, 1);
    siteGrid->addWidget(degField, row, 2);
    siteGrid->addWidget(new QLabel(QStringLiteral("\u00B0"), site), row, 3);
    siteGrid->addWidget(minField, row, 4);
    siteGrid->addWidget(new QLabel(QStringLiteral("'"), site), row, 5);
  };
  siteRow(0, QStringLiteral("Longitude"), "cmdEastWest", "txtLongDeg", "txtLongMin", cmdEastWest,
          txtLongDeg, txtLongMin);
  siteRow(1, QStringLiteral("Latitude"), "cmdNorthSouth", "txtLatDeg", "txtLatMin", cmdNorthSouth,
          txtLatDeg, txtLatMin);
  siteGrid->setColumnStretch(6, 1);
  middle->addWidget(site);

  // Altitude Controls.
  auto* alt = named(new QGroupBox(QStringLiteral("Altitude Controls"), this), "fraAltitude");
  auto* altGrid = new QGridLayout(alt);
  chkUseAltLimit =
      named(new QCheckBox(
                QStringLiteral("Use Altitude Controls? (Warns you prior to GoTo operations)"), alt),
            "chkUseAltLimit");
  altGrid->addWidget(chkUseAltLimit, 0, 0, 1, 3);
  lblMinAlt = named(new QLabel(QStringLiteral("Minimum Altitude:"), alt), "lblMinAlt");
  txtMinAlt = numberField(alt, "txtMinAlt");
  lblMaxAlt = named(new QLabel(QStringLiteral("Maximum Altitude:"), alt), "lblMaxAlt");
  txtMaxAlt = numberField(alt, "txtMaxAlt");
  altGrid->addWidget(lblMinAlt, 1, 0);
  altGrid->addWidget(txtMinAlt, 1, 1);
  altGrid->addWidget(lblMaxAlt, 2, 0);
  altGrid->addWidget(txtMaxAlt, 2, 1);
  altGrid->setColumnStretch(2, 1);
  middle->addWidget(alt);
  root->addLayout(middle);

  // Time Zone Information.
  auto* tz = named(new QGroupBox(QStringLiteral("Time Zone Information"), this), "fraTimeZone");
  auto* tzGrid = new QGridLayout(tz);
  chkUseWindowsTimeZone = named(new QCheckBox(QStringLiteral("Use Windows Time Zone Setting?"), tz),
                                "chkUseWindowsTimeZone");
  tzGrid->addWidget(chkUseWindowsTimeZone, 0, 0, 1, 2);
  lblMyTimeZone = named(
      new QLabel(
          QStringLiteral("Enter Hours from UTC (+ for East Hemisphere, - for West Hemisphere):"),
          tz),
      "lblMyTimeZone");
  txtMyTimeZone = numberField(tz, "txtMyTimeZone");
  tzGrid->addWidget(lblMyTimeZone, 1, 0);
  tzGrid->addWidget(txtMyTimeZone, 1, 1);
  tzGrid->setColumnStretch(2, 1);
  root->addWidget(tz);

  // Location of Tavorine Lists.
  auto* lists =
      named(new QGroupBox(QStringLiteral("Location of Tavorine Lists"), this), "fraDataDir");
  auto* listsRow = new QHBoxLayout(lists);
  txtDataDir = named(new QLineEdit(lists), "txtDataDir");
  cmmdBrowse = named(new QPushButton(QStringLiteral("&Browse"), lists), "cmmdBrowse");
  listsRow->addWidget(txtDataDir, 1);
  listsRow->addWidget(cmmdBrowse);
  root->addWidget(lists);

  // Object colour, then OK and Cancel.
  auto* bottom = new QHBoxLayout;
  bottom->addWidget(new QLabel(QStringLiteral("Object Color in Sky Charts: "), this));
  shpObjectColor = named(new QFrame(this), "shpObjectColor");
  shpObjectColor->setFixedSize(24, 24);
  bottom->addWidget(shpObjectColor);
  cmdColor = named(new QPushButton(QStringLiteral("Change"), this), "cmdColor");
  bottom->addWidget(cmdColor);
  bottom->addStretch(1);
  OKButton_ = named(new QPushButton(QStringLiteral("OK"), this), "OKButton");
  CancelButton_ = named(new QPushButton(QStringLiteral("Cancel"), this), "CancelButton");
  OKButton_->setDefault(true);
  bottom->addWidget(OKButton_);
  bottom->addWidget(CancelButton_);
  root->addLayout(bottom);

  // Each text field selects its whole content when it gets the focus.
  for (QLineEdit* e : {txtCommPort, txtDataDir, txtLatDeg, txtLatMin, txtLongDeg, txtLongMin,
                       txtMaxAlt, txtMinAlt, txtMyTimeZone})
    e->installEventFilter(this);

  connect(optCommPort, &QRadioButton::clicked, this, [this] {
    setCommPortRoute(Route::Serial);
    txtCommPort->setText(CommPortTextOnSelect(txtCommPort->text()));
  });
  connect(optHCD, &QRadioButton::clicked, this, [this] { setCommPortRoute(Route::Relay); });
  connect(optIndi, &QRadioButton::clicked, this, [this] { setCommPortRoute(Route::Indi); });
  connect(cmdIndiFind, &QPushButton::clicked, this, &Setup::onFindIndiDevices);
  connect(upDown1_, &UpDownButtons::stepped, this,
          [this](int delta) { txtCommPort->setText(StepCommPort(txtCommPort->text(), delta)); });
  connect(cmbFoundPorts, qOverload<int>(&QComboBox::activated), this, [this](int index) {
    const QString location = cmbFoundPorts->itemData(index).toString();
    if (location.isEmpty()) return;
    optCommPort->setChecked(true);
    setCommPortRoute(Route::Serial);
    txtCommPort->setText(location);
  });
  connect(cmdEastWest, &QPushButton::clicked, this,
          [this] { cmdEastWest->setText(ToggleLongHemi(state_.settings)); });
  connect(cmdNorthSouth, &QPushButton::clicked, this,
          [this] { cmdNorthSouth->setText(ToggleLatHemi(state_.settings)); });
  connect(chkUseWindowsTimeZone, &QCheckBox::clicked, this, [this](bool checked) {
    state_.settings.UseWindowsTimeZone = checked;
    setTimeZoneControls(checked);
  });
  connect(chkUseAltLimit, &QCheckBox::clicked, this, [this](bool checked) {
    state_.settings.UseAltLimit = checked;
    setAltitudeControls(checked);
  });
  connect(cmmdBrowse, &QPushButton::clicked, this, &Setup::onBrowse);
  connect(cmdColor, &QPushButton::clicked, this, &Setup::onColor);
  connect(OKButton_, &QPushButton::clicked, this, &Setup::onOk);
  connect(CancelButton_, &QPushButton::clicked, this, &Setup::onCancel);
}

void Setup::load() {
  const SetupFields f = SetupOpeningFields(state_.settings, state_.indi);
  cmbScopeType->clear();
  cmbScopeType->addItems(ScopeTypeCaptions());
  const Route route = f.indiSelected       ? Route::Indi
                      : f.commPortSelected ? Route::Serial
                                           : Route::Relay;
  optCommPort->setChecked(route == Route::Serial);
  optHCD->setChecked(route == Route::Relay);
  optIndi->setChecked(route == Route::Indi);
  txtCommPort->setText(f.commPort);
  txtIndiHost->setText(f.indiHost);
  txtIndiPort->setText(f.indiPort);
  cmbIndiDevice->setEditText(f.indiDevice);
  setCommPortRoute(route);
  fillFoundPorts();
  cmbScopeType->setCurrentIndex(f.scopeIndex);
  cmdEastWest->setText(f.eastWest);
  cmdNorthSouth->setText(f.northSouth);
  txtLongDeg->setText(f.longDeg);
  txtLongMin->setText(f.longMin);
  txtLatDeg->setText(f.latDeg);
  txtLatMin->setText(f.latMin);
  chkUseWindowsTimeZone->setChecked(f.useWindowsTimeZone);
  txtMyTimeZone->setText(f.myTimeZone);
  setTimeZoneControls(f.useWindowsTimeZone);
  txtMinAlt->setText(f.minAlt);
  txtMaxAlt->setText(f.maxAlt);
  chkUseAltLimit->setChecked(f.useAltLimit);
  setAltitudeControls(f.useAltLimit);
  txtDataDir->setText(f.dataDir);
  showObjectColor();
}

void Setup::fillFoundPorts() {
  cmbFoundPorts->clear();
  // Only a found port that is the one in use shows as chosen; otherwise the box offers them.
  cmbFoundPorts->setPlaceholderText(QStringLiteral("Ports found"));
  int chosen = -1;
  const auto ports = QSerialPortInfo::availablePorts();
  for (const QSerialPortInfo& p : ports) {
    const QString description = p.description().isEmpty() ? p.portName() : p.description();
    cmbFoundPorts->addItem(
        p.systemLocation() + QStringLiteral(" (") + description + QLatin1Char(')'),
        p.systemLocation());
    if (p.systemLocation() == txtCommPort->text().trimmed()) chosen = cmbFoundPorts->count() - 1;
  }
  if (cmbFoundPorts->count() == 0) {
    cmbFoundPorts->addItem(QStringLiteral("(no ports found)"));
    chosen = 0;
  }
  cmbFoundPorts->setCurrentIndex(chosen);
}

void Setup::setCommPortRoute(Route route) {
  txtCommPort->setEnabled(route == Route::Serial);
  upDown1_->setEnabled(route == Route::Serial);
  for (QWidget* w : indiControls_) w->setEnabled(route == Route::Indi);
}

void Setup::setTimeZoneControls(bool useWindows) {
  lblMyTimeZone->setEnabled(!useWindows);
  txtMyTimeZone->setEnabled(!useWindows);
}

void Setup::setAltitudeControls(bool useLimit) {
  for (QWidget* w : {static_cast<QWidget*>(lblMinAlt), static_cast<QWidget*>(txtMinAlt),
                     static_cast<QWidget*>(lblMaxAlt), static_cast<QWidget*>(txtMaxAlt)})
    w->setEnabled(useLimit);
}

void Setup::showObjectColor() {
  shpObjectColor->setStyleSheet(QStringLiteral("QFrame#shpObjectColor { background-color: %1; "
                                               "border: 1px solid black; }")
                                    .arg(CssColor(state_.settings.ObjectColor)));
}

SetupFields Setup::fields() const {
  SetupFields f;
  f.scopeIndex = cmbScopeType->currentIndex();
  f.commPortSelected = optCommPort->isChecked();
  f.commPort = txtCommPort->text();
  f.indiSelected = optIndi->isChecked();
  f.indiHost = txtIndiHost->text();
  f.indiPort = txtIndiPort->text();
  f.indiDevice = cmbIndiDevice->currentText();
  f.eastWest = cmdEastWest->text();
  f.longDeg = txtLongDeg->text();
  f.longMin = txtLongMin->text();
  f.northSouth = cmdNorthSouth->text();
  f.latDeg = txtLatDeg->text();
  f.latMin = txtLatMin->text();
  f.useWindowsTimeZone = chkUseWindowsTimeZone->isChecked();
  f.myTimeZone = txtMyTimeZone->text();
  f.useAltLimit = chkUseAltLimit->isChecked();
  f.minAlt = txtMinAlt->text();
  f.maxAlt = txtMaxAlt->text();
  f.dataDir = txtDataDir->text();
  return f;
}

bool Setup::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn) {
    if (auto* edit = qobject_cast<QLineEdit*>(watched)) {
      // After the click that gave the focus has placed the cursor.
      QTimer::singleShot(0, edit,
                         [edit] { edit->setSelection(0, qMin(100, int(edit->text().size()))); });
    }
  }
  return QDialog::eventFilter(watched, event);
}

void Setup::onOk() {
  RunGuarded(state_.prompter(), [this] {
    SetupFields f = fields();
    const bool accepted = SetupOk(state_, f);
    txtDataDir->setText(f.dataDir);
    if (accepted) accept();
  });
}

void Setup::onCancel() {
  // A settings file that cannot be written is reported, but Cancel still closes: otherwise a
  // first run on a folder that cannot be written could never leave Setup.
  RunGuarded(state_.prompter(), [this] { SetupCancel(state_); });
  QDialog::reject();
}

void Setup::reject() { onCancel(); }

void Setup::onBrowse() {
  const QString folder = pickFolder_(this, state_.settings.DataDir);
  if (!folder.isEmpty()) txtDataDir->setText(folder);
}

void Setup::onFindIndiDevices() {
  const auto body = [this] {
    const IndiSettings typed = IndiSettingsOf(fields());
    const IndiAddress server{typed.Host, static_cast<quint16>(typed.Port), QString()};
    QStringList found;
    {
      const Hourglass wait;
      found = IndiMount::telescopes(server, indiLimits_);
    }
    if (found.isEmpty()) {
      state_.prompter().message(
          QStringLiteral("Problem"),
          QStringLiteral("The INDI server at %1 offers no telescope.").arg(server.server()));
      return;
    }
    const QString kept = cmbIndiDevice->currentText().trimmed();
    cmbIndiDevice->clear();
    cmbIndiDevice->addItems(found);
    cmbIndiDevice->setEditText(found.contains(kept) ? kept : found.first());
  };
  // No server is said as it is, without the scope's words around it.
  RunGuarded(body, [this](const AppError& e) {
    state_.prompter().message(QStringLiteral("Error"), e.description);
  });
}

void Setup::onColor() {
  const qint32 chosen = chooseColor_(this, state_.settings.ObjectColor);
  if (chosen < 0) return;
  state_.settings.ObjectColor = chosen;
  showObjectColor();
}
