// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/dialogs.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>
#include <QPageSetupDialog>
#include <QPointer>
#include <QPrintDialog>
#include <QRegularExpression>
#include <utility>

namespace torvik::app {

namespace {

/// Texts are plain: a path with "<" in it is no markup.
class PlainBox : public QMessageBox {
 public:
  PlainBox(QWidget* parent, Icon icon, const QString& text, const QString& caption, StandardButtons buttons,
           StandardButton defaultButton)
      : QMessageBox(icon, caption, QString(text).replace('\r', '\n'), buttons, parent) {
    setTextFormat(Qt::PlainText);
    setDefaultButton(defaultButton);
  }
};

/// Shows a box that stops nothing.
void openBeside(QDialog* box) {
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->open();
}

/// What a box stands over: the modal window at work, where there is one.
QWidget* topmost(QWidget* window) {
  QWidget* modal = QApplication::activeModalWidget();
  return modal ? modal : window;
}

/// The first extension of a filter, "inp" of "Input Files (*.inp)"; empty where it takes all files.
QString extensionOf(const QString& filter) {
  return QRegularExpression("\\*\\.(\\w+)").match(filter).captured(1);
}

/// Asks as the toolkit does before a file is replaced, but in a box that stops no job.
class SaveDialog : public QFileDialog {
 public:
  SaveDialog(QWidget* parent, const QString& caption, const QString& proposal, const QString& filter,
             const QString& defaultExtension)
      : QFileDialog(parent, caption, QFileInfo(proposal).path(), filter) {
    setAcceptMode(AcceptSave);
    // A name without an extension gets that of the chosen type, where the caller names none.
    const auto takeSuffix = [this, defaultExtension](const QString& chosen) {
      setDefaultSuffix(defaultExtension.isEmpty() ? extensionOf(chosen) : defaultExtension);
    };
    takeSuffix(selectedNameFilter());
    connect(this, &QFileDialog::filterSelected, this, takeSuffix);
    selectFile(QFileInfo(proposal).fileName());
  }

 protected:
  void accept() override {
    const QFileInfo chosen(selectedFiles().value(0));
    const bool asksItself = testAttribute(Qt::WA_DontShowOnScreen);  // a dialog of the desktop
    if (asksItself || !chosen.isFile()) return QFileDialog::accept();
    if (m_question && m_question->isVisible()) return;
    m_question =
        new PlainBox(this, QMessageBox::Warning,
                     QFileDialog::tr("%1 already exists.\nDo you want to replace it?").arg(chosen.fileName()),
                     windowTitle(), QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
    connect(m_question, &QDialog::finished, this, [this](int answer) {
      if (answer != QMessageBox::Yes) return;
      setOption(DontConfirmOverwrite);
      QFileDialog::accept();
    });
    openBeside(m_question);
  }

 private:
  QPointer<QDialog> m_question;
};

}  // namespace

void ScreenDialogs::information(const QString& text, const QString& caption) {
  PlainBox(topmost(m_parent), QMessageBox::Information, text, caption, QMessageBox::Ok, QMessageBox::Ok)
      .exec();
}

void ScreenDialogs::notice(const QString& text, const QString& caption) {
  openBeside(new PlainBox(topmost(m_parent), QMessageBox::Information, text, caption, QMessageBox::Ok,
                          QMessageBox::Ok));
}

bool ScreenDialogs::question(const QString& text, const QString& caption) {
  return PlainBox(topmost(m_parent), QMessageBox::Question, text, caption, QMessageBox::Yes | QMessageBox::No,
                  QMessageBox::No)
             .exec() == QMessageBox::Yes;
}

QStringList ScreenDialogs::openFiles(const QString& caption, const QString& filter) {
  QFileDialog dialog(topmost(m_parent), caption, {}, filter);
  dialog.setFileMode(QFileDialog::ExistingFiles);
  dialog.setDefaultSuffix(extensionOf(filter));
  return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles() : QStringList();
}

QString ScreenDialogs::openFile(const QString& caption, const QString& proposal, const QString& filter,
                                const QString& defaultExtension) {
  QFileDialog dialog(topmost(m_parent), caption, QFileInfo(proposal).path(), filter);
  dialog.setFileMode(QFileDialog::ExistingFile);
  dialog.setDefaultSuffix(defaultExtension);
  const QString name = QFileInfo(proposal).fileName();
  if (!name.contains('*')) dialog.selectFile(name);  // a pattern is what the filter says already
  return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

QString ScreenDialogs::saveFile(const QString& caption, const QString& proposal, const QString& filter,
                                const QString& defaultExtension) {
  SaveDialog dialog(topmost(m_parent), caption, proposal, filter, defaultExtension);
  return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

void ScreenDialogs::saveFile(const QString& caption, const QString& proposal, const QString& filter,
                             const QString& defaultExtension, std::function<void(const QString& path)> then) {
  auto* const dialog = new SaveDialog(topmost(m_parent), caption, proposal, filter, defaultExtension);
  QObject::connect(dialog, &QDialog::accepted, dialog,
                   [dialog, then = std::move(then)] { then(dialog->selectedFiles().value(0)); });
  openBeside(dialog);
}

void ScreenDialogs::setUpPage(QPrinter& printer, std::function<void()> then) {
  auto* const dialog = new QPageSetupDialog(&printer, topmost(m_parent));
  const auto takeOver = [dialog, then = std::move(then)] {
    // The toolkit sets the printer at the end of `exec` alone: it runs unseen, and is accepted at once.
    dialog->setAttribute(Qt::WA_DontShowOnScreen);
    QMetaObject::invokeMethod(dialog, &QDialog::accept, Qt::QueuedConnection);
    dialog->exec();
    then();
  };
  QObject::connect(dialog, &QDialog::accepted, dialog, takeOver,
                   static_cast<Qt::ConnectionType>(Qt::AutoConnection | Qt::SingleShotConnection));
  openBeside(dialog);
}

void ScreenDialogs::choosePrinter(QPrinter& printer, std::function<void()> then) {
  auto* const dialog = new QPrintDialog(&printer, topmost(m_parent));
  QObject::connect(dialog, &QDialog::accepted, dialog, std::move(then));
  openBeside(dialog);
}

QString ScreenDialogs::input(const QString& prompt, const QString& caption, const QString& defaultText) {
  bool accepted = false;
  const QString answer =
      QInputDialog::getText(topmost(m_parent), caption, prompt, QLineEdit::Normal, defaultText, &accepted);
  return accepted ? answer : QString();
}

}  // namespace torvik::app
