// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <vector>

#include "base/errors.h"
#include "cells.h"

namespace torvik::grid {
namespace {

/// Cells of the first three rows and columns, rows between "/".
std::string cornerOf(const ObjectGrid& grid) {
  std::string text = grid.clip({0, 0, 2, 2});
  for (char& c : text) c = c == '\r' ? '/' : c == '\t' ? ',' : c;
  return text;
}

TEST(Paste, CountsRowsAndColumnsOfTheText) {
  const struct {
    std::string_view name;
    std::string_view text;
    std::string_view corner;  ///< after it was pasted at row 0, column 1
  } cases[] = {
      {"nothing", "", "a,,c/d,e,f/,,"},
      {"LF and an end", "x\ty\nz\tw\n", "a,x,y/d,z,w/,,"},
      {"only one end is dropped", "x\n\n", "a,x,c/d,,f/,,"},
      {"the last row is as wide as the paste", "x\ty\rz", "a,x,c/d,z,f/,,"},
      {"cells that are not given stay", "x\rz\tw", "a,x,c/d,z,w/,,"},
  };
  for (const auto& c : cases) {
    ObjectGrid grid(kForce, {});
    grid.paste(at(0, 0), "a\tb\tc\rd\te\tf");
    EXPECT_TRUE(grid.paste(at(0, 1), c.text)) << c.name;
    EXPECT_EQ(cornerOf(grid), c.corner) << c.name;
  }
}

TEST(Paste, FitsOrChangesNothing) {
  const struct {
    int row;
    int column;
    std::string_view text;
    bool fits;
  } cases[] = {{9, 3, "x\r", true},
               {9, 3, "x\ry", false},
               {9, 3, "x\ty", false},
               {8, 2, "x\ty\rz\tw", true},
               {0, 0, "1\t2\t3\t4\t5\rx", true},
               {0, 0, "1\t2\t3\t4\t5", false}};
  for (const auto& c : cases) {
    ObjectGrid grid(kForce, {});
    const std::string start = pictureOf(grid);
    // From the far corner back: the current cell counts.
    EXPECT_EQ(grid.paste({c.row, c.column, 0, 0}, c.text).has_value(), c.fits) << c.text;
    EXPECT_EQ(pictureOf(grid) != start, c.fits) << c.text;
    EXPECT_EQ(grid.canUndo(), c.fits);
  }
}

/// Number column of all rows, "-" where there is none.
std::string numbersOf(const ObjectGrid& grid) {
  std::string text;
  for (int row = 0; row < grid.rowCount(); ++row) text += grid.number(row).empty() ? "-" : grid.number(row);
  return text;
}

TEST(Rows, AreInsertedRemovedAndRenumbered) {
  model::ObjectTables tables;
  tables.AxialForces.resize(3);
  for (int i = 0; i < 3; ++i) tables.AxialForces[static_cast<std::size_t>(i)].Force = i + 1;
  ObjectGrid grid(kForce, tables);
  EXPECT_EQ(numbersOf(grid), "12345678910---");
  grid.removeRows(rows(12, 11));
  EXPECT_EQ(numbersOf(grid), "12345678910-1213");
  EXPECT_EQ(grid.undo().what, Extent::What::Rows);

  EXPECT_EQ(grid.insertRows(rows(2, 1)).touched, (Selection{1, 0, 2, 3}));
  EXPECT_EQ(numbersOf(grid), "123456789101112131415");
  EXPECT_EQ(grid.text(0, 3) + grid.text(1, 3) + grid.text(3, 3) + grid.text(4, 3), "123");
  EXPECT_EQ(grid.removeRows(rows(0, 3)).what, Extent::What::Rows);
  EXPECT_EQ(grid.text(0, 3), "3");
  EXPECT_FALSE(grid.RowHasData(14));
  EXPECT_EQ(grid.removeRows(rows(13, 14)).what, Extent::What::Nothing);

  model::ObjectTables more;
  more.AxialForces.resize(16);
  EXPECT_EQ(grid.append(more).touched, (Selection{1, 0, 16, 3}));
  EXPECT_EQ(numbersOf(grid), "123456789101112131415--");
  EXPECT_EQ(grid.undo().touched, (Selection{1, 0, 14, 3}));
}

TEST(History, GoesBackToTheStartAndForthToTheEnd) {
  std::mt19937 random(7);
  const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
  const std::vector<std::string> texts = {"", "+", "1", "250", "-3", "x", "1\t2\r3\t4", "Pre-tensioning"};
  for (const ObjectKind kind : model::kAllObjectKinds) {
    model::ObjectTables tables;
    model::visitTable(tables, kind, [](auto& table) { table.resize(4); });
    ObjectGrid grid(kind, tables);
    std::vector<std::string> pictures = {pictureOf(grid)};
    for (int i = 0; i < 400; ++i) {
      const auto row = [&] { return below(grid.rowCount()); };
      const auto column = [&] { return below(grid.columnCount()); };
      const Selection block{row(), column(), row(), column()};
      const std::string& text = texts[static_cast<std::size_t>(below(static_cast<int>(texts.size())))];
      const std::function<void()> changes[] = {
          [&] { grid.clear(block); },
          [&] { grid.removeRows(block); },
          [&] { grid.append(tables); },
          [&] { grid.paste(block, text); },
          [&] {
            grid.insertRows({block.Row, 0, std::min(block.Row + below(3), grid.rowCount() - 1), 0});
          },
          [&] {
            if (grid.undo().what != Extent::What::Nothing) pictures.pop_back();
          },
          [&] {
            grid.commit(block.Row, block.Col, text, grid.text(block.Row, block.Col), [](const auto&) {});
          }};
      try {
        changes[std::min(below(9), 6)]();
      } catch (const base::InternalError&) {
      }
      if (pictureOf(grid) != pictures.back()) pictures.push_back(pictureOf(grid));
    }
    ASSERT_GT(pictures.size(), 50U);
    for (std::size_t i = pictures.size(); i-- > 0;) {
      ASSERT_EQ(pictureOf(grid), pictures[i]);
      ASSERT_EQ(grid.undo().what == Extent::What::Nothing, i == 0);
    }
    for (std::size_t i = 1; i < pictures.size(); ++i) {
      EXPECT_NE(grid.redo().what, Extent::What::Nothing);
      ASSERT_EQ(pictureOf(grid), pictures[i]);
    }
    grid.undo();
    grid.insertRows(rows(0, 0));
    EXPECT_FALSE(grid.canRedo());
  }
}

}  // namespace
}  // namespace torvik::grid
