#pragma once

#include <QAbstractTableModel>
#include <QHash>
#include <QPointer>
#include <QSet>

#include "catalog/recordset.h"

// Shows a Recordset to a view. Rows are read from the recordset only when the view asks for
// them; the recordset's changes are followed. Headers are the column names unless a caption is
// set. Cells are editable only while updates are allowed, and an edit is written through the
// recordset (into its edit buffer, committed by the next move).
class RecordsetModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  // True for rows in the marked set (a grid's bookmark selection).
  static constexpr int MarkedRole = Qt::UserRole + 1;

  explicit RecordsetModel(QObject* parent = nullptr);

  void setRecordset(Recordset* rs);
  Recordset* recordset() const { return rs_; }

  void setAllowUpdate(bool allow) { allowUpdate_ = allow; }
  bool allowUpdate() const { return allowUpdate_; }

  // Per column: caption (a null QString restores the column's name) and alignment.
  void setColumnCaption(int column, const QString& caption);
  void setColumnAlignment(int column, Qt::Alignment alignment);
  void clearColumnFormats();

  void setMarked(const QSet<qint64>& bookmarks);

  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  int columnCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation,
                      int role = Qt::DisplayRole) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

 signals:
  // A write through the grid failed; the text is "description - number".
  void errorOccurred(const QString& text);

 private:
  void resync();

  QPointer<Recordset> rs_;
  int rows_ = 0;
  int columns_ = 0;
  bool allowUpdate_ = false;
  QHash<int, QString> captions_;
  QHash<int, Qt::Alignment> alignments_;
  QSet<qint64> marked_;
  QList<QMetaObject::Connection> connections_;
};
