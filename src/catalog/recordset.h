#pragma once

#include <QHash>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>
#include <functional>
#include <map>
#include <memory>

#include "catalog/database.h"

// The text a bound control shows for a field: empty for Null, numbers in plain number text.
QString FieldText(const QVariant& value);

// The one cursor of the program, over a table, a view or a query text in the classic dialect
// (see jetsql.h). For a query over one table it keeps only the ordered row ids and fetches rows
// when they are asked for, so the biggest catalog opens at once; anything else (views, joins)
// is read whole.
//
// It behaves as a recordset under a data control: a pending AddNew or Edit is written by the
// next move, AddNew, Find or Requery, and setValue starts an Edit by itself. Rows added are
// appended to the end of the present order until the next Requery. Every write goes straight
// to the file.
class Recordset : public QObject {
  Q_OBJECT

 public:
  enum class EditMode { None, Edit, AddNew };

  // recordSource: a table or view name (Objects opens in DisplayOrder, others in row order),
  // or a full query text. Raises AppError 3000 when the source cannot be opened.
  Recordset(std::shared_ptr<Database> db, const QString& recordSource, QObject* parent = nullptr);
  ~Recordset() override;

  const QString& recordSource() const { return source_; }
  const std::shared_ptr<Database>& database() const { return db_; }
  bool isUpdatable() const { return !materialized_ && !db_->isReadOnly(); }

  // ---- cursor: an empty recordset is at BOF and EOF together. Moves raise 3021 where there
  // is no row to move from or to.
  void MoveFirst();
  void MoveLast();
  void MoveNext();
  void MovePrevious();
  void Move(qint64 rows);  // relative to the current row
  bool isBOF() const;
  bool isEOF() const;
  int RecordCount() const { return int(ids_.size()); }
  int AbsolutePosition() const;  // 0-based, -1 off the ends, on a deleted or a new row
  void setAbsolutePosition(int position);
  qint64 Bookmark() const;
  void setBookmark(qint64 bookmark);
  bool hasCurrentRow() const;

  // ---- finds: the criteria text is in the classic dialect. A failed find keeps the row.
  void FindFirst(const QString& criteria);
  void FindLast(const QString& criteria);
  void FindNext(const QString& criteria);
  void FindPrevious(const QString& criteria);
  bool NoMatch() const { return noMatch_; }

  // ---- changes
  void AddNew();
  void Edit();
  void Update();  // nothing to write is no error; a write that fails drops the change
  void CancelUpdate();
  void Delete();   // the row becomes invalid until the next move
  void Requery();  // back on the first row
  EditMode editMode() const { return mode_; }

  // ---- fields of the current row (or of the edit buffer while editing)
  int fieldCount() const { return int(columns_.size()); }
  const QStringList& columnNames() const { return columns_; }
  int fieldIndex(const QString& name) const;  // -1 when absent
  QVariant value(int field) const;
  QVariant value(const QString& field) const;
  QString text(int field) const { return FieldText(value(field)); }
  QString text(const QString& field) const { return FieldText(value(field)); }
  void setValue(int field, const QVariant& v);
  void setValue(const QString& field, const QVariant& v);

  // ---- rows as a grid sees them: the recorded rows, plus the new row while an AddNew is
  // pending (the last one).
  int displayRowCount() const { return int(ids_.size()) + (mode_ == EditMode::AddNew ? 1 : 0); }
  int currentRow() const;  // -1 when no row is current
  QVariant rowValue(int row, int field) const;
  void setRowValue(int row, int field, const QVariant& v);
  qint64 bookmarkAt(int row) const;          // 0 for the new row
  int rowOfBookmark(qint64 bookmark) const;  // -1 when not in the set

 signals:
  void currentChanged(int row);
  void rowsInserted(int first, int last);
  void rowsRemoved(int first, int last);
  void rowsChanged(int first, int last);
  void reset();

 private:
  enum class FindFrom { First, Last, Next, Previous };
  void open();
  void load();
  void find(const QString& criteria, FindFrom from);
  void flush();
  void writePending();
  void requireCurrent() const;
  void requireUpdatable() const;
  void setPos(int pos);
  const QVector<QVariant>& rowAt(int index) const;
  int checkedField(const QString& name) const;
  QVariant pendingValue(int field) const;  // a field of the row being edited or added
  void write(const QByteArray& shape, const QVector<QVariant>& values,
             const std::function<QString()>& sql);

  std::shared_ptr<Database> db_;
  QString source_;
  QString query_;  // translated query, when the source is read whole
  bool materialized_ = false;
  QString table_;  // the base table, for a source kept as row ids
  QString where_;
  QString orderBy_;
  QStringList columns_;
  QStringList tableColumn_;  // per field: the table column it writes, or empty

  QVector<qint64> ids_;
  QVector<QVector<QVariant>> rows_;  // the rows of a source read whole
  int pos_ = -1;
  bool deleted_ = false;
  bool noMatch_ = false;

  EditMode mode_ = EditMode::None;
  QVector<QVariant> buffer_;  // the fields set while editing or adding (see changed_)
  QVector<bool> changed_;
  int posBeforeAdd_ = -1;

  mutable Statement fetch_;                 // a block of rows by their ids
  std::map<QByteArray, Statement> writes_;  // UPDATE, INSERT, DELETE by kind and fields
  mutable QHash<qint64, QVector<QVariant>> cache_;
  mutable QHash<qint64, int> index_;
  mutable bool indexValid_ = false;
  QVector<QVariant> nullRow_;
};
