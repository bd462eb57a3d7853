// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/key_filter.h"

namespace torvik::base {

namespace {

std::string_view allowedCharacters(std::string_view kind) {
  if (kind == "Single" || kind == "Double") return "\b0123456789.";
  if (kind == "-Single" || kind == "-Double") return "\b0123456789.-";
  if (kind == "Integer" || kind == "Long") return "\b0123456789";
  if (kind == "-Integer" || kind == "-Long") return "\b0123456789-";
  return kind;
}

}  // namespace

int KeyFilter(int keyAscii, std::string_view kind) {
  for (const char c : allowedCharacters(kind)) {
    if (static_cast<unsigned char>(c) == keyAscii) return keyAscii;
  }
  return 0;
}

}  // namespace torvik::base
