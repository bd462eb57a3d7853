// SPDX-License-Identifier: GPL-3.0-or-later
#include "printing/printing.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QPdfWriter>
#include <QPrinter>
#include <QRegularExpression>

#include "chart/control.h"
#include "model/models.h"
#include "views/chart_window.h"
#include "views/fake_shell.h"
#include "views/table_window.h"
#include "views/written_run.h"

namespace torvik::printing {
namespace {

/// Pages that the function tells and pages in the document; -1 where they differ.
int pagesOf(const views::ChildWindow& child, QPageLayout::Orientation orientation) {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  int told = 0;
  {
    QPdfWriter writer(&buffer);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageOrientation(orientation);
    told = print(child, writer, "a.inp");
  }
  const auto found = QString::fromLatin1(buffer.data()).count(QRegularExpression("/Type /Page\\b"));
  return found == told ? told : -1;
}

TEST(Printing, ATableTakesAsManyPagesAsItsRowsAndColumnsNeed) {
  views::FakeShell shell;
  tests::WrittenRun written({});
  views::TableWindow window(shell, views::TableKind::Solver, written.run);
  EXPECT_EQ(pagesOf(window, QPageLayout::Portrait), 1) << "the headings alone";
  written.addSteps(200);
  window.catchUp();
  const int portrait = pagesOf(window, QPageLayout::Portrait);
  const int landscape = pagesOf(window, QPageLayout::Landscape);
  EXPECT_GE(portrait, 3);
  EXPECT_GT(landscape, portrait) << "fewer rows fit on a low page";
  const views::ChartWindow chart(shell, static_cast<int>(views::ChartKind::MomentCurvature));
  EXPECT_EQ(pagesOf(chart, QPageLayout::Landscape), 1);
  model::ObjectTables wide;
  wide.Solids.assign(30, tests::solidOf(100, 150, 0));
  for (auto& solid : wide.Solids) solid.Output = 1;
  views::TableWindow wideWindow(shell, views::TableKind::Solver, tests::WrittenRun(wide).run);
  EXPECT_GE(pagesOf(wideWindow, QPageLayout::Portrait), 3) << "columns beside one another";
}

TEST(Printing, PaperIsKeptInTheSettings) {
  QPrinter printer;
  printer.setPageSize(QPageSize(QPageSize::A3));
  printer.setPageOrientation(QPageLayout::Landscape);
  base::ProfileFile settings = base::ProfileFile::ofText("", "torvik.ini");
  writePrinter(printer, settings);
  QPrinter next;
  readPrinter(next, settings);
  EXPECT_EQ(next.pageLayout().pageSize().id(), QPageSize::A3);
  EXPECT_EQ(next.pageLayout().orientation(), QPageLayout::Landscape);
}

}  // namespace
}  // namespace torvik::printing
