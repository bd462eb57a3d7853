// SPDX-License-Identifier: GPL-3.0-or-later
#include "materials/confinement.h"

#include "base/fault.h"
#include "base/number_text.h"

namespace torvik::materials {

void ConfinementAnswers::askWhereMissing(double VolumetricRatio, ConfinementPrompt& prompt) {
  while (k1 == 0 && k2 == 0) {
    prompt.showMessage("Volumetric ratio = 4As/(s*D), given value is " + base::plainText(VolumetricRatio) +
                       ".");
    const std::string shape = prompt.inputBox("Rectangular (r) or Circular (c) ?", "Section Shape", "r");
    if (shape == "R" || shape == "r") {
      prompt.showMessage("Rectangular section is selected.");
      k1 = 0.2;
      k2 = 0.4;
    } else if (shape == "C" || shape == "c") {
      prompt.showMessage("Circular section is selected.");
      k1 = 1;
      k2 = 1;
    } else {
      prompt.showMessage("Press \"r\" or \"c\".");
    }
  }
  while (fy == 0) {
    constexpr const char* kWhere = "yield stress of confining tie";
    const std::string answer = prompt.inputBox("Yield stress of confining tie ?", "Yield stress", "300");
    fy = base::finite(base::numberOf(answer, kWhere) / 9.8 * 100, kWhere);
  }
}

}  // namespace torvik::materials
