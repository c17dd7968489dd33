#include "core/settings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "core/apperror.h"
#include "core/filterfields.h"
#include "core/numtext.h"
#include "core/prompter.h"
#include "core/recordfile.h"

QByteArray SettingsRecord(const ProgramSettings& s, bool withObjectColor) {
  RecordWriter w;
  w.text(s.ScopeType).text(s.CommPort).text(s.DataDir).integer(s.FirstRun);
  w.boolean(s.UseWindowsTimeZone).single(s.MyTimeZone).text(s.LongHemi);
  w.integer(s.LongDeg).integer(s.LongMin).text(s.LatHemi).integer(s.LatDeg).integer(s.LatMin);
  w.integer(s.MinAlt).integer(s.MaxAlt).boolean(s.UseAltLimit);
  if (withObjectColor) w.integer(s.ObjectColor);
  return w.endRecord().bytes();
}

void SaveSettings(const AppState& state, bool withObjectColor) {
  WriteWholeFile(state.settingsPath(), SettingsRecord(state.settings, withObjectColor));
}

namespace {

// The fields of TavorineINDI.ini in file order, for the reader and the writer alike.
template <typename Settings, typename Field>
void IndiFields(Settings& s, Field&& field) {
  field(s.Host);
  field(s.Port);
  field(s.Device);
}

struct WriteField {
  RecordWriter& w;
  void operator()(const QString& v) const { w.text(v); }
  void operator()(qint32 v) const { w.integer(v); }
};

struct ReadField {
  RecordReader& r;
  void operator()(QString& v) const { v = r.text(); }
  void operator()(qint32& v) const { v = r.int32(); }
};

}  // namespace

QByteArray IndiRecord(const IndiSettings& s) {
  RecordWriter w;
  IndiFields(s, WriteField{w});
  return w.endRecord().bytes();
}

void SaveIndiSettings(const AppState& state) {
  WriteWholeFile(state.indiPath(), IndiRecord(state.indi));
}

void LoadIndiSettings(AppState& state) {
  state.indi = IndiSettings{};
  if (!QFileInfo::exists(state.indiPath())) return;
  try {
    RecordReader reader(ReadWholeFile(state.indiPath()));
    IndiSettings read = state.indi;
    // A field that fails ends the reading; the fields read before it stay.
    try {
      IndiFields(read, ReadField{reader});
    } catch (const AppError&) {
    }
    if (read.Port < 1 || read.Port > 65535) read.Port = IndiSettings{}.Port;
    state.indi = read;
  } catch (const AppError&) {
    // An unreadable file leaves the defaults; Setup shows them and its OK writes the file anew.
  }
}

QByteArray FilterRecord(const FilterSettings& f) {
  RecordWriter w;
  for (const FilterField& field : FilterFields()) {
    if (field.flag) w.boolean(f.*field.flag);
    else if (field.whole) w.integer(f.*field.whole);
    else w.single(f.*field.single);
  }
  return w.endRecord().bytes();
}

void WriteFilterFile(const QString& path, const FilterSettings& f) {
  WriteWholeFile(path, FilterRecord(f));
}

void SaveFilterDefaults(const AppState& state) {
  WriteFilterFile(state.filterPath(), state.filter);
}

using FieldReaders = std::vector<std::function<void(RecordReader&)>>;

FieldReaders SettingsFieldReaders(ProgramSettings& s) {
  return {
      [&](RecordReader& r) { s.ScopeType = r.text(); },
      [&](RecordReader& r) { s.CommPort = r.text(); },
      [&](RecordReader& r) { s.DataDir = r.text(); },
      [&](RecordReader& r) { s.FirstRun = r.int16(); },
      [&](RecordReader& r) { s.UseWindowsTimeZone = r.boolean(); },
      [&](RecordReader& r) { s.MyTimeZone = r.single(); },
      [&](RecordReader& r) { s.LongHemi = r.text(); },
      [&](RecordReader& r) { s.LongDeg = r.int16(); },
      [&](RecordReader& r) { s.LongMin = r.int16(); },
      [&](RecordReader& r) { s.LatHemi = r.text(); },
      [&](RecordReader& r) { s.LatDeg = r.int16(); },
      [&](RecordReader& r) { s.LatMin = r.int16(); },
      [&](RecordReader& r) { s.MinAlt = r.int16(); },
      [&](RecordReader& r) { s.MaxAlt = r.int16(); },
      [&](RecordReader& r) { s.UseAltLimit = r.boolean(); },
      [&](RecordReader& r) { s.ObjectColor = r.int32(); },
  };
}

FieldReaders FilterFieldReaders(FilterSettings& f) {
  FieldReaders steps;
  for (const FilterField& field : FilterFields()) {
    if (field.flag) steps.push_back([&f, m = field.flag](RecordReader& r) { f.*m = r.boolean(); });
    else if (field.whole)
      steps.push_back([&f, m = field.whole](RecordReader& r) { f.*m = r.int16(); });
    else steps.push_back([&f, m = field.single](RecordReader& r) { f.*m = r.single(); });
  }
  return steps;
}

void ReadFilterFile(const QString& path, FilterSettings& f) {
  RecordReader reader(ReadWholeFile(path));
  FilterSettings read = f;
  try {
    for (auto& step : FilterFieldReaders(read)) step(reader);
  } catch (AppError& e) {
    e.about(path);
    throw;
  }
  f = read;
}

QDateTime InitialUserDate(const QDateTime& now) {
  if (now.time().hour() < 6) {
    // The clock reads to the second.
    const QTime t = now.time();
    return QDateTime(now.date(), QTime(t.hour(), t.minute(), t.second()));
  }
  return QDateTime(now.date(), QTime(22, 0));
}

namespace {

// The start-up trap: reading past the end of any file repairs the settings file; every
// other error is shown; either way start-up goes on with the next step.
void trapped(AppState& state, const std::function<void()>& step) {
  try {
    step();
  } catch (const AppError& e) {
    if (e.number == ErrNo::InputPastEnd) {
      state.settings.ObjectColor = 200;
      try {
        SaveSettings(state, true);
      } catch (const AppError& w) {
        state.prompter().message(AppTitle(), w.text());
      }
    } else {
      state.prompter().message(AppTitle(), e.text());
    }
  }
}

// Reads the fields of one record; once the file has run out the remaining fields are not
// tried again, so they keep what they held. A field that does not convert names its file.
// Returns whether every field was read.
bool readFields(AppState& state, RecordReader& reader, const FieldReaders& steps,
                const QString& path) {
  bool pastEnd = false, clean = true;
  for (const auto& step : steps) {
    if (pastEnd) break;
    trapped(state, [&] {
      try {
        step(reader);
      } catch (AppError& e) {
        clean = false;
        if (e.number == ErrNo::InputPastEnd) pastEnd = true;
        else e.about(path);
        throw;
      }
    });
  }
  return clean;
}

}  // namespace

void LoadStartupState(AppState& state) {
  // 1. The default data folder.
  trapped(state, [&] {
    if (!QFileInfo::exists(state.defaultDataDir) && !QDir().mkpath(state.defaultDataDir))
      throw AppError::ofFile(ErrNo::PathNotFound, state.defaultDataDir);
  });
  // 2. Run-time variables.
  state.RedScreenOn = false;
  state.FilterOn = false;
  state.OpenFileCount = 0;
  state.ImportHasHeader = true;
  state.PrintCopies = 1;
  state.resetPages();
  // 3, 4. The observing date; the user-object search field.
  state.UserDate = InitialUserDate(state.now());
  state.UserSearchField = QStringLiteral("ObjectNum");

  // 5. TavorineList.ini.
  if (!QFileInfo::exists(state.settingsPath())) {
    state.settings = ProgramSettings{};
    state.settings.FirstRun = 1;
    state.settings.DataDir = state.defaultDataDir;
  } else {
    // A file cut short (an empty one, say) leaves the fields it lacks at their defaults, the
    // list folder included, rather than at nothing.
    state.settings = ProgramSettings{};
    state.settings.DataDir = state.defaultDataDir;
    QByteArray bytes;
    trapped(state, [&] { bytes = ReadWholeFile(state.settingsPath()); });
    RecordReader reader(bytes);
    readFields(state, reader, SettingsFieldReaders(state.settings), state.settingsPath());
  }

  // Our own file beside it, for the INDI route.
  LoadIndiSettings(state);

  // 6. Filter.ini.
  if (!QFileInfo::exists(state.filterPath())) {
    state.filter = FilterSettings{};
    trapped(state, [&] { SaveFilterDefaults(state); });
  } else {
    QByteArray bytes;
    bool opened = false;
    trapped(state, [&] {
      bytes = ReadWholeFile(state.filterPath());
      opened = true;
    });
    RecordReader reader(bytes);
    // A file that did not read whole is written again from what is in force, so that the
    // next start is quiet.
    if (!readFields(state, reader, FilterFieldReaders(state.filter), state.filterPath()) && opened)
      trapped(state, [&] { SaveFilterDefaults(state); });
  }

  // 7. TVRNMRU.dat: up to five rows.
  state.MRUSeparatorShown = false;
  state.MRUShown.fill(false);
  for (auto& row : state.MRUFiles) row = FileEntry{};
  if (QFileInfo::exists(state.recentFilesPath())) {
    QByteArray bytes;
    trapped(state, [&] { bytes = ReadWholeFile(state.recentFilesPath()); });
    RecordReader reader(bytes);
    for (int i = 0; i < 5 && !reader.atEnd(); ++i) {
      FileEntry& row = state.MRUFiles[i];
      readFields(state, reader,
                 {[&](RecordReader& r) { row.title = r.text(); },
                  [&](RecordReader& r) { row.path = r.text(); }},
                 state.recentFilesPath());
      state.MRUSeparatorShown = true;
      state.MRUShown[i] = true;
    }
  }

  // 8. The folders of the file dialogs.
  state.LastListFolder = state.settings.DataDir;
  state.LastImportFolder = state.settings.DataDir;

  // 9 (the colour snapshot) belongs to the window system; 10. all slots free.
  for (auto& slot : state.OpenSlotFile) slot.clear();
}

void RecordRecentFile(AppState& state, const QString& title, const QString& path) {
  auto& rows = state.MRUFiles;
  for (int i = 0; i < 5; ++i) {
    if (rows[i].path == path && !path.isEmpty()) {
      for (int j = i; j < 4; ++j) rows[j] = rows[j + 1];
      rows[4] = FileEntry{};
      break;
    }
  }
  for (int j = 4; j > 0; --j) rows[j] = rows[j - 1];
  rows[0] = FileEntry{title, path};
  state.MRUSeparatorShown = true;

  RecordWriter w;
  for (int i = 0; i < 5; ++i) {
    if (rows[i].title.isEmpty()) break;
    w.text(rows[i].title).text(rows[i].path).endRecord();
    state.MRUShown[i] = true;
  }
  WriteWholeFile(state.recentFilesPath(), w.bytes());
}
