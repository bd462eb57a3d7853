// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <QWidget>
#include <functional>

class QPrinter;

namespace torvik::app {

/// The boxes of the program. A test answers in their place.
///
/// What returns an answer stops the program for it, a job too. What takes a continuation, and `notice`,
/// returns at once: the box blocks the frame alone, and a job goes on behind it. The continuation runs when
/// the box was accepted and has gone from the screen, and must not throw; where it was cancelled, nothing
/// runs.
class Dialogs {
 public:
  virtual ~Dialogs() = default;
  /// Information icon and an OK button.
  virtual void information(const QString& text, const QString& caption) = 0;
  virtual void notice(const QString& text, const QString& caption) = 0;
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
  virtual void saveFile(const QString& caption, const QString& proposal, const QString& filter,
                        const QString& defaultExtension, std::function<void(const QString& path)> then) = 0;
  /// Paper and margins; printer and pages. @param printer  outlives the box
  virtual void setUpPage(QPrinter& printer, std::function<void()> then) = 0;
  virtual void choosePrinter(QPrinter& printer, std::function<void()> then) = 0;
  /// One line of text. @return empty where it was cancelled
  virtual QString input(const QString& prompt, const QString& caption, const QString& defaultText) = 0;
};

/// The real boxes, over the window that is set.
class ScreenDialogs : public Dialogs {
 public:
  void setParent(QWidget* parent) { m_parent = parent; }
  void information(const QString& text, const QString& caption) override;
  void notice(const QString& text, const QString& caption) override;
  bool question(const QString& text, const QString& caption) override;
  QStringList openFiles(const QString& caption, const QString& filter) override;
  QString openFile(const QString& caption, const QString& proposal, const QString& filter,
                   const QString& defaultExtension) override;
  QString saveFile(const QString& caption, const QString& proposal, const QString& filter,
                   const QString& defaultExtension) override;
  void saveFile(const QString& caption, const QString& proposal, const QString& filter,
                const QString& defaultExtension, std::function<void(const QString& path)> then) override;
  void setUpPage(QPrinter& printer, std::function<void()> then) override;
  void choosePrinter(QPrinter& printer, std::function<void()> then) override;
  QString input(const QString& prompt, const QString& caption, const QString& defaultText) override;

 private:
  QWidget* m_parent = nullptr;
};

}  // namespace torvik::app
