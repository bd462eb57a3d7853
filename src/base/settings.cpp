// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/settings.h"

#include <fmt/format.h>
#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <vector>

#include "base/errors.h"
#include "base/number_text.h"
#include "base/title.h"

namespace torvik::base {

namespace {

using enum OptionKind;
using Id = OptionId;

// clang-format off
constexpr std::array kOptionKeys = {
    OptionKey{Id::SelectedTab, "SelectedTab", Integer, "1"},
    OptionKey{Id::CurvatureSmallRangeFrom, "CurvatureSmallRangeFrom", Real, "0", {1, "Text01", 0, "&From"}},
    OptionKey{Id::CurvatureSmallRangeTo, "CurvatureSmallRangeTo", Real, "2E-05", {1, "Text01", 1, "&To"}},
    OptionKey{Id::CurvatureSmallRangeStep, "CurvatureSmallRangeStep", Real, "1E-07", {1, "Text01", 2, "&Step"}},
    OptionKey{Id::CurvatureLargeRangeFrom, "CurvatureLargeRangeFrom", Real, "2E-05", {1, "Text02", 0, "F&rom"}},
    OptionKey{Id::CurvatureLargeRangeTo, "CurvatureLargeRangeTo", Real, "0.5", {1, "Text02", 1, "T&o"}},
    OptionKey{Id::CurvatureLargeRangeStep, "CurvatureLargeRangeStep", Real, "1E-06", {1, "Text02", 2, "St&ep"}},
    OptionKey{Id::CurvatureUserRangeStep, "CurvatureUserRangeStep", Text, "Small"},
    OptionKey{Id::ConvergenceMaxIteration, "ConvergenceMaxIteration", Integer, "1000", {1, "Text03", 0, "Max. &Iteration"}},
    OptionKey{Id::ConvergenceDiffWidth, "ConvergenceDiffWidth", Integer, "6", {1, "Text03", 1, "Diff. &Width"}},
    OptionKey{Id::ConvergencePrecision, "ConvergencePrecision", Integer, "3", {1, "Text03", 2, "&Precision"}},
    OptionKey{Id::ChartMomentCurvature, "ChartMomentCurvature", Flag, "1", {2, "Check11", 0, "&Moment-Curvature"}},
    OptionKey{Id::ChartLoadDisplacement, "ChartLoadDisplacement", Flag, "1", {2, "Check11", 1, "&Load-Displacement"}},
    OptionKey{Id::ChartStress, "ChartStress", Flag, "1", {2, "Check11", 2, "&Stress"}},
    OptionKey{Id::ChartStrain, "ChartStrain", Flag, "1", {2, "Check11", 3, "S&train"}},
    OptionKey{Id::ChartMoment, "ChartMoment", Flag, "1", {2, "Check11", 4, "M&oment"}},
    OptionKey{Id::ChartCurvature, "ChartCurvature", Flag, "1", {2, "Check11", 5, "C&urvature"}},
    OptionKey{Id::ChartDisplacement, "ChartDisplacement", Flag, "1", {2, "Check11", 6, "Dis&placement"}},
    OptionKey{Id::FileSolver, "FileSolver", Flag, "0", {2, "Check12", -1, "Sol&ver"}},
    OptionKey{Id::TableSolver, "TableSolver", Flag, "1", {2, "Check13", 0, "Solve&r"}},
    OptionKey{Id::TableSection, "TableSection", Flag, "0", {2, "Check13", 1, "Se&ction"}},
    OptionKey{Id::TableSolid, "TableSolid", Flag, "1", {2, "Check13", 2, "Sol&id"}},
    OptionKey{Id::TableBar, "TableBar", Flag, "1", {2, "Check13", 3, "&Bar"}},
    OptionKey{Id::TableTendon, "TableTendon", Flag, "1", {2, "Check13", 4, "T&endon"}},
    OptionKey{Id::StrainSolidFrom, "StrainSolidFrom", Real, "-0.001", {3, "Text21", 0, "&From"}},
    OptionKey{Id::StrainSolidTo, "StrainSolidTo", Real, "0.01", {3, "Text21", 1, "&To"}},
    OptionKey{Id::StrainSolidStep, "StrainSolidStep", Real, "1E-05", {3, "Text21", 2, "&Step"}},
    OptionKey{Id::StrainBarFrom, "StrainBarFrom", Real, "-0.1", {3, "Text22", 0, "F&rom"}},
    OptionKey{Id::StrainBarTo, "StrainBarTo", Real, "0.1", {3, "Text22", 1, "T&o"}},
    OptionKey{Id::StrainBarStep, "StrainBarStep", Real, "0.0001", {3, "Text22", 2, "St&ep"}},
    OptionKey{Id::StrainTendonFrom, "StrainTendonFrom", Real, "-0.1", {3, "Text23", 0, "Fro&m"}},
    OptionKey{Id::StrainTendonTo, "StrainTendonTo", Real, "0.1", {3, "Text23", 1, "To"}},
    OptionKey{Id::StrainTendonStep, "StrainTendonStep", Real, "0.0001", {3, "Text23", 2, "Ste&p"}},
    OptionKey{Id::MessagesBeepStart, "MessagesBeepStart", Flag, "1", {5, "Check41", 0, "Beep at &Start"}},
    OptionKey{Id::MessagesBeepEnd, "MessagesBeepEnd", Flag, "1", {5, "Check41", 1, "Beep at &End"}},
    OptionKey{Id::MessagesBeepConvergence, "MessagesBeepConvergence", Flag, "1", {5, "Check41", 2, "Beep at &Convergence"}},
    OptionKey{Id::MessagesPausePreLoading, "MessagesPausePreLoading", Flag, "0", {5, "Check41", 3, "Pause in &Pre-Loading"}},
    OptionKey{Id::MessagesPauseWatch, "MessagesPauseWatch", Flag, "1", {5, "Check41", 4, "Pause at &Watch"}},
    OptionKey{Id::MessagesBeepStartSound, "MessagesBeepStartSound", Text, "chimes.wav", {5, "Text41", 0, ""}},
    OptionKey{Id::MessagesBeepEndSound, "MessagesBeepEndSound", Text, "chimes.wav", {5, "Text41", 1, ""}},
    OptionKey{Id::MessagesBeepConvergenceSound, "MessagesBeepConvergenceSound", Text, "start.wav", {5, "Text41", 2, ""}},
    OptionKey{Id::MessagesPausePreLoadingSound, "MessagesPausePreLoadingSound", Text, "ding.wav", {5, "Text41", 3, ""}},
    OptionKey{Id::MessagesPauseWatchSound, "MessagesPauseWatchSound", Text, "ding.wav", {5, "Text41", 4, ""}},
    OptionKey{Id::WindowArrange, "WindowArrange", Integer, "2", {6, "Option51", -1, ""}},
};
// clang-format on

constexpr bool isIndexedById() {
  for (std::size_t i = 0; i < kOptionKeys.size(); ++i) {
    if (static_cast<std::size_t>(kOptionKeys[i].id) != i) return false;
  }
  return kOptionKeys.size() == static_cast<std::size_t>(OptionId::WindowArrange) + 1;
}
static_assert(isIndexedById());

const OptionKey& keyOfKind(OptionId id, OptionKind kind) {
  const OptionKey& key = optionKey(id);
  if (key.kind != kind) throw InternalError(kImpossibleCase, fmt::format("kind of option {}", key.name));
  return key;
}

std::filesystem::path homeDirectory() {
  if (const char* const home = std::getenv("HOME"); home != nullptr && *home == '/') return home;
  std::vector<char> buffer(16 * 1024);
  passwd entry{};
  passwd* found = nullptr;
  if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr &&
      found->pw_dir != nullptr && *found->pw_dir == '/') {
    return found->pw_dir;
  }
  throw InputError(
      "There is no home directory for the settings: set HOME or XDG_CONFIG_HOME to an absolute path");
}

std::filesystem::path configurationDirectory() {
  if (const char* const folder = std::getenv("XDG_CONFIG_HOME"); folder != nullptr && *folder == '/')
    return folder;
  return homeDirectory() / ".config";
}

}  // namespace

std::span<const OptionKey> optionKeys() {
  return kOptionKeys;
}

const OptionKey& optionKey(OptionId id) {
  const auto index = static_cast<std::size_t>(id);
  if (index >= kOptionKeys.size()) throw InternalError(kImpossibleCase, fmt::format("option {}", index));
  return kOptionKeys[index];
}

const OptionKey* findOptionKey(std::string_view name) {
  const auto found = std::find_if(kOptionKeys.begin(), kOptionKeys.end(),
                                  [&](const OptionKey& key) { return equalIgnoringCase(key.name, name); });
  return found == kOptionKeys.end() ? nullptr : &*found;
}

bool optionFlag(const ProfileFile& settings, OptionId id) {
  const OptionKey& key = keyOfKind(id, Flag);
  return settings.ProfileGetInt(kOptionSection, key.name, key.defaultText == "1" ? 1 : 0) == 1;
}

std::int16_t optionInteger(const ProfileFile& settings, OptionId id) {
  const OptionKey& key = keyOfKind(id, Integer);
  const auto defaultValue = static_cast<std::int16_t>(numberOf(key.defaultText, "default of an option"));
  return settings.ProfileGetInt16(kOptionSection, key.name, defaultValue);
}

double optionReal(const ProfileFile& settings, OptionId id) {
  const OptionKey& key = keyOfKind(id, Real);
  return settings.ProfileGetDouble(kOptionSection, key.name,
                                   numberOf(key.defaultText, "default of an option"));
}

std::string optionText(const ProfileFile& settings, OptionId id) {
  const OptionKey& key = keyOfKind(id, Text);
  return settings.ProfileGetString(kOptionSection, key.name, key.defaultText);
}

std::filesystem::path settingsFilePath() {
  return configurationDirectory() / kTitle / (std::string(kTitle) + ".ini");
}

}  // namespace torvik::base
