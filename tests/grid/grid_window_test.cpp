// SPDX-License-Identifier: GPL-3.0-or-later
#include "grid/grid_window.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScrollBar>
#include <QWheelEvent>
#include <QtTest/QtTest>
#include <functional>
#include <map>

#include "grid/cell_editor_controls.h"
#include "views/fake_shell.h"
#include "views/table_view.h"

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
    model::TendonObject tendon;
    tendon.Prestressing = "Post-tensioning";
    tendon.SheathArea = 7;
    initial.Tendons = {tendon};
    initial.Beams = {{.Use = 1, .Span = 4000, .FlexuralSpan = 1000, .HalfSpanFiberNumber = 50}};
    area.resize(900, 600);
    area.show();
    area.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&area));
  }
  void open(ObjectKind kind) {
    if (window) window->closeNow();
    document.tables = initial;
    window = new GridWindow(shell, document, kind);
    area.addSubWindow(window)->resize(900, 350);
    window->show();
    window->setFocus();
    view = window->findChild<views::TableView*>("MSFlexGrid1");
    document.SavedFlag = true;
  }
  void select(int row, int column) { view->selectCells({row, column, row, column}); }
  [[nodiscard]] std::string at() const {
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
      if (const auto* check = qobject_cast<QCheckBox*>(&widget)) found += check->isChecked() ? ":+" : ":";
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
  [[nodiscard]] std::string snapshot() const {
    std::string all;
    for (int row = 0; row < window->grid().rowCount(); ++row) {
      all += window->grid().number(row) + ":";
      for (int column = 0; column < window->grid().columnCount(); ++column) all += cell(row, column) + "|";
    }
    return all;
  }

  views::FakeShell shell;
  model::ObjectTables initial;  ///< what a window opens on
  model::Document document;
  QMdiArea area;
  GridWindow* window = nullptr;
  views::TableView* view = nullptr;
};

TEST_F(GridWindowTest, EditorsOpenByKeyAndDoubleClick) {
  const struct {
    ObjectKind kind;
    int column;
    const char* keys;
    const char* overlay;
  } kRows[] = {
      {ObjectKind::Bar, 0, "F", "Check1:"},
      {ObjectKind::Bar, 0, "5", "Check1:"},
      {ObjectKind::Bar, 2, "F", "DropDownList1:Elastic"},
      {ObjectKind::Bar, 2, "S", "DropDownList1:Elastic"},  // lists drop the first key
      {ObjectKind::Bar, 3, "F", "Command1:"},
      {ObjectKind::Bar, 3, "a", "Command1:a"},
      {ObjectKind::Bar, 4, "F", "Text1:2UpDown1"},
      {ObjectKind::Bar, 4, "31", "Text1:31UpDown1"},
      {ObjectKind::Bar, 5, "F", "DropDownCombo1:"},
      {ObjectKind::Bar, 5, "D1", "DropDownCombo1:D1"},
      {ObjectKind::Bar, 7, "F", "Text1:12"},
      {ObjectKind::Bar, 7, "-1x.", "Text1:-1."},
      {ObjectKind::Bar, 7, "x", "Text1:12"},  // not let through: what stood there stays
      {ObjectKind::Bar, 9, "F", ""},          // not put out
      {ObjectKind::Tendon, 10, "3", "Text1:7"},
      {ObjectKind::Beam, 3, "F", ""},
      {ObjectKind::Beam, 3, "1", ""},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(testing::Message() << static_cast<int>(row.kind) << " " << row.column << " " << row.keys);
    open(row.kind);
    select(0, row.column);
    type(row.keys);
    EXPECT_EQ(overlay(), row.overlay);
    EXPECT_FALSE(document.SavedFlag);
  }
  open(ObjectKind::Bar);
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
    const char* keys;
    const char* text;  ///< of the cell then
    const char* at;
    const char* overlay;
  } kRows[] = {
      {0, 7, "5E", "5", "1,7", ""},
      {0, 7, "5X", "12", "0,7", ""},
      {0, 7, "5T", "5", "0,8", ""},
      {0, 7, "F<B3X", "12", "0,7", ""},
      {0, 7, "F<<3", "12", "0,7", "Text1:312"},
      {0, 7, "Fv3^4", "12", "0,7", "Text1:4123"},
      {5, 7, "3>", "3", "5,8", ""},
      {5, 7, "3<", "3", "5,6", ""},
      {5, 7, "3^", "3", "4,7", ""},
      {5, 7, "3v", "3", "6,7", ""},
      {11, 7, "3v", "3", "11,7", ""},
      {11, 7, "3E", "3", "11,7", ""},
      {0, 0, "FSv", "+", "1,0", ""},
      {0, 0, "FSE", "+", "1,0", ""},
      {0, 0, "FS<", "+", "0,0", ""},
      {0, 0, "FSX", "", "0,0", ""},
      {0, 2, "FvE", "JSCE (Design)", "1,2", ""},
      {0, 2, "FvX", "Elastic", "0,2", "DropDownList1:Elastic"},
      {0, 2, "FvXX", "Elastic", "0,2", ""},
      {5, 2, "FXX", "", "5,2", ""},
      {5, 5, "19>", "19", "5,6", ""},
      {5, 5, "19v", "", "5,5", "DropDownCombo1:D6 - JIS G 3112"},
      {5, 5, "19X", "", "5,5", ""},
      {5, 3, "ab>", "ab", "5,4", ""},
      {5, 3, "abBScT", "a c", "5,4", ""},
      {5, 3, "abX", "", "5,3", ""},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(testing::Message() << row.row << "," << row.column << " " << row.keys);
    open(ObjectKind::Bar);
    select(row.row, row.column);
    type(row.keys);
    EXPECT_EQ(cell(row.row, row.column), row.text);
    EXPECT_EQ(at(), row.at);
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
    open(ObjectKind::Bar);
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

TEST_F(GridWindowTest, ListsDropDownWithoutACommit) {
  open(ObjectKind::Bar);
  select(0, 2);
  type("F");
  press(Qt::Key_Down, Qt::AltModifier);
  ASSERT_NE(QApplication::activePopupWidget(), nullptr);
  EXPECT_EQ(overlay(), "DropDownList1:Elastic");
  type("vE");
  EXPECT_EQ(overlay(), "DropDownList1:JSCE (Design)");
  type("E");
  EXPECT_EQ(cell(0, 2) + at(), "JSCE (Design)1,2");
}

TEST_F(GridWindowTest, SpinButtonsCountWithinTheirRange) {
  open(ObjectKind::Beam);
  window->resize(900, 300);
  select(0, 4);
  type("F");
  auto& up = control<QWidget>("Up");
  QTest::mouseClick(&up, Qt::LeftButton);
  EXPECT_EQ(overlay(), "Text1:100UpDown1");
  EXPECT_EQ(control<QLineEdit>("Text1").selectedText(), "100");
  type("980");
  QTest::mouseClick(&up, Qt::LeftButton);
  EXPECT_EQ(overlay(), "Text1:1000UpDown1");
  QTest::mouseClick(&control<QWidget>("Down"), Qt::LeftButton);
  type("E");
  EXPECT_EQ(cell(0, 4) + " " + cell(0, 5), "950 2.10526315789474");
}

TEST_F(GridWindowTest, FilesAreChosenOrTyped) {
  open(ObjectKind::Bar);
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
  open(ObjectKind::Bar);
  view->selectCells({1, 8, 0, 7});
  EXPECT_EQ(control<QLabel>("lblSummary").text(), "Count: 4   Sum: 24");
  press(Qt::Key_Insert, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), "12\t0\r\n12\t0");
  select(3, 14);
  press(Qt::Key_Return);
  EXPECT_EQ(shell.messages, QStringList("torvik MSFlexGrid: Can't paste."));
  select(3, 5);
  press(Qt::Key_Return);
  EXPECT_EQ(view->cells(), (views::CellRange{3, 5, 4, 6}));
  press(Qt::Key_Return);  // once
  EXPECT_EQ(cell(3, 5) + cell(4, 6) + cell(5, 5) + at(), "1204,5");
  document.SavedFlag = true;
  QApplication::clipboard()->setText("a\nb\n");  // as spreadsheets of this platform put it
  select(10, 7);
  press(Qt::Key_Insert, Qt::ShiftModifier);
  EXPECT_EQ(cell(10, 7) + cell(11, 7), "ab");
  EXPECT_TRUE(view->model()->index(11, 7).data(Qt::BackgroundRole).isValid());
  press(Qt::Key_Backspace, Qt::ShiftModifier);
  EXPECT_EQ(cell(11, 7) + QApplication::clipboard()->text().toStdString(), "a\r\nb");
  EXPECT_TRUE(document.SavedFlag);
}

TEST_F(GridWindowTest, EditorsTakeOneCellFromTheClipboard) {
  const struct {
    int column;
    const char* clipboard;
    const char* keys;  ///< after the paste
    const char* text;
    const char* type;  ///< of the row then
  } kRows[] = {{7, "333\n", "T", "333", "Elastic"},
               {7, "1\t2\r\n3", "T", "1", "Elastic"},
               {5, "16\r\n", "E", "16", "Elastic"},
               {3, "/a.ss\n", "T", "/a.ss", "File"},
               {3, "/a.ss", "bT", "/a.ssb", "File"}};
  for (const auto& row : kRows) {
    SCOPED_TRACE(testing::Message() << row.column << " " << row.clipboard);
    open(ObjectKind::Bar);
    QApplication::clipboard()->setText(row.clipboard);
    select(0, row.column);
    type("F");
    press(Qt::Key_V, Qt::ControlModifier);
    type(row.keys);
    EXPECT_EQ(cell(0, row.column), row.text);
    EXPECT_EQ(cell(0, 2), row.type);
  }
  open(ObjectKind::Bar);
  QApplication::clipboard()->setImage(QImage(2, 2, QImage::Format_RGB32));
  select(0, 7);
  press(Qt::Key_Insert, Qt::ShiftModifier);
  EXPECT_EQ(cell(0, 7), "12") << "no text, nothing to paste";
}

TEST_F(GridWindowTest, EscKeepsATextThatTheListDoesNotHave) {
  initial.Bars[0].Type = "elastic";
  open(ObjectKind::Bar);
  select(0, 2);
  type("FX");
  window->finishEditing();
  EXPECT_EQ(cell(0, 2), "elastic");
}

TEST_F(GridWindowTest, WidthsComeBackAndGiveWayToControls) {
  shell.settings.ProfileWrite("frmGrid", "2ColWidth8", "1500");
  shell.settings.ProfileWrite("frmGrid", "2ColWidth6", "150");  // Diameter, a combo box
  shell.settings.ProfileWrite("frmGrid", "2ColWidth5", "30");   // Number, a spinner
  shell.settings.ProfileWrite("frmGrid", "2ColWidth4", "0");
  open(ObjectKind::Bar);
  EXPECT_EQ(view->columnTwips(8), 1500);
  EXPECT_EQ(view->columnTwips(4), 800) << "what can not be seen can not be dragged";
  select(0, 5);
  type("F");
  EXPECT_GE(view->columnWidth(5), control<QComboBox>("DropDownCombo1").minimumSizeHint().width());
  window->finishEditing();
  select(0, 4);
  type("F");
  EXPECT_EQ(view->columnTwips(5), 800);
}

TEST_F(GridWindowTest, TheMouseScrollsOverAnEditorAndBringsTheMenu) {
  open(ObjectKind::Bar);
  window->frame()->resize(900, 200);
  QCoreApplication::processEvents();
  select(0, 7);
  type("5");
  const QPoint place = control<QLineEdit>("Text1").rect().center();
  QWheelEvent wheel(place, control<QLineEdit>("Text1").mapToGlobal(place), {}, {0, -240}, Qt::NoButton,
                    Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&control<QLineEdit>("Text1"), &wheel);
  EXPECT_GT(view->verticalScrollBar()->value(), 0);
  EXPECT_EQ(cell(0, 7) + overlay(), "5");
  QContextMenuEvent menu(QContextMenuEvent::Mouse, {60, 60}, view->viewport()->mapToGlobal(QPoint(60, 60)));
  QApplication::sendEvent(view->viewport(), &menu);
  EXPECT_EQ(shell.popups, 1);
}

TEST_F(GridWindowTest, EveryKindOfChangeIsUndone) {
  open(ObjectKind::Beam);
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
      [&] { select(9, 0), type("FSE"); },
      [&] { window->append(added); },
  };
  std::vector<std::string> states = {snapshot()};
  for (const auto& change : kChanges) {
    change();
    EXPECT_NE(snapshot(), states.back());
    EXPECT_EQ(view->model()->rowCount(), window->grid().rowCount());
    states.push_back(snapshot());
  }
  EXPECT_EQ(at(), "10,0");
  document.SavedFlag = true;
  for (std::size_t i = states.size() - 1; i-- > 0;) {
    window->undo();
    EXPECT_EQ(snapshot(), states[i]) << i;
    EXPECT_EQ(window->commands().undo, i > 0);
    EXPECT_EQ(view->model()->rowCount(), window->grid().rowCount());
  }
  EXPECT_FALSE(document.SavedFlag);
  for (std::size_t i = 1; i < states.size(); ++i) {
    EXPECT_TRUE(window->commands().redo);
    window->redo();
    EXPECT_EQ(snapshot(), states[i]) << i;
  }
  EXPECT_EQ(at(), "10,0");
}

TEST_F(GridWindowTest, ClosingWritesBackWhateverWayItComes) {
  open(ObjectKind::Bar);
  view->setColumnTwips(8, 1234);
  select(0, 7);
  type("77");
  window->frame()->close();
  window = nullptr;
  EXPECT_EQ(document.tables.Bars[0].Depth, 77);
  EXPECT_EQ(shell.settings.ProfileGetInt("frmGrid", "2ColWidth8", 0), 1234);
  EXPECT_EQ(shell.settings.ProfileGetInt("frmGrid", "State", 9), 0);

  initial.Solids.resize(model::kMaxRows);
  open(ObjectKind::Solid);
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
  open(ObjectKind::Bar);
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
