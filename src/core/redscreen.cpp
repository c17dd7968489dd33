#include "core/redscreen.h"

#include <QAbstractButton>
#include <QApplication>
#include <QColor>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPixmapCache>
#include <QStyleFactory>
#include <QTimer>

#include "core/appstate.h"
#include "core/handler.h"
#include "core/redscreenstyle.h"

namespace {

QColor toColor(qint32 v) { return QColor(RedOf(v), GreenOf(v), BlueOf(v)); }
qint32 fromColor(const QColor& c) { return RedLowValue(c.red(), c.green(), c.blue()); }

struct RoleOfId {
  QPalette::ColorGroup group;
  QPalette::ColorRole role;
  int id;
};

// Which system colour paints which palette role. Forms are painted in the button face, as on
// the desktop the program came from; edit fields and grids in the window colour.
const RoleOfId kRoles[] = {
    {QPalette::All, QPalette::Window, SysColor::ButtonFace},
    {QPalette::All, QPalette::WindowText, SysColor::ButtonText},
    {QPalette::All, QPalette::Base, SysColor::Window},
    {QPalette::All, QPalette::AlternateBase, SysColor::Window},
    {QPalette::All, QPalette::Text, SysColor::WindowText},
    {QPalette::All, QPalette::Button, SysColor::ButtonFace},
    {QPalette::All, QPalette::ButtonText, SysColor::ButtonText},
    {QPalette::All, QPalette::Light, SysColor::ButtonHighlight},
    {QPalette::All, QPalette::Midlight, SysColor::Light3D},
    {QPalette::All, QPalette::Mid, SysColor::ButtonShadow},
    {QPalette::All, QPalette::Dark, SysColor::ButtonShadow},
    {QPalette::All, QPalette::Shadow, SysColor::DarkShadow3D},
    {QPalette::All, QPalette::Highlight, SysColor::Highlight},
    {QPalette::All, QPalette::HighlightedText, SysColor::HighlightText},
    {QPalette::All, QPalette::BrightText, SysColor::CaptionText},
    {QPalette::All, QPalette::ToolTipBase, SysColor::InfoBackground},
    {QPalette::All, QPalette::ToolTipText, SysColor::InfoText},
    {QPalette::All, QPalette::PlaceholderText, SysColor::GrayText},
    {QPalette::All, QPalette::Link, SysColor::HighlightText},
    {QPalette::Disabled, QPalette::WindowText, SysColor::GrayText},
    {QPalette::Disabled, QPalette::Text, SysColor::GrayText},
    {QPalette::Disabled, QPalette::ButtonText, SysColor::GrayText},
    // The title bars of the list windows take the highlight of the active group.
    {QPalette::Inactive, QPalette::Highlight, SysColor::InactiveCaption},
    {QPalette::Inactive, QPalette::HighlightedText, SysColor::InactiveCaptionText},
};

// Where a system colour has no palette role, the snapshot keeps the classic default.
const qint32 kClassicColors[SysColor::Count] = {
    0xC8C8C8, 0x000000, 0xD1B499, 0xDBCDBF, 0xF0F0F0, 0xFFFFFF, 0x646464, 0x000000, 0x000000,
    0x000000, 0xB4B4B4, 0xFCF7F4, 0xABABAB, 0xFF9933, 0xFFFFFF, 0xF0F0F0, 0xA0A0A0, 0x6D6D6D,
    0x000000, 0x000000, 0xFFFFFF, 0x696969, 0xE3E3E3, 0x000000, 0xE1FFFF,
};

const QPalette::ColorRole kDirectRole[SysColor::Count] = {
    QPalette::NoRole,      QPalette::NoRole,    QPalette::NoRole,
    QPalette::NoRole,      QPalette::NoRole,    QPalette::Base,
    QPalette::NoRole,      QPalette::NoRole,    QPalette::Text,
    QPalette::NoRole,      QPalette::NoRole,    QPalette::NoRole,
    QPalette::NoRole,      QPalette::Highlight, QPalette::HighlightedText,
    QPalette::Button,      QPalette::Dark,      QPalette::PlaceholderText,
    QPalette::ButtonText,  QPalette::NoRole,    QPalette::Light,
    QPalette::Shadow,      QPalette::Midlight,  QPalette::ToolTipText,
    QPalette::ToolTipBase,
};

const char* const kButtonTips[][2] = {
    {"cmdNew", "New List"},         {"cmdOpen", "Open Existing List"},
    {"cmdRedScreen", "Red Screen"}, {"cmdHHC", "Hyper Hand Control"},
    {"cmdPrint", "Print"},          {"cmdAlignStars", "Alignment Star Chart"},
};

}  // namespace

RedScreen::RedScreen(AppState& state) : state_(state) {}

QPalette RedScreen::paletteFor(const SysColorTable& colors, const QPalette& base) {
  QPalette p = base;
  for (const RoleOfId& r : kRoles) p.setColor(r.group, r.role, toColor(colors[r.id]));
  return p;
}

qint32 RedScreen::readFromPalette(const QPalette& palette, int id) {
  if (id < 0 || id >= SysColor::Count) return 0;
  if (kDirectRole[id] == QPalette::NoRole) return kClassicColors[id];
  return fromColor(palette.color(QPalette::Active, kDirectRole[id]));
}

QString RedScreen::toolTipFor(const QString& buttonName) {
  for (const auto& tip : kButtonTips)
    if (buttonName == QLatin1String(tip[0])) return QString::fromLatin1(tip[1]);
  return QString();
}

void RedScreen::snapshot() {
  savedPalette_ = QApplication::palette();
  savedStyleSheet_ = qApp->styleSheet();
  snapshotTaken_ = true;
  tables_ = FillSysColorTables([this](int id) { return readFromPalette(savedPalette_, id); });
  state_.RedScreenOn = false;
}

void RedScreen::toggle(const QList<QAbstractButton*>& sixButtons) {
  RunGuarded(state_.prompter(), [&] {
    if (!snapshotTaken_) snapshot();
    if (!state_.RedScreenOn) {
      state_.RedScreenOn = true;
      applyOn(sixButtons);
    } else {
      state_.RedScreenOn = false;
      applyOff(sixButtons);
    }
  });
}

void RedScreen::restoreForExit() {
  if (state_.RedScreenOn && snapshotTaken_) putBackSnapshot();
}

void RedScreen::applyOn(const QList<QAbstractButton*>& buttons) {
  // A dialog of the desktop's own (file, colour) is out of the palette's reach: ours are not.
  nativeDialogsWereOff_ = QCoreApplication::testAttribute(Qt::AA_DontUseNativeDialogs);
  QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
  const QString ownStyle = QApplication::style()->name();
  QApplication::setPalette(paletteFor(tables_.RedSysColors, savedPalette_));
  qApp->setStyleSheet(savedStyleSheet_ + QLatin1Char('\n') +
                      SysColorStyleSheet(tables_.RedSysColors));
  // The same style as before does the drawing, wrapped in the one that keeps it red. It comes
  // after the style sheet and goes before it, so that the list windows' icons change once each
  // way: a list window paints the title bar it noted on its last resize for a moment after.
  auto* style = new RedScreenStyle(QStyleFactory::create(ownStyle));
  ownStyleName_ = style->baseStyle()->name();
  QApplication::setStyle(style);
  const QBrush workspace(toColor(tables_.RedSysColors[SysColor::AppWorkspace]));
  const auto widgets = QApplication::allWidgets();
  for (QWidget* w : widgets) {
    if (auto* area = qobject_cast<QMdiArea*>(w)) {
      workspaces_.append({area, area->background()});
      area->setBackground(workspace);
    }
  }
  for (QAbstractButton* b : buttons) {
    if (!b) continue;
    if (!buttonSheets_.contains(b)) buttonSheets_.insert(b, b->styleSheet());
    b->setStyleSheet(QStringLiteral("background-color: rgb(127, 0, 0);"));
    b->setToolTip(QString());
    if (!b->icon().isNull()) {
      if (!buttonIcons_.contains(b)) buttonIcons_.insert(b, b->icon());
      b->setIcon(IconInRed(buttonIcons_.value(b)));
    }
  }
  // Pictures made for the other palette (a disabled button's greyed icon) must not return.
  QPixmapCache::clear();
  repaintTitleBarsLater();
}

void RedScreen::applyOff(const QList<QAbstractButton*>& buttons) {
  putBackSnapshot();
  for (QAbstractButton* b : buttons) {
    if (!b) continue;
    b->setStyleSheet(buttonSheets_.take(b));
    if (buttonIcons_.contains(b)) b->setIcon(buttonIcons_.take(b));
    const QString tip = toolTipFor(b->objectName());
    if (!tip.isEmpty()) b->setToolTip(tip);
  }
}

// The palette first, as when turning on: the list windows' title bars take their colours when
// the style changes. Taking the style sheet off gives each widget back the palette it had when
// the sheet came; a widget that set colours of its own meanwhile sets them again on the style
// change that follows.
void RedScreen::putBackSnapshot() {
  QApplication::setPalette(savedPalette_);
  if (!ownStyleName_.isEmpty()) {
    // The style the red one wrapped came from the factory, which makes it again. Taking the
    // red one off gives the list windows their own icons back.
    QApplication::setStyle(QStyleFactory::create(ownStyleName_));
    ownStyleName_.clear();
  }
  qApp->setStyleSheet(savedStyleSheet_);
  QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs, nativeDialogsWereOff_);
  QPixmapCache::clear();
  for (const auto& [area, brush] : workspaces_)
    if (area) area->setBackground(brush);
  workspaces_.clear();
  repaintTitleBarsLater();
}

// For a moment after it was last resized (200 ms), a list window paints the title bar it noted
// then, in the colours and with the icon of that moment, and the style changes resize it: once
// the moment has passed, the title bars are painted again as they are now.
void RedScreen::repaintTitleBarsLater() {
  QTimer::singleShot(kTitleBarPauseMs, qApp, [] {
    const auto widgets = QApplication::allWidgets();
    for (QWidget* w : widgets)
      if (auto* frame = qobject_cast<QMdiSubWindow*>(w)) frame->update();
  });
}
