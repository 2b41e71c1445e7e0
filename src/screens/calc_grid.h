#pragma once
// The spreadsheet grid of the screens: typing starts an edit, Enter moves down, Tab moves
// right, Ctrl+C / Ctrl+V copy and paste rectangular blocks as tab-separated text (the form
// spreadsheet programs exchange), Delete clears the selection. Rows and columns of the
// accessors count from 1, like the state's arrays.
#include <QStringList>
#include <QTableWidget>
#include <string_view>

namespace tervale::screens {

class CalcGrid : public QTableWidget {
  Q_OBJECT
 public:
  CalcGrid(int rows, int columns, QWidget* parent = nullptr);

  void SetColumnTitles(const QStringList& titles);
  void SetRowTitles(const QStringList& titles);
  void SetRowCount(int rows);
  void SetColumnCount(int columns);

  QString Text(int row, int column) const;
  void SetText(int row, int column, const QString& text);
  // Lenient: text that is no number counts as 0.
  double Number(int row, int column) const;
  // False when the cell is empty (a parameter grid then keeps its default).
  bool Number(int row, int column, double& value) const;
  void SetNumber(int row, int column, double value, std::string_view pattern);
  void SetNumber(int row, int column, double value);  // shortest text
  void ClearCells();
  void SetReadOnly(int row, int column, bool readOnly);
  void SetColumnReadOnly(int column, bool readOnly);

  // The selection as tab-separated lines; the paste of such text at the current cell.
  QString SelectionText() const;
  // Pastes at (row, column), 1-based; cells beyond the grid and read-only cells are skipped.
  // Returns the number of cells written.
  int PasteText(const QString& text, int row, int column);
  void CopySelection();
  void PasteClipboard();

 signals:
  void cellsPasted();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;

 private:
  QTableWidgetItem* ItemAt(int row, int column);
};

}  // namespace tervale::screens
