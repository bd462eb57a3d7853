// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPainter>
#include <QTemporaryDir>
#include <QWheelEvent>
#include <QtTest/QtTest>
#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "analysis/models.h"
#include "base/errors.h"
#include "base/number_text.h"
#include "views/chart_control.h"
#include "views/chart_window.h"
#include "views/fake_shell.h"

namespace torvik::views {
namespace {

using Points = std::vector<std::pair<std::string, std::string>>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
const QColor kBlue(0, 0, 255);

bool raises51(const std::function<void()>& call) {
  try {
    call();
  } catch (const base::InternalError& error) {
    return error.number() == 51;
  }
  return false;
}

constexpr int numberOf(ChartKind kind) {
  return static_cast<int>(kind);
}

/// Cells of a pair of columns, all rows.
Points pointsOf(const ChartControl& chart, int firstColumn = 1) {
  Points points;
  for (int row = 1; row <= chart.RowCount(); ++row)
    points.emplace_back(chart.Data(row, firstColumn), chart.Data(row, firstColumn + 1));
  return points;
}

/// A chart on its own, with limits that put numbers on known places.
std::unique_ptr<ChartControl> shownChart(const QSize& size = {400, 300}) {
  auto chart = std::make_unique<ChartControl>();
  chart->setColumnCount(2);
  chart->setLineSeries(1, PenStyle::Solid, kBlue);
  chart->resize(size);
  chart->show();
  return chart;
}

void setPoints(ChartControl& chart, const std::vector<double>& x, const std::vector<double>& y) {
  chart.setRowCount(static_cast<int>(x.size()));
  chart.setPair(1, x, y);
}

void setLimits(ChartControl& chart, double lower, double upper) {
  for (const int axis : {kAxisX, kAxisY}) EXPECT_TRUE(chart.setValueScale(axis, {false, lower, upper, 4}));
}

/// Whether the screen has a colour within a pixel of the place of a point.
bool shows(ChartControl& chart, const QColor& colour, double x, double y) {
  chart.flushNow();
  const QImage image = chart.grab().toImage();
  const QPoint place = chart.pixelOf(x, y).toPoint();
  for (int dx = -1; dx <= 1; ++dx)
    for (int dy = -1; dy <= 1; ++dy)
      if (image.rect().contains(place + QPoint(dx, dy)) && image.pixelColor(place + QPoint(dx, dy)) == colour)
        return true;
  return false;
}

void turnWheel(ChartControl& chart, const QPointF& place, int angle) {
  QWheelEvent event(place, chart.mapToGlobal(place), QPoint(), QPoint(0, angle), Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  QApplication::sendEvent(&chart, &event);
  chart.flushNow();
}

void moveMouse(ChartControl& chart, const QPointF& place, Qt::MouseButtons buttons = Qt::NoButton) {
  QMouseEvent event(QEvent::MouseMove, place, chart.mapToGlobal(place), Qt::NoButton, buttons,
                    Qt::NoModifier);
  QApplication::sendEvent(&chart, &event);
}

/// Corners of the longest line of an SVG file.
qsizetype mostCorners(const QByteArray& svg) {
  qsizetype most = 0;
  for (const QByteArray& line : svg.split('\n'))
    if (line.startsWith("<polyline")) most = std::max(most, line.count(','));
  return most;
}

/// Line segments in the packed contents of a PDF file.
qsizetype linesOf(const QByteArray& pdf) {
  qsizetype lines = 0;
  for (qsizetype at = 0; (at = pdf.indexOf("stream\n", at)) >= 0; ++at) {
    const QByteArray content = pdf.mid(at + 7, pdf.indexOf("endstream", at) - at - 7);
    lines += qUncompress(QByteArray(4, '\1') + content).count(" l\n");
  }
  return lines;
}

/// Counts what the screen is asked to paint of a chart.
class PaintCount : public QObject {
 public:
  explicit PaintCount(ChartControl& chart) {
    for (QWidget* child : chart.findChildren<QWidget*>()) child->installEventFilter(this);
  }
  int count = 0;

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++count;
    return false;
  }
};

TEST(ChartScale, automatic_limits_lie_on_round_steps) {
  struct Case {
    const char* name;
    Interval data;
    int most;
    Interval limits;
    int divisions;
  };
  for (const Case& c : std::initializer_list<Case>{
           {"from zero", {0, 179.3}, 10, {0, 180}, 9},
           {"on a step already, missed by rounding", {0, 0.1 + 0.2 + 0.4}, 10, {0, 0.7}, 7},
           {"both signs", {-130, 30}, 5, {-150, 50}, 4},
           {"both signs, hardly room", {-130, 30}, 1, {-200, 200}, 2},
           {"below zero", {-0.0045, -0.0012}, 4, {-0.005, -0.001}, 4},
           {"small", {0, 6.1e-5}, 10, {0, 7e-5}, 7},
           {"far from zero", {1000.1, 1000.9}, 10, {1000.1, 1000.9}, 8},
           {"one value", {30, 30}, 10, {0, 30}, 6},
           {"one value below zero", {-7, -7}, 10, {-7, 0}, 7},
           {"all zero", {0, 0}, 10, {-1, 1}, 10},
           {"too close together to tell apart", {1e6, 1e6 + 1e-7}, 10, {0, 1e6}, 10},
       }) {
    const SteppedLimits limits =
        automaticLimits(widened(c.data), c.most, [](const SteppedLimits&) { return true; });
    EXPECT_EQ(limits.interval().lower, c.limits.lower) << c.name;
    EXPECT_EQ(limits.interval().upper, c.limits.upper) << c.name;
    EXPECT_EQ(limits.divisions(), c.divisions) << c.name;
  }
}

TEST(ChartScale, texts_of_an_axis) {
  struct Case {
    double value;
    double division;
    double largest;
    const char* text;
  };
  for (const Case& c : std::initializer_list<Case>{
           {0, 0.1, 1, "0"},
           {-1e-17, 0.1, 1, "0"},
           {0.1 + 0.2, 0.1, 1, "0.3"},
           {-2.5, 0.5, 3, "-2.5"},
           {1.0 / 3, 1.0 / 3, 1, "0.333"},
           {250000, 50000, 250000, "250000"},
           {0.002, 0.001, 0.005, "0.002"},
           {20000000, 5000000, 25000000, "2×10⁷"},
           {500000, 500000, 2500000, "0.5×10⁶"},
           {-5e-5, 1e-5, 6e-5, "-5×10⁻⁵"},
           {1e-11, 1e-11, 2e-11, "1×10⁻¹¹"},
       })
    EXPECT_EQ(axisText(c.value, c.division, c.largest), c.text) << c.value;
}

TEST(ChartControl, cells_keep_what_was_written_and_nothing_else) {
  ChartControl chart;
  EXPECT_EQ(chart.objectName(), "MSChart1");
  chart.setColumnCount(4);
  chart.setRowCount(3);
  chart.setData(2, 3, 0.1 + 0.2);
  chart.setData(2, 4, -0.0);
  chart.setPair(1, std::vector<double>{1e15, 1e-5}, std::vector<double>{0, 1});
  EXPECT_EQ(pointsOf(chart, 3), (Points{{"", ""}, {"0.3", "0"}, {"", ""}}));
  EXPECT_EQ(pointsOf(chart, 1), (Points{{"1E+15", "0"}, {"1E-05", "1"}, {"", ""}}));

  chart.setRowCount(1);
  chart.setRowCount(2);
  EXPECT_EQ(pointsOf(chart, 3), (Points{{"", ""}, {"", ""}}));
  chart.setColumnCount(2);
  chart.setColumnCount(4);
  chart.setRowCount(1);
  EXPECT_EQ(pointsOf(chart, 1), (Points{{"1E+15", "0"}}));

  const std::vector<double> two = {1, 2};
  const std::vector<std::pair<const char*, std::function<void()>>> impossible = {
      {"row 0", [&] { chart.setData(0, 1, 1); }},
      {"row behind the last", [&] { chart.setData(2, 1, 1); }},
      {"column 0", [&] { (void)chart.Data(1, 0); }},
      {"column behind the last", [&] { (void)chart.Data(1, 5); }},
      {"more points than rows", [&] { chart.setPair(1, two, two); }},
      {"a series at a second column", [&] { chart.setLineSeries(2, PenStyle::Solid, kBlue); }},
      {"a series behind the last", [&] { chart.setLineSeries(5, PenStyle::Solid, kBlue); }},
      {"axis 2", [&] { chart.setAxisTitle(2, "z"); }},
      {"negative rows", [&] { chart.setRowCount(-1); }},
  };
  for (const auto& [name, call] : impossible) EXPECT_TRUE(raises51(call)) << name;
}

TEST(ChartControl, joins_points_in_the_order_of_rows_and_breaks_at_unwritten_ones) {
  const auto chart = shownChart();
  setLimits(*chart, 0, 4);
  setPoints(*chart, {3.3, 0.3, 3.3}, {0.3, 2.3, 3.3});  // turns back: no function of x
  EXPECT_TRUE(shows(*chart, kBlue, 1.8, 1.3));
  EXPECT_TRUE(shows(*chart, kBlue, 1.8, 2.8));
  EXPECT_FALSE(shows(*chart, kBlue, 3.3, 1.8));

  setPoints(*chart, {0.3, 3.3, 1.3}, {1.3, 1.3, 1.3});  // turns back on itself
  EXPECT_TRUE(shows(*chart, kBlue, 3.2, 1.3));

  setPoints(*chart, {0.3, 1.3, kNaN, 2.3, 3.3}, {0.3, 1.3, kNaN, 1.3, 0.3});
  EXPECT_TRUE(shows(*chart, kBlue, 0.8, 0.8));
  EXPECT_FALSE(shows(*chart, kBlue, 1.8, 1.3));
  EXPECT_TRUE(shows(*chart, kBlue, 2.8, 0.8));

  setPoints(*chart, {-900, 904}, {-901, 903});  // both ends far outside
  EXPECT_TRUE(shows(*chart, kBlue, 1.5, 0.5));
  EXPECT_FALSE(shows(*chart, kBlue, 1.5, 1.5));
}

TEST(ChartControl, thinning_leaves_no_corner_out) {
  // Some 33 points a pixel along the edge of a saw: what is left out must not show.
  const auto chart = shownChart();
  setLimits(*chart, 0, 4);
  std::vector<double> x;
  std::vector<double> y;
  for (int i = 0; i <= 10000; ++i) {
    x.push_back(i * 0.0004);
    y.push_back(2 + 1.5 * std::abs(std::remainder(x.back(), 1.0)) * (x.back() < 2 ? 1 : -1));
  }
  setPoints(*chart, x, y);
  for (const double at : {0.25, 0.5, 1.0, 1.5, 2.0, 2.5, 3.0, 3.25})
    EXPECT_TRUE(shows(*chart, kBlue, at, 2 + 1.5 * std::abs(std::remainder(at, 1.0)) * (at < 2 ? 1 : -1)))
        << at;
}

TEST(ChartControl, markers_have_their_shapes) {
  struct Case {
    MarkerStyle style;
    bool topLeft;
    bool top;
    bool bottomLeft;
    bool bottom;
    bool centre;
  };
  const QColor red(255, 0, 0);
  for (const Case& c : std::initializer_list<Case>{
           {MarkerStyle::Circle, false, true, false, true, true},
           {MarkerStyle::Square, true, true, true, true, true},
           {MarkerStyle::Diamond, false, true, false, true, true},
           {MarkerStyle::UpTriangle, false, true, true, true, true},
           {MarkerStyle::DownTriangle, true, true, false, true, true},
           {MarkerStyle::None, false, false, false, false, false},
       }) {
    const auto chart = shownChart();
    setLimits(*chart, -4, 4);
    setPoints(*chart, {0}, {0});
    chart->setMarkerSeries(1, c.style, 40, red);
    const QPointF centre = chart->pixelOf(0, 0);
    chart->flushNow();
    const QImage image = chart->grab().toImage();
    const auto has = [&](double dx, double dy) {
      return image.pixelColor((centre + QPointF(dx, dy)).toPoint()) == red;
    };
    const auto style = static_cast<int>(c.style);
    EXPECT_EQ(has(-17, -17), c.topLeft) << style;
    EXPECT_EQ(has(0, -16), c.top) << style;
    EXPECT_EQ(has(-17, 17), c.bottomLeft) << style;
    EXPECT_EQ(has(0, 16), c.bottom) << style;
    EXPECT_EQ(has(3, 3), c.centre) << style;
    EXPECT_FALSE(has(0, -23) || has(0, 23)) << style;
  }
}

TEST(ChartControl, automatic_scale_reports_what_is_drawn) {
  const auto chart = shownChart({600, 450});
  setPoints(*chart, {0, 58.7}, {-130, 30});
  const ValueScale x = chart->valueScale(kAxisX);
  const ValueScale y = chart->valueScale(kAxisY);
  EXPECT_TRUE(x.Auto && y.Auto);
  EXPECT_EQ(x.Minimum, 0);
  EXPECT_EQ(x.Maximum, 60);
  EXPECT_TRUE(y.Minimum <= -130 && y.Maximum >= 30);
  EXPECT_EQ(chart->shownInterval(kAxisY), (Interval{y.Minimum, y.Maximum}));
  EXPECT_TRUE(y.MajorDivision >= 1 && y.MajorDivision <= 20);

  // An invisible point counts; a number that no axis can place does not.
  setPoints(*chart, {0, 58.7, 1e300}, {-130, 30, 0});
  EXPECT_EQ(chart->valueScale(kAxisX).Maximum, 60);
  chart->setMarkerSeries(1, MarkerStyle::None, 10, kBlue);
  setPoints(*chart, {0, 81}, {-130, 30});
  EXPECT_EQ(chart->valueScale(kAxisX).Maximum, 90);
}

TEST(ChartControl, scale_takes_what_it_can) {
  const double infinity = std::numeric_limits<double>::infinity();
  struct Case {
    const char* name;
    ValueScale wanted;
    bool all;
    ValueScale taken;
  };
  for (const Case& c : std::initializer_list<Case>{
           {"all", {false, -5, 25, 3}, true, {false, -5, 25, 3}},
           {"bounds of the divisions", {false, 0, 1, 20}, true, {false, 0, 1, 20}},
           {"beyond both old limits", {false, 200, 300, 1}, true, {false, 200, 300, 1}},
           {"no minimum", {false, kNaN, 25, 3}, false, {false, 0, 25, 3}},
           {"no maximum", {false, -5, kNaN, 3}, false, {false, -5, 10, 3}},
           {"infinite", {false, -infinity, infinity, 3}, false, {false, 0, 10, 3}},
           {"upside down", {false, 25, -5, 3}, false, {false, 0, 10, 3}},
           {"no extent", {false, 7, 7, 3}, false, {false, 0, 10, 3}},
           {"next to no extent", {false, 7, std::nextafter(7, 8), 3}, false, {false, 0, 10, 3}},
           {"minimum above the old maximum alone", {false, 25, kNaN, 3}, false, {false, 0, 10, 3}},
           {"no division", {false, -5, 25, 0}, false, {false, -5, 25, 5}},
           {"too many divisions", {false, -5, 25, 21}, false, {false, -5, 25, 5}},
       }) {
    ChartControl chart;
    chart.setValueScale(kAxisX, {false, 0, 10, 5});
    EXPECT_EQ(chart.setValueScale(kAxisX, c.wanted), c.all) << c.name;
    const ValueScale scale = chart.valueScale(kAxisX);
    EXPECT_FALSE(scale.Auto) << c.name;
    EXPECT_EQ(scale.Minimum, c.taken.Minimum) << c.name;
    EXPECT_EQ(scale.Maximum, c.taken.Maximum) << c.name;
    EXPECT_EQ(scale.MajorDivision, c.taken.MajorDivision) << c.name;
    EXPECT_EQ(chart.shownInterval(kAxisX), (Interval{c.taken.Minimum, c.taken.Maximum})) << c.name;
    EXPECT_TRUE(chart.setValueScale(kAxisX, {true, kNaN, kNaN, 0})) << c.name;
    EXPECT_EQ(chart.valueScale(kAxisX).Maximum, 1) << c.name;  // no data
  }
}

TEST(ChartControl, uniform_axes_draw_to_scale_and_nothing_is_cut_off) {
  for (const QSize size :
       {QSize(350, 250), QSize(900, 300), QSize(300, 900), QSize(200, 140), QSize(160, 110)}) {
    for (const bool uniform : {true, false}) {
      for (const double width : {3.0, 400.0, 123456789.0}) {
        const auto chart = shownChart(size);
        chart->setUniformAxis(uniform);
        chart->setAxisTitle(kAxisX, "Compression Stress (Bar/Tendon x10)");
        chart->setAxisTitle(kAxisY, "Curvature (Micro/Length)");
        setPoints(*chart, {-width / 2, width / 2}, {0, -400});
        chart->flushNow();
        const QPointF unit = chart->pixelOf(100, -100) - chart->pixelOf(0, 0);
        if (uniform) {
          EXPECT_NEAR(unit.x(), unit.y(), 0.02 * unit.x() + 0.01) << size.width() << " " << width;
        }
        const QImage image = chart->grab().toImage();
        int touched = 0;
        for (int x = 0; x < image.width(); ++x)
          for (const int y : {0, image.height() - 1}) touched += image.pixelColor(x, y) != QColor(Qt::white);
        for (int y = 0; y < image.height(); ++y)
          for (const int x : {0, image.width() - 1}) touched += image.pixelColor(x, y) != QColor(Qt::white);
        EXPECT_EQ(touched, 0) << size.width() << " x " << size.height() << ", " << width << ", " << uniform;
      }
    }
  }
}

TEST(ChartControl, labels_of_many_divisions_do_not_run_into_each_other) {
  const auto chart = shownChart({300, 250});
  ASSERT_TRUE(chart->setValueScale(kAxisX, {false, 0, 200000, 20}));
  chart->flushNow();
  const QImage image = chart->grab().toImage();
  const int top = chart->pixelOf(0, 0).toPoint().y() + 7;
  int longest = 0;
  int begin = -1;
  int last = -100;
  for (int x = 0; x < image.width(); ++x) {
    bool ink = false;
    for (int y = top; y < image.height(); ++y) ink = ink || image.pixelColor(x, y) != QColor(Qt::white);
    if (!ink) continue;
    if (x - last > 5) begin = x;
    last = x;
    longest = std::max(longest, x - begin);
  }
  EXPECT_GT(longest, 10);
  EXPECT_LT(longest, 80);  // six digits
}

TEST(ChartControl, wheel_zooms_at_the_pointer_and_home_returns) {
  const auto chart = shownChart();
  setLimits(*chart, 0, 4);
  const QPointF pointer = chart->pixelOf(1, 3);
  const QPointF unit = chart->pixelOf(1, 0) - chart->pixelOf(0, 1);
  turnWheel(*chart, pointer, 240);
  EXPECT_TRUE(chart->hasPassingView());
  EXPECT_NEAR((chart->pixelOf(1, 0) - chart->pixelOf(0, 1)).x(), unit.x() / 0.64, 1e-6);
  EXPECT_NEAR((chart->pixelOf(1, 0) - chart->pixelOf(0, 1)).y(), unit.y() / 0.64, 1e-6);
  EXPECT_NEAR(chart->pixelOf(1, 3).x(), pointer.x(), 1e-6);
  EXPECT_NEAR(chart->pixelOf(1, 3).y(), pointer.y(), 1e-6);
  EXPECT_EQ(chart->valueScale(kAxisX).Maximum, 4);

  QTest::keyClick(chart.get(), Qt::Key_Home);
  EXPECT_FALSE(chart->hasPassingView());
  EXPECT_EQ(chart->shownInterval(kAxisX), (Interval{0, 4}));

  // Beside and below the plot only the axis there.
  turnWheel(*chart, {chart->pixelOf(1, 0).x(), chart->pixelOf(0, 0).y() + 20}, 120);
  EXPECT_LT(chart->shownInterval(kAxisX).size(), 4);
  EXPECT_EQ(chart->shownInterval(kAxisY), (Interval{0, 4}));
  // A new scale shows at once.
  chart->setValueScale(kAxisX, {false, 0, 8, 4});
  EXPECT_EQ(chart->shownInterval(kAxisX), (Interval{0, 8}));

  // There is an end to it.
  for (int i = 0; i < 1000; ++i) turnWheel(*chart, pointer, 1200);
  EXPECT_GT(chart->shownInterval(kAxisX).size(), 0);
  for (int i = 0; i < 1000; ++i) turnWheel(*chart, pointer, -12000);
  EXPECT_TRUE(std::isfinite(chart->shownInterval(kAxisX).size()));
}

TEST(ChartControl, left_drag_pans_and_new_points_leave_the_view_alone) {
  const auto chart = shownChart();
  setLimits(*chart, 0, 4);
  const QPoint from = chart->pixelOf(1, 1).toPoint();
  const QPoint to = chart->pixelOf(2, 1.5).toPoint();
  const QPointF unitBefore = chart->pixelOf(1, 0) - chart->pixelOf(0, 0);
  QTest::mousePress(chart.get(), Qt::LeftButton, Qt::NoModifier, from);
  moveMouse(*chart, from + QPoint(1, 1), Qt::LeftButton);
  EXPECT_FALSE(chart->hasPassingView());
  moveMouse(*chart, to, Qt::LeftButton);
  QTest::mouseRelease(chart.get(), Qt::LeftButton, Qt::NoModifier, to);
  chart->flushNow();
  const QPointF unit = chart->pixelOf(1, 0) - chart->pixelOf(0, 0);
  EXPECT_NEAR(chart->pixelOf(1, 1).x(), to.x(), 1);
  EXPECT_NEAR(chart->pixelOf(1, 1).y(), to.y(), 1);
  EXPECT_NEAR(unit.x(), unitBefore.x(), 1e-6);
  const Interval panned = chart->shownInterval(kAxisX);

  setPoints(*chart, {0, 1000}, {0, 1000});
  EXPECT_EQ(chart->shownInterval(kAxisX), panned);
}

TEST(ChartControl, double_click_does_not_pan) {
  const auto chart = shownChart();
  setLimits(*chart, 0, 4);
  const QPoint place = chart->pixelOf(2, 2).toPoint();
  QSignalSpy clicked(chart.get(), &ChartControl::doubleClicked);
  QTest::mouseClick(chart.get(), Qt::LeftButton, Qt::NoModifier, place);
  QTest::mouseDClick(chart.get(), Qt::LeftButton, Qt::NoModifier, place);
  moveMouse(*chart, place + QPoint(80, 0), Qt::LeftButton);
  EXPECT_EQ(clicked.count(), 1);
  EXPECT_FALSE(chart->hasPassingView());
  QTest::mouseDClick(chart.get(), Qt::RightButton, Qt::NoModifier, place);
  EXPECT_EQ(clicked.count(), 1);
}

TEST(ChartControl, reads_out_the_nearest_point) {
  const auto chart = shownChart();
  setLimits(*chart, 0, 4);
  setPoints(*chart, {1, 1.0 / 3, 3}, {1, 2e-7, 3});
  chart->setSeriesName(1, "Bar", PointName::SeriesAndRow);
  moveMouse(*chart, chart->pixelOf(1.0 / 3, 0) + QPointF(3, -5));
  EXPECT_EQ(chart->readOut(), "Bar 2\nx 0.333333\ny 2E-07");
  moveMouse(*chart, chart->pixelOf(3, 3));
  EXPECT_EQ(chart->readOut(), "Bar 3\nx 3\ny 3");
  chart->setSeriesName(1, "Solid 7", PointName::Series);
  moveMouse(*chart, chart->pixelOf(3, 3) + QPointF(1, 0));
  EXPECT_EQ(chart->readOut(), "Solid 7\nx 3\ny 3");
  moveMouse(*chart, chart->pixelOf(1, 3));
  EXPECT_EQ(chart->readOut(), "");
  moveMouse(*chart, chart->pixelOf(3, 3));
  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(chart.get(), &leave);
  EXPECT_EQ(chart->readOut(), "");
}

TEST(ChartControl, a_long_curve_grows_fast) {
  const auto chart = shownChart();
  chart->setRowCount(1);
  QElapsedTimer clock;
  clock.start();
  for (int i = 0; i < 32769; ++i) {
    chart->appendPoint(i * 1e-6, 1 - std::exp(-i * 1e-4) + 0.01 * std::sin(i * 0.1));
    if (i % 1000 == 0) chart->flushNow();
  }
  chart->flushNow();
  EXPECT_LT(clock.elapsed(), 900);
  EXPECT_EQ(chart->RowCount(), 32770);
  EXPECT_EQ(chart->Data(32769, 1), "0.032768");
}

TEST(ChartControl, paints_at_most_once_a_frame_and_only_where_it_is_seen) {
  FakeShell shell;
  QMdiArea area;
  area.resize(800, 600);
  area.show();
  auto* const window = new ChartWindow(shell, numberOf(ChartKind::MomentCurvature));
  QMdiSubWindow* const frame = area.addSubWindow(window);
  frame->show();
  QTest::qWait(100);

  // Each point lies beyond the limits of those before it.
  double moment = 1;
  const auto feed = [&] {
    for (int i = 0; i < 100; ++i) {
      window->appendMomentCurvature(moment *= 1.1, i);
      QTest::qWait(2);
    }
    QTest::qWait(100);
  };
  PaintCount paints(window->chart());
  QElapsedTimer clock;
  clock.start();
  feed();
  EXPECT_GE(paints.count, 2);
  EXPECT_LE(paints.count, clock.elapsed() / 30 + 3);

  QWidget* plot = nullptr;
  for (QWidget* child : window->chart().findChildren<QWidget*>())
    if (child->inherits("QCustomPlot")) plot = child;
  ASSERT_NE(plot, nullptr);
  QSignalSpy drawn(plot, SIGNAL(afterReplot()));
  const auto drawnWhileFed = [&] {
    QTest::qWait(100);
    drawn.clear();
    feed();
    return drawn.count();
  };
  EXPECT_GE(drawnWhileFed(), 1);
  frame->showMinimized();
  EXPECT_EQ(drawnWhileFed(), 0);
  frame->showNormal();
  QTest::qWait(100);
  EXPECT_GE(drawn.count(), 1);
  QMdiSubWindow* const cover = area.addSubWindow(new QWidget);
  cover->setGeometry(frame->geometry().adjusted(-5, -5, 5, 5));
  cover->show();
  EXPECT_EQ(drawnWhileFed(), 0);
  cover->close();
  QTest::qWait(100);
  EXPECT_GE(drawn.count(), 1);
}

TEST(ChartWindow, kinds_load_with_their_texts_and_sizes) {
  struct Case {
    const char* title;
    const char* xTitle;
    const char* yTitle;
    int rows;
    int columns;
    bool uniform;
  };
  const std::vector<Case> cases = {
      {"Figure - Beam", "Half Span", "Depth", 5, 8, true},
      {"Figure - Section", "Width", "Depth", 1, 4, true},
      {"Chart - Moment-Curvature", "Curvature (Micro/Length)", "Moment x1000", 1, 2, false},
      {"Chart - Load-Displacement", "Displacement", "Load x1000", 1, 2, false},
      {"Chart - Stress", "Compression Stress (Bar/Tendon x10)", "Depth", 5, 6, false},
      {"Chart - Strain", "Compression Strain (Tendon x10) (%)", "Depth", 5, 6, false},
      {"Chart - Moment", "Half Span", "Moment x1000", 20, 2, false},
      {"Chart - Curvature", "Half Span", "Curvature (Micro/Length)", 20, 2, false},
      {"Chart - Displacement", "Half Span", "Displacement", 20, 2, false},
      {"Chart - Stress-Strain", "Compression/Tension Strain (%)", "Stress", 1, 4, false},
  };
  FakeShell shell;
  const JobExtent extent{2, 5, 1, 20};
  for (std::size_t kind = 0; kind < cases.size(); ++kind) {
    const Case& c = cases[kind];
    const ChartWindow window(shell, static_cast<int>(kind), extent);
    EXPECT_EQ(window.objectName(), "frmChart");
    EXPECT_EQ(window.Tag(), QString::number(kind));
    EXPECT_EQ(window.windowTitle(), c.title);
    EXPECT_EQ(window.chart().axisTitle(kAxisX), c.xTitle) << c.title;
    EXPECT_EQ(window.chart().axisTitle(kAxisY), c.yTitle) << c.title;
    EXPECT_EQ(window.chart().RowCount(), c.rows) << c.title;
    EXPECT_EQ(window.chart().ColumnCount(), c.columns) << c.title;
    EXPECT_EQ(window.chart().UniformAxis(), c.uniform) << c.title;
    EXPECT_TRUE(window.chart().valueScale(kAxisX).Auto) << c.title;
  }
  for (const int kind : {-1, 10})
    EXPECT_TRUE(raises51([&] { const ChartWindow window(shell, kind, extent); })) << kind;
}

TEST(ChartWindow, stress_and_strain_follow_the_section) {
  model::ObjectTables job;
  job.Solids = {analysis::solidOf(300, 100, 50), analysis::solidOf(300, 100, 150)};
  job.Bars = {analysis::barOf(4, 126.7, 350)};
  job.Tendons = {analysis::tendonOf(92.9, 300, "Pre-tensioning")};
  job.Bars[0].InitialStrain = 0;
  materials::StressStrainContext context;
  analysis::SectionState state(job, context);
  // 0.001 at the top and nothing at 200: 0.00075 and 0.00025 in the solids, 0.00075 of tension in the bar.
  state.EvaluateLinear(analysis::Stage::Loading, 0.001, 200);
  const double tendonStrain = state.tendons().CurrentStrain[0];
  const double tendonStress = state.tendons().CurrentStress[0];
  const double solidStress = state.solids().CurrentStress[0];
  ASSERT_GT(tendonStress, 0);
  ASSERT_GT(solidStress, 0);

  FakeShell shell;
  ChartWindow strain(shell, numberOf(ChartKind::Strain), {2, 1, 1, 0});
  strain.currentValues(state);
  EXPECT_EQ(pointsOf(strain.chart(), 1), (Points{{"0.075", "-50"}, {"0.025", "-150"}}));
  EXPECT_EQ(pointsOf(strain.chart(), 3), (Points{{"-0.075", "-350"}, {"", ""}}));
  EXPECT_EQ(pointsOf(strain.chart(), 5),
            (Points{{base::plainText(-tendonStrain * 100 / 10), "-300"}, {"", ""}}));

  ChartWindow stress(shell, numberOf(ChartKind::Stress), {2, 1, 1, 0});
  stress.currentValues(state);
  EXPECT_EQ(stress.chart().Data(1, 1), base::plainText(solidStress));
  EXPECT_EQ(pointsOf(stress.chart(), 3), (Points{{"-15", "-350"}, {"", ""}}));  // 0.00075 * 200000 / 10
  EXPECT_EQ(stress.chart().Data(1, 5), base::plainText(-tendonStress / 10));

  ChartWindow other(shell, numberOf(ChartKind::Moment), {2, 1, 1, 0});
  EXPECT_TRUE(raises51([&] { other.currentValues(state); }));
}

TEST(ChartWindow, load_steps_reach_the_five_charts) {
  // Two pieces of 500 under a moment of 1000000, all of the half span in the shear span.
  analysis::BeamResponse beam(analysis::beamOf(2000, 0, 2));
  analysis::MomentCurvature relation;
  relation.append(0, 0);
  relation.append(1000000, 2e-6);
  beam.update(relation, 1, 0);
  const analysis::LoadStep step{1, 1000000, 2e-6, beam};

  FakeShell shell;
  const auto fed = [&](ChartKind kind) {
    ChartWindow window(shell, numberOf(kind), {1, 0, 0, 2});
    window.loadStep(step);
    return pointsOf(window.chart());
  };
  EXPECT_EQ(fed(ChartKind::MomentCurvature), (Points{{"2", "1000"}, {"", ""}}));
  EXPECT_EQ(fed(ChartKind::LoadDisplacement),
            (Points{{base::plainText(beam.Displacement()), base::plainText(beam.Load() / 1000)}, {"", ""}}));
  EXPECT_EQ(fed(ChartKind::Moment), (Points{{"250", "-750"}, {"750", "-250"}}));
  EXPECT_EQ(fed(ChartKind::Curvature), (Points{{"250", "-1.5"}, {"750", "-0.5"}}));
  const std::vector<double> deflection = beam.Deflection();
  EXPECT_EQ(fed(ChartKind::Displacement),
            (Points{{"250", base::plainText(-deflection[0])}, {"750", base::plainText(-deflection[1])}}));
  ASSERT_GT(deflection[0], 0);
  EXPECT_TRUE(raises51([&] { fed(ChartKind::Stress); }));
}

TEST(ChartWindow, rows_run_one_ahead_of_the_points) {
  FakeShell shell;
  ChartWindow curve(shell, numberOf(ChartKind::MomentCurvature));
  for (int i = 1; i <= 100; ++i) curve.appendMomentCurvature(1234567.8 * i, 1e-7 * i);
  EXPECT_EQ(curve.chart().RowCount(), 101);
  EXPECT_EQ(curve.chart().Data(100, 1), "10");
  EXPECT_EQ(curve.chart().Data(100, 2), "123456.78");
  EXPECT_EQ(curve.chart().Data(101, 1), "");
  EXPECT_TRUE(raises51([&] { curve.appendLoadDisplacement(1, 1); }));
  EXPECT_TRUE(raises51([&] { curve.setPieces({}, {}); }));
}

TEST(ChartWindow, pieces_are_negated_as_their_text) {
  const std::vector<double> values = {0,      1.0 / 3, -2.0 / 3,  123456789.0123456789,
                                      1e-300, 4e-320,  0.1 + 0.2, 1e22 / 3};
  const std::vector<double> place(values.size(), 1);
  FakeShell shell;
  for (const auto& [kind, divisor] :
       {std::pair{ChartKind::Moment, 1000.0}, std::pair{ChartKind::Curvature, 0.000001},
        std::pair{ChartKind::Displacement, 1.0}}) {
    ChartWindow window(shell, numberOf(kind), {1, 0, 0, static_cast<int>(values.size())});
    window.setPieces(place, values);
    for (std::size_t i = 0; i < values.size(); ++i) {
      const std::string text = base::plainText(values[i] / divisor);
      EXPECT_EQ(window.chart().Data(static_cast<int>(i) + 1, 2),
                base::plainText(-base::toNumber(text).value()))
          << text;
    }
  }
}

class ShownChartWindow : public ::testing::Test {
 protected:
  ShownChartWindow() {
    window->setAttribute(Qt::WA_DeleteOnClose, false);
    for (int i = 0; i < 200; ++i)
      window->appendMomentCurvature(1000 * 150 * (1 - std::exp(-i / 20.0)), i * 1e-6);
    window->resize(500, 350);
    window->show();
    window->chart().flushNow();
  }
  FakeShell shell;
  std::unique_ptr<ChartWindow> window =
      std::make_unique<ChartWindow>(shell, numberOf(ChartKind::MomentCurvature));
  ChartControl* chart = window->findChild<ChartControl*>("MSChart1");

  /// Pixels of the curve's colour where nothing else is blue: inside of the plot.
  [[nodiscard]] int curvePixels(const QImage& image) const {
    const double ratio = static_cast<double>(image.width()) / chart->width();
    int count = 0;
    for (int i = 5; i < 195; ++i) {
      const QPointF place = chart->pixelOf(i, 150 * (1 - std::exp(-i / 20.0))) * ratio;
      count += image.pixelColor(place.toPoint()) == kBlue;
    }
    return count;
  }
};

TEST_F(ShownChartWindow, commands_and_events_reach_the_shell) {
  const ChildCommands commands = window->commands();
  EXPECT_TRUE(commands.print && commands.copy);
  EXPECT_FALSE(commands.cut || commands.paste || commands.selectAll || commands.chart);

  QTest::mouseDClick(chart, Qt::LeftButton);
  EXPECT_EQ(shell.optionsTab, 4);
  QTest::mouseClick(chart, Qt::RightButton);
  EXPECT_EQ(shell.popups, 1);
  QContextMenuEvent key(QContextMenuEvent::Keyboard, QPoint(10, 10), chart->mapToGlobal(QPoint(10, 10)));
  QApplication::sendEvent(chart, &key);
  EXPECT_EQ(shell.popups, 2);

  window->close();
  EXPECT_NE(shell.settings.find("[frmChart]"), std::string::npos);
  EXPECT_NE(shell.settings.find("State=0"), std::string::npos);
}

TEST_F(ShownChartWindow, automatic_scale_entry_ends_the_view) {
  auto* const entry = window->findChild<QAction*>("mnuChartAutomaticScale");
  EXPECT_TRUE(window->ownActions().contains(entry));
  EXPECT_FALSE(entry->isEnabled());
  turnWheel(*chart, chart->rect().center(), 120);
  EXPECT_TRUE(entry->isEnabled());
  entry->trigger();
  EXPECT_FALSE(chart->hasPassingView());
  EXPECT_FALSE(entry->isEnabled());
}

TEST_F(ShownChartWindow, copy_puts_a_picture_on_the_clipboard) {
  const QImage withoutReadOut = chart->picture();
  moveMouse(*chart, chart->pixelOf(100, 149));
  ASSERT_NE(chart->readOut(), "");
  window->copy();
  const QImage image = QApplication::clipboard()->image();
  EXPECT_EQ(image.size(), chart->size() * 2);
  EXPECT_EQ(image, withoutReadOut);
  EXPECT_GT(curvePixels(image), 170);
  // The chart on the screen is as before.
  EXPECT_GT(curvePixels(chart->grab().toImage()), 150);
  EXPECT_NE(chart->readOut(), "");
}

TEST_F(ShownChartWindow, pictures_are_saved_as_their_names_say) {
  const QTemporaryDir folder;
  auto* const entry = window->findChild<QAction*>("mnuChartSavePicture");
  const auto saved = [&](const QString& name) {
    shell.saveAnswer = folder.filePath(name);
    entry->trigger();
    QFile file(folder.filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  };
  EXPECT_GT(curvePixels(QImage::fromData(saved("a.png"), "PNG")), 170);
  EXPECT_EQ(shell.proposal, "Chart - Moment-Curvature.png");

  const QByteArray svg = saved("a.SVG");
  EXPECT_GT(mostCorners(svg), 10);
  EXPECT_TRUE(svg.contains("Moment x1000"));

  const QByteArray pdf = saved("a.pdf");
  EXPECT_TRUE(pdf.startsWith("%PDF"));
  chart->setColumnCount(0);
  EXPECT_LT(mostCorners(saved("empty.svg")), 3);
  EXPECT_GT(linesOf(pdf), linesOf(saved("empty.pdf")) + 10);

  // Without a known ending it becomes a PNG, but never over another file.
  saved("b.c");
  EXPECT_TRUE(QFile::exists(folder.filePath("b.c.png")));
  EXPECT_TRUE(shell.messages.isEmpty());
  saved("b.c");
  saved("no folder/a.png");
  ASSERT_EQ(shell.messages.size(), 2);
  EXPECT_TRUE(shell.messages[1].contains("no folder"));
  shell.saveAnswer.clear();
  entry->trigger();
  EXPECT_EQ(shell.messages.size(), 2);
}

TEST_F(ShownChartWindow, paints_into_a_part_of_a_page) {
  // At twice the resolution of the screen a chart of this size has the layout of the one on the screen.
  QImage page(1300, 1000, QImage::Format_RGB32);
  page.setDotsPerMeterX(2 * chart->logicalDpiX() * 10000 / 254);
  page.setDotsPerMeterY(2 * chart->logicalDpiY() * 10000 / 254);
  page.fill(Qt::yellow);
  const QRect target(QPoint(100, 200), chart->size() * 2);
  QPainter painter(&page);
  chart->paint(painter, target);
  EXPECT_GT(curvePixels(page.copy(target)), 170);
  for (const QPoint outside : {QPoint(-2, 300), QPoint(300, -2), QPoint(300, target.height() + 1)})
    EXPECT_EQ(page.pixelColor(target.topLeft() + outside), QColor(Qt::yellow)) << outside.y();
  EXPECT_EQ(page.pixelColor(target.topLeft() + QPoint(1, 1)), QColor(Qt::white));
  EXPECT_EQ(page.pixelColor(target.bottomRight() - QPoint(1, 1)), QColor(Qt::white));

  // A picture of another size leaves the places on the screen alone.
  const QPointF before = chart->pixelOf(100, 100);
  chart->paint(painter, QRectF(0, 0, 300, 200));
  EXPECT_EQ(chart->pixelOf(100, 100), before);
}

}  // namespace
}  // namespace torvik::views
