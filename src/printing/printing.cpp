// SPDX-License-Identifier: GPL-3.0-or-later
#include "printing/printing.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPrinter>
#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "chart/control.h"
#include "widgets/table_view.h"

namespace torvik::printing {

namespace {

constexpr const char* kSection = "Printer";
constexpr double kFontSize = 8;          // points
constexpr double kCellMargin = 0.35;     // of the line height, on either side of a text
constexpr double kHeightToWidth = 0.75;  // of a chart that is lower than its page
constexpr int kLongestHeaderWord = 12;

/// Both on every page: the caption at its top, footer and number at its bottom.
class Pages {
 public:
  Pages(QPagedPaintDevice& device, const QString& caption, const QString& footer)
      : m_device(device), m_painter(&device), m_caption(caption), m_footer(footer) {
    if (!m_painter.isActive()) return;
    QFont font;
    font.setPointSizeF(kFontSize);
    m_painter.setFont(font);
  }
  [[nodiscard]] bool isUsable() const { return m_painter.isActive(); }
  QPainter& painter() { return m_painter; }
  [[nodiscard]] double lineHeight() const {
    return QFontMetricsF(m_painter.font(), m_painter.device()).height();
  }
  /// Between caption and footer.
  [[nodiscard]] QRectF room() const {
    const QRectF page(0, 0, m_device.pageLayout().paintRectPixels(m_device.logicalDpiX()).width(),
                      m_device.pageLayout().paintRectPixels(m_device.logicalDpiY()).height());
    return page.adjusted(0, 2 * lineHeight(), 0, -2 * lineHeight());
  }
  void begin() {
    if (m_count > 0) m_device.newPage();
    ++m_count;
    const QRectF inner = room();
    const QRectF top(inner.left(), 0, inner.width(), lineHeight());
    const QRectF bottom(inner.left(), inner.bottom() + lineHeight(), inner.width(), lineHeight());
    m_painter.setPen(Qt::black);
    m_painter.drawText(top, Qt::AlignLeft | Qt::AlignTop, m_caption);
    m_painter.drawText(bottom, Qt::AlignLeft | Qt::AlignBottom, m_footer);
    m_painter.drawText(bottom, Qt::AlignRight | Qt::AlignBottom, QString::number(m_count));
  }
  [[nodiscard]] int count() const { return m_count; }

 private:
  QPagedPaintDevice& m_device;
  QPainter m_painter;
  QString m_caption;
  QString m_footer;
  int m_count = 0;
};

void printChart(Pages& pages, chart::ChartControl& chart) {
  pages.begin();
  QRectF target = pages.room();
  target.setHeight(std::min(target.height(), target.width() * kHeightToWidth));
  chart.paint(pages.painter(), target);
}

/// A table on paper; column 0 is the fixed one.
class TablePrint {
 public:
  TablePrint(Pages& pages, const widgets::TableView& view)
      : m_pages(pages),
        m_view(view),
        m_model(*view.model()),
        m_rowHeight(pages.lineHeight() * (1 + kCellMargin)) {
    measure();
  }

  void print() {
    const QRectF room = m_pages.room();
    const int rows = std::max(1, static_cast<int>((room.height() - m_headerHeight) / m_rowHeight));
    const std::vector<std::pair<int, int>> bands = columnBands(room.width());
    int first = 0;
    do {
      const int last = std::min(first + rows, lastRow());
      for (const auto& [left, right] : bands) printPage(room, first, last, left, right);
      first = last;
    } while (first < lastRow());
  }

 private:
  [[nodiscard]] QString header(int column) const {
    return column == 0 ? m_view.fixedCaption()
                       : m_model.headerData(column - 1, Qt::Horizontal, Qt::DisplayRole).toString();
  }
  [[nodiscard]] QString cell(int row, int column) const {
    return column == 0 ? m_model.headerData(row, Qt::Vertical, Qt::DisplayRole).toString()
                       : m_model.index(row, column - 1).data().toString();
  }
  /// One behind the last row with a text in it: the blank end of a grid takes no paper.
  [[nodiscard]] int lastRow() const { return m_lastRow; }

  void measure() {
    const QFontMetricsF metrics(m_pages.painter().font(), m_pages.painter().device());
    const double margin = 2 * kCellMargin * m_pages.lineHeight();
    m_widths.assign(static_cast<std::size_t>(m_model.columnCount() + 1), 0);
    for (int row = 0; row < m_model.rowCount(); ++row)
      for (int column = 0; column <= m_model.columnCount(); ++column) {
        const QString text = cell(row, column);
        if (column > 0 && !text.isEmpty()) m_lastRow = row + 1;
        double& width = m_widths[static_cast<std::size_t>(column)];
        width = std::max(width, metrics.horizontalAdvance(text) + margin);
      }
    const double headerWord = metrics.horizontalAdvance(QString(kLongestHeaderWord, 'x'));
    m_headerHeight = m_rowHeight;
    for (int column = 0; column <= m_model.columnCount(); ++column) {
      double& width = m_widths[static_cast<std::size_t>(column)];
      for (const QString& word : header(column).split(' '))
        width = std::max(width, std::min(metrics.horizontalAdvance(word), headerWord) + margin);
      const QRectF wrapped = metrics.boundingRect(QRectF(0, 0, width - margin, 1e6),
                                                  Qt::TextWordWrap | Qt::AlignHCenter, header(column));
      m_headerHeight = std::max(m_headerHeight, wrapped.height() + kCellMargin * m_pages.lineHeight());
    }
  }

  /// First and one behind the last column of each page's width, at least one.
  [[nodiscard]] std::vector<std::pair<int, int>> columnBands(double width) const {
    std::vector<std::pair<int, int>> bands;
    const int columns = m_model.columnCount() + 1;
    for (int left = 1; left < columns;) {
      double used = m_widths[0] + m_widths[static_cast<std::size_t>(left)];
      int right = left + 1;
      while (right < columns && used + m_widths[static_cast<std::size_t>(right)] <= width)
        used += m_widths[static_cast<std::size_t>(right++)];
      bands.emplace_back(left, right);
      left = right;
    }
    return bands;
  }

  void printPage(const QRectF& room, int firstRow, int lastRow, int left, int right) {
    m_pages.begin();
    double x = room.left();
    std::vector<int> columns = {0};
    for (int column = left; column < right; ++column) columns.push_back(column);
    for (const int column : columns) {
      const double width = std::min(m_widths[static_cast<std::size_t>(column)], room.right() - x);
      drawCell(QRectF(x, room.top(), width, m_headerHeight), header(column), true);
      for (int row = firstRow; row < lastRow; ++row)
        drawCell(QRectF(x, room.top() + m_headerHeight + (row - firstRow) * m_rowHeight, width, m_rowHeight),
                 cell(row, column), column == 0);
      x += width;
    }
  }

  void drawCell(const QRectF& rect, const QString& text, bool fixed) {
    QPainter& painter = m_pages.painter();
    painter.fillRect(rect, fixed ? QColor(235, 235, 235) : QColor(Qt::white));
    painter.setPen(QPen(QColor(150, 150, 150), 0));
    painter.drawRect(rect);
    painter.setPen(Qt::black);
    const double margin = kCellMargin * m_pages.lineHeight();
    painter.drawText(rect.adjusted(margin, 0, -margin, 0),
                     Qt::AlignVCenter | (fixed ? Qt::AlignHCenter | Qt::TextWordWrap : Qt::AlignLeft), text);
  }

  Pages& m_pages;
  const widgets::TableView& m_view;
  const QAbstractItemModel& m_model;
  double m_rowHeight;
  double m_headerHeight = 0;
  int m_lastRow = 0;
  std::vector<double> m_widths;
};

}  // namespace

int print(const views::ChildWindow& child, QPagedPaintDevice& device, const QString& footer) {
  auto* const chart = child.findChild<chart::ChartControl*>();
  auto* const table = child.findChild<widgets::TableView*>();
  if (!chart && !table) return 0;
  Pages pages(device, child.windowTitle(), footer);
  if (!pages.isUsable()) return 0;
  if (chart)
    printChart(pages, *chart);
  else
    TablePrint(pages, *table).print();
  return pages.count();
}

void readPrinter(QPrinter& printer, const base::ProfileFile& settings) {
  const std::string size = settings.ProfileGetString(kSection, "PageSize", "");
  for (int id = 0; id <= QPageSize::LastPageSize; ++id) {
    const QPageSize candidate(static_cast<QPageSize::PageSizeId>(id));
    if (candidate.key().toStdString() == size) printer.setPageSize(candidate);
  }
  const int orientation = settings.ProfileGetInt(kSection, "Orientation", 0);
  if (orientation == 1) printer.setPageOrientation(QPageLayout::Portrait);
  if (orientation == 2) printer.setPageOrientation(QPageLayout::Landscape);
}

void writePrinter(const QPrinter& printer, base::ProfileFile& settings) {
  const QPageLayout layout = printer.pageLayout();
  settings.ProfileWrite(kSection, "PageSize", layout.pageSize().key().toStdString());
  settings.ProfileWrite(kSection, "Orientation", layout.orientation() == QPageLayout::Landscape ? "2" : "1");
}

}  // namespace torvik::printing
