// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/table_view.h"

#include <gtest/gtest.h>

namespace torvik::widgets {
namespace {

TEST(ShortenedNumber, RoundsToWhatFits) {
  const auto inRoom = [](const char* text, qsizetype most) {
    return shortenedNumber(text, 9, [most](const QString& tried) { return tried.size() <= most; });
  };
  EXPECT_EQ(inRoom("9.9996E+09", 6), "1.0E10");
  EXPECT_EQ(inRoom("0.000669123", 7), "6.69E-4");
}

}  // namespace
}  // namespace torvik::widgets
