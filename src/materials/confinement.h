// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

/// The two questions of the law "Restoration (Confined)", asked once per start of the program.
namespace torvik::materials {

/// Who answers. Any of them may throw, which ends the job or the curve in hand.
class ConfinementPrompt {
 public:
  virtual ~ConfinementPrompt() = default;
  /// A message box with the information icon and the application's title.
  virtual void showMessage(const std::string& text) = 0;
  /// An input box. @return the answer; empty where it was cancelled
  virtual std::string inputBox(const std::string& prompt, const std::string& title,
                               const std::string& defaultText) = 0;
};

/// The answers, kept from the first use to the end of the program.
struct ConfinementAnswers {
  double k1 = 0;
  double k2 = 0;
  double fy = 0;  ///< yield stress of the confining tie [kgf/cm2]

  /// True where there is nothing left to ask.
  [[nodiscard]] bool complete() const { return (k1 != 0 || k2 != 0) && fy != 0; }

  /// Asks for what is still 0.
  /// @param VolumetricRatio  of the row that comes first; the message shows it
  /// @throws NumericFault TypeMismatch where the yield stress answered is no number, Overflow where it is
  /// absurd;
  ///         the section shape is kept, so that only the yield stress is asked again
  void askWhereMissing(double VolumetricRatio, ConfinementPrompt& prompt);
};

}  // namespace torvik::materials
