// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <QWheelEvent>
#include <QtTest/QtTest>
#include <cmath>
#include <limits>
#include <string>
#include <tuple>
#include <vector>

#include "analysis/models.h"
#include "views/chart_control.h"
#include "views/chart_plan.h"
#include "views/chart_window.h"
#include "views/fake_shell.h"
#include "views/matrix_text.h"

namespace torvik::views {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
const QColor kBlue(0, 0, 255);

/// A chart on the screen with a blue line, both axes from 0 to 4.
class ChartTest : public ::testing::Test {
 protected:
  ChartTest() {
    window.setParent(&host);
    window.resize(400, 300);
    for (const int axis : {kAxisX, kAxisY}) chart.setValueScale(axis, {false, 0, 4, 4});
    host.show();
  }
  void setPoints(const std::vector<double>& x, const std::vector<double>& y) {
    chart.setRowCount(static_cast<int>(x.size()));
    chart.setPair(1, x, y);
  }
  /// Whether a picture of the chart has the colour of the line within a pixel of a point.
  bool has(const QImage& image, double x, double y, const QPointF& aside = {}) {
    const QPoint place = ((chart.pixelOf(x, y) + aside) * image.width() / chart.width()).toPoint();
    for (int i = 0; i < 9; ++i)
      if (image.pixelColor(place + QPoint(i / 3 - 1, i % 3 - 1)) == kBlue) return true;
    return false;
  }
  bool shows(double x, double y, const QPointF& aside = {}) {
    chart.flushNow();
    return has(chart.grab().toImage(), x, y, aside);
  }

  FakeShell shell;
  QWidget host;
  ChartWindow& window = *new ChartWindow(shell, static_cast<int>(ChartKind::MomentCurvature));
  ChartControl& chart = *window.findChild<ChartControl*>("MSChart1");
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
  EXPECT_TRUE(raises51([&] { (void)chart.Data(1, 5); }));
  EXPECT_TRUE(raises51([&] { chart.setLineSeries(2, PenStyle::Solid, kBlue); }));
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
    window.appendMomentCurvature(saw(i / 8192.0) * 1000, i / 8192.0 * 1e-6);
    if (i % 1000 == 0) chart.flushNow();
  }
  EXPECT_LT(clock.elapsed(), 1500);
  EXPECT_EQ(chart.RowCount(), 32770);  // one ahead of the points
  EXPECT_EQ(chart.Data(32769, 1) + "|" + chart.Data(32769, 2) + "|" + chart.Data(32770, 1), "4|2|");
  for (const double x : {0.25, 0.5, 1.0, 1.5, 2.0, 3.25}) EXPECT_TRUE(shows(x, saw(x))) << x;
}

TEST_F(ChartTest, mouse_and_keys_move_a_passing_view) {
  auto* const entry = window.findChild<QAction*>("mnuChartAutomaticScale");
  const QPointF pointer = chart.pixelOf(1, 3);
  const QPointF unit = pointer - chart.pixelOf(0, 0);
  QWheelEvent wheel(pointer, pointer, {}, {0, 240}, {}, {}, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&chart, &wheel);
  EXPECT_NEAR(QLineF(pointer - chart.pixelOf(0, 0), unit / 0.64).length(), 0, 1e-6);
  EXPECT_NEAR(QLineF(chart.pixelOf(1, 3), pointer).length(), 0, 1e-6);
  EXPECT_TRUE(entry->isEnabled());
  QTest::keyClick(&chart, Qt::Key_Home);
  EXPECT_FALSE(entry->isEnabled());
  EXPECT_EQ(chart.shownInterval(kAxisX), (Interval{0, 4}));

  const QPoint from = chart.pixelOf(1, 1).toPoint();
  QTest::mousePress(&chart, Qt::LeftButton, {}, from);
  QTest::mouseMove(&chart, from + QPoint(20, 10));
  chart.flushNow();
  QTest::mouseMove(&chart, from + QPoint(70, -30));
  QTest::mouseRelease(&chart, Qt::LeftButton, {}, from + QPoint(70, -30));
  setPoints({0, 1000}, {0, 1000});
  EXPECT_NEAR(QLineF(chart.pixelOf(1, 1), from + QPoint(70, -30)).length(), 0, 1);
  entry->trigger();
  EXPECT_FALSE(chart.hasPassingView());
  QTest::mouseDClick(&chart, Qt::LeftButton);
  EXPECT_EQ(shell.optionsTab, 4);
  QTest::mouseClick(&chart, Qt::RightButton);
  EXPECT_EQ(shell.popups, 1);
}

TEST_F(ChartTest, a_chart_without_room_for_its_plot_does_not_move) {
  window.setMinimumSize(1, 1);
  chart.setMinimumSize(1, 1);
  for (const int height : {38, 20, 1}) {
    window.resize(400, height);
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

TEST_F(ChartTest, pictures_are_copied_saved_and_printed_without_the_read_out) {
  const QTemporaryDir folder;
  const auto saved = [&](const QString& name) {
    shell.saveAnswer = folder.filePath(name);
    window.findChild<QAction*>("mnuChartSavePicture")->trigger();
    QFile file(shell.saveAnswer);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  };
  const auto emptySvg = chart.svg("").size();
  const auto emptyPdf = chart.pdf("").size();
  std::vector<double> x;
  for (int i = 0; i < 400; ++i) x.push_back(i % 2 ? 0.3 : 0.3 + i * 0.01);
  setPoints(x, x);
  chart.setSeriesName(1, "Bar", PointName::SeriesAndRow);
  const QImage before = chart.picture();
  QTest::mouseMove(&chart, chart.pixelOf(0.3, 0.3).toPoint() + QPoint(3, 5));
  EXPECT_EQ(chart.readOut(), "Bar 1\nx 0.3\ny 0.3");
  window.copy();
  EXPECT_EQ(QApplication::clipboard()->image(), before);
  EXPECT_EQ(before.size(), chart.size() * 2);
  EXPECT_TRUE(has(QImage::fromData(saved("a.png"), "PNG"), 1.5, 1.5));
  EXPECT_EQ(shell.proposal, "Moment-Curvature.png");
  EXPECT_GT(saved("a.SVG").size(), emptySvg + 1000);
  EXPECT_GT(saved("a.pdf").size(), emptyPdf + 200);
  // Without a known ending it becomes a PNG, but never over another file.
  for (const char* const name : {"b.c", "b.c", "no folder/a.png"}) saved(name);
  EXPECT_TRUE(QFile::exists(folder.filePath("b.c.png")));
  EXPECT_EQ(shell.messages.size(), 2);

  QImage page(1000, 1000, QImage::Format_RGB32);
  QPainter painter(&page);
  const QRect target(QPoint(100, 200), chart.size());
  chart.paint(painter, target);
  EXPECT_TRUE(has(page.copy(target), 1.5, 1.5));
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
      window.appendMomentCurvature(0, std::exp(chart.RowCount()));  // beyond all limits so far
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

TEST_F(ChartTest, every_kind_has_its_texts_and_its_points) {
  model::ObjectTables job;
  job.Solids = {analysis::solidOf(300, 100, 50), analysis::solidOf(300, 100, 150)};
  job.Bars = {analysis::barOf(4, 126.7, 350)};
  job.Tendons = {analysis::tendonOf(92.9, 300, "Pre-tensioning")};
  materials::StressStrainContext context;
  analysis::SectionState state(job, context);
  // 0.001 at the top and nothing at 200: 0.00075 and 0.00025 in the solids, 0.00075 of tension in the bar.
  state.EvaluateLinear(analysis::Stage::Loading, 0.001, 200);
  // Two pieces of 500 under a moment of 1000000, all of the half span in the shear span.
  analysis::BeamResponse beam(analysis::beamOf(2000, 0, 2));
  analysis::MomentCurvature relation;
  relation.append(0, 0);
  relation.append(1000000, 2e-6);
  beam.update(relation, 1, 0);

  for (int kind = 0; const char* const expected : {
                         "Figure - Beam|Half Span|Depth|,,,,,,,;,,,,,,,;,,,,,,,;,,,,,,,;,,,,,,,;",
                         "Figure - Section|Width|Depth|,,,;",
                         "Chart - Moment-Curvature|Curvature (Micro/Length)|Moment x1000|2,1000;,;",
                         "Chart - Load-Displacement|Displacement|Load x1000|0.625,2;,;",
                         "Chart - Stress|Compression Stress (Bar/Tendon x10)|Depth|"
                         "15.5390625,-50,-15,-350,-110,-300;5.9765625,-150,,,,;",
                         "Chart - Strain|Compression Strain (Tendon x10) (%)|Depth|"
                         "0.075,-50,-0.075,-350,-0.055,-300;0.025,-150,,,,;",
                         "Chart - Moment|Half Span|Moment x1000|250,-750;750,-250;",
                         "Chart - Curvature|Half Span|Curvature (Micro/Length)|250,-1.5;750,-0.5;",
                         "Chart - Displacement|Half Span|Displacement|250,-0.625;750,-0.25;",
                         "Chart - Stress-Strain|Compression/Tension Strain (%)|Stress|,,,;",
                     }) {
    ChartWindow opened(shell, kind++, {2, 1, 1, 2});
    ChartControl& drawn = opened.chart();
    EXPECT_EQ(raises51([&] { opened.currentValues(state); }), drawn.ColumnCount() != 6);
    EXPECT_EQ(raises51([&] { opened.loadStep({1, 1000000, 2e-6, beam}); }), drawn.ColumnCount() != 2);
    const QStringList texts = {opened.windowTitle(), drawn.axisTitle(kAxisX), drawn.axisTitle(kAxisY)};
    EXPECT_EQ(texts.join('|').toStdString() + "|" + matrixOf(drawn), expected);
    EXPECT_EQ(drawn.UniformAxis(), kind <= 2);
  }
}

}  // namespace
}  // namespace torvik::views
