// Start-up over whatever the three small files hold: it always completes; what it leaves in
// memory is what the next start reads (Filter.ini, the settings record); a list entered in the
// recent list comes back at the next start with its title and path unchanged.
#include <QFile>

#include "core/recordfile.h"
#include "core/settings.h"
#include "fuzzsupport.h"

namespace {

bool sameSettings(const ProgramSettings& a, const ProgramSettings& b) {
  return SettingsRecord(a, true) == SettingsRecord(b, true) && a.ScopeType == b.ScopeType &&
         a.CommPort == b.CommPort && a.DataDir == b.DataDir && a.LongHemi == b.LongHemi &&
         a.LatHemi == b.LatHemi;
}

void place(const QString& path, FuzzedDataProvider& in) {
  QFile::remove(path);
  if (!in.ConsumeBool()) return;
  QFile f(path);
  f.open(QIODevice::WriteOnly);
  const std::string bytes = in.ConsumeRandomLengthString(600);
  f.write(bytes.data(), qint64(bytes.size()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static TestEnv env;
  FuzzedDataProvider in(data, size);
  AppState& state = *env.state;
  place(state.settingsPath(), in);
  place(state.filterPath(), in);
  place(state.recentFilesPath(), in);

  LoadStartupState(state);

  if (QFile::exists(state.filterPath())) RequireFilterFileInForce(state);

  {
    const ProgramSettings inMemory = state.settings;
    ProgramSettings back;
    RecordReader reader(SettingsRecord(inMemory, true));
    RequireNoError("the settings record reads back without an error", [&] {
      for (auto& step : SettingsFieldReaders(back)) step(reader);
    });
    Require(sameSettings(back, inMemory), "the settings record reads back unchanged",
            QString::fromUtf8(SettingsRecord(inMemory, true)));
  }

  const QString title = SomeText(in, 48), path = SomeText(in, 48);
  if (!title.isEmpty()) {
    RequireNoError("the recent list is written", [&] { RecordRecentFile(state, title, path); });
    env.prompter.clear();
    LoadStartupState(state);
    Require(state.MRUFiles[0].title == title && state.MRUFiles[0].path == path,
            "a recent list entry comes back unchanged",
            title + QLatin1Char('|') + path + QStringLiteral(" read as ") +
                state.MRUFiles[0].title + QLatin1Char('|') + state.MRUFiles[0].path);
  }
  env.prompter.clear();
  return 0;
}
