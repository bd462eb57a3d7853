// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QLineEdit;

namespace torvik::widgets {

/// Bounds of an up-down control.
struct UpDownRange {
  int minimum;
  int maximum;
  int increment;
  int initial;  ///< stands for the value while the box holds no number
};

/// The two spin buttons of a text box; the box keeps the focus and its whole text is selected.
class UpDown : public QWidget {
  Q_OBJECT

 public:
  UpDown(QLineEdit& box, const UpDownRange& range, QWidget* parent = nullptr);
  void setRange(const UpDownRange& range) { m_range = range; }

  /// `value` raised to the minimum or lowered to the maximum.
  [[nodiscard]] double bounded(double value) const;
  [[nodiscard]] QSize sizeHint() const override;

 public slots:
  /// Up (1) or down (-1) by the increment, within the bounds.
  void step(int direction);

 private:
  QLineEdit& m_box;
  UpDownRange m_range;
};

}  // namespace torvik::widgets
