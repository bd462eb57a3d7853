// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
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

/// The one cache of a table's user files, alive as long as the program: the name last loaded, its points, and
/// the place where the last search ended.
///
/// A failed load is reported once per job and file, the call returns 0, and later calls of that name work on
/// the points that the cache then holds. The points of files that were loaded before are kept until
/// `startJob`, so that rows with different files do not read them from the disk at every call.
class UserCurveCache {
 public:
  /// @param function  "fncSSSolidFile", "fncSSBarFile" or "fncSSTendonFile": behind the title in the
  /// message's caption
  explicit UserCurveCache(std::string function);
  UserCurveCache(const UserCurveCache&) = delete;
  UserCurveCache& operator=(const UserCurveCache&) = delete;

  /// (caption, text) of a failed load.
  using Report = std::function<void(const std::string&, const std::string&)>;

  /// Stress at `strain` by linear interpolation between the neighbouring points, 0 outside the file's range.
  /// @throws NumericFault IndexOutOfRange where the cache holds no point at the place of its last search,
  ///         DivisionByZero at a step of strain 0 that the search meets
  double stress(double strain, const std::string& fileName, const Report& report);

  /// Files other than the last one are read again from now on, and failures are reported again.
  void startJob();

 private:
  struct File {
    CurveRecords records;
    bool reported = false;
  };

  /// False where the file, now or earlier in this job, could not be read to its end.
  bool load(const std::string& fileName, const Report& report);
  [[nodiscard]] double interpolated(double strain, std::int16_t from) const;

  std::string m_function;
  std::map<std::string, File> m_files;  ///< those loaded in this job
  CurveRecords m_kept;                  ///< the points held when the job began

  std::string CachedFile;
  const CurveRecords* m_points = &m_kept;  ///< holds `Strains` and `Stresses` of the cache
  std::int16_t PointCount = 0;
  std::int16_t Cursor = 0;
};

}  // namespace torvik::materials
