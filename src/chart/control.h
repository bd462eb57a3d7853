// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QPoint>
#include <QString>
#include <QWidget>
#include <memory>
#include <span>
#include <string>

#include "chart/scale.h"

class QPainter;
class QRectF;

namespace torvik::chart {

/// Pen and marker numbers as the chart rules give them.
enum class PenStyle { None = 0, Solid = 1, Dotted = 3 };
enum class MarkerStyle {
  Circle = 9,
  Square = 10,
  Diamond = 11,
  UpTriangle = 12,
  DownTriangle = 13,
  None = 15
};

/// What a point is called in the read-out.
enum class PointName {
  Series,        ///< the name of the series
  SeriesAndRow,  ///< name and row, "Bar 2"
};

/// The axes of a chart, and their order.
inline constexpr int kAxisX = 0;
inline constexpr int kAxisY = 1;

/// An XY chart over a matrix of `RowCount` rows and `ColumnCount` columns, both counted from 1. Columns 1 and
/// 2 are x and y of the first series, 3 and 4 of the second; a series is addressed by its first column.
/// Points of a line are joined in the order of the rows; a row of which x or y was never written draws
/// nothing and breaks the line. Zooming and panning is a passing view that leaves the scales as they are.
///
/// Data are taken at once, the picture follows at most once a frame, and not at all while nobody can see it.
/// A row, column, series or axis that is not there raises InternalError 51.
class ChartControl : public QWidget {
  Q_OBJECT

 public:
  explicit ChartControl(QWidget* parent = nullptr);
  ~ChartControl() override;

  /// No rows, columns, series, titles or view; scales automatic; axis and grid pens of the common look.
  void clear();

  [[nodiscard]] int RowCount() const;
  [[nodiscard]] int ColumnCount() const;
  /// Fewer rows or columns drop what they hold, more bring empty ones.
  void setRowCount(int count);
  /// Columns in pairs; a lone last column holds data and draws nothing.
  void setColumnCount(int count);

  /// Plain text of a cell, empty where nothing was written.
  [[nodiscard]] std::string Data(int row, int column) const;
  void setData(int row, int column, double value);
  /// Rows from 1 of the pair of columns; rows behind them stay. Both spans have one length, at most
  /// `RowCount`.
  void setPair(int firstColumn, std::span<const double> x, std::span<const double> y);
  /// Writes the last row of columns 1 and 2 and adds a row behind it.
  void appendPoint(double x, double y);

  void setAxisTitle(int axis, const QString& title);
  [[nodiscard]] QString axisTitle(int axis) const;
  void setAxisPen(int axis, PenStyle style);
  void setGridPen(int axis, PenStyle style);
  /// One scale for both axes, so that the picture is to scale.
  void setUniformAxis(bool on);
  [[nodiscard]] bool UniformAxis() const;

  /// With `Auto` on the limits are those that are drawn for the data and the size at hand.
  [[nodiscard]] ValueScale valueScale(int axis) const;
  /// With `Auto` off each value that can not be taken is skipped and the one before stays: a `MajorDivision`
  /// outside 1 to 20; a limit that is no number, or limits that leave the axis no extent. Ends the passing
  /// view.
  /// @return whether all was taken
  bool setValueScale(int axis, const ValueScale& scale);

  /// @param colour  an invalid one stands for an automatic colour
  void setLineSeries(int firstColumn, PenStyle style, const QColor& colour);
  /// A solid line round rectangles: thinner where their sides come close to one another.
  void setOutlineSeries(int firstColumn, const QColor& colour);
  /// Marks that overlap stand off against one another, until they are too many for that.
  /// @param size  height and width of a mark, in pixels
  void setMarkerSeries(int firstColumn, MarkerStyle style, int size, const QColor& colour);
  void setSeriesName(int firstColumn, const QString& name, PointName pointName);
  /// Height of a round mark in the window's font, in pixels: the size of markers.
  [[nodiscard]] int markHeight() const;

  /// Draws what is waiting to be drawn.
  void flushNow();
  [[nodiscard]] bool hasPassingView() const;
  /// What an axis shows at present, the passing view included.
  [[nodiscard]] Interval shownInterval(int axis) const;
  /// Place of a point in the widget.
  [[nodiscard]] QPointF pixelOf(double x, double y) const;
  /// The read-out beside the pointer, empty while there is none.
  [[nodiscard]] QString readOut() const;

  /// Paints the chart into a rectangle of any device, with texts and pens as large as on the screen.
  void paint(QPainter& painter, const QRectF& target);
  /// The chart at twice the pixels of its size on the screen.
  [[nodiscard]] QImage picture();
  [[nodiscard]] QByteArray png();
  [[nodiscard]] QByteArray svg(const QString& title);
  [[nodiscard]] QByteArray pdf(const QString& title);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 public slots:
  /// Back from the passing view to what the scales say.
  void resetView();

 signals:
  void doubleClicked();
  void menuRequested(const QPoint& globalPosition);
  /// The passing view has begun or ended.
  void passingViewChanged(bool on);

 protected:
  void changeEvent(QEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  class Impl;
  std::unique_ptr<Impl> m_impl;
};

}  // namespace torvik::chart
