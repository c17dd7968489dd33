#pragma once

#include <QString>
#include <functional>
#include <optional>

class AppState;

// The commands that bring a list document to a window: New, Open and a recent-file entry.
// Each runs its checks and messages and answers the document to open, or nothing when the
// command ends (cancelled, refused, or failed without a word).

// The file dialog: save (New) or open, its title and starting folder. An empty answer is a
// cancelled dialog.
using ListFileChooser =
    std::function<QString(bool save, const QString& title, const QString& folder)>;

struct ListDocumentRequest {
  QString path;   // full name
  QString title;  // the document's title: the file's name without folder and extension
};

QString ListFileFilter();       // "Tavorine List Files (*.tlf)"
QString NewListDialogTitle();   // "Name new file..."
QString OpenListDialogTitle();  // "Open existing list..."

// The title of a list document.
QString ListDocumentTitle(const QString& path);

std::optional<ListDocumentRequest> NewListRequest(AppState& state, const ListFileChooser& choose);
std::optional<ListDocumentRequest> OpenListRequest(AppState& state, const ListFileChooser& choose);
// index 0..4 of the recent-file table.
std::optional<ListDocumentRequest> RecentListRequest(AppState& state, int index);

// A screen's height in twips from its height in pixels and its logical dots per inch.
int ScreenHeightTwips(int pixels, double logicalDpi);
