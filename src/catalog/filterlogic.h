#pragma once

#include <QString>
#include <array>

#include "core/appstate.h"
#include "core/filterfields.h"

// The controls as the dialog fills them at load or after Open: each number as the plain text
// of its value.
FilterForm FilterFormFrom(const FilterSettings& f);

// The record the controls stand for: a tick gives True, FltMinAlt is Val rounded to a 16-bit
// integer (error 6 when out of range), the others Val as single precision.
FilterSettings FilterFormToSettings(const FilterForm& form);

// The WHERE texts of the eight pages, by query set number.
std::array<QString, 8> FilterClauses(const FilterForm& form);

QString FilterAltitudeMessage();  // "Please select a value between 0 and 80"
bool FilterAltitudeInRange(const FilterForm& form);

// OK: checks the minimum altitude (a box titled "Error" and false when it is out of range,
// nothing changed), then sets every page's Filter, copies the controls into state.filter,
// writes Filter.ini and clears FilterCancelled. Returns whether the dialog closes.
bool FilterOk(AppState& state, const FilterForm& form);
