#pragma once

#include <QString>

// The nine telescope families, in the order Setup lists them.
struct ScopeFamily {
  const char* code;     // the ScopeType setting
  const char* caption;  // the text in Setup
};

inline constexpr ScopeFamily kScopeFamilies[9] = {
    {"GT", "NexStar 60/76/80/102/114/130/4"},
    {"BIG", "NexStar 5/8 (original)"},
    {"I", "NexStar 5i/8i"},
    {"GPS", "NexStar 8/9.25/11 GPS"},
    {"CGE", "Celestron CGE"},
    {"ASC", "Celestron Advanced Series"},
    {"OLDGT", "OLD NexStar 60/80/114/4"},
    {"TASCO", "Tasco StarGuide"},
    {"ULTIMA", "Ultima 2000"},
};

// The index of a family code in the list, or -1.
inline int ScopeFamilyIndex(const QString& code) {
  for (int i = 0; i < 9; ++i)
    if (code == QLatin1String(kScopeFamilies[i].code)) return i;
  return -1;
}
