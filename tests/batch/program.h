// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "base/files.h"
#include "base/temporary_folder.h"
#include "model/input_file.h"
#include "model/models.h"

namespace torvik::batch {

using Texts = std::vector<std::string>;

inline Texts split(std::string_view text, std::string_view separator) {
  Texts parts;
  for (std::size_t end; (end = text.find(separator)) != text.npos; text.remove_prefix(end + separator.size()))
    parts.emplace_back(text.substr(0, end));
  if (!text.empty()) parts.emplace_back(text);
  return parts;
}

struct Ended {
  int status = -1;
  std::string out;
  std::string err;

  /// Field `number` of the summary line of that model.
  std::string field(const std::string& model, std::size_t number) const {
    for (const std::string& line : split(out, "\n"))
      if (const Texts fields = split(line, "\t"); number < fields.size() && fields[0] == model)
        return fields[number];
    return "no field " + std::to_string(number) + " of " + model + " in: " + out + err;
  }
  std::string rows(const std::string& model) const { return field(model, 1); }
  std::string message(const std::string& model) const { return field(model, 3); }
};

/// 300 x 500 in ten layers, three bars, a tendon and an axial force; ten pieces of the half span.
inline model::ObjectTables smallModel() {
  model::ObjectTables tables = tests::rectangle(10);
  tables.Beams[0] = tests::beamOf(4000, 0, 10);
  for (auto& solid : tables.Solids) solid.FlexuralStrain = -0.000144;
  tables.Tendons.push_back(tests::tendonOf(140, 400, "Post-tensioning"));
  tables.AxialForces.push_back(tests::axialOf(50000, 250));
  return tables;
}

/// Ends a job after 50 rows.
inline const std::string kShort = "torvik-batch --set CurvatureLargeRangeTo=4.95E-06 ";

/// A folder in which the program runs, without a terminal or settings of the user's.
class Program : public testing::Test {
 protected:
  std::filesystem::path path(const std::string& name) const { return m_folder / name; }
  std::string read(const std::string& name) const { return base::readWholeFile(path(name)); }
  bool has(const std::string& name) const { return std::filesystem::exists(path(name)); }
  void write(const std::string& name, std::string_view content) const {
    base::replaceWholeFile(path(name), content, base::CreateParents::Yes);
  }

  /// Writes the model with some keys changed, each "Section Key=Value".
  void writeModel(const std::string& name, const Texts& changes = {},
                  const model::ObjectTables& tables = smallModel()) const {
    base::ProfileFile file;
    model::writeTables(file, tables);
    for (const std::string& change : changes) {
      const std::string section = change.substr(0, change.find(' '));
      const std::string key = change.substr(0, change.find('=')).substr(section.size() + 1);
      file.ProfileWrite(section, key, change.substr(change.find('=') + 1));
    }
    write(name, file.text());
  }

  /// Runs a shell script, in which torvik-batch is the program, in the folder. A hang ends with status 124.
  Ended run(const std::string& script) const {
    write("script", "cd '" + path("").string() +
                        "'; export XDG_CONFIG_HOME=$PWD/home; exec >stdout 2>stderr\n" +
                        "PATH=$(dirname '" TORVIK_BATCH "'):$PATH\n" + script);
    const int status = std::system(("timeout 60 sh '" + path("script").string() + "'").c_str());
    return {WEXITSTATUS(status), read("stdout"), read("stderr")};
  }

  /// A result file of whole lines of one width: its rows. -1 where a line is not whole.
  int wholeRows(const std::string& name) const {
    const std::string content = read(name);
    const Texts lines = split(content, "\t\r\n");
    for (const std::string& line : lines)
      if (std::ranges::count(line, '\t') != std::ranges::count(lines[0], '\t')) return -1;
    return content.ends_with("\t\r\n") ? static_cast<int>(lines.size()) - 1 : -1;
  }

 private:
  tests::TemporaryFolder m_folder;
};

}  // namespace torvik::batch
