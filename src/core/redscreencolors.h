#pragma once

#include <QString>
#include <QtGlobal>
#include <array>
#include <functional>

// The 25 system colours of the Red Screen. Colour values keep red in the low byte and blue in
// the high byte (0x00BBGGRR), as the settings file stores ObjectColor.
namespace SysColor {
enum Id {
  ScrollBar = 0,
  Desktop = 1,
  ActiveCaption = 2,
  InactiveCaption = 3,
  Menu = 4,
  Window = 5,
  WindowFrame = 6,
  MenuText = 7,
  WindowText = 8,
  CaptionText = 9,
  ActiveBorder = 10,
  InactiveBorder = 11,
  AppWorkspace = 12,
  Highlight = 13,
  HighlightText = 14,
  ButtonFace = 15,
  ButtonShadow = 16,
  GrayText = 17,
  ButtonText = 18,
  InactiveCaptionText = 19,
  ButtonHighlight = 20,
  DarkShadow3D = 21,
  Light3D = 22,
  InfoText = 23,
  InfoBackground = 24,
};
constexpr int Count = 25;
}  // namespace SysColor

using SysColorTable = std::array<qint32, SysColor::Count>;

// The night scheme. Four entries are not red on purpose: grey text, 3D light and the tool tip
// pair.
inline constexpr SysColorTable kRedSysColors = {
    0x000040, 0x000000, 0x000040, 0x000000, 0x000080, 0x000080, 0x000000, 0x000000, 0x000000,
    0x0000FF, 0x000080, 0x000040, 0x000000, 0x000080, 0x0000FF, 0x000080, 0x000000, 0x808080,
    0x000000, 0x000080, 0x0000FF, 0x000000, 0xDFDFDF, 0x000000, 0xE1FFFF,
};

// The three tables of the mode: the identifiers, the colours read at start-up and the scheme.
struct SysColorTables {
  std::array<int, SysColor::Count> SysColorIds{};
  SysColorTable SavedSysColors{};
  SysColorTable RedSysColors{};
};

// Fills the tables, reading each saved colour through the given reader.
SysColorTables FillSysColorTables(const std::function<qint32(int id)>& readColor);

inline int RedOf(qint32 value) { return value & 0xFF; }
inline int GreenOf(qint32 value) { return (value >> 8) & 0xFF; }
inline int BlueOf(qint32 value) { return (value >> 16) & 0xFF; }
inline qint32 RedLowValue(int red, int green, int blue) {
  return (red & 0xFF) | ((green & 0xFF) << 8) | ((blue & 0xFF) << 16);
}

// "#rrggbb" for a style sheet.
QString CssColor(qint32 value);

// The style sheet that carries a colour table to what a palette does not reach: menus and the
// menu bar, tool tips, scroll bars, grid headers and the frames of the list windows.
QString SysColorStyleSheet(const SysColorTable& colors);
