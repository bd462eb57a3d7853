// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace torvik::widgets {

/// Column widths are kept in twips, 1440 to an inch, in the settings file.
inline constexpr int kTwipsPerInch = 1440;
/// The width of a column that nothing is stored for.
inline constexpr int kOriginalColumnWidth = 800;

/// Nearest whole pixel. @param dpi  logical, of the widget; above 0
[[nodiscard]] int pixelsOfTwips(int twips, int dpi);
/// Nearest whole twip; `pixelsOfTwips` of it gives `pixels` back, up to 1440 dpi.
[[nodiscard]] int twipsOfPixels(int pixels, int dpi);

}  // namespace torvik::widgets
