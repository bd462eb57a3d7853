// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QtTest/QtTest>
#include <cmath>
#include <limits>
#include <string>
#include <tuple>
#include <vector>

#include "base/raises51.h"
#include "chart/blue_line.h"
#include "chart/matrix_text.h"
#include "chart/plan.h"

namespace torvik::chart {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

struct HostedChart {
  HostedChart() {
    hosted.resize(400, 300);
    hosted.setRowCount(1);
    hosted.setColumnCount(2);
    hosted.setLineSeries(1, PenStyle::Solid, kBlue);
    hosted.setAxisTitle(kAxisX, "Curvature (Micro/Length)");
    hosted.setAxisTitle(kAxisY, "Moment x1000");
  }
  QWidget host;
  ChartControl& hosted = *new ChartControl(&host);
};

/// A chart on the screen.
class ChartTest : public ::testing::Test, protected HostedChart, protected BlueLine {
 protected:
  ChartTest() : BlueLine(hosted) { host.show(); }
};

TEST_F(ChartTest, scale_takes_what_it_can) {
  setPoints({0, 58.7, 1e300}, {-130, 30, 0});
  for (const auto& [wanted, all, taken, divisions] :
       std::initializer_list<std::tuple<ValueScale, bool, Interval, int>>{
           {{false, 200, 300, 20}, true, {200, 300}, 20},  // beyond both old limits
           {{false, kNaN, 25, 3}, false, {0, 25}, 3},
           {{false, -5, 25, 21}, false, {-5, 25}, 5},
           {{true, kNaN, kNaN, 0}, true, {0, 60}, 6},  // as drawn for the data
       }) {
    chart.setValueScale(kAxisX, {false, 0, 10, 5});
    EXPECT_EQ(chart.setValueScale(kAxisX, wanted), all) << wanted.Minimum << " " << wanted.Maximum;
    EXPECT_EQ(chart.valueScale(kAxisX).MajorDivision, divisions);
    EXPECT_EQ(chart.shownInterval(kAxisX), taken);
  }
  EXPECT_EQ(axisText(-5e-5, 1e-5, 6e-5), "-5×10⁻⁵");
}

TEST_F(ChartTest, cells_keep_what_was_written_and_nothing_else) {
  setPoints({1e15, 1e-5}, {0.1 + 0.2, -0.0});
  chart.setColumnCount(4);
  chart.setRowCount(3);
  chart.setData(2, 4, 7);
  EXPECT_EQ(matrixOf(chart), "1E+15,0.3,,;1E-05,0,,7;,,,;");
  chart.setRowCount(1);
  chart.setRowCount(2);
  EXPECT_EQ(matrixOf(chart), "1E+15,0.3,,;,,,;");
  EXPECT_TRUE(tests::raises51([&] { (void)chart.Data(1, 5); }));
  EXPECT_TRUE(tests::raises51([&] { chart.setLineSeries(2, PenStyle::Solid, kBlue); }));
}

TEST_F(ChartTest, joins_rows_in_their_order_and_breaks_at_unwritten_ones) {
  setPoints({3.3, 0.3, 3.3}, {0.3, 2.3, 3.3});  // turns back: no function of x
  EXPECT_TRUE(shows(1.8, 1.3) && shows(1.8, 2.8));
  EXPECT_FALSE(shows(3.3, 1.8));
  setPoints({0.3, 1.3, kNaN, 2.3, 3.3}, {0.3, 1.3, kNaN, 1.3, 0.3});
  EXPECT_TRUE(shows(0.8, 0.8) && shows(2.8, 0.8));
  EXPECT_FALSE(shows(1.8, 1.3));
  setPoints({-900, 904}, {-901, 903});  // both ends far outside
  EXPECT_TRUE(shows(1.5, 0.5));
  setPoints({1.3}, {1.3});
  using enum MarkerStyle;
  for (const MarkerStyle style : {Circle, Square, UpTriangle, DownTriangle, None}) {
    chart.setMarkerSeries(1, style, 40, kBlue);
    EXPECT_EQ(shows(1.3, 1.3), style != None);
    EXPECT_EQ(shows(1.3, 1.3, {-16, -18}), style == Square || style == DownTriangle);
    EXPECT_EQ(shows(1.3, 1.3, {-16, 18}), style == Square || style == UpTriangle);
  }
}

TEST_F(ChartTest, long_curves_grow_fast_and_keep_their_corners) {
  const auto saw = [](double x) { return 2 + 1.5 * std::abs(std::remainder(x, 1.0)); };
  QElapsedTimer clock;
  clock.start();
  for (int i = 0; i < 32769; ++i) {
    chart.appendPoint(i / 8192.0, saw(i / 8192.0));
    if (i % 1000 == 0) chart.flushNow();
  }
  EXPECT_LT(clock.elapsed(), 1500);
  EXPECT_EQ(chart.RowCount(), 32770);  // one ahead of the points
  EXPECT_EQ(chart.Data(32769, 1) + "|" + chart.Data(32769, 2) + "|" + chart.Data(32770, 1), "4|2|");
  for (const double x : {0.25, 0.5, 1.0, 1.5, 2.0, 3.25}) EXPECT_TRUE(shows(x, saw(x))) << x;
}

TEST_F(ChartTest, a_chart_without_room_for_its_plot_does_not_move) {
  chart.setMinimumSize(1, 1);
  for (const int height : {38, 20, 1}) {
    chart.resize(400, height);
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Plus, Qt::Key_Left, Qt::Key_Minus}) {
      QTest::keyClick(&chart, key);
      chart.flushNow();
    }
    const Interval shown = chart.shownInterval(kAxisY);
    EXPECT_TRUE(shown.lower >= -10 && shown.lower < shown.upper && shown.upper <= 10) << height;
  }
}

TEST_F(ChartTest, every_view_of_a_small_chart_shows_two_numbers_an_axis) {
  ChartLayout layout;
  layout.font.setPixelSize(16);
  for (const QSize size : {QSize(150, 110), QSize(240, 160)})
    for (int i = 0; i < 200; ++i) {
      const double extent = 0.3 * std::pow(1.02, i);
      const Interval shown{-7.3 + i * 0.31, -7.3 + i * 0.31 + extent};
      layout.uniform = i % 2 == 0;
      const Plan plan =
          layout.plan(size, {shown, shown}, PassingView{Mapping{QRectF(0, 0, 60, 60), {shown, shown}}, {}});
      for (const AxisPlan& axis : plan.axes)
        EXPECT_GE(axis.labels.size() - axis.labels.count(QString()), 2) << size.width() << " " << i;
    }
}

TEST_F(ChartTest, paints_at_most_once_a_frame_and_only_where_it_is_seen) {
  chart.setValueScale(kAxisX, {});
  QWidget cover(&host);
  cover.setAutoFillBackground(true);
  cover.resize(400, 300);
  QTest::qWait(50);
  QSignalSpy drawn(chart.findChildren<QWidget*>().at(0), SIGNAL(afterReplot()));
  const auto drawnWhileFed = [&] {
    drawn.clear();
    for (int i = 0; i < 50; ++i) {
      chart.appendPoint(std::exp(chart.RowCount()), 0);  // beyond all limits so far
      QTest::qWait(2);
    }
    QTest::qWait(50);
    return drawn.count();
  };
  QElapsedTimer clock;
  clock.start();
  EXPECT_GE(drawnWhileFed(), 1);
  EXPECT_LE(drawn.count(), clock.elapsed() / 30 + 1);
  cover.show();
  EXPECT_EQ(drawnWhileFed(), 0);
  cover.hide();
  EXPECT_TRUE(QTest::qWaitFor([&] { return drawn.count() > 0; }, 2000));
}

}  // namespace
}  // namespace torvik::chart
