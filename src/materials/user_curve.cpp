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

double interpolated(const CurveRecords& records, double strain, int from) {
  const auto i = static_cast<std::size_t>(from);
  const std::vector<double>& Strains = records.Strains;
  const std::vector<double>& Stresses = records.Stresses;
  return Stresses[i] + base::divide(Stresses[i + 1] - Stresses[i], Strains[i + 1] - Strains[i],
                                    "slope of a user stress-strain file") *
                           (strain - Strains[i]);
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

UserCurves::UserCurves(std::string function) : m_function(std::move(function)), m_files(1) {}

std::uint16_t UserCurves::numberOf(const std::string& fileName) {
  const auto found = std::ranges::find(m_files, fileName, &File::name);
  const auto number = static_cast<std::size_t>(found - m_files.begin());
  if (number >= CurvePlace::kNone)
    throw base::NumericFault(base::NumericFault::Kind::Overflow, "number of user stress-strain files");
  if (found == m_files.end()) m_files.push_back({fileName, nullptr, nullptr, false});
  return static_cast<std::uint16_t>(number);
}

double UserCurves::stress(double strain, std::uint16_t file, CurvePlace& place, const Report& report) {
  if (file != place.file && !load(file, place, report)) return 0;

  static const CurveRecords kNoRecords;
  const CurveRecords& records =
      place.points == CurvePlace::kNone ? kNoRecords : *m_files[place.points].points;
  const auto at = [&](int index) { return records.Strains[static_cast<std::size_t>(index)]; };
  std::int16_t& Cursor = place.Cursor;
  if (static_cast<std::size_t>(Cursor) >= records.Strains.size()) {
    throw base::NumericFault(base::NumericFault::Kind::IndexOutOfRange,
                             "user stress-strain file \"" + base::printable(m_files[file].name) + "\"");
  }
  if (strain > at(Cursor)) {
    for (; Cursor <= place.PointCount - 2; ++Cursor) {
      if (at(Cursor) <= strain && strain <= at(Cursor + 1)) return interpolated(records, strain, Cursor);
    }
  } else {
    for (; Cursor >= 1; --Cursor) {
      if (at(Cursor - 1) <= strain && strain <= at(Cursor)) return interpolated(records, strain, Cursor - 1);
    }
  }
  return 0;
}

void UserCurves::startJob(CurvePlace& place) {
  std::vector<File> kept(1);
  const auto keep = [&](std::uint16_t number, bool withPoints) {
    File& file = m_files[number];
    auto found = std::ranges::find(kept, file.name, &File::name);
    if (found == kept.end()) found = kept.insert(kept.end(), {file.name, nullptr, nullptr, false});
    if (withPoints) found->points = file.points;
    return static_cast<std::uint16_t>(found - kept.begin());
  };
  place.file = keep(place.file, false);
  if (place.points != CurvePlace::kNone) place.points = keep(place.points, true);
  m_files = std::move(kept);
}

bool UserCurves::load(std::uint16_t number, CurvePlace& place, const Report& report) {
  place.file = number;
  File& file = m_files[number];
  if (!file.read && !m_reads)
    throw base::InternalError(base::kImpossibleCase, "a user stress-strain file that no job has read");
  if (!file.read) file.read = std::make_shared<const CurveRecords>(readCurveFile(file.name));
  if (file.read->opened) {
    place.PointCount = file.read->PointCount;
    // A file without any record leaves the points of the one before it.
    if (!file.read->Strains.empty()) {
      file.points = file.read;
      place.points = number;
    }
  }
  if (file.read->failure.empty()) return true;
  if (!file.reported) {
    file.reported = true;
    if (report) report(std::string(base::kTitle) + " " + m_function, file.read->failure);
  }
  return false;
}

}  // namespace torvik::materials
