#include "core/twips.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <cmath>

double ScreenDotsPerInch(const QWidget* w) {
  double dpi = 96.0;
  if (w) {
    dpi = w->logicalDpiY();
  } else if (QGuiApplication::primaryScreen()) {
    dpi = QGuiApplication::primaryScreen()->logicalDotsPerInchY();
  }
  return dpi > 0 ? dpi : 96.0;
}

int TwipsToPixels(double twips, const QWidget* w) {
  return int(std::lround(TwipsToDeviceUnits(twips, ScreenDotsPerInch(w))));
}

int PixelsToTwips(double pixels, const QWidget* w) {
  return int(std::lround(DeviceUnitsToTwips(pixels, ScreenDotsPerInch(w))));
}
