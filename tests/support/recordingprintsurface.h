#pragma once

#include <QString>
#include <QStringList>
#include <vector>

#include "printing/printsurface.h"

// A print surface that records what is drawn, for tests. Text metrics are simple and fixed:
// a character is a tenth of the font size in points wide (in twips: size × 10), a line 23
// twips a point high.
class RecordingPrintSurface : public PrintSurface {
 public:
  struct Op {
    QString kind;  // "text", "circle", "line", "point", "page" or "end"
    double x = 0, y = 0, x2 = 0, y2 = 0, radius = 0, aspect = 1;
    int width = 1, style = 0;
    QString text;
    double size = 0;
    bool bold = false;
    int document = 1;
  };

  explicit RecordingPrintSurface(int printableWidth = 11000) : width_(printableWidth) {}

  int printableWidth() const override { return width_; }
  double textWidth(const QString& text) const override { return text.size() * fontSize() * 10; }
  void circle(double x, double y, double radius, double aspect) override {
    Op op = make("circle", x, y);
    op.radius = radius;
    op.aspect = aspect;
    ops.push_back(op);
  }
  void line(double x1, double y1, double x2, double y2) override {
    Op op = make("line", x1, y1);
    op.x2 = x2;
    op.y2 = y2;
    ops.push_back(op);
  }
  void point(double x, double y) override { ops.push_back(make("point", x, y)); }

  std::vector<Op> ofKind(const QString& kind) const {
    std::vector<Op> out;
    for (const Op& op : ops)
      if (op.kind == kind) out.push_back(op);
    return out;
  }
  QStringList texts() const {
    QStringList out;
    for (const Op& op : ofKind(QStringLiteral("text"))) out << op.text;
    return out;
  }
  // The texts printed after the first one equal to `after`.
  QStringList textsAfter(const QString& after) const {
    const QStringList all = texts();
    return all.mid(all.indexOf(after) + 1);
  }
  const Op* text(const QString& t, int nth = 0) const {
    for (const Op& op : ops)
      if (op.kind == QLatin1String("text") && op.text == t && nth-- == 0) return &op;
    return nullptr;
  }

  std::vector<Op> ops;

 protected:
  double lineHeight() const override { return fontSize() * 23; }
  void drawText(double x, double y, const QString& text) override {
    Op op = make("text", x, y);
    op.text = text;
    ops.push_back(op);
  }
  void startNewPage() override { ops.push_back(make("page", 0, 0)); }
  void finishDocument() override {
    ops.push_back(make("end", 0, 0));
    ++document_;
  }

 private:
  Op make(const char* kind, double x, double y) const {
    Op op;
    op.kind = QString::fromLatin1(kind);
    op.x = x;
    op.y = y;
    op.width = lineWidth();
    op.style = lineStyle();
    op.size = fontSize();
    op.bold = fontBold();
    op.document = document_;
    return op;
  }

  int width_;
  int document_ = 1;
};
