// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <functional>

#include "views/shell.h"

namespace torvik::views {

/// A frame for one child under test: settings in memory, answers given beforehand, questions written down.
class FakeShell : public Shell {
 public:
  base::ProfileFile settings = base::ProfileFile::ofText("", "torvik.ini");
  QString saveAnswer;
  QString openAnswer;
  bool yes = true;
  QString proposal;
  QStringList messages;
  int popups = 0;
  int optionsTab = -1;

  [[nodiscard]] job::JobState jobState() const override { return job::JobState::AtRest; }
  [[nodiscard]] base::ProfileFile readSettings() const override {
    return base::ProfileFile::ofText(settings.text(), "torvik.ini");
  }
  void changeSettings(const std::function<void(base::ProfileFile&)>& change) override { change(settings); }
  void writeSettings(const std::function<void(base::ProfileFile&)>& change) override { change(settings); }
  void childActivated(ChildWindow&) override {}
  void childDeactivated(ChildWindow&) override {}
  void popupEditMenu(ChildWindow&, const QPoint&) override { ++popups; }
  void openOptions(int tab) override { optionsTab = tab; }
  void showMessage(const QString& text, const QString& caption) override {
    messages.append(caption.isEmpty() ? text : caption + ": " + text);
  }
  void notice(const QString& text, const QString& caption) override { showMessage(text, caption); }
  void askSaveFile(const QString&, const QString& proposed, const QString&,
                   std::function<void(const QString&)> then) override {
    proposal = proposed;
    if (!saveAnswer.isEmpty()) then(saveAnswer);
  }
  QString askOpenFile(const QString&, const QString& proposed, const QString&, const QString&) override {
    proposal = proposed;
    return openAnswer;
  }
  bool ask(const QString& question) override {
    messages.append(question);
    return yes;
  }
};

}  // namespace torvik::views
