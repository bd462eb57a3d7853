// SPDX-License-Identifier: GPL-3.0-or-later
#include <QClipboard>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMenu>

#include "app/window_fixture.h"
#include "widgets/table_view.h"

namespace torvik::app {
namespace {

using model::ObjectKind;

class Grids : public WindowTest {
 protected:
  /// Opens the bars and types 440 over the 450 of the first row's depth; the editor stays open.
  void typeADepth() {
    if (!window->gridOf(ObjectKind::Bar)) trigger("mnuObjectSetting2");
    auto* const view = window->activeGrid()->findChild<widgets::TableView*>("MSFlexGrid1");
    view->selectCells({0, 7, 0, 7});
    view->setFocus();
    for (const char key : {'4', '4', '0'}) QTest::keyClick(QApplication::focusWidget(), key);
    ASSERT_EQ(QApplication::focusWidget()->objectName(), "Text1");
  }
  void press(int key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
  }
  [[nodiscard]] double depth() const { return program.document.tables.Bars.at(0).Depth; }
};

TEST_F(Grids, NothingTypedIsLostWhateverCommandComes) {
  const struct {
    const char* name;
    std::function<void()> way;
    bool keepsTables;  ///< the model is the same one afterwards
  } kRows[] = {
      {"Save", [&] { press(Qt::Key_S, Qt::ControlModifier); }, true},
      {"Save As",
       [&] { dialogs.fileToSave = QString::fromStdString(path("b.inp")), trigger("mnuFileManage3"); }, true},
      {"Start", [&] { press(Qt::Key_F5); }, true},
      {"Figure",
       [&] {
         trigger("mnuObjectFigure");
         EXPECT_EQ(depth(), 440);
         trigger("mnuWindowAll2");
       },
       true},
      {"Child's close", [&] { window->activeGrid()->frame()->close(); }, true},
      {"Quit, refused", [&] { dialogs.yes = false, window->close(), trigger("mnuWindowAll2"); }, true},
      {"Open",
       [&] {
         dialogs.filesToOpen = QStringList{QString::fromStdString(path("a.inp"))}, trigger("mnuFileManage1");
       },
       false},
  };
  onlyWindows({"TableSolver"});
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.name);
    dialogs.yes = true;
    openWith(smallBeam());
    typeADepth();
    EXPECT_FALSE(program.document.SavedFlag);
    row.way();
    EXPECT_EQ(depth(), row.keepsTables ? 440 : 450);
    EXPECT_EQ(window->gridOf(ObjectKind::Bar), nullptr);
    EXPECT_EQ(log.filter("box: Object"), QStringList());
  }
  EXPECT_NE(content("b.inp").find("Depth=440"), std::string::npos);
}

TEST_F(Grids, EditorsHaveTheirOwnUndoAndClipboard) {
  openWith(smallBeam());
  typeADepth();
  press(Qt::Key_A, Qt::ControlModifier);
  press(Qt::Key_X, Qt::ControlModifier);
  press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(qobject_cast<QLineEdit*>(QApplication::focusWidget())->text(), "440");
  press(Qt::Key_Return);
  const auto& grid = window->activeGrid()->grid();
  EXPECT_EQ(grid.text(0, 7), "440");
  EXPECT_TRUE(action("mnuEditUndo").isEnabled());
  press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(grid.text(0, 7), "450");
  EXPECT_FALSE(action("mnuEditUndo").isEnabled());
  typeADepth();
  trigger("mnuEditEdit4");  // a menu entry takes over what was typed
  EXPECT_EQ(grid.text(0, 7), "440");
  EXPECT_NE(QApplication::focusWidget()->objectName(), "Text1");
}

TEST_F(Grids, CommandsFollowTheActiveGridAndAddDefaults) {
  openWith(smallBeam());
  const auto captions = [&] {
    return action("mnuObjectSetting2").text() + action("mnuObjectSetting4").text();
  };
  trigger("mnuObjectSetting2");
  trigger("mnuObjectSetting4");
  EXPECT_EQ(captions(), "&BarAdd Default &Axial Force");
  trigger("mnuObjectSetting2");  // comes to the front
  EXPECT_EQ(captions(), "Add Default &Bar&Axial Force");
  for (const char* on :
       {"mnuEditEdit0", "mnuEditEdit3", "mnuEditGrid0", "mnuEditGrid2", "mnuObjectSetDefault"})
    EXPECT_TRUE(action(on).isEnabled()) << on;

  const auto& grid = window->activeGrid()->grid();
  for (const bool yes : {false, true}) {
    dialogs.yes = yes;
    trigger("mnuObjectSetDefault");
    EXPECT_EQ(setting("Bar", "Area"), yes ? grid.text(0, 6) : "(none)");
  }
  QApplication::clipboard()->setText("abc");
  window->activeGrid()->findChild<widgets::TableView*>()->selectCells({0, 6, 0, 6});
  trigger("mnuEditEdit2");
  trigger("mnuObjectSetDefault");
  EXPECT_EQ(log.filter("Area").filter("expected a number").size(), 1) << "what a row can not begin with";
  EXPECT_NE(setting("Bar", "Area"), "abc");
  trigger("mnuEditUndo");
  program.document.SavedFlag = true;
  trigger("mnuObjectSetting2");
  EXPECT_EQ(window->activeGrid()->currentRow(), 2);
  for (int column = 0; column < grid.columnCount(); ++column)
    EXPECT_EQ(grid.text(2, column), grid.text(0, column)) << column;
  EXPECT_FALSE(program.document.SavedFlag);
  trigger("mnuWindowAll2");
  EXPECT_FALSE(action("mnuObjectSetDefault").isEnabled());
}

}  // namespace
}  // namespace torvik::app
