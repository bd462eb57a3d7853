// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/dialogs.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>
#include <QPageSetupDialog>
#include <QPrintDialog>
#include <QRegularExpression>

namespace torvik::app {

namespace {

/// Texts are plain: a path with "<" in it is no markup.
QMessageBox::StandardButton show(QWidget* parent, QMessageBox::Icon icon, const QString& text,
                                 const QString& caption, QMessageBox::StandardButtons buttons,
                                 QMessageBox::StandardButton defaultButton) {
  QMessageBox box(icon, caption, QString(text).replace('\r', '\n'), buttons, parent);
  box.setTextFormat(Qt::PlainText);
  box.setDefaultButton(defaultButton);
  return static_cast<QMessageBox::StandardButton>(box.exec());
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

}  // namespace

void ScreenDialogs::information(const QString& text, const QString& caption) {
  show(topmost(m_parent), QMessageBox::Information, text, caption, QMessageBox::Ok, QMessageBox::Ok);
}

bool ScreenDialogs::question(const QString& text, const QString& caption) {
  return show(topmost(m_parent), QMessageBox::Question, text, caption, QMessageBox::Yes | QMessageBox::No,
              QMessageBox::No) == QMessageBox::Yes;
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
  QFileDialog dialog(topmost(m_parent), caption, QFileInfo(proposal).path(), filter);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  // A name without an extension gets that of the chosen type, where the caller names none.
  const auto suffixOf = [&](const QString& chosen) {
    return defaultExtension.isEmpty() ? extensionOf(chosen) : defaultExtension;
  };
  dialog.setDefaultSuffix(suffixOf(dialog.selectedNameFilter()));
  QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog,
                   [&](const QString& chosen) { dialog.setDefaultSuffix(suffixOf(chosen)); });
  dialog.selectFile(QFileInfo(proposal).fileName());
  return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

bool ScreenDialogs::setUpPage(QPrinter& printer) {
  return QPageSetupDialog(&printer, topmost(m_parent)).exec() == QDialog::Accepted;
}

bool ScreenDialogs::choosePrinter(QPrinter& printer) {
  return QPrintDialog(&printer, topmost(m_parent)).exec() == QDialog::Accepted;
}

QString ScreenDialogs::input(const QString& prompt, const QString& caption, const QString& defaultText) {
  bool accepted = false;
  const QString answer =
      QInputDialog::getText(topmost(m_parent), caption, prompt, QLineEdit::Normal, defaultText, &accepted);
  return accepted ? answer : QString();
}

}  // namespace torvik::app
