// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>
#include <QString>
#include <functional>

namespace torvik::app {

/// At most one instance of a user runs. The second hands over the title of the window that it wants
/// activated, and ends; the first activates its window where that is its title.
class SingleInstance : public QObject {
  Q_OBJECT

 public:
  /// @param folder  where the lock and the socket lie; of the user alone
  explicit SingleInstance(const QString& folder);

  /// True where this is the first instance. Otherwise the first has been asked to activate `title`.
  bool isFirst(const QString& title);

  /// Called in the first instance with the title that a second one asks for.
  std::function<void(const QString&)> onActivate;

 private:
  QString m_socket;
  QLockFile m_lock;
  QLocalServer m_server;
};

}  // namespace torvik::app
