// SPDX-License-Identifier: GPL-3.0-or-later
#include <QApplication>
#include <QDir>
#include <QStandardPaths>
#include <QTimer>
#include <clocale>
#include <string>
#include <vector>

#include "app/main_window.h"
#include "app/single_instance.h"
#include "app/start_up.h"
#include "base/settings.h"
#include "base/title.h"

int main(int argc, char** argv) {
  using namespace torvik;
  QApplication application(argc, argv);
  QApplication::setApplicationName(base::kTitle);
  QApplication::setDesktopFileName(base::kTitle);
  QApplication::setQuitOnLastWindowClosed(
      false);  // closing the frame ends the program, closing the help does not
  std::setlocale(LC_NUMERIC, "C");

  app::ScreenDialogs dialogs;
  app::Program program;
  try {
    program.settingsFile = base::settingsFilePath();
  } catch (const base::InputError& error) {
    dialogs.information(error.what(), base::kTitle);
    return 1;
  }
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
  QDir().mkpath(folder);
  app::SingleInstance instance(folder);
  const QString title = QString::fromStdString(base::VersionTitle());
  if (!instance.isFirst(title)) return 0;

  app::DeviceSounds sounds;
  program.dialogs = &dialogs;
  program.sounds = &sounds;
  app::MainWindow window(program);
  dialogs.setParent(&window);
  instance.onActivate = [&](const QString& wanted) {
    if (window.windowTitle() != wanted) return;
    window.raise();
    window.activateWindow();
  };
  window.load();
  window.show();

  std::vector<std::string> arguments(argv + 1, argv + argc);  // without those that the toolkit took
  // Once the window manager has given the frame its size: the result windows of a job are laid into it.
  QTimer::singleShot(150, &window, [&] { window.takeCommandLine(app::tokensOf(arguments)); });
  return QApplication::exec();
}
