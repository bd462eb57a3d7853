// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

class QTabWidget;

namespace torvik::views {
class Shell;
}

namespace torvik::app {

/// `frmAbout`: version and licence, what the program runs on, and how it is uninstalled, on three tabs. The
/// tab of the last time is kept in section `About` of the settings.
class AboutBox : public QDialog {
  Q_OBJECT

 public:
  /// @throws InputError as `Shell::readSettings`
  AboutBox(views::Shell& shell, QWidget* parent);

 protected:
  void done(int result) override;

 private:
  views::Shell& m_shell;
  QTabWidget* m_tabs;
};

}  // namespace torvik::app
