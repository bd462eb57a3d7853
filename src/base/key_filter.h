// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace torvik::base {

/// One keystroke of a numeric entry.
/// @param keyAscii  code of the character typed (Backspace is 8)
/// @param kind  "Single", "Double", "Integer", "Long", each with or without "-" in front; of any other
///              text exactly the characters are allowed
/// @return the key, or 0 where it is not allowed (the caller beeps)
int KeyFilter(int keyAscii, std::string_view kind);

}  // namespace torvik::base
