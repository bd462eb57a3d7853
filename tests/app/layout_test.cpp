// SPDX-License-Identifier: GPL-3.0-or-later
#include <QStatusBar>
#include <QToolBar>

#include "app/recent_paths.h"
#include "app/window_fixture.h"

namespace torvik::app {
namespace {

class Layout : public WindowTest {
 protected:
  [[nodiscard]] QString shownRecentPaths() const {
    QStringList shown;
    for (int i = 0; i < 5; ++i)
      if (const QAction& entry = action("mnuFileRecentPath" + QString::number(i)); entry.isVisible())
        shown.append(entry.text().section('/', -1));
    return shown.join(' ') + (action("mnuFileRecentPathSepa").isVisible() ? " |" : "");
  }
};

TEST_F(Layout, OneRunHandsItsLayoutToTheNext) {
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  const QRect place(screen.left() + 40, screen.top() + 30, 500, 350);
  open();
  window->setGeometry(place);
  trigger("mnuToolBar0");
  trigger("mnuToolBar1");
  stepBox().setEditText("2.5");
  trigger("mnuFileExit");
  EXPECT_EQ(setting("Tool", "ToolBar"), "0") << "written as Toolbar, read as ToolBar";
  open();
  EXPECT_EQ(window->geometry(), place);
  EXPECT_FALSE(window->findChild<QToolBar*>("Toolbar1")->isVisible() || window->statusBar()->isVisible());
  EXPECT_EQ(stepBox().currentText(), "2.5");
  window->showMaximized();
  QCoreApplication::processEvents();
  trigger("mnuFileExit");
  EXPECT_EQ(setting("mdiMain", "Width"), "500") << "of the window when it is not maximised";
  open();
  EXPECT_TRUE(window->isMaximized());
}

TEST_F(Layout, RecentPathsComeBackAndLoseWhatIsGone) {
  for (const char* name : {"a&b.inp", "c.inp", "d.inp"}) model(name, smallBeam());
  open();
  for (const char* name : {"a&b.inp", "c.inp", "d.inp", "c.inp"}) ASSERT_TRUE(window->openFile(path(name)));
  EXPECT_EQ(shownRecentPaths(), "c.inp d.inp a&&b.inp |");
  trigger("mnuFileExit");
  open();
  EXPECT_EQ(shownRecentPaths(), "c.inp d.inp a&&b.inp |");

  std::filesystem::remove(path("d.inp"));
  trigger("mnuFileRecentPath3");
  EXPECT_EQ(log, QStringList{"box: Can't open " + QString::fromStdString(path("d.inp"))});
  EXPECT_EQ(shownRecentPaths(), "c.inp a&&b.inp |");
  trigger("mnuFileRecentPath4");
  EXPECT_EQ(program.document.currentFile, path("a&b.inp"));
  EXPECT_EQ(shownRecentPaths(), "a&&b.inp c.inp |");
}

TEST(RecentPathList, NeverShowsTheNewestOfSix) {
  RecentPaths recent;
  for (const char* name : {"a", "b", "c", "d", "e", "f"}) recent.add(name);
  EXPECT_EQ(recent.entry(0), "e");
  EXPECT_EQ(recent.entry(4), "a");
  recent.remove("a");
  EXPECT_EQ(recent.entry(0), "f");
}

}  // namespace
}  // namespace torvik::app
