// SPDX-License-Identifier: GPL-3.0-or-later
#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "base/errors.h"
#include "base/number_text.h"
#include "base/profile.h"
#include "fuzz/fuzz_targets.h"
#include "model/fields.h"
#include "model/input_file.h"

namespace torvik::fuzz {

namespace {

using base::ProfileFile;

constexpr int kMostRows = 40;  // of a table; more only take time

/// Runs what may refuse its input: the result, or nothing after an InputError of one line.
template <class Operation>
auto unlessRefused(Operation&& operation) -> std::optional<decltype(operation())> {
  try {
    return operation();
  } catch (const base::InputError& error) {
    expectOneLine(error.what());
    return std::nullopt;
  }
}

ProfileFile parsed(const std::string& text) {
  return ProfileFile::ofText(text, "a.inp");
}

template <class Visit>
void overTexts(const model::ObjectTables& tables, Visit&& visit) {
  for (const model::ObjectKind kind : model::kAllObjectKinds)
    model::visitTable(tables, kind, [&](const auto& rows) {
      using Row = typename std::remove_cvref_t<decltype(rows)>::value_type;
      for (const Row& row : rows)
        for (const model::Field<Row>& field : model::fieldsOf<Row>()) visit(row, field);
    });
}

/// All fields as text; two tables with the same texts are the same to every file and grid.
std::string textOfAll(const model::ObjectTables& tables) {
  std::string all;
  overTexts(tables, [&](const auto& row, const auto& field) { all += textOf(row, field) + "\n"; });
  return all;
}

/// A text that a bare value can not hold is written as it is and reads back as another.
bool holdsBareTexts(const model::ObjectTables& tables) {
  bool good = true;
  overTexts(tables, [&](const auto& row, const auto& field) {
    const std::string text = textOf(row, field);
    good = good && base::trimmed(text).size() == text.size() && !text.starts_with('"') &&
           !text.starts_with('\'');
  });
  return good;
}

std::optional<model::ObjectTables> tablesOf(const ProfileFile& file) {
  for (const model::ObjectKind kind : model::kAllObjectKinds)
    if (file.ProfileGetInt(model::tableNameOf(kind), "All", 0) > kMostRows) return std::nullopt;
  return unlessRefused([&] {
    model::ObjectTables tables;
    model::readTables(file, tables);
    return tables;
  });
}

void checkModel(ProfileFile file) {
  const auto tables = tablesOf(file);
  if (!tables) return;
  overTexts(*tables, [](const auto& row, const auto& field) {
    if (const auto* number =
            std::get_if<typename std::remove_cvref_t<decltype(field)>::Number>(&field.member))
      expect(std::isfinite(row.**number), "a number that was read is finite");
  });

  const auto write = [](ProfileFile& into, const model::ObjectTables& from) {
    return unlessRefused([&] { return model::writeTables(into, from), true; }).has_value();
  };
  if (!write(file, *tables) || !holdsBareTexts(*tables)) return;
  ProfileFile again = parsed(file.text());
  const auto reread = tablesOf(again);
  expect(reread.has_value(), "what was written can be read");
  expect(textOfAll(*reread) == textOfAll(*tables), "what was written reads back as it was");
  expect(write(again, *reread), "a second write is not refused");
  expect(again.text() == file.text(), "a second write changes nothing");

  ProfileFile fresh("new.inp");
  expect(write(fresh, *tables), "a new file takes what the old one took");
  const auto copy = tablesOf(parsed(fresh.text()));
  expect(copy && textOfAll(*copy) == textOfAll(*tables), "a model in a new file is the same model");
}

/// Every reader, then a writer, on names that are parts of the text itself.
void checkEntry(ProfileFile file, std::string_view section, std::string_view key, std::string_view value) {
  const auto found = file.find(section, key);
  expect(!found || found->size() <= 254, "a value has at most 254 bytes");
  expect(file.ProfileGetString(section, key, "none") == found.value_or("none"), "a string is what is found");
  static_cast<void>(file.ProfileGetInt(section, key, 3));
  unlessRefused([&] { return file.ProfileGetInt16(section, key, -3); });
  const auto number = unlessRefused([&] { return file.ProfileGetDouble(section, key, 1e-7); });
  expect(!number || std::isfinite(*number), "a real is finite");
  const auto single = unlessRefused([&] { return file.ProfileGetSingle(section, key, 1e-7F); });
  expect(!single || std::isfinite(*single), "a single is finite");

  try {
    file.ProfileWrite(section, key, value);
  } catch (const base::InternalError& error) {
    expectOneLine(error.what());
    return;
  } catch (const base::InputError& error) {
    expectOneLine(error.what());
    return;
  }
  const bool bare = base::trimmed(value).size() == value.size() && value.size() <= 254 &&
                    !(!value.empty() && (value.front() == '"' || value.front() == '\''));
  if (!bare) return;
  expect(file.find(section, key) == value, "a written value is found");
  expect(parsed(file.text()).find(section, key) == value, "a written value is found in the file");
}

}  // namespace

void inputFile(std::string_view bytes) {
  const std::string text(bytes);
  auto file = unlessRefused([&] { return parsed(text); });
  if (!file) return;
  expect(file->text() == text, "a file that nothing is written to keeps its bytes");

  const std::string_view whole(text);
  const std::size_t third = text.size() / 3;
  checkEntry(parsed(text), whole.substr(0, third), whole.substr(third, third), whole.substr(2 * third));
  const std::size_t open = whole.find('[');
  const std::size_t close = whole.find(']');
  const std::size_t equals = whole.find('=', close == whole.npos ? 0 : close);
  if (open < close && close < equals && equals != whole.npos) {
    const std::size_t line = whole.find_last_of("\r\n", equals) + 1;
    checkEntry(parsed(text), whole.substr(open + 1, close - open - 1), whole.substr(line, equals - line),
               whole.substr(equals + 1, 300));
  }
  checkModel(std::move(*file));
}

}  // namespace torvik::fuzz
