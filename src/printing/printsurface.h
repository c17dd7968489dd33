#pragma once

#include <QString>

// The page a print job writes on: a printer, a PDF file or the preview. Positions are twips
// from the top left corner of the printable area. Text goes where the print position stands,
// as on a line printer: printing a text and ending the line takes the position back to the
// left edge and one line of the present font down; printing without ending the line leaves
// the position just after the text.
//
// Line widths are print pixels (1/600 inch, see TwipsPerPrintPixel), whatever the device's
// own resolution, so that dots keep their sizes and proportions on paper, in a PDF and in the
// preview. Everything is drawn in black.
class PrintSurface {
 public:
  virtual ~PrintSurface() = default;

  // The width P of the printable area, in whole twips.
  virtual int printableWidth() const = 0;

  double currentX() const { return x_; }
  double currentY() const { return y_; }
  void setCurrentX(double x) { x_ = x; }
  void setCurrentY(double y) { y_ = y; }
  void setPosition(double x, double y) { x_ = x, y_ = y; }

  const QString& fontName() const { return fontName_; }
  double fontSize() const { return fontSize_; }  // points
  bool fontBold() const { return bold_; }
  void setFontName(const QString& name);
  void setFontSize(double points);
  void setFontBold(bool bold);

  // Prints a text at the print position, ending the line or not. An empty text that ends the
  // line is an empty line.
  void print(const QString& text, bool endLine = true);
  void newLine() { print(QString(), true); }
  // The width of a text in the present font, twips.
  virtual double textWidth(const QString& text) const = 0;

  // A circle or, with an aspect (height to width) other than 1, an ellipse whose larger
  // half-axis is the radius. Whole, not filled.
  virtual void circle(double x, double y, double radius, double aspect = 1) = 0;
  virtual void line(double x1, double y1, double x2, double y2) = 0;
  // A round dot as wide as the line.
  virtual void point(double x, double y) = 0;
  void setLineWidth(int printPixels);
  void setLineStyle(int style);  // 0 solid, 2 dotted
  int lineWidth() const { return lineWidth_; }
  int lineStyle() const { return lineStyle_; }

  // The rest of the page is left blank; the print position goes to the top left.
  void newPage();
  // The document is complete (a printer sends it as one job). The next drawing starts
  // another document.
  void endDocument();

 protected:
  // The height of one line of the present font, twips.
  virtual double lineHeight() const = 0;
  virtual void drawText(double x, double y, const QString& text) = 0;
  virtual void startNewPage() = 0;
  virtual void finishDocument() = 0;
  virtual void fontChanged() {}
  virtual void penChanged() {}

 private:
  double x_ = 0, y_ = 0;
  QString fontName_ = QStringLiteral("Arial");
  double fontSize_ = 10;
  bool bold_ = false;
  int lineWidth_ = 1;
  int lineStyle_ = 0;
};

// One print pixel in twips: line widths are counted at 600 dots an inch.
constexpr double TwipsPerPrintPixel = 1440.0 / 600.0;
