// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPushButton>
#include <QWidget>

#include "grid/columns.h"

class QLineEdit;

namespace torvik::grid {

/// `UpDown1`: two arrows beside an edit box that count its text up and down within a range. A text that is no
/// integer counts from the minimum.
class UpDown : public QWidget {
  Q_OBJECT

 public:
  /// @param buddy  gets the value; its whole text is selected then
  UpDown(QLineEdit& buddy, QWidget* parent);
  void setRange(const SpinRange& range) { m_range = range; }
  /// @param direction  1 or -1
  void step(int direction);
  [[nodiscard]] QSize sizeHint() const override;

 private:
  QLineEdit& m_buddy;
  SpinRange m_range;
};

/// `Command1`: a button that shows a path from its left edge on; a long one without its beginning.
class FileButton : public QPushButton {
  Q_OBJECT

 public:
  using QPushButton::QPushButton;
  void setCaption(const QString& caption);
  [[nodiscard]] QString caption() const { return m_caption; }
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString m_caption;
};

}  // namespace torvik::grid
