#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <functional>
#include <vector>

#include "core/appstate.h"

class RecordReader;

// The settings record as written by Setup's OK (16 fields) or by its Cancel on a first run
// (the first 15, without ObjectColor).
QByteArray SettingsRecord(const ProgramSettings& s, bool withObjectColor);
void SaveSettings(const AppState& state, bool withObjectColor);

// The INDI route's record (TavorineINDI.ini): host, port, device. Reading keeps the defaults of
// the fields a missing or damaged file does not give; it never touches the other files.
QByteArray IndiRecord(const IndiSettings& s);
void SaveIndiSettings(const AppState& state);
void LoadIndiSettings(AppState& state);

// The filter record (Filter.ini and .flt files).
QByteArray FilterRecord(const FilterSettings& f);
void WriteFilterFile(const QString& path, const FilterSettings& f);
void SaveFilterDefaults(const AppState& state);

// One step per field of each record, so that a reader can be stopped or trapped field by
// field and the fields not yet reached keep their values.
std::vector<std::function<void(RecordReader&)>> SettingsFieldReaders(ProgramSettings& s);
std::vector<std::function<void(RecordReader&)>> FilterFieldReaders(FilterSettings& f);
// Reads a whole filter file into f; an error leaves the fields not yet read as they were and
// is raised to the caller.
void ReadFilterFile(const QString& path, FilterSettings& f);

// The observing date at start: the present moment before 06:00, otherwise today at 22:00.
QDateTime InitialUserDate(const QDateTime& now);

// Start-up: folders, shared state, observing date, the three small files. Errors of the
// files are handled as the program always has: reading past the end of a file repairs the
// settings file (ObjectColor 200, all 16 fields); any other error is shown and start-up goes
// on with the next step.
void LoadStartupState(AppState& state);

// A list window closes: its document goes to the head of the recent-file table, the table is
// written to TVRNMRU.dat, and the menu state follows.
void RecordRecentFile(AppState& state, const QString& title, const QString& path);
