#pragma once

class QWidget;

// Twips (1/1440 inch) to screen pixels: 15 twips a pixel at 96 dpi, scaled by the logical dpi
// of the widget's screen (or the primary screen's when no widget is given).
int TwipsToPixels(double twips, const QWidget* w = nullptr);
