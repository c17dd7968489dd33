#include "catalog/recordsetmodel.h"

#include "core/apperror.h"

RecordsetModel::RecordsetModel(QObject* parent) : QAbstractTableModel(parent) {}

void RecordsetModel::setRecordset(Recordset* rs) {
  beginResetModel();
  for (const auto& c : connections_) disconnect(c);
  connections_.clear();
  rs_ = rs;
  rows_ = rs ? rs->displayRowCount() : 0;
  columns_ = rs ? rs->fieldCount() : 0;
  endResetModel();
  if (!rs) return;
  // The recordset reports each change after it happened; the model's own row count lets it
  // announce the change to views in the order they expect.
  connections_ << connect(rs, &Recordset::reset, this, [this] { resync(); });
  connections_ << connect(rs, &Recordset::rowsInserted, this, [this](int first, int last) {
    beginInsertRows(QModelIndex(), first, last);
    rows_ += last - first + 1;
    endInsertRows();
  });
  connections_ << connect(rs, &Recordset::rowsRemoved, this, [this](int first, int last) {
    beginRemoveRows(QModelIndex(), first, last);
    rows_ -= last - first + 1;
    endRemoveRows();
  });
  connections_ << connect(rs, &Recordset::rowsChanged, this, [this](int first, int last) {
    if (first < 0 || columns_ == 0) return;
    emit dataChanged(index(first, 0), index(last, columns_ - 1));
  });
  connections_ << connect(rs, &QObject::destroyed, this, [this] { setRecordset(nullptr); });
}

void RecordsetModel::resync() {
  beginResetModel();
  rows_ = rs_ ? rs_->displayRowCount() : 0;
  columns_ = rs_ ? rs_->fieldCount() : 0;
  endResetModel();
}

void RecordsetModel::setColumnCaption(int column, const QString& caption) {
  if (caption.isNull()) {
    captions_.remove(column);
  } else {
    captions_.insert(column, caption);
  }
  emit headerDataChanged(Qt::Horizontal, column, column);
}

void RecordsetModel::setColumnAlignment(int column, Qt::Alignment alignment) {
  alignments_.insert(column, alignment);
  if (rows_ > 0)
    emit dataChanged(index(0, column), index(rows_ - 1, column), {Qt::TextAlignmentRole});
}

void RecordsetModel::clearColumnFormats() {
  captions_.clear();
  alignments_.clear();
  if (columns_ > 0) emit headerDataChanged(Qt::Horizontal, 0, columns_ - 1);
}

void RecordsetModel::setMarked(const QSet<qint64>& bookmarks) {
  marked_ = bookmarks;
  if (rows_ > 0 && columns_ > 0)
    emit dataChanged(index(0, 0), index(rows_ - 1, columns_ - 1), {MarkedRole});
}

int RecordsetModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

int RecordsetModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns_;
}

QVariant RecordsetModel::data(const QModelIndex& index, int role) const {
  if (!rs_ || !index.isValid() || index.row() >= rows_) return QVariant();
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole: try { return FieldText(rs_->rowValue(index.row(), index.column()));
      } catch (const AppError&) {
        return QVariant();
      }
    case Qt::TextAlignmentRole:
      return QVariant::fromValue(alignments_.value(index.column(), Qt::AlignLeft) |
                                 Qt::AlignVCenter);
    case MarkedRole: return !marked_.isEmpty() && marked_.contains(rs_->bookmarkAt(index.row()));
    default: return QVariant();
  }
}

QVariant RecordsetModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole) return QVariant();
  if (orientation == Qt::Vertical) return QString();
  if (captions_.contains(section)) return captions_.value(section);
  if (rs_ && section >= 0 && section < rs_->fieldCount()) return rs_->columnNames().at(section);
  return QVariant();
}

Qt::ItemFlags RecordsetModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  Qt::ItemFlags f = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
  if (allowUpdate_) f |= Qt::ItemIsEditable;
  return f;
}

bool RecordsetModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (!rs_ || !index.isValid() || role != Qt::EditRole || !allowUpdate_) return false;
  try {
    rs_->setRowValue(index.row(), index.column(), value);
    return true;
  } catch (const AppError& e) {
    emit errorOccurred(e.text());
    return false;
  }
}
