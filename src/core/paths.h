#pragma once

#include <QString>

class AppState;

// The read-only program folder: <prefix>/share/tavorine when installed, the source tree's
// data/ when run from the build tree.
QString ResolveProgramFolder();

// The data/ folder of the source tree this program was built from (tests and benchmarks).
QString SourceDataFolder();

// Fills the three folders of a fresh AppState from the system's standard locations.
void SetStandardFolders(AppState& state);
