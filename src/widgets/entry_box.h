// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLineEdit>
#include <optional>
#include <string>

namespace torvik::widgets {

/// The text box of a form: filters typed keys and selects its whole text when it gets the focus.
class EntryBox : public QLineEdit {
  Q_OBJECT

 public:
  /// @param kind  a word or characters of `base::KeyFilter`; nothing lets every key through
  explicit EntryBox(std::optional<std::string> kind, QWidget* parent = nullptr);

 signals:
  /// The focus went to another control. Another window or a menu in front is no leaving.
  void left();
  /// The up (1) or down (-1) arrow key.
  void arrowPressed(int direction);

 protected:
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  std::optional<std::string> m_kind;
};

}  // namespace torvik::widgets
