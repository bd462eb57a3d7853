// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <type_traits>

#include "base/message_of.h"
#include "cells.h"
#include "model/fields.h"
#include "model/rows.h"

namespace torvik::grid {
namespace {

/// Two rows of every kind, where no two fields of a row hold the same value.
model::ObjectTables distinctTables() {
  model::ObjectTables tables;
  for (const ObjectKind kind : model::kAllObjectKinds) {
    model::visitTable(tables, kind, [](auto& table) {
      using Row = typename std::remove_reference_t<decltype(table)>::value_type;
      table.resize(2);
      for (std::size_t i = 0; i < 2; ++i) {
        int value = static_cast<int>(i);
        for (const model::Field<Row>& field : model::fieldsOf<Row>()) {
          ++value;
          const bool isFlag = field.key == "Use" || field.key == "Output";
          std::visit(
              [&]<class T>(T Row::*member) {
                if constexpr (std::is_same_v<T, std::string>) {
                  table[i].*member = std::string(field.key) + " " + std::to_string(value);
                } else {
                  table[i].*member = static_cast<T>(isFlag ? value % 2 : -value * 1.5);
                }
              },
              field.member);
        }
      }
    });
  }
  return tables;
}

TEST(Tables, ComeBackFromTheGridAsTheyWere) {
  const model::ObjectTables tables = distinctTables();
  model::ObjectTables stored = tables;
  for (const ObjectKind kind : model::kAllObjectKinds) {
    const ObjectGrid grid(kind, tables);
    EXPECT_EQ(grid.rowCount(), 12);
    model::visitTable(stored, kind, [](auto& table) { table.clear(); });
    grid.StoreGridToTables(stored);
    model::ObjectTables row = tables;
    model::visitTable(row, kind, [](auto& table) { table.erase(table.begin()); });
    model::ObjectTables alone = tables;
    ObjectGrid second = grid;
    second.clear({0, 0, 0, grid.columnCount() - 1});
    second.StoreGridToTables(alone);
    EXPECT_EQ(fileTextOf(alone), fileTextOf(row));
  }
  EXPECT_EQ(fileTextOf(stored), fileTextOf(tables));
}

TEST(Tables, TakeWhatTheirFieldsCanHold) {
  const struct {
    std::string_view key;
    std::string text;
    double value;
    bool unreadable;
  } cases[] = {
      {"Use", "+", 1, false},         {"Use", "x", 0, true},         {"Number", "3.5", 4, false},
      {"Number", "32767.5", 0, true}, {"Number", "-32769", 0, true}, {"Area", "1.2.3", 0, true},
      {"Area", "", 0, false},
  };
  for (const auto& c : cases) {
    ObjectGrid grid(kSolid, {});
    fillRow(grid, 3, "Type=Elastic");
    const int column = columnOf(kSolid, c.key);
    grid.paste(at(3, column), c.text);
    const model::SolidObject solid = grid.rowAsTables(3).Solids.at(0);
    EXPECT_EQ(c.key == "Use" ? solid.Use : c.key == "Number" ? solid.Number : solid.Area, c.value) << c.text;
    EXPECT_EQ(grid.isUnreadable(3, column), c.unreadable) << c.text;
  }
  ObjectGrid grid(kSolid, {});
  fillRow(grid, 0, "WatchStrain=soon;File=soon");
  EXPECT_TRUE(grid.isUnreadable(0, columnOf(kSolid, "WatchStrain")));
  EXPECT_FALSE(grid.isUnreadable(0, columnOf(kSolid, "File")));
}

TEST(Tables, HoldNoMoreRowsThanSixteenBitsCount) {
  model::ObjectTables tables;
  tables.AxialForces.resize(model::kMaxRows);
  ObjectGrid grid(kForce, tables);
  tables.AxialForces.resize(1);
  EXPECT_EQ(tests::messageOf([&] { return grid.append(tables); }),
            "A table holds at most 32767 rows: remove some.");
}

}  // namespace
}  // namespace torvik::grid
