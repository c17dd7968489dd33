// Start-up over whatever the three small files hold: it always completes; what it leaves in
// memory is what the next start reads (Filter.ini, the settings record); a list entered in the
// recent list comes back at the next start with its title and path unchanged.
#include <QFile>

#include "core/recordfile.h"
#include "core/settings.h"
#include "fuzzsupport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static TestEnv env;
  FuzzedDataProvider in(data, size);
  AppState& state = *env.state;
  for (const QString& path : {state.settingsPath(), state.filterPath(), state.recentFilesPath()}) {
    QFile::remove(path);
    if (!in.ConsumeBool()) continue;
    QFile f(path);
    f.open(QIODevice::WriteOnly);
    f.write(QByteArray::fromStdString(in.ConsumeRandomLengthString(600)));
  }
  LoadStartupState(state);
  if (QFile::exists(state.filterPath())) RequireFilterFileInForce(state);

  const ProgramSettings& inMemory = state.settings;
  ProgramSettings back;
  RecordReader reader(SettingsRecord(inMemory, true));
  RequireNoError("the settings record reads back without an error", [&] {
    for (auto& step : SettingsFieldReaders(back)) step(reader);
  });
  Require(SettingsRecord(back, true) == SettingsRecord(inMemory, true) &&
              back.ScopeType == inMemory.ScopeType && back.CommPort == inMemory.CommPort &&
              back.DataDir == inMemory.DataDir && back.LongHemi == inMemory.LongHemi &&
              back.LatHemi == inMemory.LatHemi,
          "the settings record reads back unchanged",
          QString::fromUtf8(SettingsRecord(inMemory, true)));

  const QString title = SomeText(in, 48), path = SomeText(in, 48);
  if (!title.isEmpty()) {
    RequireNoError("the recent list is written", [&] { RecordRecentFile(state, title, path); });
    env.prompter.clear();
    LoadStartupState(state);
    Require(state.MRUFiles[0].title == title && state.MRUFiles[0].path == path,
            "a recent list entry comes back unchanged", title + QLatin1Char('|') + path);
  }
  env.prompter.clear();
  return 0;
}
