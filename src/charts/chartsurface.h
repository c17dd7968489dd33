#pragma once

#include <qnamespace.h>
#include <QString>
#include <QtGlobal>
#include <utility>

// A drawing surface measured in twips (1440 an inch), origin top left, y downward, that keeps
// what was drawn on it until it is cleared. Colours are red-low values (0x00BBGGRR); a value
// with the top bit set names a system colour (0x80000014 the 3D highlight), which the surface
// resolves with ChartColourToRgb.
class ChartSurface {
 public:
  virtual ~ChartSurface() = default;

  virtual void clear() = 0;
  virtual void point(float x, float y, quint32 colour) = 0;
  // aspect is height to width: below 1 the radius is the horizontal half-axis, above 1 the
  // vertical one, as the classic Circle draws it. Whole, not filled.
  virtual void circle(float x, float y, float radius, quint32 colour, float aspect = 1) = 0;
  virtual void line(float x1, float y1, float x2, float y2, quint32 colour) = 0;
  virtual void setLineWidth(int width) = 0;            // pixels; 1 by default
  virtual void setLineStyle(int style) = 0;            // 0 solid, 1 dash, 2 dot
  virtual void setTextPosition(float x, float y) = 0;  // top left of the next text
  virtual void text(const QString& text, quint32 colour) = 0;
};

// The half-axes of a circle drawn with an aspect (height to width): below 1 the radius is the
// horizontal half-axis, above 1 the vertical one.
inline std::pair<double, double> CircleHalfAxes(double radius, double aspect) {
  if (aspect < 1) return {radius, radius * aspect};
  if (aspect > 1) return {radius / aspect, radius};
  return {radius, radius};
}

// The pen of a classic line style: 0 solid, 1 dash, 2 dot, 3 dash-dot, 4 dash-dot-dot,
// 5 none.
inline Qt::PenStyle ClassicPenStyle(int style) {
  switch (style) {
    case 1: return Qt::DashLine;
    case 2: return Qt::DotLine;
    case 3: return Qt::DashDotLine;
    case 4: return Qt::DashDotDotLine;
    case 5: return Qt::NoPen;
    default: return Qt::SolidLine;
  }
}

// The colour a value stands for. The system colours the charts use have no counterpart on
// every desktop: the 3D highlight becomes a light grey close to white and the 3D face a middle
// grey; under Red Screen they take the red scheme's values.
quint32 ChartColourToRgb(quint32 colour, bool redScreen = false);
