// SPDX-License-Identifier: GPL-3.0-or-later
#include <cstddef>
#include <cstdint>

#include "fuzz/fuzz_targets.h"

// TORVIK_FUZZ_TARGET names the function that this program runs.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  torvik::fuzz::TORVIK_FUZZ_TARGET({reinterpret_cast<const char*>(data), size});
  return 0;
}
