// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The command line: tokens, options, files. No window.
namespace torvik::app {

/// `text` without its leading blanks.
std::string_view TrimLeadingBlanks(std::string_view text);

/// Appends the tokens of `text` that stand between separators. A double quote opens or closes a stretch in
/// which separators do not count; quotes stay in their token. Behind a blank further blanks are passed over;
/// there are no empty tokens.
void SplitCommandLine(std::string_view text, std::string_view separators, std::vector<std::string>& tokens);

/// The tokens of a process's arguments, each of which is one token as it stands.
std::vector<std::string> tokensOf(const std::vector<std::string>& arguments);

struct CommandLineFiles {
  std::vector<std::string> unknownOptions;  ///< one character each (UTF-8), in their order
  std::vector<std::string>
      files;  ///< what stands behind the options; a bare name has the folder "." in front
};

/// A token that begins with "-" is an option, one that begins with "/" too unless it holds another "/" or
/// names an existing file. The walk stops at the first token that is none.
CommandLineFiles sortTokens(const std::vector<std::string>& tokens);

}  // namespace torvik::app
