// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPushButton>

namespace torvik::grid {

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
