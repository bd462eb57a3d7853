// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/profile.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "base/errors.h"
#include "base/number_text.h"
#include "base/settings.h"
#include "message_of.h"
#include "temporary_folder.h"

namespace torvik::base {
namespace {

using tests::messageOf;

ProfileFile profile(std::string text) {
  return ProfileFile::ofText(std::move(text), "a.inp");
}
std::string valueIn(const std::string& text, std::string_view section = "A", std::string_view key = "k") {
  return profile(text).ProfileGetString(section, key, "absent");
}

TEST(ProfileFile, FindsValues) {
  const std::string v254(254, 'v');
  const std::string text =
      "[A]\n0=v\n \t1 \t=\t v w \t\n2= \t \n3=a=b=\n4=1 ;2\n5=\" v \"\n6=  'v' \n7='\"v\"'\n8=\"v'\n9=\"\n"
      "10=\"\"\n11=a\"b\"\n12=\xE4\xFF\x01\n13=" +
      v254 + "x\n14=\"" + v254 + "\"";
  std::string values;
  for (int key = 0; key < 15; ++key) values += valueIn(text, "a", std::to_string(key)) + "|";
  EXPECT_EQ(values, "v|v w||a=b=|1 ;2| v |v|\"v\"|\"v'|\"||a\"b\"|\xE4\xFF\x01|" + v254 + "|" + v254 + "|");
  for (const char* const holds1 : {"[A]\rj=0\rk=1", "\n\r[A]\r\n\r\rj=0\n\nh=2\rk=1\r\n", " [ a ]\n K=1\nk=2",
                                   "[A]\nk=1\n[a]\nk=2", "[A]\nkk=2\nk=1", "[A]\n;k=2\n  ;k=3\n;[B]\nk\nk=1",
                                   "[A] x ] k=9\nk=1", "[A]]\nk=1", "[A]\n[B\nk=1", "\xEF\xBB\xBF[A]\nk=1"})
    EXPECT_EQ(valueIn(holds1), "1") << holds1;
  for (const char* const none :
       {"", "k=1\n[A]", "[A]\n[B]\n[A]\nk=2", "[A]\n[B]\nk=1", "\n\xEF\xBB\xBF[A]\nk=1", "[A]\n;k=1"})
    EXPECT_EQ(valueIn(none), "absent") << none;
  EXPECT_EQ(valueIn("k=1\n[A]", "") + valueIn("k=1\n[]\nk=2", ""), "absent2");
}

TEST(ProfileFile, WriteTouchesNothingElse) {
  const std::string longLine = "[A]\nk=" + std::string(300, 'v');
  using Writes = std::vector<std::array<std::string, 3>>;  // section, key, value
  const std::tuple<std::string, Writes, std::string> rows[] = {
      {"", {{"A", "k", "1"}, {"A", "j", ""}, {"B", "k", "3"}}, "[A]\nk=1\nj=\n\n[B]\nk=3\n"},
      {"[A]\n \tK =\t old \t\n;c\n", {{"a", "k", "x"}, {"a", "k", "new"}}, "[A]\n \tK =\t new \t\n;c\n"},
      {"[A]\r\nk=1 ", {{"A", "j", "2"}, {"A", "k", ""}}, "[A]\r\nk= \r\nj=2\r\n"},
      {"[A]\nk=1\n;c\n\n \n[B]\n", {{"A", "j", "2"}}, "[A]\nk=1\n;c\nj=2\n\n \n[B]\n"},
      {"[A]\nk= \t\n\n", {{"A", "k", "1"}, {"B", "k", "2"}}, "[A]\nk= \t1\n\n[B]\nk=2\n"},
      {"[A]\n[B]\n[A]\nk=2\nk=2", {{"A", "k", "1"}}, "[A]\nk=1\n[B]\n[A]\nk=2\nk=2"},
      {"[A]\nk=\"v\"\nj='w'\n", {{"A", "k", "v"}, {"A", "j", "v"}}, "[A]\nk=\"v\"\nj=v\n"},
      {longLine, {{"A", "k", std::string(254, 'v')}}, longLine},
      {";c\r[A]\rk=1", {{"B", "k", "2"}}, ";c\r[A]\rk=1\r\r[B]\rk=2\r"},
      {"\xEF\xBB\xBFk=0", {{"A", "k", "1"}}, "\xEF\xBB\xBFk=0\n\n[A]\nk=1\n"},
  };
  for (const auto& [before, writes, after] : rows) {
    ProfileFile file = profile(before);
    EXPECT_EQ(file.text(), before);
    for (const auto& [section, key, value] : writes) file.ProfileWrite(section, key, value);
    EXPECT_EQ(file.text(), after);
  }
}

TEST(ProfileFile, WriteRefusesWhatTheFormCanNotHold) {
  ProfileFile file = profile("[A]\nk=1\n");
  for (const char end : {'\n', '\r', '\0'})
    EXPECT_EQ(messageOf([&] { return file.ProfileWrite("A", "k", std::string(1, end)), 0; }),
              "a.inp: [A] k=\"?\": expected a text without a line end or NUL");
  for (const char* const key : {"", " k", "k ", ";k", "[k", "a=b", "a\nb"})
    EXPECT_THROW(file.ProfileWrite("A", key, "1"), InternalError) << key;
  for (const char* const section : {" k", "k ", "k]", "k\n"})
    EXPECT_THROW(file.ProfileWrite(section, "k", "1"), InternalError) << section;
  EXPECT_EQ(file.text(), "[A]\nk=1\n");
}

TEST(ProfileFile, Numbers) {
  const ProfileFile file = profile(
      "[A]\n-32768=-32768.9\n32767=32767x\n7=007\n0=+5\n2147483647=2147483648\n-2147483648=-9999999999999\n"
      "-32769=-32769\n32768=32768\nempty=\nbad=1,5\nwide=1E300\n");
  for (const std::int32_t number : {INT32_MIN, -32769, -32768, 0, 7, 32767, 32768, INT32_MAX}) {
    const std::string key = std::to_string(number);
    EXPECT_EQ(file.ProfileGetInt("A", key, 99), number);
    const bool fits = messageOf([&] { return file.ProfileGetInt16("A", key, 99); }) == "no error";
    EXPECT_EQ(fits, number == static_cast<std::int16_t>(number));
  }
  EXPECT_EQ(file.ProfileGetInt("A", "empty", 9) + file.ProfileGetInt16("A", "absent", -98), -98);
  EXPECT_EQ(file.ProfileGetDouble("A", "absent", 4.055055415343644), 4.05505541534364);
  const auto error = [&](auto key) { return messageOf([&] { return file.ProfileGetSingle("A", key, 9); }); };
  EXPECT_EQ(error("bad"), "a.inp: [A] bad=\"1,5\": expected a number");
  EXPECT_EQ(error("wide"), "a.inp: [A] wide=\"1E300\": expected a number within the range of 32-bit floats");
}

TEST(ProfileFile, FilesOnDisk) {
  const tests::TemporaryFolder folder;
  ProfileFile file = ProfileFile::read(folder / "deep/a.ini");
  file.ProfileWrite("A", "k", "1");
  file.save(folder / "deep/a.ini");
  EXPECT_EQ(ProfileFile::read(folder / "deep/a.ini").text(), "[A]\nk=1\n");
  const auto zeros = [] { return profile(std::string(2, '\0')); };
  EXPECT_EQ(messageOf(zeros), "a.inp: not a text file (NUL byte at offset 0)");
}

TEST(Settings, EveryKeyHasAReadableDefaultOfItsKind) {
  const ProfileFile none;
  std::string all;
  for (const auto& [id, name, kind, text, control] : optionKeys()) {
    const std::string value = kind == OptionKind::Flag      ? plainText(optionFlag(none, id) ? 1 : 0)
                              : kind == OptionKind::Integer ? plainText(optionInteger(none, id))
                              : kind == OptionKind::Real    ? plainText(optionReal(none, id))
                                                            : optionText(none, id);
    all.append(name).append("=").append(value).append(" ");
  }
  std::uint32_t digest = 0;
  for (const char c : all) digest = digest * 31 + static_cast<unsigned char>(c);
  EXPECT_EQ(digest, 1125530361U) << all;
  EXPECT_FALSE(optionFlag(ProfileFile::ofText("[Option]\nTablebar=11", ""), OptionId::TableBar));
  EXPECT_EQ(findOptionKey("tabletendon"), &optionKey(OptionId::TableTendon));
}

TEST(Settings, FileLiesInTheUsersConfigurationFolder) {
  ::setenv("HOME", "/h", 1);
  ::setenv("XDG_CONFIG_HOME", "/x/config/", 1);
  EXPECT_EQ(settingsFilePath(), "/x/config/torvik/torvik.ini");
  ::setenv("XDG_CONFIG_HOME", "relative", 1);
  EXPECT_EQ(settingsFilePath(), "/h/.config/torvik/torvik.ini");
  ::setenv("HOME", "relative", 1);
  EXPECT_TRUE(settingsFilePath().is_absolute()) << "the password file tells";
}

}  // namespace
}  // namespace torvik::base
