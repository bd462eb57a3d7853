// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/child_window.h"

#include <QAction>
#include <QCloseEvent>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QProxyStyle>
#include <QStyleOptionTitleBar>

#include "base/errors.h"
#include "base/number_text.h"

namespace torvik::views {

namespace {
// Window states as the settings file holds them.
constexpr int kNormal = 0;
constexpr int kMinimized = 1;
constexpr int kMaximized = 2;

/// A title bar without its close button: the toolkit's window flags can not take away that button alone.
class WithoutCloseButton : public QProxyStyle {
 public:
  explicit WithoutCloseButton(QObject* owner) { setParent(owner); }

  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                          const QWidget* widget) const override {
    if (const auto* bar = qstyleoption_cast<const QStyleOptionTitleBar*>(option);
        bar && control == CC_TitleBar) {
      QStyleOptionTitleBar without(*bar);
      without.subControls &= ~SC_TitleBarCloseButton;
      QProxyStyle::drawComplexControl(control, &without, painter, widget);
    } else if (control == CC_MdiControls) {  // of a maximized child, at the end of the menu bar
      QStyleOptionComplex without(*option);
      without.subControls &= ~SC_MdiCloseButton;
      QProxyStyle::drawComplexControl(control, &without, painter, widget);
    } else {
      QProxyStyle::drawComplexControl(control, option, painter, widget);
    }
  }

  SubControl hitTestComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                   const QPoint& position, const QWidget* widget) const override {
    const SubControl hit = QProxyStyle::hitTestComplexControl(control, option, position, widget);
    if (control == CC_TitleBar && hit == SC_TitleBarCloseButton) return SC_TitleBarLabel;
    return control == CC_MdiControls && hit == SC_MdiCloseButton ? SC_None : hit;
  }
};

}  // namespace

ChildWindow::ChildWindow(Shell& shell, const QString& name, int kind)
    : m_shell(shell), m_tag(QString::number(kind)) {
  setObjectName(name);
  setAttribute(Qt::WA_DeleteOnClose);
}

QMdiSubWindow* ChildWindow::frame() const {
  return qobject_cast<QMdiSubWindow*>(parentWidget());
}

void ChildWindow::setClosable(bool closable) {
  m_closable = closable;
  QMdiSubWindow* subWindow = frame();
  if (!subWindow) return;
  showButtons();
  connect(subWindow, &QMdiSubWindow::windowStateChanged, this, &ChildWindow::showButtons,
          Qt::ConnectionType(Qt::QueuedConnection | Qt::UniqueConnection));
  if (QMenu* menu = subWindow->systemMenu())
    for (QAction* action : menu->actions())
      if (action->shortcut() == QKeySequence(QKeySequence::Close)) {
        action->setVisible(closable);
        action->setEnabled(closable);
      }
}

void ChildWindow::showButtons() {
  // A new style restores and activates a minimized window: that one gets its buttons when the user restores
  // it.
  if (frame() && !frame()->isMinimized() && m_hasCloseButton != m_closable) {
    m_hasCloseButton = m_closable;
    frame()->setStyle(m_closable ? nullptr : new WithoutCloseButton(frame()));
  }
  const auto* mainWindow = qobject_cast<QMainWindow*>(window());
  if (!mainWindow || !frame() || !frame()->isMaximized()) return;
  if (QWidget* buttons = mainWindow->menuBar()->cornerWidget(Qt::TopRightCorner))
    buttons->setStyle(m_closable ? nullptr : new WithoutCloseButton(buttons));
}

void ChildWindow::load() {
  restoreLayout(m_shell.readSettings());
  if (m_shell.jobState() == job::JobState::Running) setClosable(false);
}

bool ChildWindow::closeNow() {
  m_closable = true;
  QMdiSubWindow* subWindow = frame();
  return subWindow ? subWindow->close() : close();
}

void ChildWindow::saveLayout(base::ProfileFile& settings) const {
  const QMdiSubWindow* subWindow = frame();
  const int state = !subWindow                 ? kNormal
                    : subWindow->isMinimized() ? kMinimized
                    : subWindow->isMaximized() ? kMaximized
                                               : kNormal;
  settings.ProfileWrite(objectName().toStdString(), "State", base::plainText(state));
}

void ChildWindow::restoreLayout(const base::ProfileFile& settings) {
  const int state = settings.ProfileGetInt(objectName().toStdString(), "State", kNormal);
  if (state < kNormal || state > kMaximized)
    throw base::InternalError(base::kImpossibleCase, "stored state of a window");
  if (QMdiSubWindow* subWindow = frame(); subWindow && state == kMaximized) subWindow->showMaximized();
}

void ChildWindow::closeEvent(QCloseEvent* event) {
  if (!m_closable || (!m_unloaded && !writeBack())) {
    event->ignore();
    return;
  }
  if (!m_unloaded) {
    m_unloaded = true;
    unload();
    m_shell.childDeactivated(*this);
  }
  event->accept();
}

void ChildWindow::popupMenuAt(const QPoint& globalPosition) {
  if (QMdiSubWindow* subWindow = frame())
    if (QMdiArea* area = subWindow->mdiArea()) area->setActiveSubWindow(subWindow);
  m_shell.popupEditMenu(*this, globalPosition);
}

}  // namespace torvik::views
