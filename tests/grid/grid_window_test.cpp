// SPDX-License-Identifier: GPL-3.0-or-later
#include "grid/grid_window.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScrollBar>
#include <QtTest/QtTest>
#include <functional>
#include <map>

#include "grid/cell_editor_controls.h"
#include "grid/cells.h"
#include "views/fake_shell.h"
#include "widgets/table_view.h"

namespace torvik::grid {
namespace {

/// A grid in a frame, driven by keys. "<" and the like in a text of keys: see `type`.
class GridWindowTest : public ::testing::Test {
 protected:
  GridWindowTest() {
    model::BarObject bar;
    bar.Number = 2;
    bar.Type = "Elastic";
    bar.Depth = 12;
    initial.Bars = {bar, bar};
    initial.Beams = {{.Use = 1, .Span = 4000, .FlexuralSpan = 1000, .HalfSpanFiberNumber = 50}};
    area.resize(900, 600);
    area.show();
    area.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&area));
  }
  void open(ObjectKind kind = kBar) {
    if (window) window->closeNow();
    document.tables = initial;
    window = new GridWindow(shell, document, kind);
    area.addSubWindow(window)->resize(900, 350);
    window->show();
    window->setFocus();
    view = window->findChild<widgets::TableView*>("MSFlexGrid1");
    document.SavedFlag = true;
  }
  void select(int row, int column) { view->selectCells({row, column, row, column}); }
  [[nodiscard]] std::string place() const {
    return std::to_string(view->cells().Row) + "," + std::to_string(view->cells().Col);
  }
  [[nodiscard]] const std::string& cell(int row, int column) const {
    return window->grid().text(row, column);
  }
  template <class Control>
  [[nodiscard]] Control& control(const char* name) const {
    return *window->findChild<Control*>(name);
  }
  /// The overlay that is open and what it shows; empty where there is none.
  [[nodiscard]] std::string overlay() const {
    std::string found;
    for (const char* name : {"Text1", "UpDown1", "Check1", "Command1", "DropDownCombo1", "DropDownList1"}) {
      auto& widget = control<QWidget>(name);
      if (!widget.isVisible()) continue;
      found += name;
      if (const auto* box = qobject_cast<QComboBox*>(&widget))
        found += ":" + box->currentText().toStdString();
      if (const auto* edit = qobject_cast<QLineEdit*>(&widget)) found += ":" + edit->text().toStdString();
      if (const auto* file = qobject_cast<FileButton*>(&widget)) found += ":" + file->caption().toStdString();
    }
    return found;
  }
  static void press(int key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
  }
  /// Keys by one character each: F is F2, E Enter, X Esc, T Tab, < > ^ v the arrows, B Backspace, S Space.
  static void type(const char* keys) {
    static const std::map<char, Qt::Key> kNamed = {
        {'F', Qt::Key_F2},        {'E', Qt::Key_Return}, {'X', Qt::Key_Escape}, {'T', Qt::Key_Tab},
        {'<', Qt::Key_Left},      {'>', Qt::Key_Right},  {'^', Qt::Key_Up},     {'v', Qt::Key_Down},
        {'B', Qt::Key_Backspace}, {'S', Qt::Key_Space}};
    for (const char* key = keys; *key; ++key) {
      const auto named = kNamed.find(*key);
      if (named != kNamed.end())
        press(named->second);
      else
        QTest::keyClick(QApplication::focusWidget(), *key);
    }
  }

  views::FakeShell shell;
  model::ObjectTables initial;  ///< what a window opens on
  model::Document document;
  QMdiArea area;
  GridWindow* window = nullptr;
  widgets::TableView* view = nullptr;
};

TEST_F(GridWindowTest, EditorsOpenByKeyAndDoubleClick) {
  const struct {
    ObjectKind kind;
    int column;
    const char *keys, *overlay;  ///< lists drop the first key; what a filter holds back changes nothing
  } kRows[] = {{kBar, 0, "F", "Check1"},
               {kBar, 2, "S", "DropDownList1:Elastic"},
               {kBar, 3, "a", "Command1:a"},
               {kBar, 4, "F", "Text1:2UpDown1"},
               {kBar, 5, "D1", "DropDownCombo1:D1"},
               {kBar, 7, "-1x.", "Text1:-1."},
               {kBar, 7, "x", "Text1:12"},
               {kBar, 9, "F", ""},
               {kBeam, 3, "F", ""}};
  for (const auto& row : kRows) {
    SCOPED_TRACE(testing::Message() << static_cast<int>(row.kind) << " " << row.column << " " << row.keys);
    open(row.kind);
    select(0, row.column);
    type(row.keys);
    EXPECT_EQ(overlay(), row.overlay);
    EXPECT_FALSE(document.SavedFlag);
  }
  open();
  const QPoint place = view->visualRect(view->model()->index(1, 7)).center();
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(view->viewport(), Qt::RightButton, {}, place);
  press(Qt::Key_7, Qt::ControlModifier);
  EXPECT_EQ(overlay(), "");
  EXPECT_TRUE(document.SavedFlag);
  QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, place);
  EXPECT_EQ(overlay(), "Text1:12");
  EXPECT_EQ(control<QLineEdit>("Text1").geometry(), view->visualRect(view->model()->index(1, 7)));
}

TEST_F(GridWindowTest, KeysLeaveEditors) {
  const struct {
    int row, column;
    const char *keys, *text, *at, *overlay;  ///< text of the cell, place and overlay after the keys
  } kRows[] = {{0, 7, "5E", "5", "1,7", ""},
               {0, 7, "5T", "5", "0,8", ""},
               {0, 7, "F<<3", "12", "0,7", "Text1:312"},
               {0, 7, "Fv3^4", "12", "0,7", "Text1:4123"},
               {11, 7, "3v", "3", "11,7", ""},
               {0, 0, "FSv", "+", "1,0", ""},
               {0, 0, "FSX", "", "0,0", ""},
               {0, 2, "FvX", "Elastic", "0,2", "DropDownList1:Elastic"},
               {5, 5, "19v", "", "5,5", "DropDownCombo1:D6 - JIS G 3112"},
               {5, 3, "abBScT", "a c", "5,4", ""},
               {5, 3, "abX", "", "5,3", ""}};
  for (const auto& row : kRows) {
    SCOPED_TRACE(testing::Message() << row.row << "," << row.column << " " << row.keys);
    open();
    select(row.row, row.column);
    type(row.keys);
    EXPECT_EQ(cell(row.row, row.column), row.text);
    EXPECT_EQ(place(), row.at);
    EXPECT_EQ(overlay(), row.overlay);
  }
}

TEST_F(GridWindowTest, LosingTheFocusCommitsOnce) {
  QLineEdit outside(&area);
  outside.show();
  const std::function<void()> kWays[] = {
      [&] { outside.setFocus(); },
      [&] { view->verticalScrollBar()->setValue(3); },
      [&] {
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, {200, 60});
      },
      [&] { window->finishEditing(); },
      [&] { window->frame()->showMinimized(); },
  };
  for (int i = 0; const auto& way : kWays) {
    SCOPED_TRACE(i++);
    open();
    shell.messages.clear();
    select(0, 4);
    type("0");
    way();
    EXPECT_EQ(overlay(), "");
    EXPECT_EQ(cell(0, 4), "2");  // rejected
    EXPECT_EQ(shell.messages, QStringList("Should be 1 to 200."));
    window->frame()->showNormal();
  }
  EXPECT_FALSE(outside.hasFocus());
}

TEST_F(GridWindowTest, FilesAreChosenOrTyped) {
  open();
  shell.openAnswer = "/curves/steel.ss";
  select(0, 3);
  type("FE");
  EXPECT_EQ(shell.proposal, "*.ss");
  EXPECT_EQ(overlay(), "Command1:/curves/steel.ss");
  type("BT");
  EXPECT_EQ(cell(0, 3) + " " + cell(0, 2), "/curves/steel.s File");
  select(0, 3);
  shell.openAnswer = "";  // cancelled
  QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(view->currentIndex()).center());
  QTest::mouseClick(&control<QWidget>("Command1"), Qt::LeftButton);
  EXPECT_EQ(shell.proposal, "/curves/steel.s");
  EXPECT_EQ(overlay(), "Command1:/curves/steel.s");
}

TEST_F(GridWindowTest, ClipboardKeys) {
  open();
  view->selectCells({1, 8, 0, 7});
  EXPECT_EQ(control<QLabel>("lblSummary").text(), "Count: 4   Sum: 24");
  press(Qt::Key_Insert, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), "12\t0\r\n12\t0");
  select(3, 14);
  press(Qt::Key_Return);
  EXPECT_EQ(shell.messages, QStringList("torvik MSFlexGrid: Can't paste."));
  select(3, 5);
  press(Qt::Key_Return);
  EXPECT_EQ(view->cells(), (widgets::CellRange{3, 5, 4, 6}));
  press(Qt::Key_Return);  // once
  EXPECT_EQ(cell(3, 5) + cell(4, 6) + cell(5, 5) + place(), "1204,5");
  document.SavedFlag = true;
  QApplication::clipboard()->setText("a\nb\n");  // as spreadsheets of this platform put it
  select(10, 7);
  press(Qt::Key_Insert, Qt::ShiftModifier);
  EXPECT_EQ(cell(10, 7) + cell(11, 7), "ab");
  press(Qt::Key_Backspace, Qt::ShiftModifier);
  EXPECT_EQ(cell(11, 7) + QApplication::clipboard()->text().toStdString(), "a\r\nb");
  EXPECT_TRUE(document.SavedFlag);
}

TEST_F(GridWindowTest, EditorsTakeOneCellFromTheClipboard) {
  const struct {
    int column;
    const char *clipboard, *keys, *text;  ///< keys after the paste
  } kRows[] = {{7, "1\t2\r\n3", "T", "1"}, {5, "16\r\n", "E", "16"}, {3, "/a.ss\n", "bT", "/a.ssb"}};
  for (const auto& row : kRows) {
    open();
    QApplication::clipboard()->setText(row.clipboard);
    select(0, row.column);
    type("F");
    press(Qt::Key_V, Qt::ControlModifier);
    type(row.keys);
    EXPECT_EQ(cell(0, row.column), row.text);
  }
  open();
  QApplication::clipboard()->setText("3\n");
  select(0, 7);
  type("F<");
  press(Qt::Key_V, Qt::ControlModifier);
  type("E");
  EXPECT_EQ(cell(0, 7), "132") << "at the caret";
  open();
  QApplication::clipboard()->setImage(QImage(2, 2, QImage::Format_RGB32));
  select(0, 7);
  press(Qt::Key_Insert, Qt::ShiftModifier);
  EXPECT_EQ(cell(0, 7), "12") << "no text, nothing to paste";
}

TEST_F(GridWindowTest, EveryKindOfChangeIsUndone) {
  open(kBeam);
  QApplication::clipboard()->setText("1\t2");
  model::ObjectTables added;
  added.Beams.resize(4);
  const std::function<void()> kChanges[] = {
      [&] { select(0, 1), type("5000E"); },
      [&] { select(3, 0), type("FSE"); },
      [&] { select(2, 1), window->paste(); },
      [&] { window->cut(); },
      [&] { select(0, 2), press(Qt::Key_Delete); },
      [&] {
        view->selectCells({3, 1, 2, 1}), window->insertRows();
      },
      [&] { window->removeRows(); },
      [&] { window->append(added); },
  };
  std::vector<std::string> states = {pictureOf(window->grid())};
  for (const auto& change : kChanges) {
    change();
    EXPECT_NE(pictureOf(window->grid()), states.back());
    EXPECT_EQ(view->model()->rowCount(), window->grid().rowCount());
    states.push_back(pictureOf(window->grid()));
  }
  document.SavedFlag = true;
  for (std::size_t i = states.size() - 1; i-- > 0;) {
    window->undo();
    EXPECT_EQ(pictureOf(window->grid()), states[i]) << i;
    EXPECT_EQ(window->commands().undo, i > 0);
    EXPECT_EQ(view->model()->rowCount(), window->grid().rowCount());
  }
  EXPECT_FALSE(document.SavedFlag);
  for (std::size_t i = 1; i < states.size(); ++i) {
    EXPECT_TRUE(window->commands().redo);
    window->redo();
    EXPECT_EQ(pictureOf(window->grid()), states[i]) << i;
  }
}

TEST_F(GridWindowTest, ClosingWritesBackWhateverWayItComes) {
  open();
  view->setColumnTwips(8, 1234);
  select(0, 7);
  type("77");
  window->frame()->close();
  window = nullptr;
  EXPECT_EQ(document.tables.Bars[0].Depth, 77);
  EXPECT_EQ(shell.settings.ProfileGetInt("frmGrid", "2ColWidth8", 0), 1234);
  open();
  EXPECT_EQ(view->columnTwips(8), 1234);

  initial.Solids.resize(model::kMaxRows);
  open(kSolid);
  select(model::kMaxRows, 7);
  type("1");
  EXPECT_FALSE(window->closeNow());
  EXPECT_EQ(shell.messages.size(), 1);
  window->deleteCells();
  EXPECT_TRUE(window->closeNow());
  window = nullptr;
  EXPECT_EQ(document.tables.Solids.size(), static_cast<std::size_t>(model::kMaxRows));
}

TEST_F(GridWindowTest, BytesThatNobodyEditedStay) {
  initial.Bars[0].File = "\xE9.ss";  // Latin-1
  initial.Bars[0].Type = "elastic";  // the list does not have it
  open();
  select(0, 2);
  type("FX");
  window->finishEditing();
  EXPECT_EQ(cell(0, 2), "elastic");
  select(0, 3);
  type("F");
  EXPECT_EQ(overlay(), "Command1:\u00E9.ss");
  type("T");
  EXPECT_EQ(cell(0, 3), "\xE9.ss");
  select(0, 3);
  window->cut();
  select(1, 3);
  window->paste();
  EXPECT_EQ(cell(1, 3), "\xE9.ss");
}

}  // namespace
}  // namespace torvik::grid
