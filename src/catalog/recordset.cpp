#include "catalog/recordset.h"

#include "catalog/jetsql.h"
#include "core/apperror.h"
#include "core/numtext.h"

namespace {

constexpr int kCacheRows = 2048;
// Rows are read this many at a time, by one statement: a read pays its locking and page
// checks once a block instead of once a row.
constexpr int kBlockRows = 64;

AppError noCurrentRecord() {
  return AppError(ErrNo::NoCurrentRecord, QStringLiteral("No current record."));
}

AppError readOnly() {
  return AppError(ErrNo::Database,
                  QStringLiteral("Cannot update. Database or object is read-only."));
}

QString nameOf(const QString& source) {
  QString n = source.trimmed();
  if (n.startsWith(QLatin1Char('[')) && n.endsWith(QLatin1Char(']'))) n = n.mid(1, n.size() - 2);
  return n;
}

}  // namespace

QString FieldText(const QVariant& value) {
  if (value.isNull()) return QString();
  switch (value.typeId()) {
    case QMetaType::Double:
    case QMetaType::Float: return PlainNumber(value.toDouble());
    default: return value.toString();
  }
}

Recordset::Recordset(std::shared_ptr<Database> db, const QString& recordSource, QObject* parent)
    : QObject(parent), db_(std::move(db)), source_(recordSource) {
  open();
  load();
  pos_ = ids_.isEmpty() ? -1 : 0;
}

Recordset::~Recordset() {
  // Like a data control closing, a pending change is written, not lost.
  try {
    flush();
  } catch (...) {
  }
}

void Recordset::open() {
  QString table, columns = QStringLiteral("*"), where, orderBy;
  bool byIds = false;
  if (!IsQueryText(source_)) {
    const QString name = nameOf(source_);
    if (db_->isTable(name)) {
      table = name;
      byIds = true;
      if (db_->columnNames(name).contains(QStringLiteral("DisplayOrder"), Qt::CaseInsensitive))
        orderBy = QStringLiteral("DisplayOrder");
    } else {
      query_ = QStringLiteral("SELECT * FROM ") + QuoteIdentifier(name);
    }
  } else {
    // Over a table the condition may work out a term it repeats once a row; over anything
    // else the text is taken as written.
    query_ = TranslateQuery(source_, true);
    auto s = ParseSimpleSelect(query_);
    if (s && db_->isTable(s->table)) {
      byIds = true;
      table = s->table;
      columns = s->columns;
      where = s->where;
      orderBy = s->orderBy;
    } else {
      query_ = TranslateQuery(source_);
    }
  }

  if (!byIds) {
    materialized_ = true;
    Statement st = db_->prepare(query_);
    for (int i = 0; i < st.columnCount(); ++i) {
      columns_ << st.columnName(i);
      tableColumn_ << QString();
    }
  } else {
    table_ = table;
    where_ = where;
    orderBy_ = orderBy;
    const QString qt = QuoteIdentifier(table_);
    QStringList marks;
    for (int i = 1; i <= kBlockRows; ++i) marks << QStringLiteral("?%1").arg(i);
    fetch_ = db_->prepare(QStringLiteral("SELECT %2.rowid, %1 FROM %2 WHERE %2.rowid IN (%3)")
                              .arg(columns, qt, marks.join(QStringLiteral(", "))));
    const QStringList tableColumns = db_->columnNames(table_);
    for (int i = 1; i < fetch_.columnCount(); ++i) {
      const QString name = fetch_.columnName(i);
      columns_ << name;
      QString target;
      for (const QString& c : tableColumns)
        if (c.compare(name, Qt::CaseInsensitive) == 0) target = c;
      tableColumn_ << target;
    }
  }
  nullRow_ = QVector<QVariant>(columns_.size());
}

void Recordset::load() {
  ids_.clear();
  rows_.clear();
  cache_.clear();
  indexValid_ = false;
  if (materialized_) {
    Statement st = db_->prepare(query_);
    const int n = st.columnCount();
    while (st.step()) {
      QVector<QVariant> row(n);
      for (int i = 0; i < n; ++i) row[i] = st.value(i);
      rows_.push_back(std::move(row));
      ids_.push_back(rows_.size());
    }
    return;
  }
  const QString qt = QuoteIdentifier(table_);
  QString sql = QStringLiteral("SELECT %1.rowid FROM %1").arg(qt);
  if (!where_.isEmpty()) sql += QStringLiteral(" WHERE ") + where_;
  sql += QStringLiteral(" ORDER BY ");
  if (!orderBy_.isEmpty()) sql += orderBy_ + QStringLiteral(", ");
  sql += qt + QStringLiteral(".rowid");
  Statement st = db_->prepare(sql);
  while (st.step()) ids_.push_back(st.int64Value(0));
}

// ---- rows ---------------------------------------------------------------------------------

const QVector<QVariant>& Recordset::rowAt(int index) const {
  const qint64 id = ids_[index];
  if (materialized_) return rows_[int(id - 1)];
  auto it = cache_.constFind(id);
  if (it != cache_.constEnd()) return *it;
  if (cache_.size() + kBlockRows > kCacheRows) cache_.clear();
  // The block of rows around this one; a row another window has deleted reads as Nulls.
  const int first = index - index % kBlockRows;
  const int last = qMin(first + kBlockRows, int(ids_.size()));
  for (int i = 0; i < kBlockRows; ++i) {
    if (first + i < last) fetch_.bindInt64(i + 1, ids_[first + i]);
    else fetch_.bind(i + 1, QVariant());
  }
  try {
    const int n = int(columns_.size());
    while (fetch_.step()) {
      QVector<QVariant> row(n);
      for (int i = 0; i < n; ++i) row[i] = fetch_.value(i + 1);
      cache_.insert(fetch_.int64Value(0), std::move(row));
    }
  } catch (...) {
    fetch_.reset();
    cache_.clear();
    throw;
  }
  fetch_.reset();
  for (int i = first; i < last; ++i)
    if (!cache_.contains(ids_[i])) cache_.insert(ids_[i], nullRow_);
  return *cache_.constFind(id);
}

int Recordset::currentRow() const {
  if (mode_ == EditMode::AddNew) return int(ids_.size());
  if (deleted_ || pos_ < 0 || pos_ >= ids_.size()) return -1;
  return pos_;
}

bool Recordset::hasCurrentRow() const { return currentRow() >= 0; }

QVariant Recordset::rowValue(int row, int field) const {
  if (field < 0 || field >= columns_.size()) return QVariant();
  if (mode_ != EditMode::None && row == currentRow()) return pendingValue(field);
  if (row < 0 || row >= ids_.size()) return QVariant();
  return rowAt(row)[field];
}

void Recordset::setRowValue(int row, int field, const QVariant& v) {
  if (row != currentRow()) setAbsolutePosition(row);
  setValue(field, v);
}

qint64 Recordset::bookmarkAt(int row) const {
  return row >= 0 && row < ids_.size() ? ids_[row] : 0;
}

int Recordset::rowOfBookmark(qint64 bookmark) const {
  if (!indexValid_) {
    index_.clear();
    index_.reserve(ids_.size());
    for (int i = 0; i < ids_.size(); ++i) index_.insert(ids_[i], i);
    indexValid_ = true;
  }
  return index_.value(bookmark, -1);
}

// ---- cursor -------------------------------------------------------------------------------

bool Recordset::isBOF() const {
  if (mode_ == EditMode::AddNew || deleted_) return false;
  return ids_.isEmpty() || pos_ < 0;
}

bool Recordset::isEOF() const {
  if (mode_ == EditMode::AddNew || deleted_) return false;
  return ids_.isEmpty() || pos_ >= ids_.size();
}

int Recordset::AbsolutePosition() const {
  if (mode_ == EditMode::AddNew) return -1;
  return currentRow();
}

void Recordset::setPos(int pos) {
  pos_ = pos;
  deleted_ = false;
  emit currentChanged(currentRow());
}

void Recordset::requireCurrent() const {
  if (currentRow() < 0) throw noCurrentRecord();
}

void Recordset::requireUpdatable() const {
  if (!isUpdatable()) throw readOnly();
}

void Recordset::MoveFirst() {
  flush();
  if (ids_.isEmpty()) throw noCurrentRecord();
  setPos(0);
}

void Recordset::MoveLast() {
  flush();
  if (ids_.isEmpty()) throw noCurrentRecord();
  setPos(int(ids_.size()) - 1);
}

void Recordset::MoveNext() {
  flush();
  if (deleted_) {
    setPos(pos_);  // the row that followed the deleted one, or EOF
    return;
  }
  if (isEOF()) throw noCurrentRecord();
  setPos(pos_ + 1);
}

void Recordset::MovePrevious() {
  flush();
  if (deleted_) {
    setPos(pos_ - 1);
    return;
  }
  if (isBOF()) throw noCurrentRecord();
  setPos(pos_ - 1);
}

void Recordset::Move(qint64 rows) {
  flush();
  if (ids_.isEmpty()) throw noCurrentRecord();
  qint64 base = pos_;
  if (deleted_) {
    if (rows == 0) throw noCurrentRecord();
    if (rows > 0) base = pos_ - 1;
  } else if ((pos_ < 0 && rows <= 0) || (pos_ >= ids_.size() && rows >= 0)) {
    throw noCurrentRecord();
  }
  const qint64 target = qBound<qint64>(-1, base + rows, ids_.size());
  setPos(int(target));
}

void Recordset::setAbsolutePosition(int position) {
  flush();
  if (position < 0 || position >= ids_.size()) throw AppError::of(ErrNo::InvalidCall);
  setPos(position);
}

qint64 Recordset::Bookmark() const {
  if (mode_ != EditMode::None && mode_ == EditMode::AddNew) throw noCurrentRecord();
  requireCurrent();
  return ids_[pos_];
}

void Recordset::setBookmark(qint64 bookmark) {
  flush();
  const int row = rowOfBookmark(bookmark);
  if (row < 0) throw AppError(ErrNo::Database, QStringLiteral("Not a valid bookmark."));
  setPos(row);
}

// ---- finds --------------------------------------------------------------------------------

void Recordset::FindFirst(const QString& criteria) { find(criteria, FindFrom::First); }
void Recordset::FindLast(const QString& criteria) { find(criteria, FindFrom::Last); }
void Recordset::FindNext(const QString& criteria) { find(criteria, FindFrom::Next); }
void Recordset::FindPrevious(const QString& criteria) { find(criteria, FindFrom::Previous); }

void Recordset::find(const QString& criteria, FindFrom from) {
  flush();
  const QString cond = TranslateQuery(criteria);
  QSet<qint64> matches;
  if (materialized_) {
    Statement st = db_->prepare(
        QStringLiteral("SELECT n FROM (SELECT row_number() OVER () AS n, * FROM (%1)) WHERE %2")
            .arg(query_, cond));
    while (st.step()) matches.insert(st.int64Value(0));
  } else {
    const QString qt = QuoteIdentifier(table_);
    Statement st = db_->prepare(QStringLiteral("SELECT %1.rowid FROM %1 WHERE %2").arg(qt, cond));
    while (st.step()) matches.insert(st.int64Value(0));
  }
  const int n = int(ids_.size());
  const int step = from == FindFrom::First || from == FindFrom::Next ? 1 : -1;
  int start = 0;
  switch (from) {
    case FindFrom::First: start = 0; break;
    case FindFrom::Last: start = n - 1; break;
    case FindFrom::Next: start = deleted_ ? pos_ : pos_ + 1; break;
    case FindFrom::Previous: start = pos_ - 1; break;
  }
  for (int i = qBound(-1, start, n); i >= 0 && i < n; i += step) {
    if (matches.contains(ids_[i])) {
      noMatch_ = false;
      setPos(i);
      return;
    }
  }
  noMatch_ = true;
}

// ---- changes ------------------------------------------------------------------------------

void Recordset::flush() {
  if (mode_ != EditMode::None) Update();
}

void Recordset::AddNew() {
  flush();
  requireUpdatable();
  posBeforeAdd_ = pos_;
  buffer_.fill(QVariant(), columns_.size());
  changed_.fill(false, columns_.size());
  mode_ = EditMode::AddNew;
  const int row = int(ids_.size());
  emit rowsInserted(row, row);
  emit currentChanged(row);
}

void Recordset::Edit() {
  if (mode_ == EditMode::Edit) return;
  flush();
  requireCurrent();
  requireUpdatable();
  // The buffer holds the fields set since; the others read through to the row.
  buffer_.fill(QVariant(), columns_.size());
  changed_.fill(false, columns_.size());
  mode_ = EditMode::Edit;
}

void Recordset::Update() {
  if (mode_ == EditMode::None) return;
  // A change the file did not take (read-only, locked, gone) is dropped once it has been
  // reported: kept pending, every later move would try it again and fail again, and the row
  // would go on showing a value that was never saved.
  try {
    writePending();
  } catch (...) {
    CancelUpdate();
    throw;
  }
}

void Recordset::writePending() {
  requireUpdatable();
  // The statement is known by its kind and the fields it writes.
  QByteArray shape(1, mode_ == EditMode::Edit ? 'U' : 'I');
  QVector<QVariant> vals;
  for (int i = 0; i < columns_.size(); ++i) {
    if (!changed_[i]) continue;
    if (tableColumn_[i].isEmpty())
      throw AppError(ErrNo::Database,
                     QStringLiteral("Field '%1' cannot be updated.").arg(columns_[i]));
    shape += char(i);
    vals << buffer_[i];
  }
  // "name = ?1, ..." for an UPDATE; the names and the marks for an INSERT.
  auto fieldList = [&](bool names, bool marks) {
    QStringList parts;
    for (int k = 1; k < shape.size(); ++k) {
      const QString name = QuoteIdentifier(tableColumn_[int(shape[k])]);
      const QString mark = QLatin1Char('?') + QString::number(k);
      parts << (names && marks ? name + QStringLiteral(" = ") + mark : names ? name : mark);
    }
    return parts.join(QStringLiteral(", "));
  };
  const QString qt = QuoteIdentifier(table_);
  if (mode_ == EditMode::Edit) {
    const qint64 id = ids_[pos_];
    if (!vals.isEmpty()) {
      vals << id;
      write(shape, vals, [&] {
        return QStringLiteral("UPDATE %1 SET %2 WHERE rowid = ?%3")
            .arg(qt, fieldList(true, true))
            .arg(shape.size());
      });
    }
    cache_.remove(id);
    mode_ = EditMode::None;
    emit rowsChanged(pos_, pos_);
    return;
  }
  // AddNew
  write(shape, vals, [&] {
    if (vals.isEmpty()) return QStringLiteral("INSERT INTO %1 DEFAULT VALUES").arg(qt);
    return QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
        .arg(qt, fieldList(true, false), fieldList(false, true));
  });
  const qint64 id = db_->lastInsertRowId();
  ids_.push_back(id);
  indexValid_ = false;
  mode_ = EditMode::None;
  pos_ = int(ids_.size()) - 1;
  deleted_ = false;
  emit rowsChanged(pos_, pos_);
  emit currentChanged(pos_);
}

// Runs one write. Its prepared statement is kept for the next write of the same shape (a
// batch of Auto-sort or Add writes hundreds alike), and reset at once, so the file stays free.
void Recordset::write(const QByteArray& shape, const QVector<QVariant>& values,
                      const std::function<QString()>& sql) {
  auto it = writes_.find(shape);
  if (it == writes_.end()) it = writes_.emplace(shape, db_->prepare(sql())).first;
  Statement& st = it->second;
  try {
    for (int i = 0; i < values.size(); ++i) st.bind(i + 1, values[i]);
    st.step();
  } catch (...) {
    st.reset();
    throw;
  }
  st.reset();
}

void Recordset::CancelUpdate() {
  const EditMode was = mode_;
  mode_ = EditMode::None;
  buffer_.clear();
  changed_.clear();
  if (was == EditMode::AddNew) {
    const int row = int(ids_.size());
    emit rowsRemoved(row, row);
    pos_ = posBeforeAdd_;
    emit currentChanged(currentRow());
  } else if (was == EditMode::Edit) {
    emit rowsChanged(pos_, pos_);
  }
}

void Recordset::Delete() {
  if (mode_ == EditMode::AddNew) {
    CancelUpdate();
    return;
  }
  if (mode_ == EditMode::Edit) CancelUpdate();
  requireCurrent();
  requireUpdatable();
  const qint64 id = ids_[pos_];
  write(QByteArrayLiteral("D"), {id}, [&] {
    return QStringLiteral("DELETE FROM %1 WHERE rowid = ?1").arg(QuoteIdentifier(table_));
  });
  const int row = pos_;
  ids_.remove(row);
  cache_.remove(id);
  indexValid_ = false;
  deleted_ = true;
  emit rowsRemoved(row, row);
  emit currentChanged(-1);
}

void Recordset::Requery() {
  flush();
  load();
  pos_ = ids_.isEmpty() ? -1 : 0;
  deleted_ = false;
  emit reset();
  emit currentChanged(currentRow());
}

// ---- fields -------------------------------------------------------------------------------

int Recordset::fieldIndex(const QString& name) const {
  for (int i = 0; i < columns_.size(); ++i)
    if (columns_[i].compare(name, Qt::CaseInsensitive) == 0) return i;
  return -1;
}

int Recordset::checkedField(const QString& name) const {
  const int i = fieldIndex(name);
  if (i < 0) throw AppError(ErrNo::Database, QStringLiteral("Item not found in this collection."));
  return i;
}

QVariant Recordset::value(int field) const {
  if (field < 0 || field >= columns_.size())
    throw AppError(ErrNo::Database, QStringLiteral("Item not found in this collection."));
  if (mode_ != EditMode::None) return pendingValue(field);
  requireCurrent();
  return rowAt(pos_)[field];
}

QVariant Recordset::value(const QString& field) const { return value(checkedField(field)); }

QVariant Recordset::pendingValue(int field) const {
  if (mode_ == EditMode::AddNew || changed_[field]) return buffer_[field];
  return rowAt(pos_)[field];
}

void Recordset::setValue(int field, const QVariant& v) {
  if (field < 0 || field >= columns_.size())
    throw AppError(ErrNo::Database, QStringLiteral("Item not found in this collection."));
  if (mode_ == EditMode::None) Edit();
  buffer_[field] = v;
  changed_[field] = true;
  const int row = currentRow();
  emit rowsChanged(row, row);
}

void Recordset::setValue(const QString& field, const QVariant& v) {
  setValue(checkedField(field), v);
}
