// SPDX-License-Identifier: GPL-3.0-or-later
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>

#include "app/window_fixture.h"
#include "chart/control.h"
#include "views/chart_window.h"

namespace torvik::app {
namespace {

class OptionsInTheWindow : public WindowTest {
 protected:
  [[nodiscard]] QDialog* dialog() const { return window->findChild<QDialog*>("frmOption"); }
  void click(const char* button) {
    QTest::mouseClick(dialog()->findChild<QPushButton*>(button), Qt::LeftButton);
  }
};

TEST_F(OptionsInTheWindow, ADoubleClickOnAChartOpensItsAxesWhileTheJobGoesOn) {
  onlyWindows({"ChartMoment", "ChartCurvature"});
  openWith(smallBeam());
  int openedAt = 0;
  atStep(3, [&] {
    auto& chart = child<views::ChartWindow>("Chart - Moment");
    window->activate(&chart);
    QTest::mouseDClick(&chart.chart(), Qt::LeftButton);
    openedAt = program.run->steps();
    ASSERT_TRUE(dialog());
    EXPECT_TRUE(dialog()->findChild<QWidget*>("Text32_0")->isVisible());
    dialog()->findChild<QLineEdit*>("Text32_0")->setText("12345");
    trigger("mnuToolOption");  // there is one
  });
  trigger("mnuFileJob0");
  EXPECT_GT(program.run->steps(), openedAt);
  ASSERT_TRUE(dialog());
  click("Command1_0");
  QTest::qWait(1);
  EXPECT_FALSE(dialog());
  const auto scaleOf = [&](const char* title) {
    return child<views::ChartWindow>(title).chart().valueScale(chart::kAxisX);
  };
  EXPECT_EQ(scaleOf("Chart - Moment").Maximum, 12345);
  EXPECT_TRUE(scaleOf("Chart - Curvature").Auto);
}

TEST_F(OptionsInTheWindow, TellOfAFileThatCanNotBeReadOrWritten) {
  open();
  trigger("mnuToolOption");
  std::filesystem::remove(program.settingsFile);
  std::filesystem::create_directory(program.settingsFile);
  log.clear();
  click("Command1_0");
  EXPECT_EQ(log.size(), 0);  // behind the click
  QTest::qWait(1);
  ASSERT_EQ(log.size(), 1);
  EXPECT_TRUE(log[0].startsWith("box: Option: ")) << log[0].toStdString();
  EXPECT_TRUE(dialog());  // with all that was entered
}

}  // namespace
}  // namespace torvik::app
