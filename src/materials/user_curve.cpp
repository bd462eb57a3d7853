// SPDX-License-Identifier: GPL-3.0-or-later
#include "materials/user_curve.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "base/errors.h"
#include "base/fault.h"
#include "base/files.h"
#include "base/number_text.h"
#include "base/title.h"

namespace torvik::materials {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kBlanks = " \t";

/// Takes the text up to the next line end, and the line end, off the front. CR, LF and CR LF end a line.
std::string_view takeLine(std::string_view& text) {
  const std::size_t end = text.find_first_of("\r\n");
  const std::string_view line = text.substr(0, end);
  if (end == std::string_view::npos) {
    text = {};
  } else {
    text.remove_prefix(end + (text.substr(end, 2) == "\r\n" ? 2 : 1));
  }
  return line;
}

void dropBlanks(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
}

/// Takes the text up to the next blank or comma off the front.
std::string_view takeField(std::string_view& text) {
  const std::string_view field = text.substr(0, text.find_first_of(" \t,"));
  text.remove_prefix(field.size());
  return field;
}

struct Record {
  std::optional<double> stress;
  std::optional<double> strain;  ///< empty also where something stands behind it
};

Record parseRecord(std::string_view line) {
  Record record;
  dropBlanks(line);
  record.stress = base::toNumber(takeField(line));
  if (!record.stress) return record;
  dropBlanks(line);
  if (line.starts_with(',')) line.remove_prefix(1);
  dropBlanks(line);
  const std::optional<double> strain = base::toNumber(takeField(line));
  dropBlanks(line);
  if (line.empty()) record.strain = strain;
  return record;
}

}  // namespace

CurveRecords parseCurve(std::string_view text, const std::string& fileName) {
  CurveRecords curve;
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  for (long long lineNumber = 1; !text.empty(); ++lineNumber) {
    const std::string_view line = takeLine(text);
    if (line.find_first_not_of(kBlanks) == std::string_view::npos) continue;
    const auto place = [&] {
      return base::printable(fileName) + ": line " + base::plainText(lineNumber) + ": ";
    };
    if (curve.Strains.size() == kMaxCurveRecords) {
      curve.failure = "Overflow: " + place() + "expected at most 32767 records";
      break;
    }
    const Record record = parseRecord(line);
    curve.Stresses.push_back(record.stress.value_or(0));
    curve.Strains.push_back(record.strain.value_or(0));
    if (!record.strain) {
      curve.failure = place() + "expected a stress and a strain, two numbers separated by a comma or blanks";
      break;
    }
    ++curve.PointCount;
  }
  return curve;
}

CurveRecords readCurveFile(const std::string& fileName) {
  std::string text;
  try {
    text = base::readWholeFile(fileName);
  } catch (const base::InputError& error) {
    CurveRecords curve;
    curve.opened = false;
    curve.failure = std::string("The stress-strain file could not be opened. ") + error.what();
    return curve;
  }
  return parseCurve(text, fileName);
}

UserCurveCache::UserCurveCache(std::string function) : m_function(std::move(function)) {}

double UserCurveCache::stress(double strain, const std::string& fileName, const Report& report) {
  if (fileName != CachedFile && !load(fileName, report)) return 0;

  const std::vector<double>& Strains = m_points->Strains;
  const auto at = [&](int index) { return Strains[static_cast<std::size_t>(index)]; };
  if (static_cast<std::size_t>(Cursor) >= Strains.size()) {
    throw base::NumericFault(base::NumericFault::Kind::IndexOutOfRange,
                             "user stress-strain file \"" + base::printable(fileName) + "\"");
  }
  if (strain > at(Cursor)) {
    for (; Cursor <= PointCount - 2; ++Cursor) {
      if (at(Cursor) <= strain && strain <= at(Cursor + 1)) return interpolated(strain, Cursor);
    }
  } else {
    for (; Cursor >= 1; --Cursor) {
      if (at(Cursor - 1) <= strain && strain <= at(Cursor)) {
        return interpolated(strain, static_cast<std::int16_t>(Cursor - 1));
      }
    }
  }
  return 0;
}

void UserCurveCache::startJob() {
  if (m_points != &m_kept) {
    m_kept = *m_points;
    m_points = &m_kept;
  }
  m_files.clear();
}

bool UserCurveCache::load(const std::string& fileName, const Report& report) {
  CachedFile = fileName;
  auto found = m_files.find(fileName);
  if (found == m_files.end()) found = m_files.emplace(fileName, File{readCurveFile(fileName)}).first;

  File& file = found->second;
  if (file.records.opened) {
    PointCount = file.records.PointCount;
    // A file without any record leaves the arrays of the one before it.
    if (!file.records.Strains.empty()) m_points = &file.records;
  }
  if (file.records.failure.empty()) return true;
  if (!file.reported) {
    file.reported = true;
    if (report) report(std::string(base::kTitle) + " " + m_function, file.records.failure);
  }
  return false;
}

double UserCurveCache::interpolated(double strain, std::int16_t from) const {
  const auto i = static_cast<std::size_t>(from);
  const std::vector<double>& Strains = m_points->Strains;
  const std::vector<double>& Stresses = m_points->Stresses;
  return Stresses[i] + base::divide(Stresses[i + 1] - Stresses[i], Strains[i + 1] - Strains[i],
                                    "slope of a user stress-strain file") *
                           (strain - Strains[i]);
}

}  // namespace torvik::materials
