// SPDX-License-Identifier: GPL-3.0-or-later
#include <QAbstractScrollArea>

#include "app/window_fixture.h"

namespace torvik::app {
namespace {

/// On ('1') or off ('0') at rest, running, paused, over; in the last three the solver table is the active
/// window.
struct CommandRow {
  const char* name;
  int first;  ///< index; -1: no array
  int last;
  const char* on;
};

constexpr CommandRow kCommands[] = {
    {"mnuFileManage", 0, 3, "1001"},
    {"mnuFileJob", 0, 0, "1001"},
    {"mnuFileJob", 1, 2, "0110"},
    {"mnuFileRecentPath", 0, 4, "1001"},
    {"mnuFileExit", -1, -1, "1111"},
    {"mnuEditEdit", 0, 0, "0000"},
    {"mnuEditEdit", 1, 1, "0111"},
    {"mnuEditEdit", 2, 3, "0000"},
    {"mnuEditEdit", 4, 4, "0111"},
    {"mnuEditGrid", 0, 1, "0000"},
    {"mnuEditGrid", 2, 2, "0111"},
    {"mnuObjectSectionParameter", -1, -1, "1001"},
    {"mnuToolBar", 0, 1, "1111"},
    {"mnuToolResize", -1, -1, "1111"},
    {"mnuWindowArrange", 0, 2, "0111"},
    {"mnuWindowArrange", 3, 3, "0000"},  // not visible
    {"mnuWindowArrange", 4, 4, "0111"},
    {"mnuWindowAll", 0, 1, "0111"},
    {"mnuWindowAll", 2, 2, "0001"},
    {"mnuHelpHelp", 0, 1, "1111"},
    {"mnuHelpAbout", -1, -1, "1111"},
    // No window stands behind these yet.
    {"mnuFilePrint", 0, 1, "0000"},
    {"mnuObjectSetting", 0, 4, "0000"},
    {"mnuObjectSetDefault", -1, -1, "0000"},
    {"mnuObjectChart", -1, -1, "0000"},
    {"mnuObjectFigure", -1, -1, "0000"},
    {"mnuToolOption", -1, -1, "0000"},
};

constexpr const char* kButtons[][2] = {
    {"New", "mnuFileManage0"},    {"Open", "mnuFileManage1"},      {"Save", "mnuFileManage2"},
    {"Print", "mnuFilePrint1"},   {"Start", "mnuFileJob0"},        {"Pause", "mnuFileJob1"},
    {"End", "mnuFileJob2"},       {"Cut", "mnuEditEdit0"},         {"Copy", "mnuEditEdit1"},
    {"Paste", "mnuEditEdit2"},    {"Beam", "mnuObjectSetting0"},   {"Solid", "mnuObjectSetting1"},
    {"Bar", "mnuObjectSetting2"}, {"Tendon", "mnuObjectSetting3"}, {"Axial Force", "mnuObjectSetting4"},
    {"Chart", "mnuObjectChart"},  {"Figure", "mnuObjectFigure"},   {"Option", "mnuToolOption"},
};

class CommandState : public WindowTest {
 protected:
  void expectColumn(int column) {
    SCOPED_TRACE("state " + std::to_string(column));
    ASSERT_EQ(static_cast<int>(state()), column);
    int found = 0;
    for (const CommandRow& row : kCommands)
      for (int i = row.first; i <= row.last; ++i) {
        const QString name = i < 0 ? QString(row.name) : row.name + QString::number(i);
        EXPECT_EQ(action(name).isEnabled(), row.on[column] == '1') << name.toStdString();
        ++found;
      }
    for (const auto& [key, entry] : kButtons) {
      auto* const button = window->findChild<QWidget*>(QString("Toolbar1_") + key);
      EXPECT_EQ(button->isEnabled(), action(entry).isEnabled()) << key;
    }
    int commands = 0;
    for (const QAction* entry : window->findChildren<QAction*>())
      commands += entry->objectName().startsWith("mnu") && !entry->isSeparator() &&
                  !entry->objectName().startsWith("mnuTable") && !entry->objectName().startsWith("mnuChart");
    EXPECT_EQ(found, commands) << "a command is in no row";
  }
  /// The enabled ones of the commands that a child turns on.
  [[nodiscard]] QStringList ofChild() const {
    QStringList on;
    for (const QAction* entry : window->findChildren<QAction*>())
      if (entry->isEnabled() &&
          (entry->objectName().startsWith("mnuEdit") || entry->objectName().startsWith("mnuWindow")))
        on.append(entry->objectName());
    on.sort();
    return on;
  }
  void clickInto(const QString& title) {
    QWidget* const target = child<views::ChildWindow>(title).focusProxy();
    auto* const view = qobject_cast<QAbstractScrollArea*>(target);
    QTest::mouseClick(view ? view->viewport() : target, Qt::LeftButton);
  }
};

TEST_F(CommandState, FollowsTheRunState) {
  onlyWindows({"TableSolver"});
  for (const char* slot : {"0", "1", "2", "3", "4"}) set("RecentPath", slot, slot);  // what is hidden is off
  openWith(smallBeam());
  expectColumn(0);
  atStep(3, [this] {
    expectColumn(1);
    trigger("mnuFileJob1");
    expectColumn(2);
    later([this] {
      trigger("mnuFileJob1");
      expectColumn(1);
    });
  });
  trigger("mnuFileJob0");
  expectColumn(3);
  trigger("mnuFileManage0");
  expectColumn(0);
}

TEST_F(CommandState, FollowsTheActiveWindow) {
  const QStringList kWindow = {"mnuWindowAll0",     "mnuWindowAll1",     "mnuWindowAll2",
                               "mnuWindowArrange0", "mnuWindowArrange1", "mnuWindowArrange2",
                               "mnuWindowArrange4"};
  const QStringList kTable = QStringList{"mnuEditEdit1", "mnuEditEdit4", "mnuEditGrid2"} + kWindow;
  const QStringList kChart = QStringList{"mnuEditEdit1"} + kWindow;
  onlyWindows({"TableSolver", "TableBar", "ChartMoment"});
  openWith(smallBeam());
  trigger("mnuFileJob0");
  const struct {
    const char* title;
    QStringList on;
  } kRows[] = {{"Table - Bar (Tension +)", kTable}, {"Chart - Moment", kChart}, {"Table - Solver", kTable}};
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.title);
    clickInto(row.title);
    EXPECT_EQ(ofChild(), row.on);
  }
  clickInto("Chart - Moment");
  child<views::ChildWindow>("Chart - Moment").frame()->close();
  EXPECT_EQ(ofChild(), kTable) << "the next window takes over";
  trigger("mnuWindowAll2");
  EXPECT_EQ(ofChild(), QStringList());
}

}  // namespace
}  // namespace torvik::app
