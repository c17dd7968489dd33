#pragma once

#include <QString>

#include "core/appstate.h"

// Bookkeeping of the open list documents on AppState: OpenFileCount, the packed OpenFiles
// rows 1..10 and the window slots OpenSlotFile 1..9.

constexpr int MaxOpenLists = 9;

// Whether a row of OpenFiles holds this full path. Paths compare exactly as text, so another
// spelling of the same file is another document.
bool IsAlreadyOpen(const AppState& state, const QString& path);

// A window is opening on a document: count + 1, the next row of OpenFiles, and the lowest
// free slot, which is returned (0 when every slot is taken, which the limit of nine keeps
// from happening).
int RegisterOpen(AppState& state, const QString& title, const QString& path);

// A window closes: count - 1, its row removed with the later rows moved up, and its slot
// freed: the given one when it holds the path, else whichever slot holds it.
// Returns true when it was the last open list.
bool RegisterClose(AppState& state, const QString& path, int slot);

// The folder part of a chosen file: what stands in front of the first occurrence of the file
// title, compared without regard to case. A folder whose name holds the file's own name is
// cut short there; that is how the program has always remembered the folder.
QString ListFolderOf(const QString& fullName, const QString& fileTitle);

// Small screens get the compact list window: below 10000 twips of height.
bool UseCompactListWindow(int screenHeightTwips);

// Texts of the boxes around opening a document.
QString TooManyFilesMessage();                              // title AppTitle()
QString OverwriteQuestion(const QString& fullName);         // title "Confirm", Yes/No
QString UnableToOverwriteMessage(const QString& fullName);  // title "Oops"
QString AlreadyOpenMessage(const QString& fullName);        // title "Oops"
QString RecentFileGoneMessage(const QString& title);        // title "Error"
