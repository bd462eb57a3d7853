// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

#include "base/profile.h"

namespace torvik::base {

/// The keys of section `Option` of the settings file, in the order of docs/file-formats.md. The one list of
/// them: a job, the options dialog and the defaults all go by `optionKeys`.
enum class OptionId : std::uint8_t {
  SelectedTab,
  CurvatureSmallRangeFrom,
  CurvatureSmallRangeTo,
  CurvatureSmallRangeStep,
  CurvatureLargeRangeFrom,
  CurvatureLargeRangeTo,
  CurvatureLargeRangeStep,
  CurvatureUserRangeStep,
  ConvergenceMaxIteration,
  ConvergenceDiffWidth,
  ConvergencePrecision,
  ChartMomentCurvature,
  ChartLoadDisplacement,
  ChartStress,
  ChartStrain,
  ChartMoment,
  ChartCurvature,
  ChartDisplacement,
  FileSolver,
  TableSolver,
  TableSection,
  TableSolid,
  TableBar,
  TableTendon,
  StrainSolidFrom,
  StrainSolidTo,
  StrainSolidStep,
  StrainBarFrom,
  StrainBarTo,
  StrainBarStep,
  StrainTendonFrom,
  StrainTendonTo,
  StrainTendonStep,
  MessagesBeepStart,
  MessagesBeepEnd,
  MessagesBeepConvergence,
  MessagesPausePreLoading,
  MessagesPauseWatch,
  MessagesBeepStartSound,
  MessagesBeepEndSound,
  MessagesBeepConvergenceSound,
  MessagesPausePreLoadingSound,
  MessagesPauseWatchSound,
  WindowArrange,
};

/// Kind of a key's value. A flag is 1 (on); anything else is off.
enum class OptionKind : std::uint8_t { Flag, Integer, Real, Text };

/// Where the options dialog edits a key.
struct OptionControl {
  int tab = 0;            ///< from 1; 0 where the dialog does not edit it
  std::string_view name;  ///< of the control, with the index in a control array
  int index = -1;         ///< -1: not of an array
  std::string_view caption;
};

struct OptionKey {
  OptionId id;
  std::string_view name;
  OptionKind kind;
  std::string_view defaultText;
  OptionControl control = {};
};

/// All keys, indexed by `OptionId`.
std::span<const OptionKey> optionKeys();
const OptionKey& optionKey(OptionId id);
/// The key of that name without regard to case; null where there is none.
const OptionKey* findOptionKey(std::string_view name);

inline constexpr std::string_view kOptionSection = "Option";
inline constexpr std::string_view kToolSection = "Tool";
inline constexpr std::string_view kAboutSection = "About";

/// Typed reads of section `Option`. All throw InputError of the key for a value that its kind can not hold.
bool optionFlag(const ProfileFile& settings, OptionId id);
std::int16_t optionInteger(const ProfileFile& settings, OptionId id);
double optionReal(const ProfileFile& settings, OptionId id);
std::string optionText(const ProfileFile& settings, OptionId id);

/// Where the user's settings lie: `torvik/torvik.ini` in `$XDG_CONFIG_HOME` (where that is an absolute path),
/// else in `.config` of the home directory. Worked out anew at each call.
/// @throws InputError where there is no home directory
std::filesystem::path settingsFilePath();

}  // namespace torvik::base
