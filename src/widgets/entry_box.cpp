// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/entry_box.h"

#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QTimer>
#include <utility>

#include "base/key_filter.h"

namespace torvik::widgets {

namespace {

bool movesFocus(const QFocusEvent& event) {
  return event.reason() != Qt::ActiveWindowFocusReason && event.reason() != Qt::PopupFocusReason &&
         event.reason() != Qt::MenuBarFocusReason;
}

}  // namespace

EntryBox::EntryBox(std::optional<std::string> kind, QWidget* parent)
    : QLineEdit(parent), m_kind(std::move(kind)) {}

void EntryBox::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  if (!movesFocus(*event)) return;
  selectAll();
  // The press behind the focus would drop the selection.
  if (event->reason() == Qt::MouseFocusReason) QTimer::singleShot(0, this, &QLineEdit::selectAll);
}

void EntryBox::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  if (movesFocus(*event)) emit left();
}

void EntryBox::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down) {
    emit arrowPressed(event->key() == Qt::Key_Up ? 1 : -1);
    event->accept();
    return;
  }
  const QString text = event->text();
  const bool typed = text.size() == 1 && (text[0].isPrint() || text[0] == '\b') &&
                     !(event->modifiers() & Qt::ControlModifier);
  if (m_kind && typed && base::KeyFilter(text[0].unicode(), *m_kind) == 0) {
    QApplication::beep();
    return;
  }
  QLineEdit::keyPressEvent(event);
}

}  // namespace torvik::widgets
