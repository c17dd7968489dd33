#pragma once

#include <QString>
#include <QVector>
#include <Qt>

// How one grid column is shown. Widths are in twips; a negative width leaves the column as it
// is. The caption is the column's own name unless one is given ("" is a column without one).
struct ColumnLayout {
  bool hidden = false;
  bool ownCaption = false;
  QString caption;
  int width = -1;
  Qt::Alignment alignment = Qt::AlignLeft;

  static ColumnLayout named(int width, Qt::Alignment a = Qt::AlignLeft) {
    ColumnLayout c;
    c.width = width;
    c.alignment = a;
    return c;
  }
  static ColumnLayout captioned(const QString& caption, int width,
                                Qt::Alignment a = Qt::AlignLeft) {
    ColumnLayout c = named(width, a);
    c.ownCaption = true;
    c.caption = caption;
    return c;
  }
  static ColumnLayout hiddenColumn() {
    ColumnLayout c;
    c.hidden = true;
    return c;
  }
};

using ColumnLayouts = QVector<ColumnLayout>;
