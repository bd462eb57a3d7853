// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/single_instance.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QStringList>
#include <QSysInfo>
#include <QtTest/QtTest>
#include <memory>

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

TEST(SingleInstance, WhatACrashLeftBehindStopsNobody) {
  const torvik::tests::TemporaryFolder temporary;
  const QString folder = QString::fromStdString(temporary.path().string());
  for (const char* name : {"/torvik.lock", "/torvik.socket"}) {
    QFile file(folder + name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("999999999\ntorvik\n" + QSysInfo::machineHostName().toUtf8() +
               "\n");  // a process that is gone
  }
  SingleInstance instance(folder);
  QString asked;
  instance.onActivate = [&](const QString& title) { asked = title; };
  ASSERT_TRUE(instance.isFirst("title"));
  EXPECT_FALSE(SingleInstance(folder).isFirst("second"));
  EXPECT_TRUE(QTest::qWaitFor([&] { return asked == "second"; }, 1000));
}

TEST(SingleInstance, WithoutAFolderTheProgramRunsAllTheSame) {
  EXPECT_TRUE(SingleInstance("/nonexistent/folder").isFirst("title"));
}

}  // namespace
}  // namespace torvik::app
