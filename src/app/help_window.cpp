// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/help_window.h"

#include <QFile>
#include <QIcon>
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
  resize(820, 640);
  QFile guide(":/guide.md");
  if (guide.open(QIODevice::ReadOnly)) setMarkdown(QString::fromUtf8(guide.readAll()));
  connect(this, &QTextBrowser::anchorClicked, this,
          [this](const QUrl& url) { showTopic(QString(url.fragment()).replace('-', ' ')); });
}

void HelpWindow::showTopic(const QString& topic) {
  moveCursor(QTextCursor::Start);
  for (QTextBlock block = document()->begin(); block.isValid() && !topic.isEmpty(); block = block.next()) {
    if (block.blockFormat().headingLevel() == 0) continue;
    if (!block.text().contains(topic, Qt::CaseInsensitive)) continue;
    setTextCursor(QTextCursor(block));
    const int top = cursorRect().top();
    verticalScrollBar()->setValue(verticalScrollBar()->value() + top);
    break;
  }
  show();
  raise();
  activateWindow();
}

}  // namespace torvik::app
