// SPDX-License-Identifier: GPL-3.0-or-later
#include <QMdiSubWindow>
#include <QMenu>
#include <QPushButton>
#include <map>

#include "app/arrange.h"
#include "app/window_fixture.h"
#include "chart/control.h"
#include "views/chart_window.h"

namespace torvik::app {
namespace {

TEST(Tiles, FillTheAreaInAsManyRowsAsTheRootOfTheirCount) {
  const QRect area(10, 20, 1000, 700);
  const struct {
    int count;
    std::vector<int> columns;  ///< windows in each column, or in each row of horizontal tiles
  } kRows[] = {{1, {1}}, {3, {1, 1, 1}}, {4, {2, 2}}, {5, {2, 3}}, {11, {3, 4, 4}}};
  for (const auto& row : kRows)
    for (const Arrangement arrangement : {Arrangement::TileVertical, Arrangement::TileHorizontal}) {
      const bool vertical = arrangement == Arrangement::TileVertical;
      SCOPED_TRACE(std::to_string(row.count) + (vertical ? " vertical" : " horizontal"));
      const std::vector<QRect> places = tiles(area, row.count, arrangement);
      ASSERT_EQ(places.size(), static_cast<std::size_t>(row.count));
      // Rectangles within the area that do not overlap and have its size together fill it.
      long long size = 0;
      std::map<int, int> lines;
      for (std::size_t i = 0; i < places.size(); ++i) {
        EXPECT_TRUE(area.contains(places[i]));
        for (std::size_t k = 0; k < i; ++k) EXPECT_FALSE(places[i].intersects(places[k]));
        size += static_cast<long long>(places[i].width()) * places[i].height();
        ++lines[vertical ? places[i].left() : places[i].top()];
      }
      EXPECT_EQ(size, 1000 * 700);
      std::vector<int> columns;
      for (const auto& [start, count] : lines) columns.push_back(count);
      EXPECT_EQ(columns, row.columns);
    }
}

class Windows : public WindowTest {
 protected:
  [[nodiscard]] static QAction* closeEntry(const QMdiSubWindow& frame) {
    for (QAction* entry : frame.systemMenu()->actions())
      if (entry->shortcut() == QKeySequence(QKeySequence::Close)) return entry;
    return nullptr;
  }
};

TEST_F(Windows, CanNotBeClosedByTheUserWhileAJobRuns) {
  onlyWindows({"TableSolver", "ChartMoment"});
  openWith(smallBeam());
  const auto tryToClose = [this] {
    for (views::ChildWindow* child : window->children()) {
      QMdiSubWindow* const frame = child->frame();
      EXPECT_FALSE(closeEntry(*frame)->isVisible() || closeEntry(*frame)->isEnabled());
      frame->close();
      QTest::keyClick(frame, Qt::Key_F4, Qt::ControlModifier);
    }
    action("mnuWindowAll2").trigger();
    EXPECT_EQ(titles().size(), 2);
  };
  atStep(3, [&] {
    tryToClose();
    trigger("mnuFileJob1");
    later([&] {
      tryToClose();
      trigger("mnuFileJob2");
    });
  });
  trigger("mnuFileJob0");
  closeEntry(*child<views::ChildWindow>("Chart - Moment").frame())->trigger();
  EXPECT_EQ(titles(), QStringList{"Table - Solver"});
}

TEST_F(Windows, OfEarlierJobsAreGoneWhileABatchRuns) {
  std::vector<std::string> files;
  for (const char* name : {"a.inp", "b.inp", "c.inp", "d.inp"}) files.push_back(model(name, smallBeam()));
  open();
  const auto expectNoOthers = [this](qsizetype children) {
    EXPECT_EQ(window->findChildren<views::ChildWindow*>().size(), children);
    EXPECT_EQ(window->findChildren<QMdiSubWindow*>().size(), children);
  };
  int jobs = 0;
  inEachJob([&] {
    ++jobs;
    expectNoOthers(titles().size());
  });
  // All jobs run within one event of the program's loop.
  QEventLoop loop;
  later([&] {
    window->takeCommandLine(files);
    expectNoOthers(11);
    window->activate(&child<views::ChildWindow>("Table - Solver"));
    trigger("mnuWindowAll2");
    expectNoOthers(0);
    loop.quit();
  });
  loop.exec();
  EXPECT_EQ(jobs, 4);
}

TEST_F(Windows, ThatCanNotBeLoadedAreGoneToo) {
  openWith(smallBeam());
  set("frmTable", "State", "7");
  trigger("mnuFileJob0");
  EXPECT_EQ(log.filter("51").size(), 1);
  EXPECT_EQ(window->findChildren<QMdiSubWindow*>().size(), 0);
}

TEST_F(Windows, ClosedDuringAPauseAreGoneAtTheJobsNextEvents) {
  onlyWindows({"TableSolver"});
  openWith(smallBeam());
  QPointer<views::ChildWindow> first;
  QPointer<views::ChildWindow> second;
  bool looked = false;
  atStep(3, [&] {
    trigger("mnuFileJob1");
    window->activate(&child<views::ChildWindow>("Table - Solver"));
    trigger("mnuObjectChart");
    first = &child<views::ChildWindow>("Chart - Moment-Curvature");
    second = &child<views::ChildWindow>("Chart - Load-Displacement");
    closeEntry(*first->frame())->trigger();
    QTest::keyClick(second->frame(), Qt::Key_F4, Qt::ControlModifier);
    EXPECT_EQ(titles().size(), 1);
    later([&] {
      looked = true;
      EXPECT_FALSE(first || second);
      EXPECT_EQ(window->findChildren<QMdiSubWindow*>().size(), 1);
      trigger("mnuFileJob1");
    });
  });
  trigger("mnuFileJob0");
  EXPECT_TRUE(looked);
}

TEST_F(Windows, MayGoUnderWhatIsOpenOverThem) {
  onlyWindows({"TableSolver", "ChartMoment"});
  std::vector<std::string> files;
  for (const char* name : {"a.inp", "b.inp", "c.inp", "d.inp"}) files.push_back(model(name, smallBeam()));
  open();
  const auto chart = [this]() -> views::ChartWindow& { return child<views::ChartWindow>("Chart - Moment"); };
  QPointer<QWidget> menu;
  QPointer<QWidget> options;
  const std::function<void()> kActs[] = {[&] {
                                           QTest::mouseClick(&chart().chart(), Qt::RightButton);
                                           menu = QApplication::activePopupWidget();
                                           ASSERT_TRUE(menu);
                                         },
                                         [&] {
                                           EXPECT_FALSE(menu) << "its entries are gone";
                                           chart().frame()->showSystemMenu();
                                           EXPECT_TRUE(QApplication::activePopupWidget());
                                           QTest::mousePress(&chart().chart(), Qt::LeftButton);
                                         },
                                         [&] {
                                           EXPECT_FALSE(QApplication::activePopupWidget());
                                           QTest::mouseRelease(area().viewport(), Qt::LeftButton);
                                           QTest::mouseDClick(&chart().chart(), Qt::LeftButton);
                                           options = QApplication::activeModalWidget();
                                           ASSERT_TRUE(options);
                                         },
                                         [&] {
                                           ASSERT_TRUE(options);
                                           QTest::mouseClick(options->findChild<QPushButton*>("Command1_0"),
                                                             Qt::LeftButton);
                                           EXPECT_FALSE(options && options->isVisible());
                                         }};
  std::size_t jobs = 0;
  inEachJob([&] { kActs[jobs++](); });
  window->takeCommandLine(files);
  EXPECT_EQ(jobs, 4u);
  EXPECT_EQ(titles().size(), 2);
}

TEST_F(Windows, CommandsFollowTheRunState) {
  // On ('1') or off ('0') at rest, running, paused, over; in the last three the solver table is active.
  const struct {
    const char *on, *names;
  } kRows[] = {{"1001",
                "mnuFileManage0 mnuFileManage1 mnuFileManage2 mnuFileManage3 mnuFileJob0 mnuFileRecentPath0 "
                "mnuObjectSetting4 mnuObjectSectionParameter Toolbar1_Beam Toolbar1_New Toolbar1_Start"},
               {"0110", "mnuFileJob1 mnuFileJob2 Toolbar1_Pause Toolbar1_End"},
               {"0111",
                "mnuEditEdit1 mnuEditEdit4 mnuEditGrid2 mnuWindowArrange0 mnuWindowArrange4 mnuWindowAll0 "
                "Toolbar1_Copy mnuFilePrint1 mnuObjectChart Toolbar1_Chart"},
               {"0001", "mnuWindowAll2"},
               {"1111", "mnuFilePrint0 mnuFileExit mnuToolBar0 mnuToolOption mnuHelpAbout"},
               // Not for the solver table, or no window stands behind them yet.
               {"0000",
                "mnuEditEdit0 mnuEditEdit2 mnuEditEdit3 mnuEditGrid0 mnuEditGrid1 mnuWindowArrange3 "
                "mnuObjectSetDefault mnuObjectFigure Toolbar1_Cut"}};
  const auto expectColumn = [&](int column) {
    ASSERT_EQ(static_cast<int>(state()), column);
    for (const auto& row : kRows)
      for (const QString& name : QString(row.names).split(' ')) {
        auto* const button = window->findChild<QWidget*>(name);
        EXPECT_EQ(button ? button->isEnabled() : action(name).isEnabled(), row.on[column] == '1')
            << name.toStdString() << " in state " << column;
      }
  };
  onlyWindows({"TableSolver"});
  for (const char* slot : {"0", "1", "2", "3", "4"}) set("RecentPath", slot, slot);
  openWith(smallBeam());
  expectColumn(0);
  atStep(3, [&] {
    expectColumn(1);
    trigger("mnuFileJob1");
    expectColumn(2);
    later([&] {
      trigger("mnuFileJob1");
      expectColumn(1);
    });
  });
  trigger("mnuFileJob0");
  expectColumn(3);
}

}  // namespace
}  // namespace torvik::app
