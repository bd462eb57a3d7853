// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/settings.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <set>

#include "base/errors.h"
#include "message_of.h"

namespace torvik::base {
namespace {

using tests::messageOf;

ProfileFile options(const std::string& lines) {
  return ProfileFile::ofText("[Option]\n" + lines, "torvik.ini");
}

TEST(Settings, EveryKeyHasAReadableDefaultOfItsKind) {
  const ProfileFile none;
  std::set<std::string_view> names;
  for (const OptionKey& key : optionKeys()) {
    SCOPED_TRACE(key.name);
    names.insert(key.name);
    EXPECT_EQ(findOptionKey(key.name), &key);
    switch (key.kind) {
      case OptionKind::Flag:
        EXPECT_EQ(optionFlag(none, key.id) ? "1" : "0", key.defaultText);
        break;
      case OptionKind::Integer:
        EXPECT_EQ(std::to_string(optionInteger(none, key.id)), key.defaultText);
        break;
      case OptionKind::Real:
        EXPECT_NO_THROW(optionReal(none, key.id));
        break;
      case OptionKind::Text:
        EXPECT_EQ(optionText(none, key.id), key.defaultText);
        break;
    }
  }
  EXPECT_EQ(names.size(), optionKeys().size());
  EXPECT_EQ(optionReal(none, OptionId::CurvatureSmallRangeTo), 2e-5);
  EXPECT_EQ(optionReal(none, OptionId::CurvatureSmallRangeStep), 1e-7);
  EXPECT_EQ(optionReal(none, OptionId::StrainSolidFrom), -0.001);
}

TEST(Settings, NamesHaveNoCase) {
  EXPECT_EQ(findOptionKey("Tabletendon"), &optionKey(OptionId::TableTendon));
  EXPECT_EQ(findOptionKey("TableTendons"), nullptr);
  EXPECT_FALSE(optionFlag(options("Tabletendon=0"), OptionId::TableTendon));
  EXPECT_FALSE(optionFlag(options("TableTendon=0"), OptionId::TableTendon));
}

TEST(Settings, OnlyOneIsOn) {
  for (const char* const value : {"0", "", "2", "-1", "on", "11", "99999999999"}) {
    EXPECT_FALSE(optionFlag(options(std::string("TableBar=") + value), OptionId::TableBar)) << value;
  }
  EXPECT_TRUE(optionFlag(options("FileSolver=1"), OptionId::FileSolver));
  EXPECT_TRUE(optionFlag(options("FileSolver=01 "), OptionId::FileSolver));
}

TEST(Settings, ValuesThatTheKindCanNotHold) {
  EXPECT_EQ(messageOf([] {
              return optionReal(options("CurvatureSmallRangeStep=abc"), OptionId::CurvatureSmallRangeStep);
            }),
            "torvik.ini: [Option] CurvatureSmallRangeStep=\"abc\": a number");
  EXPECT_EQ(messageOf([] {
              return optionInteger(options("ConvergenceMaxIteration=40000"),
                                   OptionId::ConvergenceMaxIteration);
            }),
            "torvik.ini: [Option] ConvergenceMaxIteration=\"40000\": an integer from -32768 to 32767");
  EXPECT_THROW(optionFlag(options(""), OptionId::WindowArrange), InternalError);
  EXPECT_THROW(optionKey(static_cast<OptionId>(44)), InternalError);
}

/// Sets an environment variable for one test; null unsets it.
class Environment {
 public:
  Environment(const char* name, const char* value) : m_name(name) {
    if (const char* const old = std::getenv(name)) m_old = old;
    set(value);
  }
  ~Environment() { set(m_old ? m_old->c_str() : nullptr); }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

 private:
  void set(const char* value) const {
    if (value != nullptr) {
      ::setenv(m_name, value, 1);
    } else {
      ::unsetenv(m_name);
    }
  }
  const char* m_name;
  std::optional<std::string> m_old;
};

TEST(Settings, FileLiesInTheUsersConfigurationFolder) {
  struct Case {
    const char* xdg;
    const char* home;
    const char* path;
  };
  const Case cases[] = {
      {"/x/config", "/h", "/x/config/torvik/torvik.ini"}, {"/x/config/", "/h", "/x/config/torvik/torvik.ini"},
      {nullptr, "/h", "/h/.config/torvik/torvik.ini"},    {"", "/h", "/h/.config/torvik/torvik.ini"},
      {"relative", "/h", "/h/.config/torvik/torvik.ini"},
  };
  for (const Case& c : cases) {
    const Environment xdg("XDG_CONFIG_HOME", c.xdg);
    const Environment home("HOME", c.home);
    EXPECT_EQ(settingsFilePath(), c.path);
  }
  // Without either, the password file tells; never the working directory.
  for (const char* const noHome : {static_cast<const char*>(nullptr), "", "relative"}) {
    const Environment xdg("XDG_CONFIG_HOME", nullptr);
    const Environment home("HOME", noHome);
    EXPECT_TRUE(settingsFilePath().is_absolute());
  }
}

}  // namespace
}  // namespace torvik::base
