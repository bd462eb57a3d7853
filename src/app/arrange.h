// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMdiArea>
#include <QRect>
#include <vector>

/// The arrange call of a multiple-document frame.
namespace torvik::app {

enum class Arrangement { Cascade = 0, TileHorizontal = 1, TileVertical = 2, Nothing = 3, ArrangeIcons = 4 };

/// Rectangles that fill `area` for that many windows. Vertical: side by side, in as many rows as the whole
/// root of the count; horizontal: one above the other, in as many columns.
std::vector<QRect> tiles(const QRect& area, int count, Arrangement arrangement);

/// Arranges the windows of the area; the one opened last comes first.
void arrange(QMdiArea& area, Arrangement arrangement);

}  // namespace torvik::app
