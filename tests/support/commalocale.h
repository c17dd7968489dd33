#pragma once

#include <QByteArray>
#include <clocale>

// For the lifetime of the object, the C library formats numbers as a user of a
// decimal-comma locale has them once Qt has applied the locale at start (German: 1,5).
// active() is false when no such locale is installed on the machine.
class CommaLocale {
 public:
  CommaLocale() : saved_(std::setlocale(LC_ALL, nullptr)) {
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8"})
      if (std::setlocale(LC_ALL, name)) {
        active_ = true;
        break;
      }
  }
  ~CommaLocale() { std::setlocale(LC_ALL, saved_.constData()); }
  CommaLocale(const CommaLocale&) = delete;
  CommaLocale& operator=(const CommaLocale&) = delete;

  bool active() const { return active_; }

 private:
  QByteArray saved_;
  bool active_ = false;
};

// Inside a test: skips it on a machine without a decimal-comma locale, except in CI, where
// the locale is generated and its absence is a failure.
#define REQUIRE_COMMA_LOCALE(locale)                                                   \
  do {                                                                                 \
    if (!(locale).active()) {                                                          \
      if (qEnvironmentVariableIsSet("CI")) QFAIL("no decimal-comma locale installed"); \
      QSKIP("no decimal-comma locale installed (de_DE.UTF-8)");                        \
    }                                                                                  \
  } while (false)
