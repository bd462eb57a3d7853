// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTableView>
#include <functional>
#include <vector>

#include "base/profile.h"

namespace torvik::widgets {

/// The selection of a grid, in rows and columns of the model, from 0: a rectangle from the current cell to
/// the far corner, which may stand on either side of it. -1 throughout where there is no cell.
struct CellRange {
  int Row = -1;
  int Col = -1;
  int RowSel = -1;
  int ColSel = -1;
  [[nodiscard]] int top() const { return Row < RowSel ? Row : RowSel; }
  [[nodiscard]] int bottom() const { return Row < RowSel ? RowSel : Row; }
  [[nodiscard]] int left() const { return Col < ColSel ? Col : ColSel; }
  [[nodiscard]] int right() const { return Col < ColSel ? ColSel : Col; }
  [[nodiscard]] bool isOneCell() const { return Row == RowSel && Col == ColSel; }
  bool operator==(const CellRange&) const = default;
};

/// A number that does not fit, rounded to as many digits as do: "5.1667E+05" gives "5.17E5", "32098.7654"
/// gives "32099". A text that is cut at its end would leave the exponent away.
/// @param mostDigits  more never fit
/// @return empty where nothing fits or the text is no number
QString shortenedNumber(const QString& text, int mostDigits, const std::function<bool(const QString&)>& fits);

/// `MSFlexGrid1`: a grid with one fixed row (the horizontal header, twice as high as a row) and one fixed
/// column (the vertical header). The selection is one rectangle and never holds fixed cells.
///
/// Where columns are numbered as grid columns, 0 is the fixed one and 1 the first of the model.
class TableView : public QTableView {
  Q_OBJECT

 public:
  explicit TableView(QWidget* parent = nullptr);

  /// Text of the cell in the fixed row and the fixed column.
  void setFixedCaption(const QString& caption);
  [[nodiscard]] QString fixedCaption() const;

  /// Height of a data row; the fixed row is twice the standard height, whatever it is.
  [[nodiscard]] int standardRowHeight() const;

  /// Widths in twips. What was set comes back unchanged until the user gives the column another width.
  [[nodiscard]] int columnTwips(int gridColumn) const;
  void setColumnTwips(int gridColumn, int twips);
  /// Keys `tag` + "FixedColWidth0", `tag` + "ColWidth1" and on.
  void readColumnWidths(const base::ProfileFile& settings, const QString& section, const QString& tag);
  void writeColumnWidths(base::ProfileFile& settings, const QString& section, const QString& tag) const;

  [[nodiscard]] CellRange cells() const;
  /// Does not scroll.
  void selectCells(const CellRange& cells);

  /// `FlexGridSelectAll`: the current cell is the first one.
  void selectAll() override;
  /// The selection's text: a tab between cells, CR LF between rows.
  [[nodiscard]] QString selectionText() const;
  /// `FlexGridCopy`
  void copySelection() const;
  /// Sets the columns of the selection to the original width.
  void resetSelectedColumnWidths();
  /// Makes grid columns wide enough for the text of every row, with a blank before and behind it.
  void fitColumns(int firstGridColumn, int lastGridColumn);

  /// A table that grows at its bottom: the current cell, where it stands alone in the bottom row, moves to
  /// the new bottom row, and the view goes with it unless the user has scrolled away from there.
  void setFollowsGrowth(bool follows) { m_followsGrowth = follows; }

  /// Numbers that do not fit are shown rounded to what fits, in place of cut texts.
  void setShortensNumbers(bool shortens) { m_shortensNumbers = shortens; }
  [[nodiscard]] bool shortensNumbers() const { return m_shortensNumbers; }

  void keyboardSearch(const QString&) override {}
  void setModel(QAbstractItemModel* model) override;

 signals:
  /// Ctrl+Insert
  void copiedByKeyboard();

 protected:
  bool event(QEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void updateGeometries() override;
  void rowsInserted(const QModelIndex& parent, int start, int end) override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;

 private:
  class Header;
  class Corner;

  [[nodiscard]] int columnPixels(int gridColumn) const;
  void setColumnPixels(int gridColumn, int pixels);
  [[nodiscard]] int fittingWidth(int gridColumn) const;
  void fitAfterDoubleClick(int column);
  void moveCurrentTo(int row, int column);
  /// Whether the current cell stands alone in this row, the bottom one, and goes with it.
  [[nodiscard]] bool isFollowing(int bottomRow) const;
  void goToBottom(int column);
  void scaleToFont();
  /// The smallest rectangle around all that is selected; the current cell where nothing is.
  [[nodiscard]] CellRange bounds() const;

  Header* m_horizontal;
  Header* m_vertical;
  Corner* m_corner;
  QPersistentModelIndex m_anchor;  ///< the corner of the selection at which it was begun
  CellRange m_beforePress;         ///< the selection at the last press on the fixed row
  bool m_pressedAtBottom = false;  ///< whether that followed the growth
  std::vector<int> m_twips;        ///< of grid columns, as set
  bool m_shortensNumbers = false;
  bool m_followsGrowth = false;
  bool m_atBottom = true;  ///< where the user left the view
};

}  // namespace torvik::widgets
