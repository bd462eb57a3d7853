// SPDX-License-Identifier: GPL-3.0-or-later
#include "grid/cell_editor_controls.h"

#include <QStyleOptionButton>
#include <QStylePainter>

namespace torvik::grid {

namespace {
constexpr int kCaptionMargin = 4;
}

void FileButton::setCaption(const QString& caption) {
  m_caption = caption;
  setAccessibleName(caption);
  update();
}

QSize FileButton::minimumSizeHint() const {
  return {fontMetrics().averageCharWidth() + 2 * kCaptionMargin, 0};
}

void FileButton::paintEvent(QPaintEvent*) {
  QStylePainter painter(this);
  QStyleOptionButton option;
  initStyleOption(&option);
  painter.drawControl(QStyle::CE_PushButtonBevel, option);
  const QRect room = rect().adjusted(kCaptionMargin, 0, -kCaptionMargin, 0);
  painter.setPen(palette().color(QPalette::ButtonText));
  painter.drawText(room, Qt::AlignVCenter | Qt::AlignLeft,
                   fontMetrics().elidedText(m_caption, Qt::ElideLeft, room.width()));
}

}  // namespace torvik::grid
