// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointer>
#include <QString>
#include <QTextBrowser>

namespace torvik::app {

/// The guide that the program brings, in a window of its own beside the frame.
class HelpWindow : public QTextBrowser {
  Q_OBJECT

 public:
  HelpWindow();
  /// Scrolls to the first heading that holds `topic`, without regard to case; empty: the beginning.
  void showTopic(const QString& topic);
};

}  // namespace torvik::app
