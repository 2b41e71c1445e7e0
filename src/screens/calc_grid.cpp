#include "screens/calc_grid.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>

#include "io/record_writer.h"
#include "screens/screen_text.h"

namespace tervale::screens {

CalcGrid::CalcGrid(int rows, int columns, QWidget* parent) : QTableWidget(rows, columns, parent) {
  setEditTriggers(QAbstractItemView::AnyKeyPressed | QAbstractItemView::DoubleClicked |
                  QAbstractItemView::EditKeyPressed);
  setSelectionMode(QAbstractItemView::ContiguousSelection);
  setTabKeyNavigation(true);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
  horizontalHeader()->setDefaultSectionSize(80);
  setAlternatingRowColors(false);
}

void CalcGrid::SetColumnTitles(const QStringList& titles) {
  if (titles.size() > columnCount()) setColumnCount(static_cast<int>(titles.size()));
  setHorizontalHeaderLabels(titles);
}

void CalcGrid::SetRowTitles(const QStringList& titles) {
  if (titles.size() > rowCount()) setRowCount(static_cast<int>(titles.size()));
  setVerticalHeaderLabels(titles);
}

void CalcGrid::SetRowCount(int rows) {
  setRowCount(rows);
}
void CalcGrid::SetColumnCount(int columns) {
  setColumnCount(columns);
}

QTableWidgetItem* CalcGrid::ItemAt(int row, int column) {
  QTableWidgetItem* it = item(row - 1, column - 1);
  if (!it) {
    it = new QTableWidgetItem;
    setItem(row - 1, column - 1, it);
  }
  return it;
}

QString CalcGrid::Text(int row, int column) const {
  const QTableWidgetItem* it = item(row - 1, column - 1);
  return it ? it->text() : QString();
}

void CalcGrid::SetText(int row, int column, const QString& text) {
  if (row < 1 || column < 1 || row > rowCount() || column > columnCount()) return;
  ItemAt(row, column)->setText(text);
}

double CalcGrid::Number(int row, int column) const {
  return ReadNumber(Text(row, column));
}

bool CalcGrid::Number(int row, int column, double& value) const {
  return ReadNumber(Text(row, column), value);
}

void CalcGrid::SetNumber(int row, int column, double value, std::string_view pattern) {
  SetText(row, column, Fmt(value, pattern));
  if (auto* it = item(row - 1, column - 1)) it->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
}

void CalcGrid::SetNumber(int row, int column, double value) {
  SetText(row, column, Q(io::FormatShortest(value)));
  if (auto* it = item(row - 1, column - 1)) it->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
}

void CalcGrid::ClearCells() {
  for (int r = 0; r < rowCount(); ++r)
    for (int c = 0; c < columnCount(); ++c)
      if (auto* it = item(r, c)) it->setText(QString());
}

void CalcGrid::SetReadOnly(int row, int column, bool readOnly) {
  if (row < 1 || column < 1 || row > rowCount() || column > columnCount()) return;
  QTableWidgetItem* it = ItemAt(row, column);
  Qt::ItemFlags f = it->flags();
  it->setFlags(readOnly ? (f & ~Qt::ItemIsEditable) : (f | Qt::ItemIsEditable));
  it->setBackground(readOnly ? palette().window() : palette().base());
}

void CalcGrid::SetColumnReadOnly(int column, bool readOnly) {
  for (int r = 1; r <= rowCount(); ++r) SetReadOnly(r, column, readOnly);
}

QString CalcGrid::SelectionText() const {
  const auto ranges = selectedRanges();
  if (ranges.isEmpty()) {
    const QModelIndex cur = currentIndex();
    return cur.isValid() ? Text(cur.row() + 1, cur.column() + 1) : QString();
  }
  int top = rowCount(), left = columnCount(), bottom = -1, right = -1;
  for (const auto& r : ranges) {
    top = std::min(top, r.topRow());
    left = std::min(left, r.leftColumn());
    bottom = std::max(bottom, r.bottomRow());
    right = std::max(right, r.rightColumn());
  }
  QStringList lines;
  for (int r = top; r <= bottom; ++r) {
    QStringList cells;
    for (int c = left; c <= right; ++c) cells << Text(r + 1, c + 1);
    lines << cells.join(QLatin1Char('\t'));
  }
  return lines.join(QStringLiteral("\r\n")) + QStringLiteral("\r\n");
}

int CalcGrid::PasteText(const QString& text, int row, int column) {
  QString t = text;
  t.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  t.replace(QLatin1Char('\r'), QLatin1Char('\n'));
  QStringList lines = t.split(QLatin1Char('\n'));
  while (!lines.isEmpty() && lines.constLast().isEmpty()) lines.removeLast();
  int written = 0;
  for (int i = 0; i < lines.size(); ++i) {
    const int r = row + i;
    if (r > rowCount()) break;
    const QStringList cells = lines[i].split(QLatin1Char('\t'));
    for (int j = 0; j < cells.size(); ++j) {
      const int c = column + j;
      if (c > columnCount()) break;
      const QTableWidgetItem* existing = item(r - 1, c - 1);
      if (existing && !(existing->flags() & Qt::ItemIsEditable)) continue;
      SetText(r, c, cells[j].trimmed());
      ++written;
    }
  }
  if (written > 0) emit cellsPasted();
  return written;
}

void CalcGrid::CopySelection() {
  QApplication::clipboard()->setText(SelectionText());
}

void CalcGrid::PasteClipboard() {
  QModelIndex cur = currentIndex();
  int row = cur.isValid() ? cur.row() + 1 : 1, column = cur.isValid() ? cur.column() + 1 : 1;
  const auto ranges = selectedRanges();
  if (!ranges.isEmpty()) {
    row = ranges.first().topRow() + 1;
    column = ranges.first().leftColumn() + 1;
  }
  PasteText(QApplication::clipboard()->text(), row, column);
}

void CalcGrid::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    CopySelection();
    return;
  }
  if (event->matches(QKeySequence::Paste)) {
    PasteClipboard();
    return;
  }
  if (event->key() == Qt::Key_Delete && state() != QAbstractItemView::EditingState) {
    for (auto* it : selectedItems())
      if (it->flags() & Qt::ItemIsEditable) it->setText(QString());
    return;
  }
  if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
      state() != QAbstractItemView::EditingState) {
    const QModelIndex cur = currentIndex();
    if (cur.isValid() && cur.row() + 1 < rowCount()) setCurrentCell(cur.row() + 1, cur.column());
    return;
  }
  QTableWidget::keyPressEvent(event);
}

void CalcGrid::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
  // Enter in an editor commits and moves one row down, as in a spreadsheet.
  if (hint == QAbstractItemDelegate::SubmitModelCache) {
    QTableWidget::closeEditor(editor, QAbstractItemDelegate::NoHint);
    const QModelIndex cur = currentIndex();
    if (cur.isValid() && cur.row() + 1 < rowCount()) setCurrentCell(cur.row() + 1, cur.column());
    return;
  }
  QTableWidget::closeEditor(editor, hint);
}

}  // namespace tervale::screens
