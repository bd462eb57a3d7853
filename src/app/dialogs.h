// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <QWidget>
#include <optional>

class QPrinter;

namespace torvik::app {

/// Every box that stops the program for an answer. A test answers in its place.
class Dialogs {
 public:
  virtual ~Dialogs() = default;
  /// Information icon and an OK button.
  virtual void information(const QString& text, const QString& caption) = 0;
  /// Question icon, Yes and No, No as default. @return true for Yes
  virtual bool question(const QString& text, const QString& caption) = 0;
  /// Existing files. @return their paths in the dialog's order; empty where it was cancelled
  virtual QStringList openFiles(const QString& caption, const QString& filter) = 0;
  /// One existing file. @param proposal  a name or a pattern like "*.ss". @return empty where it was
  /// cancelled
  virtual QString openFile(const QString& caption, const QString& proposal, const QString& filter,
                           const QString& defaultExtension) = 0;
  /// A file to write, with the overwrite prompt. @return empty where it was cancelled
  virtual QString saveFile(const QString& caption, const QString& proposal, const QString& filter,
                           const QString& defaultExtension) = 0;
  /// Paper and margins; printer and pages. @return false where it was cancelled
  virtual bool setUpPage(QPrinter& printer) = 0;
  virtual bool choosePrinter(QPrinter& printer) = 0;
  /// One line of text. @return empty where it was cancelled
  virtual QString input(const QString& prompt, const QString& caption, const QString& defaultText) = 0;
};

/// The real boxes, over the window that is set.
class ScreenDialogs : public Dialogs {
 public:
  void setParent(QWidget* parent) { m_parent = parent; }
  void information(const QString& text, const QString& caption) override;
  bool question(const QString& text, const QString& caption) override;
  QStringList openFiles(const QString& caption, const QString& filter) override;
  QString openFile(const QString& caption, const QString& proposal, const QString& filter,
                   const QString& defaultExtension) override;
  QString saveFile(const QString& caption, const QString& proposal, const QString& filter,
                   const QString& defaultExtension) override;
  bool setUpPage(QPrinter& printer) override;
  bool choosePrinter(QPrinter& printer) override;
  QString input(const QString& prompt, const QString& caption, const QString& defaultText) override;

 private:
  QWidget* m_parent = nullptr;
};

}  // namespace torvik::app
