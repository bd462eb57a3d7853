// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

#include "base/files.h"
#include "fuzz/fuzz_targets.h"

namespace torvik::fuzz {
namespace {

void runAll(const char* folder, void (*target)(std::string_view)) {
  const auto path = std::filesystem::path(TORVIK_SOURCE_DIR) / "tests/fuzz/corpus" / folder;
  const std::set<std::filesystem::path> files{std::filesystem::directory_iterator(path), {}};
  ASSERT_FALSE(files.empty());
  for (const std::filesystem::path& file : files)
    EXPECT_NO_THROW(target(base::readWholeFile(file))) << file.filename();
}

TEST(Corpus, InputFile) {
  runAll("input_file", inputFile);
}
TEST(Corpus, UserCurve) {
  runAll("user_curve", userCurve);
}
TEST(Corpus, Job) {
  runAll("job", job);
}

}  // namespace
}  // namespace torvik::fuzz
