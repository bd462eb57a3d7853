// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/single_instance.h"

#include <QLocalSocket>

namespace torvik::app {

namespace {
constexpr int kPatience = 500;  // ms
}

SingleInstance::SingleInstance(const QString& folder)
    : m_socket(folder + "/torvik.socket"), m_lock(folder + "/torvik.lock") {
  m_lock.setStaleLockTime(0);  // a lock is stale when its process is gone, however old it is
  connect(&m_server, &QLocalServer::newConnection, this, [this] {
    QLocalSocket* socket = m_server.nextPendingConnection();
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
      if (onActivate) onActivate(QString::fromUtf8(socket->readAll()));
    });
  });
}

bool SingleInstance::isFirst(const QString& title) {
  if (m_lock.tryLock(0)) {
    QLocalServer::removeServer(m_socket);  // of an instance that crashed
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    m_server.listen(m_socket);
    return true;
  }
  if (m_lock.error() != QLockFile::LockFailedError) return true;  // no folder to lock in: run all the same
  QLocalSocket socket;
  socket.connectToServer(m_socket);
  if (socket.waitForConnected(kPatience)) {
    socket.write(title.toUtf8());
    socket.waitForBytesWritten(kPatience);
    socket.disconnectFromServer();
  }
  return false;
}

}  // namespace torvik::app
