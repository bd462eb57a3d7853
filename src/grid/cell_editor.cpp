// SPDX-License-Identifier: GPL-3.0-or-later
#include "grid/cell_editor.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QRegularExpression>
#include <QScrollBar>
#include <algorithm>
#include <utility>

#include "base/errors.h"
#include "base/key_filter.h"
#include "grid/cell_editor_controls.h"
#include "widgets/shown_text.h"
#include "widgets/table_view.h"
#include "widgets/twips.h"
#include "widgets/up_down.h"

namespace torvik::grid {

namespace {

constexpr int kLeastComboCharacters = 4;

/// -1 where no item is exactly the text.
int indexOfText(const QComboBox& box, const QString& text) {
  return box.findText(text, Qt::MatchFixedString | Qt::MatchCaseSensitive);
}

widgets::UpDownRange rangeOf(const SpinRange& spin) {
  return {spin.Minimum, spin.Maximum, spin.Increment, spin.Minimum};
}

/// A cell's worth of a text: what stands before its first row or cell end. Spreadsheets put one behind a
/// single cell.
QString firstCell(const QString& text) {
  static const QRegularExpression kEnd(QStringLiteral("[\\r\\n\\t\\x{2028}\\x{2029}]"));
  return text.left(text.indexOf(kEnd));
}

bool isRedo(const QKeyEvent& key) {
  return key.key() == Qt::Key_Y && key.modifiers() == Qt::ControlModifier;
}

}  // namespace

bool isTyped(const QKeyEvent& key) {
  return !key.text().isEmpty() && key.text()[0].isPrint() &&
         !(key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
}

CellEditor::CellEditor(widgets::TableView& view, ObjectKind kind, EditorHost& host)
    : QObject(&view),
      m_view(view),
      m_kind(kind),
      m_host(host),
      m_text(new QLineEdit(view.viewport())),
      m_upDown(new widgets::UpDown(*m_text, {}, view.viewport())),
      m_check(new QCheckBox(view.viewport())),
      m_file(new FileButton(view.viewport())),
      m_combo(new QComboBox(view.viewport())),
      m_list(new QComboBox(view.viewport())) {
  m_text->setObjectName(QStringLiteral("Text1"));
  m_upDown->setObjectName(QStringLiteral("UpDown1"));
  m_check->setObjectName(QStringLiteral("Check1"));
  m_file->setObjectName(QStringLiteral("Command1"));
  m_combo->setObjectName(QStringLiteral("DropDownCombo1"));
  m_list->setObjectName(QStringLiteral("DropDownList1"));
  m_check->setAutoFillBackground(true);
  m_check->setBackgroundRole(QPalette::Window);  // on which a theme draws boxes that can be seen
  m_combo->setEditable(true);
  m_combo->setInsertPolicy(QComboBox::NoInsert);
  m_combo->setCompleter(nullptr);
  for (QComboBox* box : {m_combo, m_list}) {
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(kLeastComboCharacters);
  }
  for (QLineEdit* line : {m_text, m_combo->lineEdit()})  // what its own menu pasted
    connect(line, &QLineEdit::textEdited, line, [line](const QString& text) {
      if (const QString cell = firstCell(text); cell != text) line->setText(cell);
    });
  // The filter sees single keys: nothing may be composed past it.
  m_text->setAttribute(Qt::WA_InputMethodEnabled, false);
  m_combo->setAttribute(Qt::WA_InputMethodEnabled, false);
  for (QWidget* overlay : std::initializer_list<QWidget*>{m_text, m_check, m_file, m_combo, m_list}) {
    overlay->setFocusPolicy(Qt::ClickFocus);
    overlay->installEventFilter(this);
  }
  for (QWidget* control : std::initializer_list<QWidget*>{m_text, m_upDown, m_check, m_file, m_combo, m_list})
    control->hide();

  connect(m_file, &FileButton::clicked, this, [this] { m_host.guarded([this] { browse(); }); });
  connect(view.horizontalHeader(), &QHeaderView::sectionResized, this, [this] {
    if (m_open) place();
  });
  for (const QScrollBar* bar : {view.horizontalScrollBar(), view.verticalScrollBar()})
    connect(bar, &QScrollBar::valueChanged, this, [this] { m_host.guarded([this] { finish(); }); });
}

const Column& CellEditor::column() const {
  return columnsOf(m_kind)[static_cast<std::size_t>(m_column)];
}

void CellEditor::open(int row, int column, const QString& text) {
  m_view.scrollTo(m_view.model()->index(row, column));
  m_row = row;
  m_column = column;
  m_before = text;
  QWidget* const overlay = prepare(text);
  m_open = overlay;
  place();
  overlay->show();
  overlay->raise();
  overlay->setFocus();
  if (overlay == m_text) m_text->selectAll();
  if (overlay == m_combo) m_combo->lineEdit()->selectAll();
}

QWidget* CellEditor::prepare(const QString& text) {
  const auto fill = [&](QComboBox& box) {
    box.clear();
    int widest = 0;
    for (const std::string_view item : column().items) {
      box.addItem(widgets::shownText(item));
      widest = std::max(widest, box.fontMetrics().horizontalAdvance(box.itemText(box.count() - 1)));
    }
    box.view()->setMinimumWidth(widest + 2 * box.style()->pixelMetric(QStyle::PM_ScrollBarExtent));
  };
  switch (column().cell) {
    case CellKind::Flag:
      m_check->setChecked(text == QLatin1String("+"));  // of a pasted text that is no flag: off
      return m_check;
    case CellKind::Spinner:
      if (m_view.columnWidth(m_column) - m_upDown->sizeHint().width() < 1)
        m_view.setColumnTwips(m_column + 1, widgets::kOriginalColumnWidth);
      m_upDown->setRange(rangeOf(column().spin));
      [[fallthrough]];
    case CellKind::Number:
      m_text->setText(text);
      return m_text;
    case CellKind::List:
      fill(*m_list);
      m_list->setCurrentIndex(std::max(0, indexOfText(*m_list, text)));
      return m_list;
    case CellKind::Combo:
      fill(*m_combo);
      m_combo->setCurrentIndex(-1);
      m_combo->setEditText(text);
      return m_combo;
    case CellKind::File:
      m_file->setCaption(text);
      return m_file;
    case CellKind::Fixed:
      break;
  }
  throw base::InternalError(base::kImpossibleCase, "cell editor");
}

void CellEditor::place() {
  const bool spins = column().cell == CellKind::Spinner;
  const int beside = spins ? m_upDown->sizeHint().width() : 0;
  const int least = m_open->minimumSizeHint().width() + beside;
  if (m_view.columnWidth(m_column) < least)
    m_view.setColumnTwips(m_column + 1, widgets::twipsOfPixels(least, m_view.logicalDpiX()));
  const QRect cell = m_view.visualRect(m_view.model()->index(m_row, m_column));
  m_open->setGeometry(cell.adjusted(0, 0, -beside, 0));
  m_upDown->setGeometry(cell.right() + 1 - beside, cell.top(), beside, cell.height());
  m_upDown->setVisible(spins);
  m_upDown->raise();
}

QString CellEditor::text() const {
  if (m_open == m_text) return m_text->text();
  if (m_open == m_file) return m_file->caption();
  if (m_open == m_check) return m_check->isChecked() ? QStringLiteral("+") : QString();
  if (m_open == m_list && m_list->currentIndex() < 0) return m_before;  // Esc over a text that is no item
  return static_cast<const QComboBox*>(m_open)->currentText();
}

QLineEdit* CellEditor::line() const {
  return m_open == m_text ? m_text : m_open == m_combo ? m_combo->lineEdit() : nullptr;
}

void CellEditor::setText(const QString& text) {
  if (m_open == m_text) m_text->setText(text);
  if (m_open == m_file) m_file->setCaption(text);
  if (m_open == m_combo) m_combo->setEditText(text);
}

void CellEditor::commit() {
  if (!m_open) return;
  const QString edited = text();
  QWidget* const overlay = std::exchange(m_open, nullptr);
  if (overlay->hasFocus()) m_view.setFocus();
  overlay->hide();
  m_upDown->hide();
  m_host.commitCell(m_row, m_column, edited);
}

void CellEditor::finish() {
  if (!m_open) return;
  m_view.setFocus();  // commits by the loss of the focus
  commit();
}

void CellEditor::finishAndMove(int rows, int columns) {
  const int row = m_row + rows;
  const int column = m_column + columns;
  commit();
  if (!m_host.moveTo(row, column)) QApplication::beep();
}

bool CellEditor::passes(const QString& typed) const {
  for (const QChar c : typed)
    if (base::KeyFilter(c.unicode(), column().filter) == 0) {
      QApplication::beep();
      return false;
    }
  return true;
}

void CellEditor::takeFirstKey(const QString& key) {
  if (!m_open || !column().firstKeyTypes) return;
  if (m_open == m_file || passes(key)) setText(key);
}

bool CellEditor::eventFilter(QObject* watched, QEvent* event) {
  if (watched != m_open) return QObject::eventFilter(watched, event);
  switch (event->type()) {
    case QEvent::ShortcutOverride:
      if (!isOwn(*static_cast<QKeyEvent*>(event))) return false;
      event->accept();
      return true;
    case QEvent::KeyPress: {
      bool taken = true;
      m_host.guarded([&] { taken = takeKey(*static_cast<QKeyEvent*>(event)); });
      return taken;
    }
    case QEvent::FocusOut: {
      const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
      // A menu, a list or another program has the keyboard for a while only.
      const bool comesBack = QApplication::activePopupWidget() || reason == Qt::PopupFocusReason ||
                             reason == Qt::MenuBarFocusReason ||
                             (reason == Qt::ActiveWindowFocusReason && !m_view.window()->isActiveWindow());
      if (!comesBack) m_host.guarded([this] { commit(); });
      return false;
    }
    case QEvent::Wheel:
      QCoreApplication::sendEvent(m_view.viewport(), event);  // the grid scrolls
      return true;
    default:
      return false;
  }
}

bool CellEditor::takeKey(const QKeyEvent& key) {
  const bool plain = (key.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  switch (key.key()) {
    case Qt::Key_Escape:
      escape();
      return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (m_open == m_file)
        browse();
      else
        finishAndMove(1, 0);
      return true;
    case Qt::Key_Tab:
      if (!plain) return false;
      finishAndMove(0, 1);
      return true;
    case Qt::Key_Backtab:
      finishAndMove(0, -1);
      return true;
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
      return plain && takeArrow(key.key());
    default:
      break;
  }
  if (m_open == m_file) return takeClipboardKey(key) || takeFileKey(key);
  if (line() && isRedo(key)) {
    line()->redo();
    return true;
  }
  if (line() && key.matches(QKeySequence::Paste)) {
    line()->insert(firstCell(QGuiApplication::clipboard()->text()));
    return true;
  }
  const bool filtered = (m_open == m_text || m_open == m_combo) && isTyped(key);
  return filtered && !passes(key.text());
}

bool CellEditor::takeArrow(int key) {
  const bool upOrDown = key == Qt::Key_Up || key == Qt::Key_Down;
  if (m_open == m_list || (m_open == m_combo && upOrDown)) return false;
  if (m_open == m_check || m_before.isEmpty()) {
    finishAndMove(key == Qt::Key_Up     ? -1
                  : key == Qt::Key_Down ? 1
                                        : 0,
                  key == Qt::Key_Left    ? -1
                  : key == Qt::Key_Right ? 1
                                         : 0);
    return true;
  }
  if (m_open == m_text && upOrDown) {
    if (key == Qt::Key_Up)
      m_text->home(false);
    else
      m_text->end(false);
    return true;
  }
  return m_open == m_file;
}

bool CellEditor::isOwn(const QKeyEvent& key) const {
  if (line()) return isRedo(key);  // else the edit box knows its keys
  return m_open == m_file && (key.matches(QKeySequence::Paste) || key.matches(QKeySequence::Copy) ||
                              key.matches(QKeySequence::Cut));
}

bool CellEditor::takeClipboardKey(const QKeyEvent& key) {
  QClipboard& clipboard = *QGuiApplication::clipboard();
  if (key.matches(QKeySequence::Paste)) {
    m_file->setCaption(m_file->caption() + firstCell(clipboard.text()));
    return true;
  }
  const bool cuts = key.matches(QKeySequence::Cut);
  if (!cuts && !key.matches(QKeySequence::Copy)) return false;
  clipboard.setText(m_file->caption());
  if (cuts) m_file->setCaption({});
  return true;
}

bool CellEditor::takeFileKey(const QKeyEvent& key) {
  QString caption = m_file->caption();
  if (key.key() == Qt::Key_Backspace) {
    if (caption.isEmpty()) QApplication::beep();
    caption.chop(1);
  } else if (isTyped(key)) {
    caption += key.text();
  } else {
    return false;
  }
  m_file->setCaption(caption);
  return true;
}

void CellEditor::escape() {
  if (m_open == m_check) {
    closeUnchanged();
  } else if (m_open == m_list) {
    const int before = indexOfText(*m_list, m_before);
    if (m_list->currentIndex() == before)
      closeUnchanged();
    else
      m_list->setCurrentIndex(before);  // stays open with the old choice; the next Esc leaves
  } else {
    setText(m_before);
    commit();
  }
}

void CellEditor::closeUnchanged() {
  QWidget* const overlay = std::exchange(m_open, nullptr);
  m_view.setFocus();
  overlay->hide();
}

void CellEditor::browse() {
  const QString path = m_host.chooseFile(m_before);
  if (m_open == m_file && !path.isEmpty()) m_file->setCaption(path);
}

}  // namespace torvik::grid
