// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/about_box.h"

#include <QDialogButtonBox>
#include <QIcon>
#include <QLabel>
#include <QScreen>
#include <QShortcut>
#include <QSysInfo>
#include <QTabWidget>
#include <QThread>
#include <QVBoxLayout>

#include "base/number_text.h"
#include "base/settings.h"
#include "base/title.h"
#include "views/shell.h"
#include "widgets/shown_text.h"

namespace torvik::app {

namespace {
constexpr const char* kSelectedTab = "SelectedTab";  // from 1
constexpr int kIconSize = 64;

QWidget* page(const QString& text) {
  auto* label = new QLabel(text);
  label->setTextFormat(Qt::PlainText);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  label->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  label->setMargin(8);
  return label;
}
}  // namespace

AboutBox::AboutBox(views::Shell& shell, QWidget* parent)
    : QDialog(parent), m_shell(shell), m_tabs(new QTabWidget) {
  setObjectName("frmAbout");
  setWindowTitle(QString("About ") + base::kTitle);
  const QString settings = widgets::shownText(base::settingsFilePath().string());

  m_tabs->setObjectName("TabStrip1");
  m_tabs->addTab(page(widgets::shownText(base::VersionTitle()) +
                      "\n\nFlexure of reinforced and prestressed concrete sections.\n"
                      "Free software under the GNU General Public License, version 3 or later."),
                 "About");
  const QSize screenSize = screen()->size() * screen()->devicePixelRatio();
  m_tabs->addTab(page(QString("%1, %2 processors\nQt %3\nScreen %4 x %5\n\nSettings: %6")
                          .arg(QSysInfo::prettyProductName())
                          .arg(QThread::idealThreadCount())
                          .arg(qVersion())
                          .arg(screenSize.width())
                          .arg(screenSize.height())
                          .arg(settings)),
                 "System");
  m_tabs->addTab(page("Remove the package or the files that were installed, and the settings:\n" + settings +
                      "\n\nModels and results stay where you put them."),
                 "Uninstall");
  m_tabs->setCurrentIndex(shell.readSettings().ProfileGetInt(base::kAboutSection, kSelectedTab, 1) - 1);
  connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Tab), this), &QShortcut::activated, m_tabs,
          [this] { m_tabs->setCurrentIndex((m_tabs->currentIndex() + 1) % m_tabs->count()); });

  auto* icon = new QLabel;
  icon->setPixmap(QIcon(":/icons/torvik.svg").pixmap(kIconSize, kIconSize));
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  auto* top = new QHBoxLayout;
  top->addWidget(icon, 0, Qt::AlignTop);
  top->addWidget(m_tabs, 1);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(top);
  layout->addWidget(buttons);
}

void AboutBox::done(int result) {
  m_shell.changeSettings([this](base::ProfileFile& settings) {
    settings.ProfileWrite(base::kAboutSection, kSelectedTab, base::plainText(m_tabs->currentIndex() + 1));
  });
  QDialog::done(result);
}

}  // namespace torvik::app
