// SPDX-License-Identifier: GPL-3.0-or-later
#include <QContextMenuEvent>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>

#include "app/window_fixture.h"
#include "base/title.h"

namespace torvik::app {
namespace {

class Layout : public WindowTest {
 protected:
  [[nodiscard]] QToolBar& toolBar() const { return *window->findChild<QToolBar*>("Toolbar1"); }
  [[nodiscard]] QString shownRecentPaths() const {
    QStringList shown;
    for (int i = 0; i < 5; ++i)
      if (const QAction& entry = action("mnuFileRecentPath" + QString::number(i)); entry.isVisible())
        shown.append(entry.text().section('/', -1));
    return shown.join(' ') + (action("mnuFileRecentPathSepa").isVisible() ? " |" : "");
  }
  void exit() { trigger("mnuFileExit"); }
};

TEST_F(Layout, AFirstStartHasItsDefaultsAndWritesNothing) {
  open();
  EXPECT_FALSE(exists("torvik.ini"));
  EXPECT_EQ(window->windowTitle(), "torvik - (New File)");
  EXPECT_EQ(action("mnuFileExit").text(), "E&xit torvik");
  EXPECT_FALSE(action("mnuWindowArrange3").isVisible());
  const QRect screen = window->screen()->availableGeometry();
  EXPECT_NEAR(window->width(), screen.width() * 0.7, 1);
  EXPECT_NEAR(window->geometry().left(), screen.width() * 0.15, 1);
  EXPECT_TRUE(toolBar().isVisible() && window->statusBar()->isVisible());
  EXPECT_EQ(panel("Max. Iteration"), "1000");
  EXPECT_EQ(panel("Status"), "Waiting");
  EXPECT_EQ(stepBox().currentText(), "Small");
}

TEST_F(Layout, OneRunHandsItsLayoutToTheNext) {
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  const QRect place(screen.left() + 40, screen.top() + 30, 500, 350);
  open();
  window->setGeometry(place);
  trigger("mnuToolBar0");
  trigger("mnuToolBar1");
  stepBox().setEditText("2.5");
  exit();
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(setting("Tool", "ToolBar"), "0") << "written as Toolbar, read as ToolBar";
  EXPECT_EQ(setting("Tool", "StatusBar"), "0");
  EXPECT_EQ(setting("mdiMain", "Width"), "500");
  open();
  EXPECT_EQ(window->geometry(), place);
  EXPECT_FALSE(toolBar().isVisible() || window->statusBar()->isVisible());
  EXPECT_FALSE(action("mnuToolBar0").isChecked() || action("mnuToolBar1").isChecked());
  EXPECT_EQ(stepBox().currentText(), "2.5");
  trigger("mnuToolBar0");
  EXPECT_TRUE(toolBar().isVisible());
  EXPECT_EQ(setting("Tool", "toolbar"), "-1");

  window->showMaximized();
  QCoreApplication::processEvents();
  exit();
  EXPECT_EQ(setting("mdiMain", "State"), "2");
  EXPECT_EQ(setting("mdiMain", "Width"), "500") << "of the window when it is not maximised";
  open();
  EXPECT_TRUE(window->isMaximized());
}

TEST_F(Layout, AStoredLargeComesUpAsSmall) {
  option("CurvatureUserRangeStep", "Large");
  open();
  EXPECT_EQ(stepBox().currentText(), "Small");
  exit();
  EXPECT_EQ(setting("Option", "CurvatureUserRangeStep"), "Small");
}

TEST_F(Layout, APlaceThatNoScreenShowsIsNotTaken) {
  for (const auto& [key, value] :
       {std::pair("Left", "-90000"), {"Top", "-9000"}, {"Width", "400"}, {"Height", "300"}})
    set("mdiMain", key, value);
  open();
  EXPECT_TRUE(window->screen()->availableGeometry().contains(window->geometry().center()));
  EXPECT_EQ(window->size(), QSize(400, 300));
}

TEST_F(Layout, WithoutResizeTheFrameSnapsBack) {
  open();
  window->resize(600, 400);
  trigger("mnuToolResize");  // keeps the present layout
  EXPECT_EQ(setting("Tool", "Resize"), "0");
  EXPECT_EQ(setting("mdiMain", "Width"), "600");
  for (int i = 0; i < 2; ++i) {
    window->resize(700, 500);
    EXPECT_TRUE(QTest::qWaitFor([&] { return window->size() == QSize(600, 400); }, 1000)) << "drag " << i;
  }
  trigger("mnuToolResize");
  EXPECT_EQ(setting("Tool", "Resize"), "-1");
  window->resize(700, 500);
  QCoreApplication::processEvents();
  EXPECT_EQ(window->size(), QSize(700, 500));
}

TEST_F(Layout, BarsAreHiddenByTheirMenuEntriesOnly) {
  open();
  for (QWidget* widget : {static_cast<QWidget*>(window->menuBar()), static_cast<QWidget*>(&toolBar())}) {
    QContextMenuEvent rightClick(QContextMenuEvent::Mouse, {5, 5}, widget->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(widget, &rightClick);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr)
        << "the toolkit's menu would leave the check mark behind";
    while (QWidget* popup = QApplication::activePopupWidget()) popup->close();
  }
}

TEST_F(Layout, RecentPathsComeBackAndLoseWhatIsGone) {
  for (const char* name : {"a&b.inp", "c.inp", "d.inp"}) model(name, smallBeam());
  open();
  EXPECT_EQ(shownRecentPaths(), "");
  for (const char* name : {"a&b.inp", "c.inp", "d.inp", "c.inp"}) ASSERT_TRUE(window->openFile(path(name)));
  EXPECT_EQ(shownRecentPaths(), "c.inp d.inp a&&b.inp |");
  EXPECT_EQ(window->windowTitle(), "torvik - " + QString::fromStdString(path("c.inp")));
  exit();
  EXPECT_EQ(setting("RecentPath", "0"), path("a&b.inp"));
  EXPECT_EQ(setting("RecentPath", "5"), "");
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

TEST_F(Layout, QuestionsGuardUnsavedEdits) {
  const std::string file = model("a.inp", smallBeam());
  dialogs.filesToOpen = QStringList{QString::fromStdString(file)};
  open();
  const struct {
    const char* entry;
    const char* question;
  } kRows[] = {{"mnuFileManage0", "question: Object(s) have not been saved.  Create a file ?"},
               {"mnuFileManage1", "question: Object(s) have not been saved.  Open a file ?"},
               {"mnuFileRecentPath4", "question: Object(s) have not been saved.  Open a file ?"},
               {"mnuFileExit", "question: Object(s) have not been saved.  Exit torvik ?"}};
  for (const bool yes : {false, true})
    for (const auto& row : kRows) {
      SCOPED_TRACE(row.entry + std::string(yes ? " yes" : " no"));
      ASSERT_TRUE(window->openFile(file));
      program.document.tables.Bars.clear();
      program.document.SavedFlag = false;
      trigger("mnuObjectSectionParameter");
      log.clear();
      dialogs.yes = yes;
      trigger(row.entry);
      EXPECT_EQ(log, QStringList{row.question});
      EXPECT_EQ(titles().isEmpty(), yes);
      EXPECT_EQ(program.document.SavedFlag, yes && row.entry != std::string("mnuFileExit"));
    }
  EXPECT_FALSE(window->isVisible());
}

TEST_F(Layout, SaveOfANewDocumentAsksForItsName) {
  open();
  program.document.tables = smallBeam();
  trigger("mnuFileManage2");  // cancelled
  EXPECT_EQ(folder.names(), std::set<std::string>());
  dialogs.fileToSave = QString::fromStdString(path("new.inp"));
  trigger("mnuFileManage2");
  EXPECT_EQ(window->windowTitle(), "torvik - " + dialogs.fileToSave);
  dialogs.fileToSave.clear();
  program.document.tables.Beams[0].Span = 4321;
  program.document.SavedFlag = false;
  click("Save");
  EXPECT_TRUE(program.document.SavedFlag);
  EXPECT_NE(content("new.inp").find("Span=4321"), std::string::npos);
}

}  // namespace
}  // namespace torvik::app
