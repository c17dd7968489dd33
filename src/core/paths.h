#pragma once

#include <QString>

class AppState;

// The read-only program folder: <prefix>/share/tavorine when installed, the source tree's
// data/ when run from the build tree.
QString ResolveProgramFolder();

// The data/ folder of the source tree this program was built from (tests and benchmarks).
QString SourceDataFolder();

// The drive C: of the user's Wine prefix: WINEPREFIX's, or that of ~/.wine.
QString WineDriveC();

// Fills the folders of a fresh AppState from the system's standard locations.
void SetStandardFolders(AppState& state);
