#pragma once

#include <QString>
#include <array>

#include "core/appstate.h"

// The Filter dialog's controls as the user left them: the ticks and the 19 texts as typed.
struct FilterForm {
  bool chkAltFilter = true;
  QString txtMinAltFilter;
  bool chkGal = true;
  QString txtGalMin, txtGalMax;
  bool chkGC = true;
  QString txtGCMin, txtGCMax;
  bool chkOC = true;
  QString txtOCMin, txtOCMax;
  bool chkPN = true;
  QString txtPNMin, txtPNMax;
  bool chkNeb = true;
  QString txtNebMin, txtNebMax;
  QString txtDSSepMin, txtDSSepMax;
  QString txtDSMagMin, txtDSMagMax;
  QString txtDSMagDifMin, txtDSMagDifMax;
  QString txtUserMagMin, txtUserMagMax;
};

// One value of the filter: the control that shows it on the Filter dialog, the member of the
// record that stores it and the member of the form that holds it as typed. A tick is a check
// box and a True/False field; the minimum altitude a 16-bit whole number typed in a box; every
// other value a single typed in a box, enabled by the tick of its object type when it has one.
struct FilterField {
  const char* control = nullptr;
  bool FilterSettings::*flag = nullptr;  // a tick
  bool FilterForm::*tick = nullptr;
  qint16 FilterSettings::*whole = nullptr;  // the minimum altitude
  float FilterSettings::*single = nullptr;  // a magnitude or separation
  QString FilterForm::*text = nullptr;      // a whole or single as typed
  const char* enabledBy = nullptr;          // the tick that enables this box
};

// The 25 values in the order Filter.ini stores them.
const std::array<FilterField, 25>& FilterFields();
