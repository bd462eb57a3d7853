// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/up_down.h"

#include <QLineEdit>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "base/number_text.h"

namespace torvik::widgets {

UpDown::UpDown(QLineEdit& box, const UpDownRange& range, QWidget* parent)
    : QWidget(parent), m_box(box), m_range(range) {
  setAutoFillBackground(true);
  setFocusPolicy(Qt::ClickFocus);  // else a press between the buttons would go on to what lies below
  setFocusProxy(&box);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  for (const int direction : {1, -1}) {
    auto* button = new QToolButton;
    button->setObjectName(direction > 0 ? "Up" : "Down");
    button->setAccessibleName(button->objectName());
    button->setArrowType(direction > 0 ? Qt::UpArrow : Qt::DownArrow);
    button->setAutoRepeat(true);
    button->setFocusPolicy(Qt::NoFocus);
    button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    connect(button, &QToolButton::clicked, this, [this, direction] { step(direction); });
    layout->addWidget(button);
  }
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize UpDown::sizeHint() const {
  const int height = m_box.sizeHint().height();
  return {height * 4 / 5, height};
}

double UpDown::bounded(double value) const {
  return std::clamp<double>(value, m_range.minimum, m_range.maximum);
}

void UpDown::step(int direction) {
  const double value = base::toNumber(m_box.text().toStdString()).value_or(m_range.initial);
  m_box.setText(QString::fromStdString(base::plainText(bounded(value + direction * m_range.increment))));
  m_box.selectAll();
}

}  // namespace torvik::widgets
