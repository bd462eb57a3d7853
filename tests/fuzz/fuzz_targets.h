// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

/// Programs under random input: each takes any bytes and throws `Violated` where a promise of the code does
/// not hold. libFuzzer drives them where TORVIK_FUZZ is on; the corpus runs through them in every check.
namespace torvik::fuzz {

struct Violated : std::logic_error {
  using std::logic_error::logic_error;
};

inline void expect(bool good, const std::string& promise) {
  if (!good) throw Violated(promise);
}

/// What is shown to a user in one line: a text without control bytes.
inline void expectOneLine(std::string_view message) {
  expect(!message.empty(), "a message is not empty");
  for (const char c : message)
    expect(static_cast<unsigned char>(c) >= 0x20, "one line: " + std::string(message));
}

/// A profile file with a model in it: read, asked, written, read again.
void inputFile(std::string_view bytes);
/// Numbers separated by blanks, then "#" and a user stress-strain file, then perhaps "#" and another.
void userCurve(std::string_view bytes);
/// A small job with its user, drawn from the bytes.
void job(std::string_view bytes);

}  // namespace torvik::fuzz
