// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// User stress-strain files: one record a line, stress then strain, strains rising. Units and sign are those
/// of the table that uses the file. docs/file-formats.md has the form.
namespace torvik::materials {

inline constexpr std::size_t kMaxCurveRecords = 32767;

/// Records of a file up to its end or its first bad line. The bad record stands at the end of both arrays,
/// with its stress where that could be read and a strain of 0.
struct CurveRecords {
  std::vector<double> Strains;
  std::vector<double> Stresses;
  std::int16_t PointCount = 0;  ///< whole records
  std::string failure;          ///< why reading stopped; empty where it came to the end
  bool opened = true;           ///< false: the file could not be opened, nothing was read
};

/// Reads the text of a file. A line holds two decimal numbers, plain or with an exponent, separated by a
/// comma or by blanks; blank lines are passed over. More than `kMaxCurveRecords` records are a failure, and
/// the first ones stay.
CurveRecords parseCurve(std::string_view text, const std::string& fileName);

/// The file, or a failure that says why it could not be opened.
CurveRecords readCurveFile(const std::string& fileName);

/// Where a search in the user files of one table has come to: a value that can be kept and brought back. Its
/// numbers are those of one `UserCurves` within one job.
struct CurvePlace {
  static constexpr std::uint16_t kNone = 0xFFFF;
  std::uint16_t file = 0;        ///< `CachedFile`: the one last asked for; 0: the empty name
  std::uint16_t points = kNone;  ///< the one whose points are held: the last that had any
  std::int16_t PointCount = 0;
  std::int16_t Cursor = 0;

  bool operator==(const CurvePlace&) const = default;
};

/// The user files of one table as they were read, each at most once a job. A copy shares their points.
///
/// A failed load is reported once per job and file, the call returns 0, and later calls of that name work on
/// the points that are then held.
class UserCurves {
 public:
  /// @param function  "fncSSSolidFile", "fncSSBarFile" or "fncSSTendonFile": behind the title in the
  /// message's caption
  explicit UserCurves(std::string function);

  /// (caption, text) of a failed load.
  using Report = std::function<void(const std::string&, const std::string&)>;

  /// The number of a file until the next `startJob`. Nothing is read.
  std::uint16_t numberOf(const std::string& fileName);

  /// Stress at `strain` by linear interpolation between the neighbouring points, 0 outside the file's range.
  /// Reads the file where that has not been done.
  /// @throws NumericFault IndexOutOfRange where no point is held at the place of the last search,
  ///         DivisionByZero at a step of strain 0 that the search meets
  double stress(double strain, std::uint16_t file, CurvePlace& place, const Report& report);

  /// Files are read again from now on, and failures reported again; what `place` holds stays as it is.
  void startJob(CurvePlace& place);

  /// From now on a file that has not been read is InternalError 51: of a copy that only looks.
  void stopReading() { m_reads = false; }

 private:
  struct File {
    std::string name;
    std::shared_ptr<const CurveRecords> read;    ///< in this job; null: not yet
    std::shared_ptr<const CurveRecords> points;  ///< of the last time that it had any
    bool reported = false;
  };

  /// False where the file, now or earlier in this job, could not be read to its end.
  bool load(std::uint16_t number, CurvePlace& place, const Report& report);

  std::string m_function;
  std::vector<File> m_files;
  bool m_reads = true;
};

}  // namespace torvik::materials
