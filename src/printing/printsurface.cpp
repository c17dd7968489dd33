#include "printing/printsurface.h"

#include <algorithm>

void PrintSurface::setFontName(const QString& name) {
  fontName_ = name;
  fontChanged();
}

void PrintSurface::setFontSize(double points) {
  fontSize_ = points;
  fontChanged();
}

void PrintSurface::setFontBold(bool bold) {
  bold_ = bold;
  fontChanged();
}

void PrintSurface::print(const QString& text, bool endLine) {
  if (!text.isEmpty()) drawText(x_, y_, text);
  if (endLine) {
    x_ = 0;
    y_ += lineHeight();
  } else {
    x_ += textWidth(text);
  }
}

void PrintSurface::setLineWidth(int printPixels) {
  lineWidth_ = std::max(1, printPixels);
  penChanged();
}

void PrintSurface::setLineStyle(int style) {
  lineStyle_ = style;
  penChanged();
}

void PrintSurface::newPage() {
  startNewPage();
  x_ = y_ = 0;
}

void PrintSurface::endDocument() {
  finishDocument();
  x_ = y_ = 0;
}
