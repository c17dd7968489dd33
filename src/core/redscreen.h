#pragma once

#include <QBrush>
#include <QHash>
#include <QIcon>
#include <QList>
#include <QPair>
#include <QPalette>
#include <QPointer>
#include <QString>

#include "core/redscreencolors.h"

class AppState;
class QAbstractButton;
class QMdiArea;

// Night vision. Linux has no system colours to rewrite, so while the mode is on every window of
// the program takes the 25-colour scheme: a palette for what the style draws from it, an
// application style sheet for menus, tool tips, the workspace, scroll bars and grid headers,
// and a style (RedScreenStyle) that turns red whatever the style paints in colours of its own.
// Switching off puts back exactly what the snapshot held.
class RedScreen {
 public:
  // How long after the switch the list windows' title bars are painted again.
  static constexpr int kTitleBarPauseMs = 250;

  explicit RedScreen(AppState& state);

  // Start-up: remember the application's palette and style sheet and fill the three tables.
  void snapshot();

  // ToggleRedScreen: flips RedScreenOn and recolours. The six toolbar buttons (cmdNew, cmdOpen,
  // cmdPrint, cmdHHC, cmdAlignStars, cmdRedScreen, in any order) turn dark red and lose their
  // tool tips while on; off gives back their own background and their tool tips.
  void toggle(const QList<QAbstractButton*>& sixButtons);

  // Exit: when the mode is on, the snapshot goes back; the flag and the buttons stay.
  void restoreForExit();

  const SysColorTables& tables() const { return tables_; }
  // The palette of a colour table over a base palette.
  static QPalette paletteFor(const SysColorTable& colors, const QPalette& base);
  // The colour of a system colour id as a palette shows it (for the snapshot).
  static qint32 readFromPalette(const QPalette& palette, int id);

  // The tool tip of a toolbar button by its name.
  static QString toolTipFor(const QString& buttonName);

 private:
  void applyOn(const QList<QAbstractButton*>& buttons);
  void applyOff(const QList<QAbstractButton*>& buttons);
  void putBackSnapshot();
  static void repaintTitleBarsLater();

  AppState& state_;
  SysColorTables tables_;
  QPalette savedPalette_;
  QString savedStyleSheet_;
  bool snapshotTaken_ = false;
  // While on: the name of the application's own style, to put back; and whether the program
  // had already turned the desktop's dialogs off.
  QString ownStyleName_;
  bool nativeDialogsWereOff_ = false;
  // Each button's own style sheet and picture, from before they turned red.
  QHash<QAbstractButton*, QString> buttonSheets_;
  QHash<QAbstractButton*, QIcon> buttonIcons_;
  // The workspaces paint their own brush, which no style sheet reaches: their own brushes.
  QList<QPair<QPointer<QMdiArea>, QBrush>> workspaces_;
};
