// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QHeaderView>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QtTest/QtTest>
#include <algorithm>
#include <memory>

#include "base/files.h"
#include "model/models.h"
#include "views/fake_shell.h"
#include "views/table_window.h"
#include "views/written_run.h"
#include "widgets/table_view.h"

namespace torvik::views {
namespace {

/// A table in a frame; solids 1 and 3 and the first tendon are put out.
class TableTest : public ::testing::Test {
 protected:
  TableTest() {
    job.Solids.assign(3, tests::solidOf(100, 150, -12.5));
    job.Solids[0].Output = job.Solids[2].Output = 1;
    job.Tendons.assign(2, tests::tendonOf(92.9, 600, "Pre-tensioning"));
    job.Tendons[1].Output = 2;
    area.show();
  }
  ResultTable& open(TableKind kind) {
    written = std::make_unique<tests::WrittenRun>(job);
    window = new TableWindow(shell, kind, written->run);
    area.addSubWindow(window)->resize(500, 300);
    window->show();
    view = &window->view();
    QCoreApplication::processEvents();
    return window->table();
  }
  void addRows(int count) {
    written->addSteps(count);
    window->catchUp();
  }
  [[nodiscard]] QPoint centre(int row, int column) const {
    return view->visualRect(window->table().index(row, column)).center();
  }
  static void drag(QWidget* widget, const QPoint& from, const QPoint& to) {
    QTest::mousePress(widget, Qt::LeftButton, {}, from);
    QTest::mouseMove(widget, to);
    QTest::mouseRelease(widget, Qt::LeftButton, {}, to);
  }

  FakeShell shell;
  model::ObjectTables job;
  QMdiArea area;
  std::unique_ptr<tests::WrittenRun> written;
  TableWindow* window = nullptr;
  widgets::TableView* view = nullptr;
};

TEST_F(TableTest, ValuesAreCopiedInTheirFormats) {
  for (model::SolidObject& solid : job.Solids) solid.Type = "Elastic";
  open(TableKind::Solid);
  section::State rows = written->writer.section().emptyState();
  rows.solids.strain = {-0.0, -1.23456789012e-4, 1e100};
  written->writer.commit(rows);
  written->writer.present(run::Stage::Loading, {section::Uniform{0}, {}});
  window->catchUp();
  QTest::mouseClick(view->findChild<QWidget*>("FixedCorner"), Qt::LeftButton);
  QTest::keyClick(view, Qt::Key_Insert, Qt::ControlModifier);
  EXPECT_TRUE(shell.PasteOnEnter);
  EXPECT_EQ(QApplication::clipboard()->text(),
            "0.00000000E+00\t0.0000E+00\t0.0000E+00\t0.0000E+00\t1.5000E+04\t-1.2500E+01\t3.5000E-03\r\n"
            "-1.23456789E-04\t-1.2346E-04\t-3.4568E+00\t-5.1852E+04\t1.5000E+04\t-1.2500E+01\t3.5000E-03\r\n"
            "1.00000000E+100\t1.0000E+100\t2.8000E+104\t4.2000E+108\t1.5000E+04\t-1.2500E+01\t3.5000E-03");
}

TEST_F(TableTest, CrossingsAreColouredAndHiddenTablesCatchUpWhenShown) {
  ResultTable& table = open(TableKind::Solver);
  addRows(1);
  written->writer.crossed({1, 7, 0, 0});
  written->addSteps(1);
  EXPECT_EQ(table.rowCount(), 2);  // nothing was told to the view yet
  window->catchUp();
  EXPECT_EQ(table.rowCount(), 3);
  for (int i = 0; i < 27; ++i)
    EXPECT_EQ(table.index(i / 9, i % 9).data(Qt::BackgroundRole).isValid(), i == 9 + 7) << i;
  window->frame()->showMinimized();
  written->addSteps(1);
  EXPECT_EQ(table.rowCount(), 3);
  window->frame()->showNormal();
  EXPECT_EQ(table.rowCount(), 4);
}

TEST_F(TableTest, BottomRowIsFollowedUnlessTheUserIsElsewhere) {
  open(TableKind::Solver);
  const QScrollBar& bar = *view->verticalScrollBar();
  addRows(40);
  view->verticalScrollBar()->setValue(10);
  addRows(5);
  EXPECT_EQ(view->cells(), (widgets::CellRange{45, 0, 45, 0}));
  EXPECT_EQ(bar.value(), 10);
  // Back at the end, the view follows again; along a column of the user's choice, and in a lower window.
  QTest::keyClick(view, Qt::Key_End, Qt::ControlModifier);
  addRows(3000);
  window->frame()->resize(500, 200);
  QCoreApplication::processEvents();
  EXPECT_EQ(view->cells(), (widgets::CellRange{3045, 8, 3045, 8}));
  EXPECT_EQ(bar.value(), bar.maximum());
  view->selectCells({3033, 7, 3032, 2});
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Tab, Qt::Key_9}) QTest::keyClick(view, key);
  addRows(20);
  EXPECT_EQ(view->cells(), (widgets::CellRange{3034, 8, 3034, 8}));
}

TEST_F(TableTest, ColumnWidthsSurviveAndFit) {
  // 1000 and 807 are no whole numbers of pixels at 96 dpi.
  shell.settings = base::ProfileFile::ofText(
      "[frmTable]\n0FixedColWidth0=1000\n0ColWidth1=807\n0ColWidth3=-7\n1ColWidth2=2000\n", "torvik.ini");
  open(TableKind::Solid);
  drag(view->findChild<QWidget*>("FixedCorner"), {66, 5}, {67, 5});
  const QPoint edge(view->columnViewportPosition(2) - 1, 5);
  drag(view->horizontalHeader()->viewport(), edge, edge + QPoint(47, 0));
  window->closeNow();
  EXPECT_EQ(shell.settings.text(),
            "[frmTable]\n0FixedColWidth0=1020\n0ColWidth1=807\n0ColWidth3=800\n1ColWidth2=2000\nState=0\n"
            "0ColWidth2=1500\n0ColWidth4=800\n0ColWidth5=800\n0ColWidth6=800\n0ColWidth7=800\n");
  // Double clicks fit all columns of a selection that ends in theirs, and no other.
  open(TableKind::Solid);
  drag(view->viewport(), centre(1, 4), centre(0, 3));
  const QPoint place(centre(0, 3).x(), 5);
  QTest::mouseClick(view->horizontalHeader()->viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(view->horizontalHeader()->viewport(), Qt::LeftButton, {}, place);
  EXPECT_EQ(view->cells(), (widgets::CellRange{1, 4, 0, 3}));
  EXPECT_NEAR(view->columnWidth(4), view->fontMetrics().horizontalAdvance("1.5000E+04") + 10, 6);
  window->originalColumnWidth();
  for (const int column : {3, 4, 5}) EXPECT_EQ(view->columnTwips(column), 800);
}

TEST_F(TableTest, SavesAllRows) {
  const QTemporaryDir folder;
  open(TableKind::Solver);
  addRows(1);
  written->writer.beginRow(1);
  written->writer.cell(-1.0 / 3);  // a job that was ended within the row
  for (const char* const name : {"a.csv", "a.TSV", "missing/a.csv"}) {
    shell.saveAnswer = folder.filePath(name);
    window->saveTableAs();
  }
  std::string content = base::readWholeFile(folder.filePath("a.csv").toStdString());
  EXPECT_TRUE(
      content.ends_with("Tendon Strain 1\r\n1,1,2,3,4,5,6,2,2,47.005\r\n2,-0.333333333333333,,,,,,,,\r\n"));
  std::replace(content.begin(), content.end(), ',', '\t');
  EXPECT_EQ(base::readWholeFile(folder.filePath("a.TSV").toStdString()), content);
  EXPECT_EQ(shell.proposal, "Solver.csv");
  EXPECT_EQ(shell.messages.size(), 1);
}

}  // namespace
}  // namespace torvik::views
