#include "core/opendocuments.h"

#include <algorithm>

bool IsAlreadyOpen(const AppState& state, const QString& path) {
  if (path.isEmpty()) return false;
  for (int row = 1; row <= 10; ++row)
    if (state.OpenFiles[row].path == path) return true;
  return false;
}

int RegisterOpen(AppState& state, const QString& title, const QString& path) {
  // The table has ten rows for nine windows; past that the row is not written rather than
  // running off the table.
  ++state.OpenFileCount;
  if (state.OpenFileCount >= 1 && state.OpenFileCount <= 10)
    state.OpenFiles[state.OpenFileCount] = FileEntry{title, path};
  for (int slot = 1; slot <= MaxOpenLists; ++slot) {
    if (state.OpenSlotFile[slot].isEmpty()) {
      state.OpenSlotFile[slot] = path;
      return slot;
    }
  }
  return 0;
}

bool RegisterClose(AppState& state, const QString& path, int slot) {
  const bool wasLast = state.OpenFileCount == 1;
  if (state.OpenFileCount > 0) --state.OpenFileCount;
  for (int row = 1; row <= 10; ++row) {
    if (state.OpenFiles[row].path != path) continue;
    for (int later = row; later < 10; ++later) state.OpenFiles[later] = state.OpenFiles[later + 1];
    state.OpenFiles[10] = FileEntry{};
    break;
  }
  // The window's own slot when it still holds the document, else the slot that does.
  if (slot < 1 || slot > MaxOpenLists || state.OpenSlotFile[size_t(slot)] != path) {
    slot = 0;
    for (int s = 1; s <= MaxOpenLists && !slot; ++s)
      if (state.OpenSlotFile[size_t(s)] == path) slot = s;
  }
  if (slot) state.OpenSlotFile[size_t(slot)].clear();
  return wasLast;
}

QString ListFolderOf(const QString& fullName, const QString& fileTitle) {
  const int at = fileTitle.isEmpty() ? -1 : fullName.indexOf(fileTitle, 0, Qt::CaseInsensitive);
  if (at >= 0) return fullName.left(at);
  // A title that is not in the name: the folder up to the last separator.
  const int sep =
      std::max(fullName.lastIndexOf(QLatin1Char('/')), fullName.lastIndexOf(QLatin1Char('\\')));
  return fullName.left(sep + 1);
}

bool UseCompactListWindow(int screenHeightTwips) { return screenHeightTwips < 10000; }

QString TooManyFilesMessage() { return QStringLiteral("Sorry, you can only open 9 files!"); }

QString OverwriteQuestion(const QString& fullName) {
  return QStringLiteral("This file\n") + fullName + QStringLiteral("\nalready exists.  Overwrite?");
}

QString UnableToOverwriteMessage(const QString& fullName) {
  return QStringLiteral("Unable to overwrite - the file\n") + fullName +
         QStringLiteral("\nis already open");
}

QString AlreadyOpenMessage(const QString& fullName) {
  return QStringLiteral("This file:\n") + fullName + QStringLiteral("\nis already open");
}

QString RecentFileGoneMessage(const QString& title) {
  return QStringLiteral("This file\n") + title +
         QStringLiteral("\nno longer exists or has been moved.");
}
