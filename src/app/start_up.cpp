// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/start_up.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "base/files.h"

namespace torvik::app {

namespace {

bool isOption(const std::string& token) {
  if (token.starts_with('-')) return true;
  // A path with more than one separator that names no file is a mistyped path and no row of letters.
  return token.starts_with('/') && token.find('/', 1) == std::string::npos && !base::isFile(token);
}

/// Length in bytes of the UTF-8 character at the start; 1 where the bytes are none.
std::size_t characterLength(std::string_view text) {
  const auto first = static_cast<unsigned char>(text.front());
  const std::size_t length = first < 0xC0 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  return std::min(length, text.size());
}

}  // namespace

std::string_view TrimLeadingBlanks(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  return text;
}

void SplitCommandLine(std::string_view text, std::string_view separators, std::vector<std::string>& tokens) {
  bool inQuotes = false;
  std::size_t start = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '"') inQuotes = !inQuotes;
    if (inQuotes || separators.find(text[i]) == std::string_view::npos) continue;
    if (i > start) tokens.emplace_back(text.substr(start, i - start));
    start = i + 1;
    if (text[i] == ' ') start = text.size() - TrimLeadingBlanks(text.substr(start)).size();
    i = start - 1;
  }
  if (start < text.size()) tokens.emplace_back(text.substr(start));
}

std::vector<std::string> tokensOf(const std::vector<std::string>& arguments) {
  std::vector<std::string> tokens;
  std::copy_if(arguments.begin(), arguments.end(), std::back_inserter(tokens),
               [](const std::string& argument) { return !argument.empty(); });
  return tokens;
}

CommandLineFiles sortTokens(const std::vector<std::string>& tokens) {
  CommandLineFiles sorted;
  std::size_t i = 0;
  for (; i < tokens.size() && isOption(tokens[i]); ++i) {
    std::string_view letters = std::string_view(tokens[i]).substr(1);
    while (!letters.empty()) {
      const std::size_t length = characterLength(letters);
      sorted.unknownOptions.emplace_back(letters.substr(0, length));
      letters.remove_prefix(length);
    }
  }
  for (; i < tokens.size(); ++i)
    sorted.files.push_back(tokens[i].find('/') == std::string::npos ? "./" + tokens[i] : tokens[i]);
  return sorted;
}

}  // namespace torvik::app
