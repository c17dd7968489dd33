#pragma once

#include <QString>
#include <vector>

#include "charts/skychart.h"

// A chart surface that records each call, for tests. kind is "clear", "point", "circle",
// "line", "width", "style", "textpos" or "text"; colours are kept as given.
class RecordingChartSurface : public ChartSurface {
 public:
  struct Op {
    QString kind;
    float x = 0, y = 0, x2 = 0, y2 = 0, radius = 0, aspect = 1;
    quint32 colour = 0;
    int value = 0;
    QString text;
  };

  void clear() override { record("clear"); }
  void point(float x, float y, quint32 colour) override { record("point", x, y).colour = colour; }
  void circle(float x, float y, float radius, quint32 colour, float aspect = 1) override {
    Op& op = record("circle", x, y);
    op.radius = radius;
    op.colour = colour;
    op.aspect = aspect;
  }
  void line(float x1, float y1, float x2, float y2, quint32 colour) override {
    Op& op = record("line", x1, y1);
    op.x2 = x2;
    op.y2 = y2;
    op.colour = colour;
  }
  void setLineWidth(int width) override { record("width").value = width; }
  void setLineStyle(int style) override { record("style").value = style; }
  void setTextPosition(float x, float y) override { record("textpos", x, y); }
  void text(const QString& text, quint32 colour) override {
    Op& op = record("text");
    op.text = text;
    op.colour = colour;
  }

  std::vector<Op> ops;
  std::vector<Op> ofKind(const QString& kind) const {
    std::vector<Op> out;
    for (const Op& op : ops)
      if (op.kind == kind) out.push_back(op);
    return out;
  }

 private:
  Op& record(const char* kind, float x = 0, float y = 0) {
    Op op;
    op.kind = QString::fromLatin1(kind);
    op.x = x;
    op.y = y;
    ops.push_back(op);
    return ops.back();
  }
};
