// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/input_file.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <type_traits>
#include <variant>

#include "base/errors.h"
#include "base/files.h"
#include "base/number_text.h"

namespace torvik::model {

namespace {

constexpr std::string_view kCountKey = "All";

/// Below it every double has a text of 15 digits that reads back.
constexpr double kSafeNumber = 1e308;

/// "Solid0", "Solid1", ...: the names of row sections, in one buffer.
class RowSectionName {
 public:
  explicit RowSectionName(ObjectKind kind) : m_text(sectionNameOf(kind)), m_stem(m_text.size()) {
    m_text.resize(m_stem + kMostDigits);
  }
  std::string_view operator()(std::size_t row) {
    char* const digits = m_text.data() + m_stem;
    const char* const end = std::to_chars(digits, digits + kMostDigits, row).ptr;
    return {m_text.data(), static_cast<std::size_t>(end - m_text.data())};
  }

 private:
  static constexpr std::size_t kMostDigits = 20;
  std::string m_text;
  std::size_t m_stem;
};

class WaitCursor {
 public:
  explicit WaitCursor(InputFileFrame& frame) : m_frame(frame) { m_frame.showWaitCursor(true); }
  ~WaitCursor() { m_frame.showWaitCursor(false); }
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;

 private:
  InputFileFrame& m_frame;
};

std::size_t readRowCount(const base::ProfileFile& file, ObjectKind kind) {
  const std::string_view section = tableNameOf(kind);
  const std::int16_t count = file.ProfileGetInt16(section, kCountKey, 0);
  if (count < 0) {
    throw base::InputError::ofKey(file.name(), section, kCountKey,
                                  file.ProfileGetString(section, kCountKey, ""),
                                  "a row count from 0 to " + base::plainText(kMaxRows));
  }
  return static_cast<std::size_t>(count);
}

bool readsBack(double value, std::string_view text) {
  return std::abs(value) < kSafeNumber || base::toNumber(text).has_value();
}

/// Reads a value by the kind of its field.
template <class Row>
class FieldReader {
 public:
  FieldReader(const base::ProfileFile& file, std::string_view section, const Field<Row>& field)
      : m_file(file), m_section(section), m_field(field) {}

  void into(std::int16_t& value) const {
    value = m_file.ProfileGetInt16(m_section, m_field.key, std::get<std::int16_t>(m_field.defaultValue));
  }
  void into(double& value) const {
    value = m_file.ProfileGetDouble(m_section, m_field.key, std::get<double>(m_field.defaultValue));
  }
  void into(std::string& value) const {
    // As `ProfileGetString`, but into the storage that the row has.
    value = m_file.find(m_section, m_field.key).value_or(std::get<std::string_view>(m_field.defaultValue));
  }

 private:
  const base::ProfileFile& m_file;
  std::string_view m_section;
  const Field<Row>& m_field;
};

}  // namespace

template <class Row>
void readRow(const base::ProfileFile& file, std::string_view section, Row& row) {
  for (const Field<Row>& field : fieldsOf<Row>()) {
    const FieldReader<Row> read(file, section, field);
    std::visit([&](auto member) { read.into(row.*member); }, field.member);
  }
  if constexpr (std::is_same_v<Row, BeamObject>) row.BeamTop = row.BeamBottom = 0;
}

template <class Row>
void writeRow(base::ProfileFile& file, std::string_view section, const Row& row) {
  for (const Field<Row>& field : fieldsOf<Row>()) {
    const std::string text = textOf(row, field);
    if (field.isNumber() && !readsBack(row.*std::get<typename Field<Row>::Number>(field.member), text)) {
      throw base::InputError::ofKey(file.name(), section, field.key, text,
                                    "a number that a file can hold, below 1.797E+308");
    }
    file.ProfileWrite(section, field.key, text);
  }
}

template void readRow(const base::ProfileFile&, std::string_view, BeamObject&);
template void readRow(const base::ProfileFile&, std::string_view, SolidObject&);
template void readRow(const base::ProfileFile&, std::string_view, BarObject&);
template void readRow(const base::ProfileFile&, std::string_view, TendonObject&);
template void readRow(const base::ProfileFile&, std::string_view, AxialForceObject&);
template void writeRow(base::ProfileFile&, std::string_view, const BeamObject&);
template void writeRow(base::ProfileFile&, std::string_view, const SolidObject&);
template void writeRow(base::ProfileFile&, std::string_view, const BarObject&);
template void writeRow(base::ProfileFile&, std::string_view, const TendonObject&);
template void writeRow(base::ProfileFile&, std::string_view, const AxialForceObject&);

void readTables(const base::ProfileFile& file, ObjectTables& tables) {
  for (const ObjectKind kind : kAllObjectKinds) {
    visitTable(tables, kind, [&](auto& rows) {
      rows.resize(readRowCount(file, kind));
      RowSectionName section(kind);
      for (std::size_t i = 0; i < rows.size(); ++i) readRow(file, section(i), rows[i]);
    });
  }
}

void writeTables(base::ProfileFile& file, const ObjectTables& tables) {
  for (const ObjectKind kind : kAllObjectKinds) {
    visitTable(tables, kind, [&](const auto& rows) {
      file.ProfileWrite(tableNameOf(kind), kCountKey, base::plainText(static_cast<long long>(rows.size())));
      RowSectionName section(kind);
      for (std::size_t i = 0; i < rows.size(); ++i) writeRow(file, section(i), rows[i]);
    });
  }
}

bool ReadInputFile(Document& document, InputFileFrame& frame, const std::string& path) {
  if (!base::isFile(path)) {
    frame.cannotOpen(path);
    return false;
  }
  frame.takePath(path);
  const WaitCursor cursor(frame);
  // A file that can not be read leaves the document with its edits and its own file.
  const base::ProfileFile file = base::ProfileFile::read(path);
  document.currentFile = path;
  document.SavedFlag = true;
  document.stored = document.tables;
  readTables(file, document.tables);
  return true;
}

void WriteInputFile(Document& document, InputFileFrame& frame, const std::string& path) {
  frame.takePath(path);
  const WaitCursor cursor(frame);
  base::ProfileFile file = base::ProfileFile::read(path);
  writeTables(file, document.tables);
  file.save(path);
  // Not before: what could not be written must not count as saved.
  document.currentFile = path;
  document.SavedFlag = true;
  document.stored = document.tables;
}

}  // namespace torvik::model
