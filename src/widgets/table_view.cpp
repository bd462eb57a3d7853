// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/table_view.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QHelpEvent>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QToolTip>
#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "base/number_text.h"
#include "widgets/heading.h"
#include "widgets/twips.h"

namespace torvik::widgets {

namespace {

constexpr int kSmallestColumn = 12;  ///< that a column can be dragged to, in pixels
constexpr int kHeaderMargin = 1;
constexpr int kSignificantDigits = 15;
constexpr double kSmallestFixed = 0.001;  ///< smaller ones lose their digits behind the zeros
constexpr int kWidestColumn = 1 << 20;

/// Blank space that a style leaves on either side of a cell's text.
int cellMargin(const QWidget& view) {
  return view.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &view) + 1;
}

/// Whole pixels that hold the text; a style cuts what is a fraction of a pixel too wide.
int widthOf(const QString& text, const QFont& font) {
  return static_cast<int>(std::ceil(QFontMetricsF(font).horizontalAdvance(text)));
}

/// "1.23E-05" as "1.23E-5": the same number in fewer characters.
std::string withShortExponent(std::string text) {
  const std::size_t exponent = text.find('E');
  if (exponent == text.npos) return text;
  const bool negative = text[exponent + 1] == '-';
  const std::size_t digits = text.find_first_not_of("+-0", exponent + 1);
  return text.substr(0, exponent + 1) + (negative ? "-" : "") +
         (digits == text.npos ? "0" : text.substr(digits));
}

class CellDelegate : public QStyledItemDelegate {
 public:
  explicit CellDelegate(TableView& view) : QStyledItemDelegate(&view), m_view(view) {}

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    if (option->state & QStyle::State_Selected) showMark(*option, index);
    if (!m_view.shortensNumbers() || option->rect.isEmpty()) return;
    const int room = option->rect.width() - 2 * cellMargin(m_view);
    if (widthOf(option->text, option->font) <= room) return;
    const int digitWidth = std::max(1, widthOf(QStringLiteral("1"), option->font));
    const QString shortened = shortenedNumber(option->text, room / digitWidth, [&](const QString& candidate) {
      return widthOf(candidate, option->font) <= room;
    });
    if (!shortened.isEmpty()) option->text = shortened;
  }

 private:
  /// The colour of a cell is to be seen in a selection too.
  static void showMark(QStyleOptionViewItem& option, const QModelIndex& index) {
    const QVariant back = index.data(Qt::BackgroundRole);
    if (!back.canConvert<QColor>()) return;
    const QColor mark = back.value<QColor>();
    const QColor highlight = option.palette.color(QPalette::Highlight);
    option.palette.setColor(QPalette::Highlight, QColor((3 * mark.red() + highlight.red()) / 4,
                                                        (3 * mark.green() + highlight.green()) / 4,
                                                        (3 * mark.blue() + highlight.blue()) / 4));
    option.palette.setColor(QPalette::HighlightedText, index.data(Qt::ForegroundRole).value<QColor>());
  }

  TableView& m_view;
};

}  // namespace

QString shortenedNumber(const QString& text, int mostDigits,
                        const std::function<bool(const QString&)>& fits) {
  const std::optional<double> value = base::toNumber(text.toStdString());
  if (!value) return {};
  const bool plain = !text.contains(QLatin1Char('E'));
  for (int digits = std::min(mostDigits, kSignificantDigits); digits > 0; --digits) {
    const std::string scientific = base::scientificText(*value, digits - 1);
    const std::optional<double> rounded = base::toNumber(scientific);
    if (plain && rounded && std::abs(*rounded) >= kSmallestFixed) {
      const QString fixed = QString::fromStdString(base::plainText(*rounded));
      if (!fixed.contains(QLatin1Char('E')) && fits(fixed)) return fixed;
    }
    const QString compact = QString::fromStdString(withShortExponent(scientific));
    if (fits(compact)) return compact;
  }
  return {};
}

/// The fixed row or the fixed column.
class TableView::Header : public QHeaderView {
 public:
  Header(Qt::Orientation orientation, TableView& view) : QHeaderView(orientation, &view), m_view(view) {
    setSectionsClickable(true);
    setHighlightSections(false);
    setMinimumSectionSize(kSmallestColumn);
    setSectionResizeMode(orientation == Qt::Horizontal ? Interactive : Fixed);
    setTextElideMode(Qt::ElideRight);
  }

  void setThickness(int pixels) {
    if (orientation() == Qt::Horizontal)
      setFixedHeight(pixels);
    else
      setFixedWidth(pixels);
  }
  QSize sizeHint() const override { return minimumSize(); }

  /// The look of a header cell, for the corner as well. @param section  -1 for the corner
  void paintCell(QPainter& painter, const QRect& rect, int section, const QString& text) const {
    QStyleOptionHeader option;
    initStyleOption(&option);
    option.rect = rect;
    option.section = section;
    option.position = QStyleOptionHeader::Middle;
    style()->drawControl(QStyle::CE_HeaderSection, &option, &painter, this);
    QColor pen = option.palette.color(QPalette::ButtonText);
    if (section >= 0) {
      const QVariant back = model()->headerData(section, orientation(), Qt::BackgroundRole);
      if (back.canConvert<QColor>()) painter.fillRect(rect.adjusted(0, 0, -1, -1), back.value<QColor>());
      const QVariant fore = model()->headerData(section, orientation(), Qt::ForegroundRole);
      if (fore.canConvert<QColor>()) pen = fore.value<QColor>();
    }
    painter.setPen(pen);
    if (section < 0 || orientation() == Qt::Horizontal) {
      drawHeading(painter, rect.adjusted(kHeaderMargin, 0, -kHeaderMargin, 0), text, font());
    } else {
      painter.setFont(font());
      const QRect room = rect.adjusted(kHeaderMargin, 0, -kHeaderMargin, 0);
      painter.drawText(room, Qt::AlignCenter, fontMetrics().elidedText(text, Qt::ElideRight, room.width()));
    }
  }

 protected:
  void paintSection(QPainter* painter, const QRect& rect, int section) const override {
    if (!rect.isValid() || !model()) return;
    paintCell(*painter, rect, section,
              model()->headerData(section, orientation(), Qt::DisplayRole).toString());
  }
  void mousePressEvent(QMouseEvent* event) override {
    if (event->button() == Qt::LeftButton) {
      if (orientation() == Qt::Horizontal) {
        m_view.m_beforePress = m_view.cells();
        m_view.m_pressedAtBottom = m_view.isFollowing(model()->rowCount() - 1);
      }
      // Unless it extends the selection, a row or a column is selected from its first cell on.
      if (!(event->modifiers() & Qt::ShiftModifier)) m_view.m_anchor = QPersistentModelIndex();
    }
    // A press selects from the first cell in sight; the view stays where it is.
    const bool scrolls = m_view.hasAutoScroll();
    m_view.setAutoScroll(false);
    QHeaderView::mousePressEvent(event);
    m_view.setAutoScroll(scrolls);
  }
  bool viewportEvent(QEvent* event) override {
    if (event->type() == QEvent::ToolTip && model()) {
      const auto* help = static_cast<QHelpEvent*>(event);
      const int section = logicalIndexAt(help->pos());
      const QString text = section < 0 ? QString() : toolTipOf(section);
      QToolTip::showText(help->globalPos(), text, this);
      return true;
    }
    return QHeaderView::viewportEvent(event);
  }

 private:
  [[nodiscard]] QString toolTipOf(int section) const {
    const QString text = model()->headerData(section, orientation(), Qt::DisplayRole).toString();
    const QString more = model()->headerData(section, orientation(), Qt::ToolTipRole).toString();
    if (!more.isEmpty()) return more.startsWith(text) ? more : text + QStringLiteral(": ") + more;
    const int room = (orientation() == Qt::Horizontal ? sectionSize(section) : width()) - 2 * kHeaderMargin;
    return widthOf(text, font()) > room ? text : QString();
  }

  TableView& m_view;
};

/// The cell in the fixed row and the fixed column: a press selects all, its right edge is the handle of the
/// fixed column's width.
class TableView::Corner : public QWidget {
 public:
  explicit Corner(TableView& view) : QWidget(&view), m_view(view) {
    setObjectName(QStringLiteral("FixedCorner"));
    setMouseTracking(true);
  }
  void setCaption(const QString& caption) {
    m_caption = caption;
    update();
  }
  [[nodiscard]] QString caption() const { return m_caption; }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    m_view.m_horizontal->paintCell(painter, rect(), -1, m_caption);
  }
  void mousePressEvent(QMouseEvent* event) override {
    if (event->button() != Qt::LeftButton) return event->ignore();
    const int x = event->position().toPoint().x();
    if (isHandle(x))
      m_dragOffset = width() - x;
    else
      m_view.selectAll();
  }
  void mouseMoveEvent(QMouseEvent* event) override {
    const int x = event->position().toPoint().x();
    if (m_dragOffset >= 0)
      m_view.setColumnPixels(0, std::max(kSmallestColumn, x + m_dragOffset));
    else
      setCursor(isHandle(x) ? Qt::SplitHCursor : Qt::ArrowCursor);
  }
  void mouseReleaseEvent(QMouseEvent*) override { m_dragOffset = -1; }
  void mouseDoubleClickEvent(QMouseEvent* event) override {
    if (event->button() == Qt::LeftButton) m_view.fitColumns(0, 0);
  }

 private:
  [[nodiscard]] bool isHandle(int x) const {
    return x >= width() - style()->pixelMetric(QStyle::PM_HeaderGripMargin, nullptr, this);
  }

  TableView& m_view;
  QString m_caption;
  int m_dragOffset = -1;  ///< from the pointer to the right edge; -1 while nothing is dragged
};

TableView::TableView(QWidget* parent)
    : QTableView(parent),
      m_horizontal(new Header(Qt::Horizontal, *this)),
      m_vertical(new Header(Qt::Vertical, *this)),
      m_corner(new Corner(*this)) {
  setObjectName(QStringLiteral("MSFlexGrid1"));
  setHorizontalHeader(m_horizontal);
  setVerticalHeader(m_vertical);
  setCornerButtonEnabled(false);
  setItemDelegate(new CellDelegate(*this));
  setEditTriggers(NoEditTriggers);
  setSelectionMode(ContiguousSelection);
  setSelectionBehavior(SelectItems);
  setWordWrap(false);
  setHorizontalScrollMode(ScrollPerPixel);
  setVerticalScrollMode(ScrollPerPixel);
  setColumnTwips(0, kOriginalColumnWidth);
  scaleToFont();

  disconnect(m_horizontal, &QHeaderView::sectionHandleDoubleClicked, this, nullptr);
  connect(m_horizontal, &QHeaderView::sectionHandleDoubleClicked, this, &TableView::fitAfterDoubleClick);
  connect(m_horizontal, &QHeaderView::sectionDoubleClicked, this, &TableView::fitAfterDoubleClick);
  QScrollBar* const bar = verticalScrollBar();
  connect(bar, &QScrollBar::valueChanged, this,
          [this, bar](int value) { m_atBottom = value >= bar->maximum(); });
  connect(bar, &QScrollBar::rangeChanged, this, [this, bar](int, int maximum) {
    // The window has become lower: keep the bottom row in sight.
    if (m_followsGrowth && m_atBottom && model() && currentIndex().row() == model()->rowCount() - 1)
      bar->setValue(maximum);
  });
}

void TableView::setFixedCaption(const QString& caption) {
  m_corner->setCaption(caption);
}

QString TableView::fixedCaption() const {
  return m_corner->caption();
}

void TableView::setModel(QAbstractItemModel* model) {
  QTableView::setModel(model);
  for (int column = 0; model && column < model->columnCount(); ++column)
    setColumnTwips(column + 1, kOriginalColumnWidth);
}

int TableView::standardRowHeight() const {
  return fontMetrics().lineSpacing() * 3 / 2 + 2;
}

void TableView::scaleToFont() {
  m_vertical->setDefaultSectionSize(standardRowHeight());
  m_horizontal->setThickness(2 * standardRowHeight());
}

int TableView::columnPixels(int gridColumn) const {
  return gridColumn == 0 ? m_vertical->minimumWidth() : columnWidth(gridColumn - 1);
}

void TableView::setColumnPixels(int gridColumn, int pixels) {
  if (gridColumn == 0) {
    m_vertical->setThickness(pixels);
    updateGeometries();
  } else {
    setColumnWidth(gridColumn - 1, pixels);
  }
}

int TableView::columnTwips(int gridColumn) const {
  const int pixels = columnPixels(gridColumn);
  const auto i = static_cast<std::size_t>(gridColumn);
  if (i < m_twips.size() && pixelsOfTwips(m_twips[i], logicalDpiX()) == pixels) return m_twips[i];
  return twipsOfPixels(pixels, logicalDpiX());
}

void TableView::setColumnTwips(int gridColumn, int twips) {
  if (twips <= 0) twips = kOriginalColumnWidth;  // a column that can not be seen can not be dragged either
  twips = std::min(twips, twipsOfPixels(kWidestColumn - 1, logicalDpiX()));
  const auto i = static_cast<std::size_t>(gridColumn);
  if (m_twips.size() <= i) m_twips.resize(i + 1, kOriginalColumnWidth);
  m_twips[i] = twips;
  setColumnPixels(gridColumn, pixelsOfTwips(twips, logicalDpiX()));
}

namespace {
std::string widthKey(const QString& tag, int gridColumn) {
  const QString name = gridColumn == 0 ? QStringLiteral("FixedColWidth") : QStringLiteral("ColWidth");
  return (tag + name).toStdString() + base::plainText(gridColumn);
}
}  // namespace

void TableView::readColumnWidths(const base::ProfileFile& settings, const QString& section,
                                 const QString& tag) {
  for (int column = 0; column <= model()->columnCount(); ++column)
    setColumnTwips(
        column, settings.ProfileGetInt(section.toStdString(), widthKey(tag, column), kOriginalColumnWidth));
}

void TableView::writeColumnWidths(base::ProfileFile& settings, const QString& section,
                                  const QString& tag) const {
  for (int column = 0; column <= model()->columnCount(); ++column)
    settings.ProfileWrite(section.toStdString(), widthKey(tag, column), base::plainText(columnTwips(column)));
}

CellRange TableView::bounds() const {
  CellRange range;
  if (!selectionModel()) return range;
  for (const QItemSelectionRange& part : selectionModel()->selection()) {
    if (!part.isValid()) continue;
    if (range.Row < 0) {
      range = {part.top(), part.left(), part.bottom(), part.right()};
    } else {
      range = {std::min(range.Row, part.top()), std::min(range.Col, part.left()),
               std::max(range.RowSel, part.bottom()), std::max(range.ColSel, part.right())};
    }
  }
  const QModelIndex current = currentIndex();
  if (range.Row < 0 && current.isValid())
    range = {current.row(), current.column(), current.row(), current.column()};
  return range;
}

CellRange TableView::cells() const {
  CellRange range = bounds();
  if (m_anchor.isValid()) {
    if (m_anchor.row() == range.RowSel) std::swap(range.Row, range.RowSel);
    if (m_anchor.column() == range.ColSel) std::swap(range.Col, range.ColSel);
  }
  return range;
}

void TableView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  const CellRange range = bounds();
  const auto isCorner = [&](const QModelIndex& cell) {
    return cell.isValid() && (cell.row() == range.Row || cell.row() == range.RowSel) &&
           (cell.column() == range.Col || cell.column() == range.ColSel);
  };
  if (range.Row >= 0 && (range.isOneCell() || !isCorner(m_anchor))) {
    // Not drawn out from the anchor.
    m_anchor = model()->index(range.Row, range.Col);
  }
  QTableView::selectionChanged(selected, deselected);
}

void TableView::selectCells(const CellRange& cells) {
  const QModelIndex current = model()->index(cells.Row, cells.Col);
  if (!current.isValid()) return;
  m_anchor = current;
  const bool scrolls = hasAutoScroll();
  setAutoScroll(false);
  selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
  selectionModel()->select(QItemSelection(model()->index(cells.top(), cells.left()),
                                          model()->index(cells.bottom(), cells.right())),
                           QItemSelectionModel::ClearAndSelect);
  setAutoScroll(scrolls);
}

void TableView::selectAll() {
  if (model()) selectCells({0, 0, model()->rowCount() - 1, model()->columnCount() - 1});
}

QString TableView::selectionText() const {
  const CellRange range = cells();
  QString text;
  if (range.Row < 0) return text;
  for (int row = range.top(); row <= range.bottom(); ++row) {
    if (row != range.top()) text += QLatin1String("\r\n");
    for (int column = range.left(); column <= range.right(); ++column) {
      if (column != range.left()) text += QLatin1Char('\t');
      text += model()->index(row, column).data().toString();
    }
  }
  return text;
}

void TableView::copySelection() const {
  QGuiApplication::clipboard()->setText(selectionText());
}

void TableView::resetSelectedColumnWidths() {
  const CellRange range = cells();
  for (int column = range.left(); column >= 0 && column <= range.right(); ++column)
    setColumnTwips(column + 1, kOriginalColumnWidth);
}

int TableView::fittingWidth(int gridColumn) const {
  const QFontMetricsF metrics(font());
  const int column = gridColumn - 1;
  const int margins = 2 * std::max(cellMargin(*this), kHeaderMargin) + 1;
  const qreal blanks = 2 * metrics.horizontalAdvance(QLatin1Char(' '));
  qreal widest = 1;
  std::array<qreal, 128> advances{};
  for (std::size_t c = 0; c < advances.size(); ++c)
    advances[c] = metrics.horizontalAdvance(QLatin1Char(static_cast<char>(c)));
  const auto measure = [&](const QString& text) {
    // Most texts of a long table are seen to be narrower from their characters alone, which is much faster.
    qreal sum = 0;
    for (const QChar c : text) sum += c.unicode() < advances.size() ? advances[c.unicode()] : kWidestColumn;
    if (sum > widest) widest = std::max(widest, metrics.horizontalAdvance(text));
  };
  measure(gridColumn == 0 ? fixedCaption()
                          : model()->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString());
  for (int row = 0; row < model()->rowCount(); ++row)
    measure(gridColumn == 0 ? model()->headerData(row, Qt::Vertical, Qt::DisplayRole).toString()
                            : model()->index(row, column).data().toString());
  return static_cast<int>(std::ceil(widest + std::max<qreal>(blanks, margins)));
}

void TableView::fitColumns(int firstGridColumn, int lastGridColumn) {
  if (!model()) return;
  QGuiApplication::setOverrideCursor(Qt::WaitCursor);
  for (int column = firstGridColumn; column <= lastGridColumn; ++column)
    setColumnPixels(column, fittingWidth(column));
  QGuiApplication::restoreOverrideCursor();
}

void TableView::fitAfterDoubleClick(int column) {
  // The first click of the two has selected this column whole; what was selected before it counts.
  CellRange range = m_beforePress;
  if (range.ColSel != column) range = {range.Row, column, range.Row, column};
  if (m_pressedAtBottom)
    goToBottom(column);
  else
    selectCells(range);
  fitColumns(range.left() + 1, range.right() + 1);
}

void TableView::moveCurrentTo(int row, int column) {
  if (row < 0 || column < 0 || row >= model()->rowCount() || column >= model()->columnCount()) return;
  setCurrentIndex(model()->index(row, column));
}

void TableView::keyPressEvent(QKeyEvent* event) {
  if (!model()) return QTableView::keyPressEvent(event);
  const CellRange range = cells();
  const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
  const bool plain = modifiers == Qt::NoModifier;
  if (plain && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
    moveCurrentTo(range.Row + 1, range.Col);
  } else if (plain && event->key() == Qt::Key_Tab) {
    moveCurrentTo(range.Row, range.Col + 1);
  } else if (event->key() == Qt::Key_Backtab) {
    moveCurrentTo(range.Row, range.Col - 1);
  } else if (modifiers == Qt::ControlModifier && event->key() == Qt::Key_Insert) {
    copySelection();
    emit copiedByKeyboard();
  } else if (event->matches(QKeySequence::Copy)) {
    copySelection();
  } else {
    QTableView::keyPressEvent(event);
    return;
  }
  event->accept();
}

bool TableView::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride) {
    // Ctrl+Insert is more than the menu's Copy.
    auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Insert && key->modifiers() == Qt::ControlModifier) {
      event->accept();
      return true;
    }
  }
  return QTableView::event(event);
}

bool TableView::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto* help = static_cast<QHelpEvent*>(event);
    const QModelIndex index = indexAt(help->pos());
    const QString text = index.data().toString();
    const QRect rect = visualRect(index);
    const bool cut = widthOf(text, font()) > rect.width() - 2 * cellMargin(*this);
    QToolTip::showText(help->globalPos(), cut ? text : QString(), viewport(), rect);
    return true;
  }
  return QTableView::viewportEvent(event);
}

void TableView::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) scaleToFont();
}

void TableView::updateGeometries() {
  QTableView::updateGeometries();
  const QRect row = m_horizontal->geometry();
  const QRect column = m_vertical->geometry();
  m_corner->setGeometry(column.left(), row.top(), column.width(), row.height());
  m_corner->raise();
}

bool TableView::isFollowing(int bottomRow) const {
  const CellRange range = cells();
  return m_followsGrowth && range.isOneCell() && range.Row == bottomRow;
}

void TableView::goToBottom(int column) {
  const bool goesAlong = m_atBottom;
  const int bottom = model()->rowCount() - 1;
  selectCells({bottom, column, bottom, column});
  if (!goesAlong) return;
  updateGeometries();
  verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

void TableView::rowsInserted(const QModelIndex& parent, int start, int end) {
  const bool follows = isFollowing(start - 1) && end == model()->rowCount() - 1;
  QTableView::rowsInserted(parent, start, end);
  if (follows) goToBottom(cells().Col);
}

}  // namespace torvik::widgets
