// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <sstream>
#include <string_view>
#include <thread>

#include "base/number_text.h"
#include "base/settings.h"
#include "base/title.h"

namespace torvik::batch {

namespace {

/// The whole text as a decimal integer of that range.
std::optional<int> integerOf(std::string_view text, int least, int greatest) {
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || value < least || value > greatest)
    return {};
  return value;
}

RowName rowNameOf(const std::string& text) {
  const std::size_t colon = text.find(':');
  const std::string kind = text.substr(0, colon);
  const auto number =
      colon == std::string::npos ? std::nullopt : integerOf(text.substr(colon + 1), 1, model::kMaxRows);
  for (const auto candidate : {model::ObjectKind::Solid, model::ObjectKind::Bar, model::ObjectKind::Tendon})
    if (number && base::equalIgnoringCase(kind, model::sectionNameOf(candidate))) return {candidate, *number};
  throw CLI::ValidationError("--stress-strain", "\"" + text + "\" is no row: solid:N, bar:N or tendon:N is");
}

std::pair<std::string, std::string> settingOf(const std::string& text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos)
    throw CLI::ValidationError("--set", "\"" + text + "\" has no \"=\": KEY=VALUE is expected");
  const std::string name(base::trimmed(std::string_view(text).substr(0, equals)));
  const std::string value(base::trimmed(std::string_view(text).substr(equals + 1)));
  const base::OptionKey* key = base::findOptionKey(name);
  if (!key) throw CLI::ValidationError("--set", "\"" + name + "\" is no key of section Option");
  const auto refuseUnless = [&](bool good, const char* expected) {
    if (!good) throw CLI::ValidationError("--set", name + "=\"" + value + "\": expected " + expected);
  };
  switch (key->kind) {
    case base::OptionKind::Flag:
      refuseUnless(value == "0" || value == "1", "0 or 1");
      break;
    case base::OptionKind::Integer:
      refuseUnless(integerOf(value, -32768, 32767).has_value(), "an integer");
      break;
    case base::OptionKind::Real:
      refuseUnless(base::toNumber(value).has_value(), "a number");
      break;
    case base::OptionKind::Text:
      refuseUnless(value.find_first_of("\r\n") == std::string::npos, "a text of one line");
      break;
  }
  return {std::string(key->name), value};
}

}  // namespace

CommandLine parseCommandLine(int argc, const char* const* argv) {
  Request request;
  std::vector<std::string> settings;
  std::string row;
  request.jobs = static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));

  CLI::App app{
      "Runs the jobs of torvik input files without a window and writes their result files.\n"
      "Each MODEL.inp gives MODEL.inp.txt (results) and MODEL.inp.log (messages), and one line here:\n"
      "name, rows, peak moment, end message, seconds and watch crossings, separated by tabs.\n"
      "Exit status: 0 every model gave a result row, 1 some did not, 2 wrong command line.",
      "torvik-batch"};
  app.set_version_flag("--version", base::VersionTitle() + "\n");
  app.add_option("MODEL.inp", request.models, "Input files")->required()->type_name("");
  app.add_option("--settings", request.settingsFile, "A settings file instead of the user's own")
      ->type_name("FILE");
  app.add_option("--set", settings, "An option of section Option for this run; may be repeated")
      ->type_name("KEY=VALUE")
      ->allow_extra_args(false);
  app.add_option("--step", request.step,
                 "The step box's text at the start of each job: Small (default), Large or a number")
      ->type_name("STEP");
  app.add_option("--shape", request.shape,
                 "Answer to the section-shape question of \"Restoration (Confined)\"")
      ->type_name("r|c");
  app.add_option("--tie-stress", request.tieStress, "Answer to its yield-stress question [N/mm2]")
      ->type_name("N");
  app.add_flag("--overwrite", request.overwrite, "Replace existing result files");
  app.add_option("--jobs", request.jobs, "Models run side by side (default: the number of cores)")
      ->type_name("N");
  app.add_flag("--state", request.state, "Also write MODEL.inp.state.txt: the per-object tables at the end");
  app.add_flag("--section-parameters", request.sectionParameters,
               "Print the five rows of section parameters and run no job");
  app.add_option("--stress-strain", row, "Print strain and stress of one row, e.g. bar:2, and run no job")
      ->type_name("ROW");
  app.add_flag("--full", request.fullNumbers, "With the two prints above: plain numbers of 15 digits");
  app.add_flag("--quiet", request.quiet, "No progress line");

  // CLI11 would take a word in brackets for a list of words. It reads from the back of the vector.
  std::vector<std::string> words(argv + std::min(argc, 1), argv + argc);
  for (std::string& word : words)
    if (word.starts_with('[') && word.ends_with(']')) word.insert(0, "./");
  std::reverse(words.begin(), words.end());

  try {
    app.parse(std::move(words));
    for (const std::string& setting : settings) request.settings.push_back(settingOf(setting));
    if (app.count("--stress-strain") > 0) request.stressStrain = rowNameOf(row);
    if (request.step != "Small" && request.step != "Large" && !base::toNumber(request.step))
      throw CLI::ValidationError("--step", "\"" + request.step + "\": expected Small, Large or a number");
    if (request.shape && *request.shape != "r" && *request.shape != "c")
      throw CLI::ValidationError("--shape", "\"" + *request.shape + "\": expected r or c");
    if (request.tieStress && base::toNumber(*request.tieStress).value_or(0) == 0)
      throw CLI::ValidationError("--tie-stress",
                                 "\"" + *request.tieStress + "\": expected a number other than 0");
    if (request.jobs < 1) throw CLI::ValidationError("--jobs", "expected a number from 1 on");
    if (request.fullNumbers && !request.sectionParameters && !request.stressStrain)
      throw CLI::ValidationError("--full", "goes with --section-parameters or --stress-strain");
  } catch (const CLI::ParseError& error) {
    std::ostringstream out;
    std::ostringstream err;
    const int status = app.exit(error, out, err);
    return {std::nullopt, out.str() + err.str(), status == 0 ? 0 : 2};
  }
  return {std::move(request), {}, 0};
}

}  // namespace torvik::batch
