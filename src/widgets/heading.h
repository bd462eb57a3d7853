// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>
#include <QRect>
#include <QString>

class QPainter;

namespace torvik::widgets {

/// Centred both ways, on as many lines as there is room for; a heading that needs more room than that gets a
/// smaller font before anything is left out. Long words may be parted.
void drawHeading(QPainter& painter, const QRect& rect, const QString& text, const QFont& font);

}  // namespace torvik::widgets
