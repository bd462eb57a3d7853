// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/paths.h"

#include <algorithm>
#include <filesystem>

namespace torvik::base {

namespace {

constexpr std::size_t kDefaultLength = 40;
constexpr char kSeparator = static_cast<char>(std::filesystem::path::preferred_separator);

std::size_t characterCount(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

}  // namespace

std::string shortenPath(std::string_view path, std::size_t length) {
  if (length == 0) length = kDefaultLength;
  std::size_t behind = characterCount(path);
  if (behind <= length) return std::string(path);

  const std::size_t first = path.find(kSeparator);
  std::size_t done = 0;
  for (std::size_t at = first; at != std::string_view::npos; at = path.find(kSeparator, done)) {
    behind -= characterCount(path.substr(done, at + 1 - done));
    done = at + 1;
    if (behind + 6 < length) {
      return std::string(path.substr(0, first + 1)).append("...").append(path.substr(at));
    }
  }
  return std::string(path);
}

}  // namespace torvik::base
