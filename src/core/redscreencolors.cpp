#include "core/redscreencolors.h"

SysColorTables FillSysColorTables(const std::function<qint32(int id)>& readColor) {
  SysColorTables t;
  for (int id = 0; id < SysColor::Count; ++id) {
    t.SysColorIds[id] = id;
    t.SavedSysColors[id] = readColor(id);
  }
  t.RedSysColors = kRedSysColors;
  return t;
}

QString CssColor(qint32 value) {
  return QStringLiteral("#%1%2%3")
      .arg(RedOf(value), 2, 16, QLatin1Char('0'))
      .arg(GreenOf(value), 2, 16, QLatin1Char('0'))
      .arg(BlueOf(value), 2, 16, QLatin1Char('0'));
}

QString SysColorStyleSheet(const SysColorTable& c) {
  using namespace SysColor;
  auto col = [&](int id) { return CssColor(c[id]); };
  QString css;
  css += QStringLiteral(
             "QMenuBar { background-color: %1; color: %2; }\n"
             "QMenuBar::item { background: transparent; color: %2; }\n"
             "QMenuBar::item:selected { background-color: %3; color: %4; }\n")
             .arg(col(Menu), col(MenuText), col(Highlight), col(HighlightText));
  css += QStringLiteral(
             "QMenu { background-color: %1; color: %2; border: 1px solid %3; }\n"
             "QMenu::item:selected { background-color: %4; color: %5; }\n"
             "QMenu::item:disabled { color: %6; }\n"
             "QMenu::separator { height: 1px; background: %3; margin: 3px 6px; }\n")
             .arg(col(Menu), col(MenuText), col(WindowFrame), col(Highlight), col(HighlightText),
                  col(GrayText));
  css += QStringLiteral("QToolTip { background-color: %1; color: %2; border: 1px solid %3; }\n")
             .arg(col(InfoBackground), col(InfoText), col(WindowFrame));
  css +=
      QStringLiteral(
          "QScrollBar { background: %1; border: none; }\n"
          "QScrollBar:vertical { width: 16px; margin: 16px 0 16px 0; }\n"
          "QScrollBar:horizontal { height: 16px; margin: 0 16px 0 16px; }\n"
          "QScrollBar::handle { background: %2; border: 1px solid %3; }\n"
          "QScrollBar::handle:vertical { min-height: 20px; }\n"
          "QScrollBar::handle:horizontal { min-width: 20px; }\n"
          "QScrollBar::add-line, QScrollBar::sub-line { background: %2; border: 1px solid %3; }\n"
          "QScrollBar::add-line:vertical { height: 16px; subcontrol-position: bottom; "
          "subcontrol-origin: margin; }\n"
          "QScrollBar::sub-line:vertical { height: 16px; subcontrol-position: top; "
          "subcontrol-origin: margin; }\n"
          "QScrollBar::add-line:horizontal { width: 16px; subcontrol-position: right; "
          "subcontrol-origin: margin; }\n"
          "QScrollBar::sub-line:horizontal { width: 16px; subcontrol-position: left; "
          "subcontrol-origin: margin; }\n"
          "QScrollBar::add-page, QScrollBar::sub-page { background: none; }\n"
          "QScrollBar::up-arrow, QScrollBar::down-arrow, QScrollBar::left-arrow, "
          "QScrollBar::right-arrow { width: 6px; height: 6px; background: %4; }\n")
          .arg(col(ScrollBar), col(ButtonFace), col(ButtonShadow), col(ButtonText));
  css += QStringLiteral(
             "QHeaderView::section { background-color: %1; color: %2; border: 1px solid %3; "
             "padding: 2px; }\n"
             "QTableCornerButton::section { background-color: %1; border: 1px solid %3; }\n")
             .arg(col(ButtonFace), col(ButtonText), col(ButtonShadow));
  css += QStringLiteral("QMdiSubWindow { background: %1; }\n").arg(col(ButtonFace));
  return css;
}
