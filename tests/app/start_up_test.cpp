// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/single_instance.h"

#include <gtest/gtest.h>

#include <QStringList>
#include <QtTest/QtTest>
#include <memory>

#include "app/start_up.h"
#include "base/temporary_folder.h"

namespace torvik::app {
namespace {

TEST(SingleInstance, TheSecondHandsItsTitleOverAndTheNextAfterTheFirstRuns) {
  const torvik::tests::TemporaryFolder temporary;
  const QString folder = QString::fromStdString(temporary.path().string());
  QStringList asked;
  auto first = std::make_unique<SingleInstance>(folder);
  first->onActivate = [&](const QString& title) { asked.append(title); };
  ASSERT_TRUE(first->isFirst("first"));

  EXPECT_FALSE(SingleInstance(folder).isFirst("torvik Ver.1.2 Rev.3"));
  EXPECT_FALSE(SingleInstance(folder).isFirst(QString::fromUtf8("\xC3\xBC")));
  EXPECT_TRUE(QTest::qWaitFor([&] { return asked.size() >= 2; }, 1000));
  EXPECT_EQ(asked, QStringList({"torvik Ver.1.2 Rev.3", QString::fromUtf8("\xC3\xBC")}));

  first.reset();
  SingleInstance next(folder);
  EXPECT_TRUE(next.isFirst("next"));
  EXPECT_FALSE(SingleInstance(folder).isFirst("another"));
}

TEST(CommandLine, IsSplitAtSeparatorsOutsideQuotes) {
  std::vector<std::string> tokens;
  SplitCommandLine("  a  \"b c.inp\" d \"e f", " ", tokens);
  EXPECT_EQ(tokens, (std::vector<std::string>{"a", "\"b c.inp\"", "d", "\"e f"}));
}

}  // namespace
}  // namespace torvik::app
