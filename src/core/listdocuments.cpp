#include "core/listdocuments.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <cmath>

#include "core/appstate.h"
#include "core/handler.h"
#include "core/opendocuments.h"
#include "core/prompter.h"
#include "core/twips.h"

namespace {

// Each command ends silently on an error of its own.
std::optional<ListDocumentRequest> silently(
    const std::function<std::optional<ListDocumentRequest>()>& body) {
  std::optional<ListDocumentRequest> out;
  RunGuarded([&] { out = body(); }, [](const AppError&) {});
  return out;
}

bool tooMany(AppState& state) {
  if (state.OpenFileCount < MaxOpenLists) return false;
  state.prompter().message(AppTitle(), TooManyFilesMessage());
  return true;
}

// The template goes to a temporary file beside the target first, so a copy that fails leaves
// an existing file as it was.
bool copyTemplate(const QString& from, const QString& to) {
  QFile source(from);
  if (!source.open(QIODevice::ReadOnly)) return false;
  QSaveFile target(to);
  if (!target.open(QIODevice::WriteOnly)) return false;
  const QByteArray bytes = source.readAll();
  if (target.write(bytes) != bytes.size()) {
    target.cancelWriting();
    return false;
  }
  return target.commit();
}

}  // namespace

QString ListFileFilter() { return QStringLiteral("Tavorine List Files (*.tlf)"); }
QString NewListDialogTitle() { return QStringLiteral("Name new file..."); }
QString OpenListDialogTitle() { return QStringLiteral("Open existing list..."); }

QString ListDocumentTitle(const QString& path) { return QFileInfo(path).completeBaseName(); }

std::optional<ListDocumentRequest> NewListRequest(AppState& state, const ListFileChooser& choose) {
  return silently([&]() -> std::optional<ListDocumentRequest> {
    if (tooMany(state)) return std::nullopt;
    QString path = choose(true, NewListDialogTitle(), state.LastListFolder);
    if (path.isEmpty()) return std::nullopt;
    if (!path.endsWith(QLatin1String(".tlf"), Qt::CaseInsensitive)) path += QStringLiteral(".tlf");
    const QString title = ListDocumentTitle(path);
    state.LastListFolder = ListFolderOf(path, QFileInfo(path).fileName());
    if (QFileInfo::exists(path) &&
        state.prompter().ask(QStringLiteral("Confirm"), OverwriteQuestion(path),
                             Prompter::Buttons::YesNo,
                             Prompter::Answer::No) != Prompter::Answer::Yes)
      return std::nullopt;
    // An open document is never copied over: its window keeps working on it.
    if (IsAlreadyOpen(state, path)) {
      state.prompter().message(QStringLiteral("Oops"), UnableToOverwriteMessage(path));
      return std::nullopt;
    }
    if (!copyTemplate(state.templatePath(), path)) return std::nullopt;
    return ListDocumentRequest{path, title};
  });
}

std::optional<ListDocumentRequest> OpenListRequest(AppState& state, const ListFileChooser& choose) {
  return silently([&]() -> std::optional<ListDocumentRequest> {
    if (tooMany(state)) return std::nullopt;
    const QString path = choose(false, OpenListDialogTitle(), state.LastListFolder);
    if (path.isEmpty()) return std::nullopt;
    const QString title = ListDocumentTitle(path);
    state.LastListFolder = ListFolderOf(path, QFileInfo(path).fileName());
    if (IsAlreadyOpen(state, path)) {
      state.prompter().message(QStringLiteral("Oops"), AlreadyOpenMessage(path));
      return std::nullopt;
    }
    return ListDocumentRequest{path, title};
  });
}

std::optional<ListDocumentRequest> RecentListRequest(AppState& state, int index) {
  return silently([&]() -> std::optional<ListDocumentRequest> {
    if (tooMany(state)) return std::nullopt;
    if (index < 0 || index >= int(state.MRUFiles.size())) return std::nullopt;
    const FileEntry entry = state.MRUFiles[size_t(index)];
    if (!QFileInfo::exists(entry.path)) {
      state.prompter().message(QStringLiteral("Error"), RecentFileGoneMessage(entry.title));
      return std::nullopt;
    }
    if (IsAlreadyOpen(state, entry.path)) {
      state.prompter().message(QStringLiteral("Oops"), AlreadyOpenMessage(entry.path));
      return std::nullopt;
    }
    return ListDocumentRequest{entry.path, entry.title};
  });
}

int ScreenHeightTwips(int pixels, double logicalDpi) {
  return int(std::lround(DeviceUnitsToTwips(pixels, logicalDpi > 0 ? logicalDpi : 96)));
}
