// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace torvik::base {

/// A text file of `[Section]` and `Key=Value` lines, held in memory for one operation: read whole, asked and
/// changed, written whole. docs/file-formats.md tells the form.
///
/// Section and key names compare without regard to (ASCII) case; of two sections or two keys of one name the
/// first counts. Blanks around names and values are dropped; a value in one pair of matching quotation marks
/// (' or ") is read without them; lines that begin with ";" are comments. A value has at most 254 bytes, a
/// longer one is cut. Bytes are kept as they are, and lines that were not written go back to the file byte
/// for byte. Line ends may be CR LF, LF or CR; new lines take the file's first one (LF in a new file). A line
/// that begins with "[" is a section's up to its first "]"; without one it is no section line. A UTF-8
/// byte-order mark in front is passed over and kept.
class ProfileFile {
 public:
  /// An empty profile. @param name  the file name that errors show
  explicit ProfileFile(std::string name = {});
  ~ProfileFile();
  ProfileFile(ProfileFile&&) noexcept;
  ProfileFile& operator=(ProfileFile&&) noexcept;

  /// Reads the file; one that does not exist gives an empty profile.
  /// @throws InputError where it exists and can not be read, is a directory, or holds NUL bytes
  static ProfileFile read(const std::filesystem::path& path);

  /// A profile with this content, as if read from a file of that name.
  /// @throws InputError where it holds NUL bytes
  static ProfileFile ofText(std::string content, std::string name);

  [[nodiscard]] const std::string& name() const { return m_name; }

  /// The value of a key; empty where section or key is absent. Valid until the profile changes.
  [[nodiscard]] std::optional<std::string_view> find(std::string_view section, std::string_view key) const;

  [[nodiscard]] std::string ProfileGetString(std::string_view section, std::string_view key,
                                             std::string_view defaultText) const;

  /// The default where the key is absent; else the value's optional minus sign and leading decimal digits, 0
  /// where there are none. A number beyond 32 bits is held at the nearest bound.
  [[nodiscard]] std::int32_t ProfileGetInt(std::string_view section, std::string_view key,
                                           std::int32_t defaultValue) const;

  /// `ProfileGetInt` for a 16-bit consumer. @throws InputError of the key where the number does not fit
  [[nodiscard]] std::int16_t ProfileGetInt16(std::string_view section, std::string_view key,
                                             std::int16_t defaultValue) const;

  /// The default after a round trip through text where the key is absent.
  /// @throws InputError of the key where its value is empty or no number
  [[nodiscard]] double ProfileGetDouble(std::string_view section, std::string_view key,
                                        double defaultValue) const;
  [[nodiscard]] float ProfileGetSingle(std::string_view section, std::string_view key,
                                       float defaultValue) const;

  /// Text for a field that holds text or a number: the value as it stands.
  [[nodiscard]] std::string ProfileGetVariant(std::string_view section, std::string_view key,
                                              std::string_view defaultText) const;

  /// Changes or adds the key. The value is kept as given; a line that reads as this value already stays as it
  /// is, quotation marks and all.
  /// @throws InputError of the key where the value holds a line end or NUL, which the form can not hold
  /// @throws InternalError 51 where a new section or key could not be found again under its name
  void ProfileWrite(std::string_view section, std::string_view key, std::string_view value);

  /// The file's text, with all changes.
  [[nodiscard]] std::string text() const;

  /// Replaces the file whole (see `replaceWholeFile`); parent directories are created.
  void save(const std::filesystem::path& path) const;

 private:
  class Content;
  std::string m_name;
  std::unique_ptr<Content> m_content;
};

}  // namespace torvik::base
