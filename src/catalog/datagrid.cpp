#include "catalog/datagrid.h"

#include <QHeaderView>
#include <QMouseEvent>
#include <QStyledItemDelegate>

#include "core/apperror.h"
#include "core/handler.h"
#include "core/prompter.h"
#include "core/twips.h"

namespace {

// Rows of the bookmark selection are drawn as selected.
class MarkDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    if (index.data(RecordsetModel::MarkedRole).toBool()) option->state |= QStyle::State_Selected;
  }
};

constexpr int kRowTwips = 220;

}  // namespace

DataGrid::DataGrid(QWidget* parent) : QTableView(parent), model_(new RecordsetModel(this)) {
  setModel(model_);
  setItemDelegate(new MarkDelegate(this));
  setSelectionBehavior(QAbstractItemView::SelectRows);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setWordWrap(false);
  setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                  QAbstractItemView::AnyKeyPressed);
  horizontalHeader()->setSectionsClickable(true);
  horizontalHeader()->setHighlightSections(false);
  QHeaderView* rows = verticalHeader();
  rows->setSectionResizeMode(QHeaderView::Interactive);
  rows->setMinimumSectionSize(1);
  rows->setDefaultSectionSize(rowHeightPixels());
  rows->setFixedWidth(TwipsToPixels(240, this));
  connect(rows, &QHeaderView::sectionResized, this, [this](int section, int, int size) {
    RunIgnoringErrors([&] {
      const int h = rowHeightPixels();
      if (size != h) verticalHeader()->resizeSection(section, h);
    });
  });
  connect(horizontalHeader(), &QHeaderView::sectionClicked, this, &DataGrid::headClicked);
  connect(this, &QAbstractItemView::clicked, this, [this] { emit gridClicked(); });
  connect(this, &QAbstractItemView::doubleClicked, this, [this] { emit gridDoubleClicked(); });
  connect(model_, &RecordsetModel::errorOccurred, this, &DataGrid::showError);
}

int DataGrid::rowHeightPixels() const { return TwipsToPixels(kRowTwips, this); }

void DataGrid::setRecordset(Recordset* rs) {
  if (rs_) disconnect(rs_, nullptr, this, nullptr);
  rs_ = rs;
  selected_.clear();
  model_->setMarked({});
  model_->setRecordset(rs);
  lastBookmark_ = QVariant();
  if (!rs) return;
  connect(rs, &Recordset::currentChanged, this, &DataGrid::followRecordset);
  connect(rs, &Recordset::reset, this, [this] { followRecordset(rs_ ? rs_->currentRow() : -1); });
  followRecordset(rs->currentRow());
}

void DataGrid::followRecordset(int row) {
  if (following_) return;
  following_ = true;
  const int col = qMax(0, currentIndex().column());
  if (row >= 0 && row < model_->rowCount()) {
    const QModelIndex idx = model_->index(row, col);
    // Judged before the view's own scrolling to the new current cell.
    const ScrollHint hint = scrollHintFor(idx);
    selectionModel()->setCurrentIndex(
        idx, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    scrollTo(idx, hint);
  } else {
    selectionModel()->clearCurrentIndex();
    selectionModel()->clearSelection();
  }
  following_ = false;
  announceRowChange();
}

// A step onto the row just past an edge scrolls by that row; a far jump (a search, a move to
// the last row) centres the row, so it is not left on the bottom edge of the grid.
QAbstractItemView::ScrollHint DataGrid::scrollHintFor(const QModelIndex& idx) const {
  const QRect area = viewport()->rect();
  const QRect rect = visualRect(idx);
  if (area.isEmpty()) return EnsureVisible;
  const int rowH = qMax(1, rowHeight(idx.row()));
  const bool nearBottom = rect.top() < area.bottom() + rowH;
  const bool nearTop = rect.bottom() > area.top() - rowH;
  return nearBottom && nearTop ? EnsureVisible : PositionAtCenter;
}

void DataGrid::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTableView::currentChanged(current, previous);
  if (following_ || !rs_ || !current.isValid() || current.row() == previous.row()) return;
  if (current.row() == rs_->currentRow()) return;
  const int row = current.row();
  if (row >= rs_->RecordCount()) return;  // the new row of a pending AddNew
  auto move = [&] { rs_->setAbsolutePosition(row); };
  if (prompter_) RunGuarded(*prompter_, move);
  else RunIgnoringErrors(move);
}

void DataGrid::announceRowChange() {
  if (!rs_) return;
  const int row = rs_->currentRow();
  const QVariant now =
      (row >= 0 && row < rs_->RecordCount()) ? QVariant(rs_->bookmarkAt(row)) : QVariant();
  if (now == lastBookmark_ && now.isValid()) return;
  const QVariant last = lastBookmark_;
  lastBookmark_ = now;
  if (announcing_) return;
  announcing_ = true;
  emit rowColChange(last);
  announcing_ = false;
}

void DataGrid::applyLayout(const ColumnLayouts& layout) {
  const int n = qMin<int>(int(layout.size()), model_->columnCount());
  for (int i = 0; i < n; ++i) {
    const ColumnLayout& c = layout[i];
    setColumnHidden(i, c.hidden);
    if (c.hidden) continue;
    model_->setColumnCaption(i, c.ownCaption ? c.caption : QString());
    model_->setColumnAlignment(i, c.alignment);
    if (c.width >= 0) setColumnWidth(i, TwipsToPixels(c.width, this));
  }
}

void DataGrid::setAllowUpdate(bool allow) { model_->setAllowUpdate(allow); }

QString DataGrid::columnText(int column) const {
  if (!rs_) throw AppError(ErrNo::NoCurrentRecord, QStringLiteral("No current record."));
  return rs_->text(column);
}

QString DataGrid::columnText(const QString& name) const {
  if (!rs_) throw AppError(ErrNo::NoCurrentRecord, QStringLiteral("No current record."));
  return rs_->text(name);
}

void DataGrid::setColumnText(int column, const QString& text) {
  if (!rs_) throw AppError(ErrNo::NoCurrentRecord, QStringLiteral("No current record."));
  rs_->setValue(column, text);
}

void DataGrid::setColumnText(const QString& name, const QString& text) {
  if (!rs_) throw AppError(ErrNo::NoCurrentRecord, QStringLiteral("No current record."));
  rs_->setValue(name, text);
}

int DataGrid::currentColumn() const { return currentIndex().column(); }

void DataGrid::setCurrentColumn(int column) {
  const int row = rs_ ? rs_->currentRow() : -1;
  if (row < 0 || column < 0 || column >= model_->columnCount()) return;
  following_ = true;
  selectionModel()->setCurrentIndex(
      model_->index(row, column), QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  following_ = false;
}

void DataGrid::addSelectedBookmark(qint64 bookmark) {
  selected_.append(bookmark);
  syncMarks();
}

void DataGrid::removeSelectedBookmark(int index) {
  if (index < 0 || index >= selected_.size()) throw AppError::of(ErrNo::SubscriptRange);
  selected_.removeAt(index);
  syncMarks();
}

void DataGrid::clearSelectedBookmarks() {
  selected_.clear();
  syncMarks();
}

void DataGrid::syncMarks() { model_->setMarked(QSet<qint64>(selected_.begin(), selected_.end())); }

void DataGrid::mousePressEvent(QMouseEvent* event) {
  emit gridMousePressed(event->button(), event->modifiers());
  QTableView::mousePressEvent(event);
}

void DataGrid::showError(const QString& text) {
  if (prompter_) prompter_->message(AppTitle(), text);
}
