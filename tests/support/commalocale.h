#pragma once

#include <QByteArray>
#include <clocale>

// While it lives, the C library formats numbers as Qt leaves it at start for a German user
// (1,5). active() is false when the machine has no such locale.
class CommaLocale {
 public:
  CommaLocale() : saved_(std::setlocale(LC_ALL, nullptr)) {
    active_ = std::setlocale(LC_ALL, "de_DE.UTF-8") || std::setlocale(LC_ALL, "de_DE.utf8");
  }
  ~CommaLocale() { std::setlocale(LC_ALL, saved_.constData()); }
  bool active() const { return active_; }

 private:
  QByteArray saved_;
  bool active_ = false;
};

// Skips a test on a machine without the locale, except in CI, which generates it.
#define REQUIRE_COMMA_LOCALE(locale)                                                   \
  do {                                                                                 \
    if (!(locale).active()) {                                                          \
      if (qEnvironmentVariableIsSet("CI")) QFAIL("no decimal-comma locale installed"); \
      QSKIP("no decimal-comma locale installed (de_DE.UTF-8)");                        \
    }                                                                                  \
  } while (false)
