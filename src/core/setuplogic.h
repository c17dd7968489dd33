#pragma once

#include <QString>
#include <QStringList>

#include "core/appstate.h"

// What the Setup dialog shows and what it hands back: the texts of its fields and the states
// of its check boxes and options, without any widget.
struct SetupFields {
  int scopeIndex = 0;              // cmbScopeType
  bool commPortSelected = true;    // optCommPort (false: optHCD)
  QString commPort;                // txtCommPort
  bool indiSelected = false;       // optIndi (then neither of the two above)
  QString indiHost, indiPort;      // txtIndiHost, txtIndiPort
  QString indiDevice;              // cmbIndiDevice
  QString eastWest;                // caption of cmdEastWest
  QString longDeg, longMin;        // txtLongDeg, txtLongMin
  QString northSouth;              // caption of cmdNorthSouth
  QString latDeg, latMin;          // txtLatDeg, txtLatMin
  bool useWindowsTimeZone = true;  // chkUseWindowsTimeZone
  QString myTimeZone;              // txtMyTimeZone
  bool useAltLimit = true;         // chkUseAltLimit
  QString minAlt, maxAlt;          // txtMinAlt, txtMaxAlt
  QString dataDir;                 // txtDataDir
};

// The texts of the telescope families, in the order of the drop-down list.
QStringList ScopeTypeCaptions();

// A Comm Port text names a serial port when its leading number is above 0 or when it is a
// device path ("/dev/ttyUSB0"); "INDI" is an INDI server's mount; anything else ("HCD",
// "HCD host:port", "0") is the proxy route.
bool CommPortIsSerial(const QString& commPort);

// The opening steps: the fields as the dialog shows them for these settings.
SetupFields SetupOpeningFields(const ProgramSettings& s, const IndiSettings& indi = {});

// The INDI server and device as typed: a blank host is this computer, a port that is not a
// whole number from 1 to 65535 is INDI's usual 7624.
IndiSettings IndiSettingsOf(const SetupFields& fields);

// optCommPort chosen: the Comm Port text it leaves in the field (a zero number becomes "1";
// a device path stays).
QString CommPortTextOnSelect(const QString& text);

// UpDown1: the Comm Port text one step up (+1) or down (-1). A number stays within 1..256; a
// device path steps the number at its end (/dev/ttyUSB0 -> /dev/ttyUSB1), never below 0.
// Other texts are left alone.
QString StepCommPort(const QString& text, int delta);

// The captions of the hemisphere buttons.
QString EastWestCaption(const QString& longHemi);
QString NorthSouthCaption(const QString& latHemi);

// cmdEastWest and cmdNorthSouth: flip the live setting, return the new caption.
QString ToggleLongHemi(ProgramSettings& s);
QString ToggleLatHemi(ProgramSettings& s);

// The message of OK when the folder is missing.
QString FolderMissingText(const QString& folder);

// OK, steps 1 to 10 (the INDI server's fields go with step 3, and with step 10 to their own
// file). Settings change in memory as each step goes; a coordinate that is not a
// number raises error 13 (steps 1 to 3 already done). A missing folder shows the "Problem" box
// and returns false with nothing written. On success fields.dataDir holds the folder with its
// closing separator, the settings file is written in full and the result is true.
bool SetupOk(AppState& state, SetupFields& fields);

// Cancel: a first run without a settings file leaves a short one (15 fields), so the dialog
// comes back on the next start; otherwise nothing is written.
void SetupCancel(AppState& state);
