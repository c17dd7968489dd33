#pragma once

#include <QFont>
#include <QPainter>
#include <QString>

#include "core/apperror.h"
#include "printing/printsurface.h"

class QPagedPaintDevice;

// The print surface on a printer, a PDF file or the preview, through QPainter. Twips and
// print pixels become device units at the device's resolution.
class PainterPrintSurface : public PrintSurface {
 public:
  // How the documents of a job reach the device: each a print job of its own (a printer),
  // or one after the other, each from a new page, in one file (a PDF, the preview).
  enum class Documents { Separate, OneFile };

  // openError is raised when the device cannot be opened for drawing.
  PainterPrintSurface(QPagedPaintDevice& device, Documents documents, AppError openError);
  ~PainterPrintSurface() override;

  int printableWidth() const override;
  double textWidth(const QString& text) const override;
  void circle(double x, double y, double radius, double aspect = 1) override;
  void line(double x1, double y1, double x2, double y2) override;
  void point(double x, double y) override;

  // Ends the open document, if any, so that what was printed so far is delivered.
  void close();

 protected:
  double lineHeight() const override;
  void drawText(double x, double y, const QString& text) override;
  void startNewPage() override;
  void finishDocument() override;
  void fontChanged() override;
  void penChanged() override;

 private:
  QPainter& painter();
  QPointF toDevice(double x, double y) const;
  double deviceLength(double twips) const;
  QPen currentPen() const;

  QPagedPaintDevice& device_;
  Documents documents_;
  AppError openError_;
  QPainter painter_;
  bool pageBreakDue_ = false;
  QFont font_;
  double dpiX_, dpiY_;
};
