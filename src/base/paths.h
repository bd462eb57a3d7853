// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace torvik::base {

/// A path of at most `length` characters as it is; a longer one as its beginning up to and including its
/// first separator, "...", and its end from the first separator behind which fewer than `length` - 6
/// characters stand. A long path without such a separator comes back as it is. Characters are those of UTF-8.
/// @param length  0 stands for 40
std::string shortenPath(std::string_view path, std::size_t length = 0);

}  // namespace torvik::base
