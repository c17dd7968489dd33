#pragma once

class QWidget;

// Sizes and positions in the program are twips: 1440 to the inch.
constexpr double TwipsPerInch = 1440.0;

// Twips to the units of a device with the given dots per inch (a screen, a printer, a PDF).
constexpr double TwipsToDeviceUnits(double twips, double dotsPerInch) {
  return twips * dotsPerInch / TwipsPerInch;
}
constexpr double DeviceUnitsToTwips(double units, double dotsPerInch) {
  return units * TwipsPerInch / dotsPerInch;
}

// The logical dots per inch of the widget's screen (or the primary screen's when no widget is
// given); 96 when the screen does not say.
double ScreenDotsPerInch(const QWidget* w = nullptr);

// Twips (1/1440 inch) to screen pixels: 15 twips a pixel at 96 dpi, scaled by the logical dpi
// of the widget's screen (or the primary screen's when no widget is given).
int TwipsToPixels(double twips, const QWidget* w = nullptr);
// The other way: screen pixels to twips, by the same dpi, rounded to the nearest twip.
int PixelsToTwips(double pixels, const QWidget* w = nullptr);
