// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/twips.h"

#include <cmath>

namespace torvik::widgets {

int pixelsOfTwips(int twips, int dpi) {
  return static_cast<int>(std::lround(static_cast<double>(twips) * dpi / kTwipsPerInch));
}

int twipsOfPixels(int pixels, int dpi) {
  return static_cast<int>(std::lround(static_cast<double>(pixels) * kTwipsPerInch / dpi));
}

}  // namespace torvik::widgets
