// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/sounds.h"

#include <QAudioDevice>
#include <QCoreApplication>
#include <QFileInfo>
#include <QMediaDevices>
#include <QSoundEffect>
#include <QUrl>

namespace torvik::app {

namespace {
// A sound that is asked for at every step of a fast job starts anew only so often [ms].
constexpr qint64 kShortestGap = 60;
}  // namespace

QString soundFolder() {
  return QFileInfo(QCoreApplication::applicationDirPath() + "/../share/torvik/sounds").canonicalFilePath();
}

struct DeviceSounds::Sound {
  QSoundEffect effect;
  QElapsedTimer sinceStart;
};

DeviceSounds::DeviceSounds() : m_hasDevice(!QMediaDevices::audioOutputs().isEmpty()) {}
DeviceSounds::~DeviceSounds() = default;

void DeviceSounds::play(const QString& file) {
  if (!m_hasDevice || file.isEmpty()) return;
  std::shared_ptr<Sound>& sound = m_sounds[file];
  if (!sound) {
    sound = std::make_shared<Sound>();
    sound->effect.setSource(file.contains('/') ? QUrl::fromLocalFile(file) : QUrl("qrc:/sounds/" + file));
  }
  if (sound->sinceStart.isValid() && sound->sinceStart.elapsed() < kShortestGap) return;
  sound->sinceStart.start();
  sound->effect.play();
}

}  // namespace torvik::app
