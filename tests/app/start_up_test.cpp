// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/start_up.h"

#include <gtest/gtest.h>

#include "app/recent_paths.h"
#include "base/files.h"
#include "base/temporary_folder.h"

namespace torvik::app {
namespace {

using Tokens = std::vector<std::string>;

TEST(CommandLine, IsSplitAtSeparatorsOutsideQuotes) {
  const std::string nul(1, '\0');
  const struct {
    const char* name;
    std::string text;
    std::string separators;
    Tokens tokens;
  } kRows[] = {
      {"nothing", "", " ", {}},
      {"blanks alone", "   ", " ", {}},
      {"one", "a.inp", " ", {"a.inp"}},
      {"two blanks between, some around", "  a  b ", " ", {"a", "b"}},
      {"a quoted blank, the quotes stay", "x \"a b.inp\" y", " ", {"x", "\"a b.inp\"", "y"}},
      {"a quote within a token", "a\" \"b c", " ", {"a\" \"b", "c"}},
      {"a quote that is never closed", "a \"b c", " ", {"a", "\"b c"}},
      {"another separator keeps blanks",
       "/d" + nul + " a.inp" + nul + nul + "b c",
       nul,
       {"/d", " a.inp", "b c"}},
      {"two separators, blanks passed over behind a blank only", "a,  b ,c", " ,", {"a", "b", "c"}},
      {"a comma keeps the blank behind it as a separator", "a, ,b", ", ", {"a", "b"}},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.name);
    Tokens tokens = {"before"};
    SplitCommandLine(row.text, row.separators, tokens);
    Tokens expected = {"before"};
    expected.insert(expected.end(), row.tokens.begin(), row.tokens.end());
    EXPECT_EQ(tokens, expected);
  }
}

TEST(CommandLine, EveryArgumentOfTheProcessIsOneToken) {
  const struct {
    const char* name;
    Tokens arguments;
    Tokens tokens;
  } kRows[] = {
      {"none", {}, {}},
      {"blanks within", {"a b.inp", " c"}, {"a b.inp", " c"}},
      {"an empty one is none", {"", "a", ""}, {"a"}},
      {"quotes within", {"\"a b\"", "c"}, {"\"a b\"", "c"}},
      {"one quote within", {"3\"-beam.inp", "b.inp"}, {"3\"-beam.inp", "b.inp"}},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(tokensOf(row.arguments), row.tokens);
  }
}

TEST(CommandLine, OptionsStandBeforeTheFirstFile) {
  const torvik::tests::TemporaryFolder folder;
  const std::string file = (folder / "a.inp").string();
  base::replaceWholeFile(file, "");
  const struct {
    const char* name;
    Tokens tokens;
    Tokens unknown;
    Tokens files;
  } kRows[] = {
      {"nothing", {}, {}, {}},
      {"a letter each", {"-ab", "a.inp"}, {"a", "b"}, {"./a.inp"}},
      {"a lone sign", {"-", "/", "a.inp"}, {}, {"./a.inp"}},
      {"a letter of two bytes", {"-\xC3\xA9x"}, {"\xC3\xA9", "x"}, {}},
      {"a sign behind a file is a name", {"a.inp", "-x"}, {}, {"./a.inp", "./-x"}},
      {"a path that is there", {file, "/n"}, {}, {file, "/n"}},
      {"a path that is not there", {"/n", file}, {"n"}, {file}},
      {"a folder is no file", {folder.path().string().substr(0, 2), "d/a.inp"}, {"t"}, {"d/a.inp"}},
      {"quotes stay", {"\"d/a b.inp\""}, {}, {"\"d/a b.inp\""}},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.name);
    const CommandLineFiles line = sortTokens(row.tokens);
    EXPECT_EQ(line.unknownOptions, row.unknown);
    EXPECT_EQ(line.files, row.files);
  }
}

TEST(RecentPathList, FillsFromTheBottomAndNeverShowsTheNewestOfSix) {
  const struct {
    const char* name;
    std::string add;     ///< one letter a path
    std::string remove;  ///< then
    std::string shown;   ///< entries 0 to 4, "-" hidden
  } kRows[] = {
      {"none", "", "", "-----"},
      {"one stands lowest", "a", "", "----a"},
      {"the newest highest", "abc", "", "--cba"},
      {"five", "abcde", "", "edcba"},
      {"six: the path in hand is in no entry", "abcdef", "", "edcba"},
      {"seven drop the oldest", "abcdefg", "", "fedcb"},
      {"again moves up and closes the gap", "abca", "", "--acb"},
      {"again among six", "abcdefb", "", "fedca"},
      {"remove closes the gap", "abcd", "b", "--dca"},
      {"remove of six brings up the sixth", "abcdef", "a", "fedcb"},
      {"remove what is not there", "ab", "x", "---ba"},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.name);
    RecentPaths recent;
    for (const char c : row.add) recent.add(std::string(1, c));
    for (const char c : row.remove) recent.remove(std::string(1, c));
    base::ProfileFile settings("torvik.ini");
    recent.save(settings);
    RecentPaths loaded;
    loaded.load(settings);
    std::string shown;
    for (int i = 0; i < RecentPaths::kEntries; ++i) shown += loaded.entry(i).empty() ? "-" : loaded.entry(i);
    EXPECT_EQ(shown, row.shown);
    EXPECT_EQ(loaded.showsSeparator(), row.shown != "-----");
  }
}

}  // namespace
}  // namespace torvik::app
