#include "core/twips.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <cmath>

int TwipsToPixels(double twips, const QWidget* w) {
  double dpi = 96.0;
  if (w) {
    dpi = w->logicalDpiY();
  } else if (QGuiApplication::primaryScreen()) {
    dpi = QGuiApplication::primaryScreen()->logicalDotsPerInchY();
  }
  if (dpi <= 0) dpi = 96.0;
  return int(std::lround(TwipsToDeviceUnits(twips, dpi)));
}
