// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/about_box.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QIcon>
#include <QLabel>
#include <QSysInfo>
#include <QThread>

#include "base/settings.h"
#include "base/title.h"

namespace torvik::app {

AboutBox::AboutBox(QWidget* parent) : QDialog(parent) {
  setObjectName("frmAbout");
  setWindowTitle(QString("About ") + base::kTitle);
  auto* layout = new QGridLayout(this);
  auto* icon = new QLabel;
  icon->setPixmap(QIcon(":/icons/torvik.svg").pixmap(64, 64));
  auto* text = new QLabel;
  text->setTextFormat(Qt::PlainText);
  text->setTextInteractionFlags(Qt::TextSelectableByMouse);
  text->setText(
      QString("%1\n\nFlexure of reinforced and prestressed concrete sections.\n"
              "Free software under the GNU General Public License, version 3 or later.\n\n"
              "Qt %2 on %3, %4 processors\nSettings: %5\n\n"
              "To uninstall, remove the package or the files that were installed, and the settings file.")
          .arg(QString::fromStdString(base::VersionTitle()), qVersion(), QSysInfo::prettyProductName())
          .arg(QThread::idealThreadCount())
          .arg(QString::fromStdString(base::settingsFilePath().string())));
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  layout->addWidget(icon, 0, 0, Qt::AlignTop);
  layout->addWidget(text, 0, 1);
  layout->addWidget(buttons, 1, 0, 1, 2);
}

}  // namespace torvik::app
