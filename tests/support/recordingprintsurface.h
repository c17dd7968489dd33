#pragma once

#include <QStringList>
#include <vector>

#include "printing/printsurface.h"

// A print surface that records what is drawn, for tests. Metrics are fixed: a character is
// size × 10 twips wide, a line size × 23 twips high (size in points).
class RecordingPrintSurface : public PrintSurface {
 public:
  struct Op {
    QString kind;  // "text", "circle", "line", "point", "page" or "end"
    double x = 0, y = 0, radius = 0, aspect = 1;
    int width = 1, style = 0, document = 1;
    QString text;
  };

  int printableWidth() const override { return 11000; }
  double textWidth(const QString& text) const override { return text.size() * fontSize() * 10; }
  void circle(double x, double y, double radius, double aspect) override {
    record("circle", x, y, {}, radius, aspect);
  }
  void line(double x1, double y1, double, double) override { record("line", x1, y1); }
  void point(double x, double y) override { record("point", x, y); }

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
    return texts().mid(texts().indexOf(after) + 1);
  }
  // The nth printing of a text.
  const Op* text(const QString& t, int nth = 0) const {
    for (const Op& op : ops)
      if (op.kind == QLatin1String("text") && op.text == t && nth-- == 0) return &op;
    return nullptr;
  }

  std::vector<Op> ops;

 protected:
  double lineHeight() const override { return fontSize() * 23; }
  void drawText(double x, double y, const QString& text) override { record("text", x, y, text); }
  void startNewPage() override { record("page", 0, 0); }
  void finishDocument() override { record("end", 0, 0), ++document_; }

 private:
  void record(const char* kind, double x, double y, const QString& text = {}, double radius = 0,
              double aspect = 1) {
    ops.push_back({QString::fromLatin1(kind), x, y, radius, aspect, lineWidth(), lineStyle(),
                   document_, text});
  }

  int document_ = 1;
};
