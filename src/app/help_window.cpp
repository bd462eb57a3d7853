// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/help_window.h"

#include <QFile>
#include <QIcon>
#include <QRegularExpression>
#include <QScreen>
#include <QScrollBar>
#include <QTextBlock>

#include "base/title.h"

namespace torvik::app {

HelpWindow::HelpWindow() {
  setObjectName("frmHelp");
  setWindowTitle(QString(base::kTitle) + " - Help");
  setWindowIcon(QIcon(":/icons/help.svg"));
  setOpenExternalLinks(false);
  setOpenLinks(false);
  const QRect area = screen()->availableGeometry();
  resize(QSize(820, 640).boundedTo(area.size()));
  move(area.center() - rect().center());
  QFile guide(":/guide.md");
  if (guide.open(QIODevice::ReadOnly)) setMarkdown(QString::fromUtf8(guide.readAll()));
  connect(this, &QTextBrowser::anchorClicked, this, [this](const QUrl& url) { showTopic(url.fragment()); });
}

void HelpWindow::showTopic(const QString& topic) {
  show();  // a place can be shown once the text is laid out
  raise();
  activateWindow();
  // Keys and anchors differ from the headings by blanks and signs.
  const auto lettersOf = [](QString text) { return text.remove(QRegularExpression("[^\\w]|_")).toLower(); };
  const QString wanted = lettersOf(topic);
  moveCursor(QTextCursor::Start);
  for (QTextBlock block = document()->begin(); block.isValid() && !wanted.isEmpty(); block = block.next()) {
    if (block.blockFormat().headingLevel() == 0) continue;
    if (!lettersOf(block.text()).contains(wanted)) continue;
    setTextCursor(QTextCursor(block));
    const int top = cursorRect().top();
    verticalScrollBar()->setValue(verticalScrollBar()->value() + top);
    break;
  }
}

}  // namespace torvik::app
