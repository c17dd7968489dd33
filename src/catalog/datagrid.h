#pragma once

#include <QList>
#include <QPointer>
#include <QTableView>
#include <QVariant>

#include "catalog/columnlayout.h"
#include "catalog/recordset.h"
#include "catalog/recordsetmodel.h"

class Prompter;

// The bound grid of every window: it shows a Recordset, and its current row and the
// recordset's follow each other. Rows are 220 twips high and snap back when a border is
// dragged. Besides the current row it keeps a bookmark selection (row ids) for the windows
// that build multi-row selections themselves.
class DataGrid : public QTableView {
  Q_OBJECT

 public:
  explicit DataGrid(QWidget* parent = nullptr);

  void setRecordset(Recordset* rs);
  Recordset* recordset() const { return rs_; }
  RecordsetModel* recordsetModel() const { return model_; }

  // Where errors of the user's own moves and edits are shown (none: they are dropped).
  void setPrompter(Prompter* prompter) { prompter_ = prompter; }

  // Captions, widths (twips), alignment and hidden columns, by column index.
  void applyLayout(const ColumnLayouts& layout);

  // Editing in the cells by the user. Code writes through columnText whatever these say.
  void setAllowUpdate(bool allow);
  bool allowUpdate() const { return model_->allowUpdate(); }
  void setAllowAddNew(bool allow) { allowAddNew_ = allow; }
  bool allowAddNew() const { return allowAddNew_; }

  // The text of a column in the current row (the edit buffer while a change is pending);
  // setting it writes into the edit buffer, committed by the next move.
  QString columnText(int column) const;
  QString columnText(const QString& name) const;
  void setColumnText(int column, const QString& text);
  void setColumnText(const QString& name, const QString& text);

  int currentColumn() const;
  void setCurrentColumn(int column);

  // The bookmark selection.
  const QList<qint64>& selectedBookmarks() const { return selected_; }
  int selectedBookmarkCount() const { return int(selected_.size()); }
  void addSelectedBookmark(qint64 bookmark);
  void removeSelectedBookmark(int index);
  void clearSelectedBookmarks();

  // The grid's row height in pixels (220 twips).
  int rowHeightPixels() const;

 signals:
  // The current row changed, by the user or by the recordset; lastBookmark is the row before
  // (null when there was none). Not raised again while a handler of it is running.
  void rowColChange(const QVariant& lastBookmark);
  void gridClicked();
  void gridDoubleClicked();
  void headClicked(int column);
  // Raised before the grid acts on the press, so a handler sees the keys of the click.
  void gridMousePressed(Qt::MouseButton button, Qt::KeyboardModifiers modifiers);

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

 private:
  void followRecordset(int row);
  ScrollHint scrollHintFor(const QModelIndex& idx) const;
  void announceRowChange();
  void showError(const QString& text);
  void syncMarks();

  QPointer<Recordset> rs_;
  RecordsetModel* model_;
  Prompter* prompter_ = nullptr;
  bool allowAddNew_ = false;
  bool following_ = false;
  bool announcing_ = false;
  QVariant lastBookmark_;
  QList<qint64> selected_;
};
