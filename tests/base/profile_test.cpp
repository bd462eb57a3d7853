// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/profile.h"

#include <gtest/gtest.h>

#include <chrono>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "base/errors.h"
#include "base/files.h"
#include "message_of.h"
#include "temporary_folder.h"

namespace torvik::base {
namespace {

using tests::messageOf;
using Value = std::optional<std::string>;

ProfileFile profile(std::string text) {
  return ProfileFile::ofText(std::move(text), "a.inp");
}

Value valueIn(const std::string& text, std::string_view section, std::string_view key) {
  const ProfileFile file = profile(text);
  const auto value = file.find(section, key);
  return value ? Value(std::string(*value)) : std::nullopt;
}

TEST(ProfileFile, Find) {
  struct Case {
    const char* name;
    std::string text;
    const char* section;
    const char* key;
    Value value;
  };
  const Case cases[] = {
      {"plain", "[A]\nk=v\n", "A", "k", "v"},
      {"no line end at the end", "[A]\nk=v", "A", "k", "v"},
      {"blanks and tabs", " \t[ A ]\n \tk \t=\t v w \t\n", "A", "k", "v w"},
      {"case of both names", "[bEAm0]\nSPAN=1\n", "Beam0", "Span", "1"},
      {"case of other letters differs", "[\xC3\x84]\nk=1\n", "\xC3\xA4", "k", {}},
      {"empty value", "[A]\nk=\n", "A", "k", ""},
      {"blank value", "[A]\nk= \t \n", "A", "k", ""},
      {"equals signs in the value", "[A]\nk=a=b=\n", "A", "k", "a=b="},
      {"CR LF", "[A]\r\nj=1\r\nk=v\r\n", "A", "k", "v"},
      {"CR", "[A]\rj=1\rk=v\r", "A", "k", "v"},
      {"CR, no line end at the end", "[A]\rj=1\rk=v", "A", "k", "v"},
      {"mixed line ends", "\n\r[A]\r\n\r\rj=1\n\nh=2\rk=v\r\n", "A", "k", "v"},
      {"first of two keys", "[A]\nk=1\nK=2\n", "A", "k", "1"},
      {"first of two sections", "[A]\nk=1\n[a]\nk=2\n", "A", "k", "1"},
      {"only in the second section", "[A]\nj=1\n[B]\n[A]\nk=2\n", "A", "k", {}},
      {"longer key name first", "[A]\nkk=2\nk=1\n", "A", "k", "1"},
      {"other section", "[A]\nk=1\n[B]\n", "B", "k", {}},
      {"before any section", "k=1\n[A]\n", "A", "k", {}},
      {"before any section, no name", "k=1\n[A]\n", "", "k", {}},
      {"section without a name", "k=1\n[]\nk=2\n", "", "k", "2"},
      {"comment", "[A]\n;k=1\n  ;k=2\nk=3\n", "A", "k", "3"},
      {"comment asked for", "[A]\n;k=1\n", "A", ";k", {}},
      {"comment behind a value is part of it", "[A]\nk=1 ;2\n", "A", "k", "1 ;2"},
      {"section in a comment", "[A]\n;[B]\nk=1\n", "A", "k", "1"},
      {"line without equals sign", "[A]\nk\nk=1\n", "A", "k", "1"},
      {"no key name", "[A]\n=1\n\n", "A", "", {}},
      {"double quotes", "[A]\nk=\" v \"\n", "A", "k", " v "},
      {"single quotes", "[A]\nk=  'v' \n", "A", "k", "v"},
      {"one pair only", "[A]\nk='\"v\"'\n", "A", "k", "\"v\""},
      {"quotes that differ", "[A]\nk=\"v'\n", "A", "k", "\"v'"},
      {"one quote", "[A]\nk=\"\n", "A", "k", "\""},
      {"empty quotes", "[A]\nk=\"\"\n", "A", "k", ""},
      {"quotes inside", "[A]\nk=a\"b\"\n", "A", "k", "a\"b\""},
      {"254 bytes", "[A]\nk=" + std::string(254, 'v'), "A", "k", std::string(254, 'v')},
      {"300 bytes", "[A]\nk=" + std::string(300, 'v'), "A", "k", std::string(254, 'v')},
      {"254 bytes in quotes", "[A]\nk=\"" + std::string(254, 'v') + "\"", "A", "k", std::string(254, 'v')},
      {"text behind the section name", "[A] x ] k=9\nk=1\n", "A", "k", "1"},
      {"section name up to the first ]", "[A]]\nk=1\n", "A", "k", "1"},
      {"section line not closed", "[A]\n[B\nk=1\n", "A", "k", "1"},
      {"section line not closed, with equals sign", "[A]\n[B=5\n", "A", "[B", "5"},
      {"byte-order mark", "\xEF\xBB\xBF[A]\nk=1\n", "A", "k", "1"},
      {"byte-order mark elsewhere", "\n\xEF\xBB\xBF[A]\nk=1\n", "A", "k", {}},
      {"bytes as they are", "[A]\nk=\xE4\xFF\x01\n", "A", "k", "\xE4\xFF\x01"},
      {"empty file", "", "A", "k", {}},
  };
  for (const Case& c : cases) EXPECT_EQ(valueIn(c.text, c.section, c.key), c.value) << c.name;
}

TEST(ProfileFile, WriteTouchesNothingElse) {
  struct Write {
    const char* section;
    const char* key;
    std::string value;
  };
  struct Case {
    const char* name;
    std::string before;
    std::vector<Write> writes;
    std::string after;
  };
  const Case cases[] = {
      {"new file", "", {{"A", "k", "1"}, {"A", "j", "2"}, {"B", "k", "3"}}, "[A]\nk=1\nj=2\n\n[B]\nk=3\n"},
      {"value alone is changed",
       "[A]\n \tK =\t old \t\n;c\n",
       {{"a", "k", "new"}},
       "[A]\n \tK =\t new \t\n;c\n"},
      {"twice", "[A]\nk=1\n", {{"A", "k", "2"}, {"A", "k", "3"}}, "[A]\nk=3\n"},
      {"empty value is filled", "[A]\nk=\nj= \t\n", {{"A", "k", "1"}, {"A", "j", "2"}}, "[A]\nk=1\nj= \t2\n"},
      {"value is emptied", "[A]\nk=1 \n", {{"A", "k", ""}}, "[A]\nk= \n"},
      {"new empty value", "[A]\n", {{"A", "k", ""}}, "[A]\nk=\n"},
      {"no line end at the end", "[A]\nk=1", {{"A", "k", "2"}}, "[A]\nk=2"},
      {"key behind a last line without end", "[A]\r\nk=1 ", {{"A", "j", "2"}}, "[A]\r\nk=1 \r\nj=2\r\n"},
      {"section behind a last line without end", "[A]\nk=1", {{"B", "j", "2"}}, "[A]\nk=1\n\n[B]\nj=2\n"},
      {"line end of one line without", "[A]", {{"A", "k", "1"}}, "[A]\nk=1\n"},
      {"section behind a blank line", "[A]\n\n \t", {{"B", "k", "1"}}, "[A]\n\n \t\n[B]\nk=1\n"},
      {"key before blank lines",
       "[A]\nk=1\n;c\n\n \n[B]\n",
       {{"A", "j", "2"}},
       "[A]\nk=1\n;c\nj=2\n\n \n[B]\n"},
      {"key before a blank line, then a section",
       "[A]\n\n",
       {{"A", "k", "1"}, {"B", "k", "2"}},
       "[A]\nk=1\n\n[B]\nk=2\n"},
      {"two keys in order", "[A]\n\n[B]\n", {{"A", "k", "1"}, {"A", "j", "2"}}, "[A]\nk=1\nj=2\n\n[B]\n"},
      {"key in the first of two sections",
       "[A]\n[B]\n[A]\nk=2\n",
       {{"A", "k", "1"}},
       "[A]\nk=1\n[B]\n[A]\nk=2\n"},
      {"first of two keys", "[A]\nk=1\nk=2\n", {{"A", "k", "3"}}, "[A]\nk=3\nk=2\n"},
      {"quotes stay where nothing changes", "[A]\nk=\" v \"\n", {{"A", "k", " v "}}, "[A]\nk=\" v \"\n"},
      {"quotes go with the value", "[A]\nk=\"v\"\n", {{"A", "k", "w"}}, "[A]\nk=w\n"},
      {"long value stays where nothing changes",
       "[A]\nk=" + std::string(300, 'v'),
       {{"A", "k", std::string(254, 'v')}},
       "[A]\nk=" + std::string(300, 'v')},
      {"file of CR LF",
       "[A]\r\nk=1\nj=1\r",
       {{"A", "h", "2"}, {"B", "k", "3"}},
       "[A]\r\nk=1\nj=1\rh=2\r\n\r\n[B]\r\nk=3\r\n"},
      {"file of CR", ";c\r[A]\rk=1", {{"B", "k", "2"}}, ";c\r[A]\rk=1\r\r[B]\rk=2\r"},
      {"byte-order mark alone", "\xEF\xBB\xBF", {{"A", "k", "1"}}, "\xEF\xBB\xBF[A]\nk=1\n"},
      {"text before any section", "k=0", {{"A", "k", "1"}}, "k=0\n\n[A]\nk=1\n"},
  };
  for (const Case& c : cases) {
    ProfileFile file = profile(c.before);
    EXPECT_EQ(file.text(), c.before) << c.name << ", untouched";
    for (const Write& write : c.writes) {
      file.ProfileWrite(write.section, write.key, write.value);
      EXPECT_EQ(file.ProfileGetString(write.section, write.key, "absent"), write.value) << c.name;
    }
    EXPECT_EQ(file.text(), c.after) << c.name;
  }
}

TEST(ProfileFile, WriteRefusesWhatTheFormCanNotHold) {
  ProfileFile file = profile("[A]\nk=1\n");
  EXPECT_EQ(messageOf([&] { file.ProfileWrite("A", "k", "a\nb"); }),
            "a.inp: [A] k=\"a?b\": a text without a line end or NUL");
  EXPECT_THROW(file.ProfileWrite("A", "k", "a\rb"), InputError);
  EXPECT_THROW(file.ProfileWrite("A", "k", std::string_view("a\0b", 3)), InputError);
  for (const char* const key : {"", " k", "k ", ";k", "[k", "a=b", "a\nb"}) {
    EXPECT_THROW(file.ProfileWrite("A", key, "1"), InternalError) << key;
  }
  for (const char* const section : {" S", "S]", "S\n"}) {
    EXPECT_THROW(file.ProfileWrite(section, "k", "1"), InternalError) << section;
  }
  EXPECT_EQ(file.text(), "[A]\nk=1\n");
}

TEST(ProfileFile, Integers) {
  constexpr std::int32_t kMin32 = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t kMax32 = std::numeric_limits<std::int32_t>::max();
  struct Case {
    const char* text;
    std::int32_t number;
  };
  const Case cases[] = {
      {"12", 12},
      {"-7", -7},
      {"007", 7},
      {"-12.9abc", -12},
      {"1E3", 1},
      {"", 0},
      {"abc", 0},
      {"-", 0},
      {"--1", 0},
      {"- 1", 0},
      {"+5", 0},
      {"0x10", 0},
      {"'42'", 42},
      {"32767", 32767},
      {"-32768", -32768},
      {"32768", 32768},
      {"-32769", -32769},
      {"2147483647", kMax32},
      {"2147483648", kMax32},
      {"-2147483648", kMin32},
      {"-99999999999999999999", kMin32},
  };
  for (const Case& c : cases) {
    const ProfileFile file = profile(std::string("[A]\nk=") + c.text);
    EXPECT_EQ(file.ProfileGetInt("A", "k", 99), c.number) << c.text;
    if (c.number >= -32768 && c.number <= 32767) {
      EXPECT_EQ(file.ProfileGetInt16("A", "k", 99), c.number) << c.text;
    } else {
      EXPECT_EQ(messageOf([&] { return file.ProfileGetInt16("A", "k", 99); }),
                std::string("a.inp: [A] k=\"") + c.text + "\": an integer from -32768 to 32767");
    }
  }
  EXPECT_EQ(profile("").ProfileGetInt("A", "k", 99), 99);
  EXPECT_EQ(profile("").ProfileGetInt16("A", "k", -99), -99);
}

TEST(ProfileFile, Reals) {
  const ProfileFile file = profile("[A]\nk=1e-07\nq=\"2.5\"\nbad=abc\nempty=\nwide=1E300\ncomma=1,5\n");
  EXPECT_EQ(file.ProfileGetDouble("A", "k", 9.0), 1e-7);
  EXPECT_EQ(file.ProfileGetDouble("A", "q", 9.0), 2.5);
  EXPECT_EQ(file.ProfileGetDouble("A", "absent", 4.055055415343644), 4.05505541534364);
  EXPECT_EQ(file.ProfileGetSingle("A", "k", 9.0F), 1e-7F);
  EXPECT_EQ(file.ProfileGetSingle("A", "absent", 0.1F), 0.1F);
  EXPECT_EQ(file.ProfileGetVariant("A", "k", "x"), "1e-07");
  EXPECT_EQ(file.ProfileGetVariant("A", "absent", "JIS G 3112 D13"), "JIS G 3112 D13");
  EXPECT_EQ(messageOf([&] { return file.ProfileGetDouble("A", "bad", 9.0); }),
            "a.inp: [A] bad=\"abc\": a number");
  EXPECT_EQ(messageOf([&] { return file.ProfileGetDouble("A", "empty", 9.0); }),
            "a.inp: [A] empty=\"\": a number");
  EXPECT_EQ(messageOf([&] { return file.ProfileGetDouble("A", "comma", 9.0); }),
            "a.inp: [A] comma=\"1,5\": a number");
  EXPECT_EQ(messageOf([&] { return file.ProfileGetSingle("A", "wide", 9.0F); }),
            "a.inp: [A] wide=\"1E300\": a number within the range of 32-bit floats");
}

TEST(ProfileFile, FilesOnDisk) {
  const tests::TemporaryFolder folder;
  const auto path = folder / "deep/a.ini";
  ProfileFile file = ProfileFile::read(path);
  EXPECT_EQ(file.find("A", "k"), std::nullopt);
  file.ProfileWrite("A", "k", "1");
  file.save(path);
  EXPECT_EQ(readWholeFile(path), "[A]\nk=1\n");
  EXPECT_EQ(ProfileFile::read(path).ProfileGetInt("A", "k", 0), 1);

  EXPECT_THROW(ProfileFile::read(folder.path()), InputError);
  replaceWholeFile(path, std::string_view("\xEF\xBB\xBF[A]\nk=\0", 10));
  EXPECT_EQ(messageOf([&] { return ProfileFile::read(path); }),
            path.string() + ": not a text file (NUL byte at offset 9)");
}

TEST(ProfileFile, ViewsOutliveAMove) {
  ProfileFile first = profile("[A]\nk=" + std::string(100, 'v'));
  first.ProfileWrite("A", "j", "w");
  ProfileFile second = std::move(first);
  second.ProfileWrite("B", "k", "1");
  EXPECT_EQ(second.text(), "[A]\nk=" + std::string(100, 'v') + "\nj=w\n\n[B]\nk=1\n");
}

/// The bound is several times what a sanitized build needs, and less than what quadratic work takes.
TEST(ProfileFile, LargeFilesTakeLinearTime) {
  const auto begin = std::chrono::steady_clock::now();
  const int lines = 400000;
  for (const char* const end : {"\n", "\r", "\r\n"}) {
    std::string text = std::string("[A]") + end;
    for (int i = 0; i < lines; ++i) text += "k" + std::to_string(i) + "=" + end;
    EXPECT_EQ(profile(text).text(), text);
  }
  const int sections = 100000;
  ProfileFile file;
  for (int i = 0; i < sections; ++i) file.ProfileWrite("Bar" + std::to_string(i), "Area", std::to_string(i));
  for (int i = 0; i < sections; ++i) file.ProfileWrite("bar" + std::to_string(i), "Use", "1");
  const ProfileFile again = profile(file.text());
  for (int i = 0; i < sections; ++i) ASSERT_EQ(again.ProfileGetInt("BAR" + std::to_string(i), "Area", -1), i);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
}

}  // namespace
}  // namespace torvik::base
