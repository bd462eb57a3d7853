// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QString>
#include <memory>

class QSoundEffect;

namespace torvik::app {

/// Plays sound files without waiting. A missing file or a machine without a sound device is no error.
class SoundPlayer {
 public:
  virtual ~SoundPlayer() = default;
  /// @param file  as an option names it; without a folder it is one of the program's own sounds
  virtual void play(const QString& file) = 0;
};

/// Folder of the program's own sounds where it is installed; empty where it runs out of its build folder.
QString soundFolder();

class DeviceSounds : public SoundPlayer {
 public:
  DeviceSounds();
  ~DeviceSounds() override;
  void play(const QString& file) override;

 private:
  struct Sound;
  bool m_hasDevice;
  QHash<QString, std::shared_ptr<Sound>> m_sounds;
};

}  // namespace torvik::app
