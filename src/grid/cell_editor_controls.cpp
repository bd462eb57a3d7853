// SPDX-License-Identifier: GPL-3.0-or-later
#include "grid/cell_editor_controls.h"

#include <QLineEdit>
#include <QStyleOptionButton>
#include <QStylePainter>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

namespace torvik::grid {

namespace {
constexpr int kCaptionMargin = 4;
}

UpDown::UpDown(QLineEdit& buddy, QWidget* parent) : QWidget(parent), m_buddy(buddy) {
  setAutoFillBackground(true);
  setFocusPolicy(Qt::ClickFocus);  // else a press would go on to the grid and give it the focus
  setFocusProxy(&buddy);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  for (const int direction : {1, -1}) {
    auto* const button = new QToolButton(this);
    button->setObjectName(direction > 0 ? QStringLiteral("UpDown1Up") : QStringLiteral("UpDown1Down"));
    button->setArrowType(direction > 0 ? Qt::UpArrow : Qt::DownArrow);
    button->setAutoRepeat(true);
    button->setFocusPolicy(Qt::NoFocus);
    button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    layout->addWidget(button);
    connect(button, &QToolButton::clicked, this, [this, direction] { step(direction); });
  }
}

void UpDown::step(int direction) {
  bool isInteger = false;
  const int typed = m_buddy.text().toInt(&isInteger);
  const int from = isInteger ? std::clamp(typed, m_range.Minimum, m_range.Maximum) : m_range.Minimum;
  m_buddy.setText(
      QString::number(std::clamp(from + direction * m_range.Increment, m_range.Minimum, m_range.Maximum)));
  m_buddy.selectAll();
}

QSize UpDown::sizeHint() const {
  const int width = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
  return {width, 2 * width};
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
