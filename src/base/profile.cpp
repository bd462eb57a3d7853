// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/profile.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <memory_resource>
#include <system_error>
#include <unordered_map>
#include <utility>
#include <vector>

#include "base/errors.h"
#include "base/files.h"
#include "base/number_text.h"

namespace torvik::base {

namespace {

constexpr std::size_t kMostValueBytes = 254;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kUnheld("\r\n\0", 3);
constexpr std::size_t kLineBytesGuess = 16;
constexpr std::size_t kMostLinesReserved = 1'000'000;
constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

/// FNV-1a of the name in lower case.
struct NameHash {
  std::size_t operator()(std::string_view name) const {
    std::uint64_t hash = 0xcbf29ce484222325U;
    for (const char c : name) {
      const auto byte = static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
      hash = (hash ^ byte) * 0x100000001b3U;
    }
    return static_cast<std::size_t>(hash);
  }
};

struct NameEqual {
  bool operator()(std::string_view a, std::string_view b) const { return equalIgnoringCase(a, b); }
};

/// What a reader sees of the text right of "=".
std::string_view readValue(std::string_view raw) {
  if (raw.size() >= 2 && (raw.front() == '"' || raw.front() == '\'') && raw.back() == raw.front()) {
    raw = raw.substr(1, raw.size() - 2);
  }
  return raw.substr(0, kMostValueBytes);
}

std::int32_t leadingInteger(std::string_view value) {
  std::int32_t number = 0;
  const auto result = std::from_chars(value.data(), value.data() + value.size(), number);
  if (result.ec == std::errc::result_out_of_range) {
    using Limits = std::numeric_limits<std::int32_t>;
    return value.front() == '-' ? Limits::min() : Limits::max();
  }
  return number;  // stays 0 where there are no digits
}

/// Cuts a text into lines; each ends with CR LF, LF, CR or the text.
class LineCutter {
 public:
  explicit LineCutter(std::string_view text) : m_text(text) {}

  struct Cut {
    std::string_view content;
    std::string_view end;
  };

  [[nodiscard]] bool atEnd() const { return m_at == m_text.size(); }

  Cut next() {
    // Both marks are looked for only when passed, so that a file with one kind of line end is gone through
    // once.
    if (m_nextLf < m_at || m_at == 0) m_nextLf = std::min(m_text.find('\n', m_at), m_text.size());
    if (m_nextCr < m_at || m_at == 0) m_nextCr = std::min(m_text.find('\r', m_at), m_text.size());
    const std::size_t end = std::min(m_nextLf, m_nextCr);
    std::size_t length = end == m_text.size() ? 0 : 1;
    if (m_nextLf < m_text.size() && m_nextLf == m_nextCr + 1) length = 2;
    const Cut cut{m_text.substr(m_at, end - m_at), m_text.substr(end, length)};
    m_at = end + length;
    return cut;
  }

 private:
  std::string_view m_text;
  std::size_t m_at = 0;
  std::size_t m_nextLf = 0;
  std::size_t m_nextCr = 0;
};

}  // namespace

/// The lines of the file, chained within each section, so that a new one goes in anywhere without moving
/// others. All texts are views, into the text that was read or into `m_added`.
class ProfileFile::Content {
 public:
  Content() = default;
  explicit Content(std::string text) : m_read(std::move(text)) { parse(); }

  [[nodiscard]] std::optional<std::string_view> find(std::string_view section, std::string_view key) const {
    const std::size_t line = lineOf(section, key);
    if (line == kNone) return std::nullopt;
    return readValue(m_lines[line].value);
  }

  void write(std::string_view section, std::string_view key, std::string_view value) {
    if (const std::size_t line = lineOf(section, key); line != kNone) {
      if (readValue(m_lines[line].value) != value) m_lines[line].value = added({value});
      return;
    }
    if (key.empty() || trimmed(key).size() != key.size() || key.front() == ';' || key.front() == '[' ||
        key.find('=') != std::string_view::npos || key.find_first_of(kUnheld) != std::string_view::npos) {
      throw InternalError(kImpossibleCase, fmt::format("profile key \"{}\"", printable(key)));
    }
    Section& home = m_sections[sectionForWriting(section)];
    endLine(home.lastFilled);

    const std::string_view text = added({key, "=", value});
    Line line;
    line.key = text.substr(0, key.size());
    line.head = text.substr(0, key.size() + 1);
    line.value = text.substr(key.size() + 1);
    line.tail = m_lineEnd;
    insertBehind(home, home.lastFilled, line);
  }

  [[nodiscard]] std::string text() const {
    std::size_t size = m_mark.size();
    for (const Line& line : m_lines) size += line.head.size() + line.value.size() + line.tail.size();
    std::string text;
    text.reserve(size);
    text.append(m_mark);
    for (const Section& section : m_sections) {
      for (std::size_t i = section.first; i != kNone; i = m_lines[i].next) {
        text.append(m_lines[i].head).append(m_lines[i].value).append(m_lines[i].tail);
      }
    }
    return text;
  }

 private:
  /// The line's bytes are `head`, `value` and `tail`, one behind the other.
  struct Line {
    std::string_view head;   ///< up to the value; all but the line end where the line has no key
    std::string_view key;    ///< part of `head`; empty where the line has none
    std::string_view value;  ///< with its quotation marks
    std::string_view tail;   ///< blanks and line end
    std::size_t next = kNone;
  };

  /// A section line and what follows it up to the next one; the first of all is what stands before any.
  struct Section {
    std::size_t first = kNone;
    std::size_t last = kNone;
    std::size_t lastFilled = kNone;  ///< the last line that holds more than blanks
  };

  void parse() {
    std::string_view text = m_read;
    if (text.starts_with(kByteOrderMark)) {
      m_mark = text.substr(0, kByteOrderMark.size());
      text.remove_prefix(m_mark.size());
    }
    m_lines.reserve(std::min(text.size() / kLineBytesGuess, kMostLinesReserved));
    LineCutter cutter(text);
    while (!cutter.atEnd()) {
      const auto [content, end] = cutter.next();
      if (m_lines.empty() && !end.empty()) m_lineEnd = end;
      const std::string_view filled = trimmed(content);
      Line line;
      line.head = content;
      line.tail = end;
      if (!filled.empty()) readFilled(filled, content, line);
      insertBehind(m_sections.back(), m_sections.back().last, line);
    }
  }

  /// Begins a section, or finds the parts of a key's line.
  void readFilled(std::string_view filled, std::string_view content, Line& line) {
    if (filled.front() == ';') return;
    if (filled.front() == '[') {
      if (const std::size_t close = filled.find(']'); close != std::string_view::npos) {
        beginSection(trimmed(filled.substr(1, close - 1)));
        return;
      }
    }
    const std::size_t equals = content.find('=');
    if (equals == std::string_view::npos) return;
    const std::string_view right = content.substr(equals + 1);
    const std::string_view value = trimmed(right);
    // Of blanks alone the value stands behind them.
    const std::size_t begin =
        value.empty() ? content.size() : static_cast<std::size_t>(value.data() - content.data());
    line.head = content.substr(0, begin);
    line.key = trimmed(content.substr(0, equals));
    line.value = value;
    line.tail = {content.data() + begin + value.size(),
                 content.size() - begin - value.size() + line.tail.size()};
  }

  [[nodiscard]] std::size_t lineOf(std::string_view section, std::string_view key) const {
    const auto found = m_byName.find(section);
    if (found == m_byName.end() || key.empty()) return kNone;
    for (std::size_t i = m_sections[found->second].first; i != kNone; i = m_lines[i].next) {
      const std::string_view name = m_lines[i].key;
      if (name.size() == key.size() && equalIgnoringCase(name, key)) return i;
    }
    return kNone;
  }

  /// Of sections of one name the first is the one that is found.
  void beginSection(std::string_view name) {
    m_byName.try_emplace(name, m_sections.size());
    m_sections.emplace_back();
  }

  std::size_t sectionForWriting(std::string_view name) {
    if (const auto found = m_byName.find(name); found != m_byName.end()) return found->second;
    if (trimmed(name).size() != name.size() || name.find(']') != std::string_view::npos ||
        name.find_first_of(kUnheld) != std::string_view::npos) {
      throw InternalError(kImpossibleCase, fmt::format("profile section \"{}\"", printable(name)));
    }
    separate();
    Line line;
    line.head = added({"[", name, "]"});
    line.tail = m_lineEnd;
    beginSection(line.head.substr(1, name.size()));
    insertBehind(m_sections.back(), kNone, line);
    return m_sections.size() - 1;
  }

  /// Makes the file end with a blank line, unless it is empty.
  void separate() {
    Section& section = m_sections.back();
    if (section.last == kNone) return;
    endLine(section.last);
    if (section.last != section.lastFilled) return;
    Line blank;
    blank.tail = m_lineEnd;
    insertBehind(section, section.last, blank);
  }

  void insertBehind(Section& section, std::size_t before, Line line) {
    const std::size_t index = m_lines.size();
    if (before == kNone) {
      line.next = std::exchange(section.first, index);
    } else {
      line.next = std::exchange(m_lines[before].next, index);
    }
    if (line.next == kNone) section.last = index;
    if (!line.key.empty() || !trimmed(line.head).empty()) section.lastFilled = index;
    m_lines.push_back(line);
  }

  /// Gives the file's last line the line end that it may lack.
  void endLine(std::size_t index) {
    Line& line = m_lines[index];
    if (!line.tail.ends_with('\n') && !line.tail.ends_with('\r')) line.tail = added({line.tail, m_lineEnd});
  }

  /// The texts in a row, kept as long as this content.
  std::string_view added(std::initializer_list<std::string_view> parts) {
    std::size_t size = 0;
    for (const std::string_view part : parts) size += part.size();
    if (size == 0) return {};
    char* const begin = static_cast<char*>(m_added.allocate(size, 1));
    char* end = begin;
    for (const std::string_view part : parts) end = std::copy(part.begin(), part.end(), end);
    return {begin, size};
  }

  std::string m_read;
  std::pmr::monotonic_buffer_resource m_added;
  std::string_view m_mark;
  std::string_view m_lineEnd = "\n";
  std::vector<Line> m_lines;
  std::vector<Section> m_sections = std::vector<Section>(1);
  std::unordered_map<std::string_view, std::size_t, NameHash, NameEqual> m_byName;
};

ProfileFile::ProfileFile(std::string name)
    : m_name(std::move(name)), m_content(std::make_unique<Content>()) {}
ProfileFile::~ProfileFile() = default;
ProfileFile::ProfileFile(ProfileFile&&) noexcept = default;
ProfileFile& ProfileFile::operator=(ProfileFile&&) noexcept = default;

ProfileFile ProfileFile::read(const std::filesystem::path& path) {
  std::error_code error;
  if (std::filesystem::status(path, error).type() == std::filesystem::file_type::not_found) {
    return ProfileFile(path.string());
  }
  return ofText(readWholeFile(path), path.string());
}

ProfileFile ProfileFile::ofText(std::string content, std::string name) {
  if (const std::size_t offset = content.find('\0'); offset != std::string::npos) {
    throw InputError(fmt::format("{}: not a text file (NUL byte at offset {})", printable(name), offset));
  }
  ProfileFile profile(std::move(name));
  profile.m_content = std::make_unique<Content>(std::move(content));
  return profile;
}

std::optional<std::string_view> ProfileFile::find(std::string_view section, std::string_view key) const {
  return m_content->find(section, key);
}

std::string ProfileFile::ProfileGetString(std::string_view section, std::string_view key,
                                          std::string_view defaultText) const {
  return std::string(find(section, key).value_or(defaultText));
}

std::int32_t ProfileFile::ProfileGetInt(std::string_view section, std::string_view key,
                                        std::int32_t defaultValue) const {
  const auto value = find(section, key);
  return value ? leadingInteger(*value) : defaultValue;
}

std::int16_t ProfileFile::ProfileGetInt16(std::string_view section, std::string_view key,
                                          std::int16_t defaultValue) const {
  const auto value = find(section, key);
  if (!value) return defaultValue;
  using Limits = std::numeric_limits<std::int16_t>;
  const std::int32_t number = leadingInteger(*value);
  if (number < Limits::min() || number > Limits::max()) {
    throw InputError::ofKey(m_name, section, key, *value, "an integer from -32768 to 32767");
  }
  return static_cast<std::int16_t>(number);
}

double ProfileFile::ProfileGetDouble(std::string_view section, std::string_view key,
                                     double defaultValue) const {
  const auto value = find(section, key);
  if (!value) return throughText(defaultValue);
  const auto number = toNumber(*value);
  if (!number) throw InputError::ofKey(m_name, section, key, *value, "a number");
  return *number;
}

float ProfileFile::ProfileGetSingle(std::string_view section, std::string_view key,
                                    float defaultValue) const {
  const auto number = static_cast<float>(ProfileGetDouble(section, key, static_cast<double>(defaultValue)));
  if (std::isinf(number)) {
    throw InputError::ofKey(m_name, section, key, *find(section, key),
                            "a number within the range of 32-bit floats");
  }
  return number;
}

std::string ProfileFile::ProfileGetVariant(std::string_view section, std::string_view key,
                                           std::string_view defaultText) const {
  return ProfileGetString(section, key, defaultText);
}

void ProfileFile::ProfileWrite(std::string_view section, std::string_view key, std::string_view value) {
  if (value.find_first_of(kUnheld) != std::string_view::npos) {
    throw InputError::ofKey(m_name, section, key, value, "a text without a line end or NUL");
  }
  m_content->write(section, key, value);
}

std::string ProfileFile::text() const {
  return m_content->text();
}

void ProfileFile::save(const std::filesystem::path& path) const {
  replaceWholeFile(path, text(), CreateParents::Yes);
}

}  // namespace torvik::base
