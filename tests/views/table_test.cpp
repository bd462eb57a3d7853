// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QtTest/QtTest>
#include <memory>

#include "base/errors.h"
#include "base/files.h"
#include "views/fake_shell.h"
#include "views/table_view.h"
#include "views/table_window.h"
#include "views/twips.h"

namespace torvik::views {
namespace {

/// Three solids (1 and 3 put out), a bar, two tendons (the second put out).
model::ObjectTables sampleJob() {
  model::ObjectTables job;
  job.Solids.resize(3);
  for (int i = 0; i < 3; ++i) {
    model::SolidObject& solid = job.Solids[static_cast<std::size_t>(i)];
    solid.Number = static_cast<std::int16_t>(50 - i);  // must not be shown
    solid.Output = i != 1;
    solid.Area = 15000 + i;
    solid.Depth = 12.5 - 25 * i;
    solid.UltimateStrain = 0.0035;
  }
  job.Bars.resize(1);
  job.Bars[0].Area = 506.7;
  job.Bars[0].InitialStrain = 7;  // is no column of its own
  job.Tendons.resize(2);
  job.Tendons[1].Output = 1;
  job.Tendons[1].Depth = 600;
  return job;
}

class TableTest : public ::testing::Test {
 protected:
  /// Opens a window in a frame, as the program does.
  TableWindow& open(TableKind kind, const model::ObjectTables& job = sampleJob()) {
    window = new TableWindow(shell, kind, job);
    frame = area.addSubWindow(window);
    area.resize(900, 600);
    area.show();
    frame->resize(500, 300);
    frame->show();
    window->setFocus();
    QCoreApplication::processEvents();
    view = window->findChild<TableView*>("MSFlexGrid1");
    return *window;
  }
  void addRow(int step, double first = 1) {
    window->table().beginRow(step);
    for (int column = 0; column < window->table().columnCount(); ++column)
      window->table().cell(column, first + column);
    window->table().endRow();
  }
  void addRows(int count) {
    const int first = window->table().rowCount() - 1;
    for (int i = 0; i < count; ++i) addRow(first + i);
    window->table().flushNow();
    QCoreApplication::processEvents();
  }
  [[nodiscard]] QString text(int row, int column) const {
    return column == 0 ? window->table().headerData(row, Qt::Vertical).toString()
                       : window->table().index(row, column - 1).data().toString();
  }
  [[nodiscard]] QString headers() const {
    QStringList texts{view->fixedCaption()};
    for (int i = 0; i < window->table().columnCount(); ++i)
      texts += window->table().headerData(i, Qt::Horizontal).toString();
    return texts.join('|');
  }
  [[nodiscard]] QPoint headerCentre(int column) const {
    const QHeaderView* header = view->horizontalHeader();
    return {header->sectionViewportPosition(column) + header->sectionSize(column) / 2, header->height() / 2};
  }
  void doubleClickHeader(int column) {
    QWidget* header = view->horizontalHeader()->viewport();
    const QPoint point = headerCentre(column);
    QTest::mouseClick(header, Qt::LeftButton, {}, point);
    QTest::mouseDClick(header, Qt::LeftButton, {}, point);
    QTest::mouseRelease(header, Qt::LeftButton, {}, point);
  }
  void clickCell(int row, int column) {
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                      view->visualRect(window->table().index(row, column)).center());
  }
  void drag(int row, int column, int rowTo, int columnTo) {
    const auto centre = [&](int r, int c) { return view->visualRect(window->table().index(r, c)).center(); };
    QTest::mousePress(view->viewport(), Qt::LeftButton, {}, centre(row, column));
    QTest::mouseMove(view->viewport(), centre(rowTo, columnTo));
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, centre(rowTo, columnTo));
  }
  [[nodiscard]] bool isAtBottom() const {
    return view->verticalScrollBar()->value() == view->verticalScrollBar()->maximum();
  }

  FakeShell shell;
  QMdiArea area;
  TableWindow* window = nullptr;
  QMdiSubWindow* frame = nullptr;
  TableView* view = nullptr;
};

TEST_F(TableTest, LayoutOfEachKind) {
  model::ObjectTables noOutput = sampleJob();
  for (auto& solid : noOutput.Solids) solid.Output = 0;
  noOutput.Tendons[1].Output = 2;  // only 1 is on
  const char* const object = "No|Strain w/o Load|Strain|Stress|Force|Area|Depth|Ultimate Strain";
  const std::string result = "Output|Load|Displacement|Moment|Curvature|Neutral Axis Depth|Compression Force";
  const struct {
    const char* name;
    TableKind kind;
    model::ObjectTables job;
    const char* title;
    std::string headers;
    int rows;
    bool chart;
  } cases[] = {
      {"solid", TableKind::Solid, sampleJob(), "Table - Solid (Compression +)", object, 3, false},
      {"bar", TableKind::Bar, sampleJob(), "Table - Bar (Tension +)", object, 1, false},
      {"tendon", TableKind::Tendon, sampleJob(), "Table - Tendon (Tension +)", object, 2, false},
      {"section",
       TableKind::SectionParameter,
       {},
       "Table - Section Parameter",
       "Section|A|y'|y|I|Z'|Z|E|EI|EA|Note",
       5,
       false},
      {"solver, numbers with a gap", TableKind::Solver, sampleJob(), "Table - Solver",
       result + "|Solid Strain 1|Solid Strain 3|Tendon Strain 2", 1, true},
      {"solver without output", TableKind::Solver, noOutput, "Table - Solver", result, 1, true},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    open(row.kind, row.job);
    EXPECT_EQ(window->objectName(), "frmTable");
    EXPECT_EQ(window->Tag(), QString::number(static_cast<int>(row.kind)));
    EXPECT_EQ(window->windowTitle(), row.title);
    EXPECT_EQ(headers().toStdString(), row.headers);
    EXPECT_EQ(window->table().rowCount(), row.rows);
    EXPECT_EQ(view->cells(), (CellRange{0, 0, 0, 0}));
    EXPECT_EQ(view->horizontalHeader()->height(), 2 * view->rowHeight(0));
    const ChildCommands commands = window->commands();
    EXPECT_TRUE(commands.print && commands.copy && commands.selectAll && commands.originalColumnWidth);
    EXPECT_EQ(commands.chart, row.chart);
    EXPECT_FALSE(commands.cut || commands.paste || commands.deleteCells || commands.insertRow ||
                 commands.removeRow || commands.setDefault || commands.figure);
    window->closeNow();
    EXPECT_EQ(shell.deactivated, window);
  }
}

TEST_F(TableTest, KindOutOfRange) {
  for (const int kind : {-1, 5, 51}) {
    try {
      const TableWindow wrong(shell, static_cast<TableKind>(kind), {});
      ADD_FAILURE() << kind;
    } catch (const base::InternalError& error) {
      EXPECT_EQ(error.number(), 51) << kind;
    }
  }
}

TEST_F(TableTest, ObjectTableFormats) {
  open(TableKind::Solid);
  EXPECT_EQ(text(2, 0), "3");
  EXPECT_EQ(text(2, 1), "");
  EXPECT_EQ(text(2, 4), "");
  EXPECT_EQ(text(2, 5), "1.5002E+04");
  EXPECT_EQ(text(2, 6), "-3.7500E+01");
  EXPECT_EQ(text(2, 7), "3.5000E-03");
  const double base[] = {0, -1.23456789012e-4, 3};
  const double strain[] = {1, 2, 0.000123456};
  const double stress[] = {0, -28.00005, 1e100};
  const double force[] = {-0.0, 1234567, 6};
  window->table().setStrainWithoutLoad(base);
  window->table().setCurrent(strain, stress, force);
  EXPECT_EQ(text(0, 1), "0.00000000E+00");
  EXPECT_EQ(text(1, 1), "-1.23456789E-04");
  EXPECT_EQ(text(2, 2), "1.2346E-04");
  EXPECT_EQ(text(1, 3), "-2.8000E+01");
  EXPECT_EQ(text(2, 3), "1.0000E+100");
  EXPECT_EQ(text(0, 4), "0.0000E+00");
  EXPECT_EQ(text(1, 4), "1.2346E+06");
  EXPECT_EQ(text(1, 5), "1.5001E+04");
  EXPECT_THROW(window->table().setStrainWithoutLoad(std::span(base).first(2)), base::InternalError);
  EXPECT_THROW(window->table().beginRow(0), base::InternalError);
}

TEST_F(TableTest, SectionParameters) {
  open(TableKind::SectionParameter);
  EXPECT_EQ(text(0, 0) + text(0, 1) + text(4, 10), "");
  analysis::SectionParameterTable sections;
  sections.rows[1] = {1, 20, 300, 4e10, 5e5, 6e6, 28000, 8e14, 9e9};
  window->table().setSectionParameters(sections);
  QStringList row;
  for (int column = 0; column <= 10; ++column) row += text(1, column);
  EXPECT_EQ(row.join('|').toStdString(),
            "c|1.0000E+00|2.0000E+01|3.0000E+02|4.0000E+10|5.0000E+05|6.0000E+06|2.8000E+04|8.0000E+14|"
            "9.0000E+09|Solid - Bars - Ducts");
  EXPECT_EQ(text(0, 1), "0.0000E+00");
  EXPECT_EQ(text(4, 0) + text(4, 10), "eSolid - Bars - Tendons + Eq.Bars + Eq.Tendons");
}

TEST_F(TableTest, SolverRowsGrowAndCrossingsAreColoured) {
  ResultTable& table = open(TableKind::Solver).table();
  const auto back = [&](int row, int column) { return table.index(row, column).data(Qt::BackgroundRole); };
  QSignalSpy changed(&table, &QAbstractItemModel::dataChanged);
  table.beginRow(0);
  table.cell(0, 1.0 / 3);
  table.cell(3, 1e-7);
  table.cell(7, 0.002);
  table.watchCrossed(7);
  // In the pause at a crossing the row is there as far as it has come.
  QTest::qWait(100);
  EXPECT_EQ(table.rowCount(), 1);
  EXPECT_EQ(text(0, 0), "1");
  EXPECT_EQ(text(0, 1), "0.333333333333333");
  EXPECT_EQ(text(0, 4), "1E-07");
  EXPECT_EQ(text(0, 9), "");
  EXPECT_EQ(back(0, 7).value<QColor>(), QColor(192, 192, 192));
  EXPECT_FALSE(back(0, 6).isValid());
  EXPECT_EQ(table.headerData(0, Qt::Vertical, Qt::BackgroundRole).value<QColor>(), QColor(255, 255, 255));
  const QImage image = view->grab().toImage();
  const QPoint header(view->verticalHeader()->x() + 3, view->verticalHeader()->y() + 3);
  EXPECT_EQ(image.pixelColor(header * image.devicePixelRatio()), QColor(255, 255, 255));
  const QPoint corner = view->visualRect(table.index(0, 7)).bottomRight() - QPoint(2, 2);
  EXPECT_EQ(image.pixelColor(view->viewport()->mapTo(view, corner) * image.devicePixelRatio()),
            QColor(192, 192, 192));

  table.cell(8, 5);
  table.endRow();
  addRow(1);
  EXPECT_EQ(table.rowCount(), 1);  // nothing was told to the view yet
  QTest::qWait(100);
  EXPECT_EQ(table.rowCount(), 3);
  ASSERT_EQ(changed.count(), 2);
  EXPECT_EQ(changed[1][1].toModelIndex(), table.index(0, 8));  // the rows that were there before
  EXPECT_EQ(text(0, 9), "5");
  EXPECT_EQ(text(1, 0), "2");
  EXPECT_EQ(text(2, 0) + text(2, 1), "");
  EXPECT_FALSE(back(1, 7).isValid());
  EXPECT_FALSE(table.headerData(1, Qt::Vertical, Qt::BackgroundRole).isValid());
}

TEST_F(TableTest, BottomRowIsFollowed) {
  open(TableKind::Solver);
  addRows(40);
  EXPECT_EQ(view->cells(), (CellRange{40, 0, 40, 0}));
  EXPECT_TRUE(isAtBottom());

  // A lower window keeps the bottom row in sight.
  frame->resize(500, 200);
  QCoreApplication::processEvents();
  EXPECT_TRUE(isAtBottom());

  // The user looks at earlier rows: the current cell goes on, the view stays.
  view->verticalScrollBar()->setValue(10);
  addRows(5);
  EXPECT_EQ(view->cells().Row, 45);
  EXPECT_EQ(view->verticalScrollBar()->value(), 10);

  // Back at the end, the view follows again; along a column of the user's choice.
  QTest::keyClick(view, Qt::Key_End, Qt::ControlModifier);
  addRows(5);
  EXPECT_EQ(view->cells(), (CellRange{50, 8, 50, 8}));
  EXPECT_TRUE(isAtBottom());

  // Fitting a column is no reason to stay behind, even if a row comes between the two clicks.
  QTest::keyClick(view, Qt::Key_Home);
  QWidget* header = view->horizontalHeader()->viewport();
  QTest::mouseClick(header, Qt::LeftButton, {}, headerCentre(1));
  addRows(1);
  QTest::mouseDClick(header, Qt::LeftButton, {}, headerCentre(1));
  EXPECT_EQ(view->cells(), (CellRange{51, 1, 51, 1}));
  addRows(1);
  EXPECT_EQ(view->cells(), (CellRange{52, 1, 52, 1}));
  EXPECT_TRUE(isAtBottom());

  // A selection elsewhere keeps its place and the view.
  clickCell(50, 0);
  const int value = view->verticalScrollBar()->value();
  addRows(20);
  EXPECT_EQ(view->cells(), (CellRange{50, 0, 50, 0}));
  EXPECT_EQ(view->verticalScrollBar()->value(), value);
}

TEST_F(TableTest, HiddenTableIsToldNothing) {
  open(TableKind::Solver);
  QSignalSpy inserted(&window->table(), &QAbstractItemModel::rowsInserted);
  frame->showMinimized();
  QTest::qWait(50);
  for (int step = 0; step < 50; ++step) addRow(step);
  QTest::qWait(100);
  EXPECT_EQ(inserted.count(), 0);
  frame->showNormal();
  QTest::qWait(100);
  EXPECT_EQ(inserted.count(), 1);
  EXPECT_EQ(window->table().rowCount(), 51);
  EXPECT_EQ(view->cells().Row, 50);
  EXPECT_TRUE(isAtBottom());
}

TEST_F(TableTest, ColumnWidthsSurvive) {
  // 807 and 1001 are no whole pixels at 96 dpi.
  shell.settings =
      "[frmTable]\n4FixedColWidth0=1001\n4ColWidth1=807\n4ColWidth9=0\n4ColWidth3=-7\n1ColWidth2=2000\n";
  open(TableKind::Solver);
  const int dpi = view->logicalDpiX();
  EXPECT_EQ(view->verticalHeader()->width(), pixelsOfTwips(1001, dpi));
  EXPECT_EQ(view->columnWidth(0), pixelsOfTwips(807, dpi));
  EXPECT_EQ(view->columnWidth(1), pixelsOfTwips(800, dpi));
  window->closeNow();
  const char* const unchanged =
      "[frmTable]\n4FixedColWidth0=1001\n4ColWidth1=807\n4ColWidth9=0\n4ColWidth3=800\n1ColWidth2=2000\n"
      "State=0\n4ColWidth2=800\n4ColWidth4=800\n4ColWidth5=800\n4ColWidth6=800\n4ColWidth7=800\n4ColWidth8="
      "800\n";
  EXPECT_EQ(shell.settings, unchanged);

  // The user drags the edges of the second column and of the fixed one.
  open(TableKind::Solver);
  QWidget* header = view->horizontalHeader()->viewport();
  const QPoint edge(view->horizontalHeader()->sectionViewportPosition(2) - 1, 5);
  QTest::mousePress(header, Qt::LeftButton, {}, edge);
  QTest::mouseMove(header, edge + QPoint(47, 0));
  QTest::mouseRelease(header, Qt::LeftButton, {}, edge + QPoint(47, 0));
  auto* corner = view->findChild<QWidget*>("FixedCorner");
  const QPoint cornerEdge(corner->width() - 1, 5);
  const int widthBefore = corner->width();
  QTest::mousePress(corner, Qt::LeftButton, {}, cornerEdge);
  QTest::mouseMove(corner, cornerEdge + QPoint(11, 0));
  QTest::mouseRelease(corner, Qt::LeftButton, {}, cornerEdge + QPoint(11, 0));
  EXPECT_EQ(corner->width(), widthBefore + 11);
  const int second = pixelsOfTwips(800, dpi) + 47;
  window->closeNow();
  open(TableKind::Solver);
  EXPECT_EQ(view->columnWidth(1), second);
  EXPECT_EQ(view->columnTwips(2), twipsOfPixels(second, dpi));
  EXPECT_EQ(view->verticalHeader()->width(), widthBefore + 11);
  EXPECT_EQ(view->columnTwips(1), 807);

  // Back to the original width: the columns of the selection, and no other.
  drag(0, 2, 0, 1);
  window->originalColumnWidth();
  EXPECT_EQ(view->columnTwips(2), 800);
  EXPECT_EQ(view->columnTwips(1), 807);
}

TEST_F(TableTest, LayoutIsRestoredAndARunningJobKeepsItOpen) {
  shell.settings = "[frmTable]\nState=2\n";
  shell.state = analysis::RunState::Running;
  open(TableKind::Solver).load();
  EXPECT_TRUE(frame->isMaximized());
  const QPointer<TableWindow> alive = window;
  frame->close();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  ASSERT_TRUE(alive && alive->isVisible());
  EXPECT_EQ(shell.settings, "[frmTable]\nState=2\n");
  frame->showMinimized();
  window->closeNow();
  EXPECT_EQ(shell.readSettings().ProfileGetInt("frmTable", "State", -1), 1);

  shell.state = analysis::RunState::AtRest;
  open(TableKind::Bar).load();
  EXPECT_FALSE(frame->isMinimized());  // 1 opens as 0
  frame->close();
  EXPECT_EQ(shell.deactivated, window);
  EXPECT_EQ(shell.readSettings().ProfileGetInt("frmTable", "1ColWidth7", -1), 800);
}

TEST(Twips, RoundTrip) {
  for (const int dpi : {72, 96, 120, 192, 1440})
    for (int pixels = 0; pixels < 2000; ++pixels)
      ASSERT_EQ(pixelsOfTwips(twipsOfPixels(pixels, dpi), dpi), pixels) << dpi;
  EXPECT_EQ(pixelsOfTwips(800, 96), 53);
  EXPECT_EQ(pixelsOfTwips(1440, 120), 120);
  EXPECT_EQ(twipsOfPixels(53, 110), 694);
}

TEST_F(TableTest, DoubleClickOnTheHeaderFits) {
  open(TableKind::Solid);
  const double base[] = {0, -1.23456789012e-4, 3};
  window->table().setStrainWithoutLoad(base);
  window->table().flushNow();
  const QFontMetricsF metrics(view->font());
  const auto isFitted = [&](int column, const char* longest) {
    const double bare = metrics.horizontalAdvance(longest);
    return view->columnWidth(column) > bare + 4 && view->columnWidth(column) < bare + 16;
  };
  const int original = view->columnWidth(1);
  doubleClickHeader(0);
  EXPECT_TRUE(isFitted(0, "-1.23456789E-04"));
  EXPECT_EQ(view->cells(), (CellRange{0, 0, 0, 0}));
  doubleClickHeader(6);
  EXPECT_TRUE(isFitted(6, "Ultimate Strain"));  // the header counts
  EXPECT_EQ(view->cells(), (CellRange{0, 6, 0, 6}));
  EXPECT_EQ(view->columnWidth(1), original);

  // All columns of a selection that ends in the column, whichever way it was drawn.
  drag(0, 4, 1, 2);
  doubleClickHeader(2);
  EXPECT_EQ(view->cells(), (CellRange{0, 4, 1, 2}));
  for (const int column : {2, 3, 4}) EXPECT_NE(view->columnWidth(column), original) << column;
  EXPECT_EQ(view->columnWidth(1), original);
  EXPECT_EQ(view->columnWidth(5), original);

  const int fixed = view->verticalHeader()->width();
  auto* corner = view->findChild<QWidget*>("FixedCorner");
  QTest::mouseDClick(corner, Qt::LeftButton, {}, corner->rect().center());
  EXPECT_LT(view->verticalHeader()->width(), fixed);

  // A data cell fits nothing.
  QTest::mouseDClick(view->viewport(), Qt::LeftButton, {},
                     view->visualRect(window->table().index(0, 5)).center());
  EXPECT_EQ(view->columnWidth(5), original);
}

TEST(ShortenedNumber, RoundsToWhatFits) {
  const struct {
    const char* text;
    int room;  ///< characters
    const char* shortened;
  } cases[] = {
      {"5.1667E+05", 6, "5.17E5"},
      {"-1.0751E-04", 7, "-1.1E-4"},
      {"0.00000000E+00", 6, "0.00E0"},
      {"9.9996E+09", 6, "1.0E10"},
      {"1.0000E+100", 7, "1.0E100"},
      {"1.2346E-10", 7, "1.2E-10"},
      {"3E-05", 3, ""},  // no room for the exponent
      {"3E-05", 4, "3E-5"},
      {"32098.7654", 6, "32099"},
      {"32098.7654", 7, "32098.8"},
      {"-0.123456789012345", 6, "-0.123"},
      {"0.000669123", 7, "6.69E-4"},  // more digits than 0.00067 has
      {"16466666.6666667", 6, "1.65E7"},
      {"0.00030300", 6, "3.0E-4"},  // not 0.0003
      {"0.00123456", 6, "0.0012"},
      {"366.9", 3, "367"},
      {"999.96", 4, "1000"},
      {"999.96", 3, "1E3"},
      {"1234567", 2, ""},
      {"Solid - Bars", 6, ""},
      {"", 6, ""},
  };
  for (const auto& row : cases)
    EXPECT_EQ(
        shortenedNumber(row.text, row.room, [&](const QString& text) { return text.size() <= row.room; })
            .toStdString(),
        row.shortened)
        << row.text << " in " << row.room;
}

TEST_F(TableTest, CopyTakesTheRectangle) {
  open(TableKind::Solver);
  addRows(2);
  view->verticalScrollBar()->setValue(0);
  QSignalSpy byKeyboard(window, &TableWindow::copiedByKeyboard);
  const auto clipboard = [] { return QApplication::clipboard()->text().toStdString(); };
  clickCell(1, 3);
  window->copy();
  EXPECT_EQ(clipboard(), "4");
  drag(1, 2, 0, 1);
  EXPECT_EQ(view->cells(), (CellRange{1, 2, 0, 1}));
  QTest::keyClick(view, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(clipboard(), "2\t3\r\n2\t3");
  EXPECT_EQ(byKeyboard.count(), 0);
  clickCell(2, 3);
  QTest::mouseClick(view->horizontalHeader()->viewport(), Qt::LeftButton, {}, headerCentre(3));
  EXPECT_EQ(view->cells(), (CellRange{0, 3, 2, 3}));
  QTest::keyClick(view, Qt::Key_Insert, Qt::ControlModifier);
  EXPECT_EQ(clipboard(), "4\r\n4\r\n");
  EXPECT_EQ(byKeyboard.count(), 1);

  // Also where the frame's Copy has the same keys.
  QAction menuCopy;
  menuCopy.setShortcuts({QKeySequence("Ctrl+C"), QKeySequence("Ctrl+Ins")});
  area.addAction(&menuCopy);
  QSignalSpy byMenu(&menuCopy, &QAction::triggered);
  QTest::keyClick(view, Qt::Key_Insert, Qt::ControlModifier);
  EXPECT_EQ(byKeyboard.count(), 2);
  EXPECT_EQ(byMenu.count(), 0);
  QTest::keyClick(view, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(byMenu.count(), 1);

  // All: the fixed cells are never in it, and the rows that the view does not know yet are.
  const char* const row = "1\t2\t3\t4\t5\t6\t7\t8\t9\r\n";
  addRow(2);
  window->selectAll();
  EXPECT_EQ(view->cells(), (CellRange{0, 0, 3, 8}));
  window->copy();
  EXPECT_EQ(clipboard(), std::string(row) + row + row + "\t\t\t\t\t\t\t\t");
  clickCell(0, 0);
  auto* corner = view->findChild<QWidget*>("FixedCorner");
  QTest::mouseClick(corner, Qt::LeftButton, {}, corner->rect().center());
  EXPECT_EQ(view->cells(), (CellRange{0, 0, 3, 8}));
  clickCell(0, 0);
  QTest::keyClick(view, Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(view->cells(), (CellRange{0, 0, 3, 8}));
}

TEST_F(TableTest, KeysMoveTheCurrentCell) {
  open(TableKind::Solver);
  addRows(2);
  const struct {
    const char* name;
    CellRange from;
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    CellRange to;
  } cases[] = {
      {"Enter", {0, 1, 0, 1}, Qt::Key_Return, {}, {1, 1, 1, 1}},
      {"keypad Enter", {0, 1, 0, 1}, Qt::Key_Enter, Qt::KeypadModifier, {1, 1, 1, 1}},
      {"Enter in the last row", {2, 1, 2, 1}, Qt::Key_Return, {}, {2, 1, 2, 1}},
      {"Enter counts from the current cell, not from the far corner",
       {1, 4, 0, 2},
       Qt::Key_Return,
       {},
       {2, 4, 2, 4}},
      {"Tab", {0, 1, 0, 1}, Qt::Key_Tab, {}, {0, 2, 0, 2}},
      {"Tab in the last column", {0, 8, 0, 8}, Qt::Key_Tab, {}, {0, 8, 0, 8}},
      {"Shift+Tab", {0, 1, 0, 1}, Qt::Key_Backtab, Qt::ShiftModifier, {0, 0, 0, 0}},
      {"Shift+Tab in the first column", {0, 0, 0, 0}, Qt::Key_Backtab, Qt::ShiftModifier, {0, 0, 0, 0}},
      {"Delete deletes nothing", {0, 0, 0, 0}, Qt::Key_Delete, {}, {0, 0, 0, 0}},
      {"a letter searches nothing", {0, 2, 0, 2}, Qt::Key_3, {}, {0, 2, 0, 2}},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    view->selectCells(row.from);
    QTest::keyClick(view, row.key, row.modifiers);
    EXPECT_EQ(view->cells(), row.to);
    EXPECT_EQ(text(0, 1), "1");
  }
}

TEST_F(TableTest, SavesAllRows) {
  const QTemporaryDir folder;
  open(TableKind::Solver);
  addRow(0);
  window->table().beginRow(1);
  window->table().cell(0, -1.0 / 3);  // a job that was ended within the row
  QAction* const save = window->findChild<QAction*>("mnuTableSaveAs");
  ASSERT_TRUE(window->ownActions().contains(save));
  const std::string head[] = {
      "Output,Load,Displacement,Moment,Curvature,Neutral Axis Depth,Compression Force,Solid Strain 1,"
      "Solid Strain 3,Tendon Strain 2\r\n",
      "1,1,2,3,4,5,6,7,8,9\r\n", "2,-0.333333333333333,,,,,,,,\r\n"};
  const std::string commas = head[0] + head[1] + head[2];
  std::string tabs = commas;
  std::replace(tabs.begin(), tabs.end(), ',', '\t');
  const struct {
    const char* name;
    const std::string& content;
  } cases[] = {{"a.csv", commas}, {"a.TSV", tabs}, {"a.txt", tabs}, {"a.tab", tabs}, {"a", commas}};
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    shell.saveAnswer = folder.filePath(row.name);
    save->trigger();
    EXPECT_EQ(base::readWholeFile(shell.saveAnswer.toStdString()), row.content);
  }
  EXPECT_EQ(shell.proposal, "Solver.csv");
  EXPECT_TRUE(shell.messages.isEmpty());
  shell.saveAnswer.clear();
  save->trigger();
  EXPECT_TRUE(shell.messages.isEmpty());
  shell.saveAnswer = folder.filePath("missing/a.csv");
  save->trigger();
  ASSERT_EQ(shell.messages.size(), 1);
  EXPECT_TRUE(shell.messages[0].contains("missing/a.csv"));

  // Nothing was written into the five rows yet.
  open(TableKind::SectionParameter);
  EXPECT_EQ(window->table().text(','), "Section,A,y',y,I,Z',Z,E,EI,EA,Note\r\n");
  shell.saveAnswer.clear();
  window->saveTableAs();
  EXPECT_EQ(shell.proposal, "Section Parameter.csv");
}

TEST_F(TableTest, RightButtonPopsUpTheEditMenu) {
  open(TableKind::Solver);
  for (QWidget* part : {view->viewport(), view->horizontalHeader()->viewport(),
                        view->verticalHeader()->viewport(), view->findChild<QWidget*>("FixedCorner")}) {
    const int before = shell.popups;
    const QPoint point = part->mapTo(&area, QPoint(4, 4));
    QTest::mouseClick(area.windowHandle(), Qt::RightButton, {}, point);
    EXPECT_EQ(shell.popups, before + 1) << part->metaObject()->className();
  }
}

TEST_F(TableTest, ALongJobIsCheapToWatch) {
  model::ObjectTables job = sampleJob();
  job.Solids.resize(1000);
  constexpr int kRows = 32768;
  open(TableKind::Solver, job);
  QElapsedTimer clock;
  clock.start();
  for (int step = 0; step < kRows; ++step) {
    addRow(step);
    if (step % 16 == 0) QCoreApplication::processEvents();
  }
  window->table().flushNow();
  QCoreApplication::processEvents();
  EXPECT_EQ(view->cells().Row, kRows);
  EXPECT_TRUE(isAtBottom());
  EXPECT_LT(clock.elapsed(), 3000);

  clock.restart();
  for (int value = 0; value < view->verticalScrollBar()->maximum(); value += 4000) {
    view->verticalScrollBar()->setValue(value);
    QCoreApplication::processEvents();
  }
  EXPECT_LT(clock.elapsed(), 6000);
  clock.restart();
  window->fitAllColumns();
  EXPECT_LT(clock.elapsed(), 6000);

  open(TableKind::Solid, job);
  const std::vector<double> values(1000, 0.5);
  QSignalSpy changed(&window->table(), &QAbstractItemModel::dataChanged);
  clock.restart();
  for (int step = 0; step < 10000; ++step) {
    window->table().setCurrent(values, values, values);
    if (step % 16 == 0) QCoreApplication::processEvents();
  }
  EXPECT_LT(clock.elapsed(), 3000);
  EXPECT_LT(changed.count(), clock.elapsed() / 30 + 2);
}

}  // namespace
}  // namespace torvik::views
