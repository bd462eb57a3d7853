// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

namespace torvik::app {

/// `frmAbout`: version, licence, and what the program runs on.
class AboutBox : public QDialog {
  Q_OBJECT

 public:
  explicit AboutBox(QWidget* parent);
};

}  // namespace torvik::app
