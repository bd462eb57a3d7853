// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <QWheelEvent>
#include <QtTest/QtTest>
#include <vector>

#include "base/raises51.h"
#include "chart/blue_line.h"
#include "chart/matrix_text.h"
#include "model/models.h"
#include "views/chart_window.h"
#include "views/fake_shell.h"
#include "views/written_run.h"

namespace torvik::views {
namespace {

struct HostedWindow {
  HostedWindow() {
    window.setParent(&host);
    window.resize(400, 300);
  }
  FakeShell shell;
  QWidget host;
  ChartWindow& window = *new ChartWindow(shell, static_cast<int>(ChartKind::MomentCurvature));
};

/// A chart window on the screen.
class ChartTest : public ::testing::Test, protected HostedWindow, protected chart::BlueLine {
 protected:
  ChartTest() : BlueLine(*window.findChild<chart::ChartControl*>("MSChart1")) { host.show(); }
};

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
  EXPECT_EQ(chart.shownInterval(chart::kAxisX), (chart::Interval{0, 4}));

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
  chart.setSeriesName(1, "Bar", chart::PointName::SeriesAndRow);
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

TEST_F(ChartTest, every_kind_has_its_texts_and_its_points) {
  model::ObjectTables job;
  job.Solids = {tests::solidOf(300, 100, 50), tests::solidOf(300, 100, 150)};
  job.Bars = {tests::barOf(4, 126.7, 350)};
  job.Tendons = {tests::tendonOf(92.9, 300, "Pre-tensioning")};
  // Two pieces of 500 under a moment of 1000000, all of the half span in the shear span.
  job.Beams = {tests::beamOf(2000, 0, 2)};
  tests::WrittenRun written(job);
  // 0.001 at the top and nothing at 200: 0.00075 and 0.00025 in the solids, 0.00075 of tension in the bar.
  const section::Trial rows{section::Plane{0.001, 200}, written.laws.memory};
  const auto addStep = [&](double Moment, double Curvature) {
    written.writer.bendBeam(Moment, Curvature);
    run::Step step;
    step.Moment = Moment;
    step.Curvature = Curvature;
    step.Load = written.writer.beam().Load();
    step.Displacement = written.writer.beam().Displacement();
    written.writer.step(step, rows);
  };
  addStep(0, 0);
  addStep(1000000, 2e-6);

  for (int kind = 0; const char* const expected : {
                         "Figure - Beam|Half Span|Depth|,,,,,,,;,,,,,,,;,,,,,,,;,,,,,,,;,,,,,,,;",
                         "Figure - Section|Width|Depth|,,,;",
                         "Chart - Moment-Curvature|Curvature (Micro/Length)|Moment x1000|0,0;2,1000;,;",
                         "Chart - Load-Displacement|Displacement|Load x1000|0,0;0.625,2;,;",
                         "Chart - Stress|Compression Stress (Bar/Tendon x10)|Depth|"
                         "15.5390625,-50,-15,-350,-110,-300;5.9765625,-150,,,,;",
                         "Chart - Strain|Compression Strain (Tendon x10) (%)|Depth|"
                         "0.075,-50,-0.075,-350,-0.055,-300;0.025,-150,,,,;",
                         "Chart - Moment|Half Span|Moment x1000|250,-750;750,-250;",
                         "Chart - Curvature|Half Span|Curvature (Micro/Length)|250,-1.5;750,-0.5;",
                         "Chart - Displacement|Half Span|Displacement|250,-0.625;750,-0.25;",
                         "Chart - Stress-Strain|Compression/Tension Strain (%)|Stress|,,,;",
                     }) {
    const bool isResult = kind >= 2 && kind <= 8;
    ChartWindow opened(shell, kind, isResult ? written.run : nullptr);
    chart::ChartControl& drawn = opened.chart();
    EXPECT_EQ(tests::raises51([&] { opened.drawSteps(*written.run); }), kind != 2 && kind != 3);
    ++kind;
    const QStringList texts = {opened.windowTitle(), drawn.axisTitle(chart::kAxisX),
                               drawn.axisTitle(chart::kAxisY)};
    EXPECT_EQ(texts.join('|').toStdString() + "|" + matrixOf(drawn), expected);
    EXPECT_EQ(drawn.UniformAxis(), kind <= 2);
  }
}

}  // namespace
}  // namespace torvik::views
