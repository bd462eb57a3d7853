// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/checksum.h"

#include <sha2.h>

#include <array>

#include "base/files.h"

namespace torvik::base {

std::string checksumOfFile(const std::string& path) {
  std::array<char, SHA256_DIGEST_STRING_LENGTH> digits{};
  if (!isFile(path) || ::SHA256File(path.c_str(), digits.data()) == nullptr) return {};
  return digits.data();
}

}  // namespace torvik::base
