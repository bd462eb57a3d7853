// SPDX-License-Identifier: GPL-3.0-or-later
#include <QMenu>
#include <map>

#include "app/arrange.h"
#include "app/window_fixture.h"

namespace torvik::app {
namespace {

TEST(Tiles, FillTheAreaInAsManyRowsAsTheRootOfTheirCount) {
  const QRect area(10, 20, 1000, 700);
  const struct {
    int count;
    std::vector<int> columns;  ///< windows in each column, or in each row of horizontal tiles
  } kRows[] = {{0, {}},        {1, {1}},        {2, {1, 1}},        {3, {1, 1, 1}},
               {4, {2, 2}},    {5, {2, 3}},     {7, {2, 2, 3}},     {8, {2, 2, 2, 2}},
               {9, {3, 3, 3}}, {11, {3, 4, 4}}, {12, {3, 3, 3, 3}}, {17, {4, 4, 4, 5}}};
  for (const auto& row : kRows)
    for (const Arrangement arrangement : {Arrangement::TileVertical, Arrangement::TileHorizontal}) {
      SCOPED_TRACE(std::to_string(row.count) +
                   (arrangement == Arrangement::TileVertical ? " vertical" : " horizontal"));
      const std::vector<QRect> places = tiles(area, row.count, arrangement);
      ASSERT_EQ(places.size(), static_cast<std::size_t>(row.count));
      // Rectangles within the area that do not overlap and have its size together fill it.
      long long size = 0;
      std::map<int, int> lines;
      for (std::size_t i = 0; i < places.size(); ++i) {
        EXPECT_TRUE(area.contains(places[i]));
        for (std::size_t k = 0; k < i; ++k) EXPECT_FALSE(places[i].intersects(places[k]));
        size += static_cast<long long>(places[i].width()) * places[i].height();
        ++lines[arrangement == Arrangement::TileVertical ? places[i].left() : places[i].top()];
      }
      EXPECT_EQ(size, row.count == 0 ? 0 : 1000 * 700);
      std::vector<int> columns;
      for (const auto& [start, count] : lines) columns.push_back(count);
      EXPECT_EQ(columns, row.columns);
    }
}

class Windows : public WindowTest {
 protected:
  void openThree() {
    onlyWindows({"TableSolver", "ChartMoment", "ChartStress"});
    option("WindowArrange", "3");
    openWith(smallBeam());
    trigger("mnuFileJob0");
  }
  [[nodiscard]] QRect place(const QString& title) const {
    return child<views::ChildWindow>(title).frame()->geometry();
  }
  [[nodiscard]] QList<QMdiSubWindow*> shownFrames() const {
    QList<QMdiSubWindow*> shown;
    for (QMdiSubWindow* frame : area().subWindowList())
      if (frame->isVisible()) shown.append(frame);
    return shown;
  }
  /// The Close entry and the close button of a window, and whether the window went when it was asked to.
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
      ASSERT_NE(closeEntry(*frame), nullptr);
      EXPECT_FALSE(closeEntry(*frame)->isVisible() || closeEntry(*frame)->isEnabled());
      frame->close();
      QTest::keyClick(frame, Qt::Key_F4, Qt::ControlModifier);
      QTest::keyClick(frame, Qt::Key_W, Qt::ControlModifier);
      // Where other windows of the toolkit have their button.
      for (int x = 2; x < 40; x += 3) QTest::mouseClick(frame, Qt::LeftButton, {}, {frame->width() - x, 12});
    }
    action("mnuWindowAll2").trigger();
    EXPECT_EQ(titles().size(), 2);
  };
  atStep(3, [&] {
    tryToClose();
    if (state() != analysis::RunState::Paused) trigger("mnuFileJob1");
    later([&] {
      tryToClose();
      trigger("mnuFileJob2");
    });
  });
  trigger("mnuFileJob0");
  ASSERT_EQ(titles(), QStringList({"Table - Solver", "Chart - Moment"}));
  QMdiSubWindow* const frame = child<views::ChildWindow>("Chart - Moment").frame();
  EXPECT_TRUE(closeEntry(*frame)->isVisible());
  closeEntry(*frame)->trigger();
  EXPECT_EQ(titles(), QStringList{"Table - Solver"});
  trigger("mnuWindowAll2");
  EXPECT_EQ(titles(), QStringList());
  trigger("mnuObjectSectionParameter");
  EXPECT_TRUE(closeEntry(*child<views::ChildWindow>("Table - Section Parameter").frame())->isVisible());
}

TEST_F(Windows, AreArrangedByMenu) {
  openThree();
  const QRect all = area().viewport()->rect();
  trigger("mnuWindowArrange2");
  EXPECT_EQ(place("Chart - Stress"), QRect(0, 0, all.width() / 3, all.height()))
      << "the one opened last comes first";
  EXPECT_EQ(place("Table - Solver").right(), all.right());
  trigger("mnuWindowArrange1");
  EXPECT_EQ(place("Chart - Stress"), QRect(0, 0, all.width(), all.height() / 3));
  trigger("mnuWindowArrange0");
  const QStringList opened = titles();
  for (int i = 1; i < opened.size(); ++i) {
    EXPECT_LT(place(opened[i - 1]).left(), place(opened[i]).left());
    EXPECT_LT(place(opened[i - 1]).top(), place(opened[i]).top());
  }

  // Icons keep their room below the tiles.
  trigger("mnuWindowAll0");
  for (const QMdiSubWindow* frame : shownFrames()) EXPECT_TRUE(frame->isMinimized());
  child<views::ChildWindow>("Chart - Stress").frame()->showNormal();
  trigger("mnuWindowArrange4");
  EXPECT_EQ(place("Table - Solver").bottom(), all.bottom());
  EXPECT_EQ(place("Chart - Moment").left(), place("Table - Solver").right() + 1);
  trigger("mnuWindowArrange1");
  EXPECT_EQ(place("Chart - Stress"), all.adjusted(0, 0, 0, -place("Table - Solver").height()));
  trigger("mnuWindowAll1");
  for (const QMdiSubWindow* frame : shownFrames()) EXPECT_FALSE(frame->isMinimized());

  QMdiSubWindow& maximised = *child<views::ChildWindow>("Chart - Stress").frame();
  maximised.showMaximized();
  trigger("mnuWindowArrange2");
  EXPECT_FALSE(maximised.isMaximized());
  EXPECT_EQ(maximised.width(), all.width() / 3);
}

TEST_F(Windows, AreArrangedByTheOptionWhenAJobOpensThem) {
  openThree();
  const QRect asPlaced = place("Chart - Stress");
  const QRect all = area().viewport()->rect();
  const struct {
    const char* option;
    QRect place;  ///< of the window opened last
  } kRows[] = {{"2", {0, 0, all.width() / 3, all.height()}},
               {"1", {0, 0, all.width(), all.height() / 3}},
               {"3", asPlaced}};
  for (const auto& row : kRows) {
    option("WindowArrange", row.option);
    trigger("mnuFileJob0");
    EXPECT_EQ(place("Chart - Stress").size(), row.place.size()) << row.option;
  }
}

}  // namespace
}  // namespace torvik::app
