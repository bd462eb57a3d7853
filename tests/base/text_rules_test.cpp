// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <string>

#include "base/key_filter.h"
#include "base/paths.h"

namespace torvik::base {
namespace {

std::string times(int count, const std::string& text) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

TEST(ShortenPath, KeepsBeginningAndEnd) {
  struct Case {
    const char* name;
    std::string path;
    std::size_t length;
    std::string shortened;
  };
  const Case cases[] = {
      {"40 characters", "/" + std::string(39, 'a'), 0, "/" + std::string(39, 'a')},
      {"40 characters with a short tail", "/home/" + std::string(32, 'a') + "/b", 0,
       "/home/" + std::string(32, 'a') + "/b"},
      {"41 characters, the tail has 33", "/home/" + std::string(1, 'a') + "/" + std::string(33, 'b'), 0,
       "/.../" + std::string(33, 'b')},
      {"tail of 34 is too long", "/home/a/" + std::string(30, 'b') + "/c/d", 0, "/.../c/d"},
      {"first that fits", "/home/someone/bridges/2024/north/girder-a.inp", 0,
       "/.../bridges/2024/north/girder-a.inp"},
      {"relative", "models/" + std::string(40, 'b') + "/x.inp", 0, "models/.../x.inp"},
      {"other length", "/a/b/c/d/e", 9, "/.../e"},
      {"length below 7", "/a/b/c/d/e", 5, "/a/b/c/d/e"},
      {"no separator", std::string(50, 'a'), 0, std::string(50, 'a')},
      {"no tail short enough", "/" + std::string(50, 'a'), 0, "/" + std::string(50, 'a')},
      {"separator at the end", "/" + std::string(50, 'a') + "/", 0, "/.../"},
      {"two bytes a character: 40 of them", "/" + times(39, "\xC3\xA4"), 0, "/" + times(39, "\xC3\xA4")},
      {"two bytes a character: tail of 33", "/home/b/" + times(33, "\xC3\xA4"), 0,
       "/.../" + times(33, "\xC3\xA4")},
      {"empty", "", 0, ""},
  };
  for (const Case& c : cases) EXPECT_EQ(shortenPath(c.path, c.length), c.shortened) << c.name;
}

TEST(KeyFilter, LetsExactlyItsCharactersPass) {
  const std::string digits = "0123456789";
  struct Case {
    const char* kind;
    std::string allowed;
  };
  const Case cases[] = {
      {"Single", "\b." + digits},
      {"Double", "\b." + digits},
      {"-Single", "\b.-" + digits},
      {"-Double", "\b.-" + digits},
      {"Integer", "\b" + digits},
      {"Long", "\b" + digits},
      {"-Integer", "\b-" + digits},
      {"-Long", "\b-" + digits},
      {"double", "double"},
      {"xyz\xE4", "xyz\xE4"},
      {"", ""},
  };
  for (const Case& c : cases) {
    for (int key = -1; key < 300; ++key) {
      const bool passes = key > 0 && key < 256 && c.allowed.find(static_cast<char>(key)) != std::string::npos;
      EXPECT_EQ(KeyFilter(key, c.kind), passes ? key : 0) << c.kind << ", key " << key;
    }
  }
}

}  // namespace
}  // namespace torvik::base
