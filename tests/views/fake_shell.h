// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <string>

#include "views/shell.h"

namespace torvik::views {

/// A frame for one child under test: settings in memory, answers given beforehand, questions written down.
class FakeShell : public Shell {
 public:
  analysis::RunState state = analysis::RunState::AtRest;
  std::string settings;  ///< text of the settings file
  QString saveAnswer;
  QString proposal;
  QStringList messages;
  int popups = 0;
  int optionsTab = -1;
  ChildWindow* deactivated = nullptr;

  [[nodiscard]] analysis::RunState runState() const override { return state; }
  [[nodiscard]] base::ProfileFile readSettings() const override {
    return base::ProfileFile::ofText(settings, "torvik.ini");
  }
  void changeSettings(const std::function<void(base::ProfileFile&)>& change) override {
    base::ProfileFile file = readSettings();
    change(file);
    settings = file.text();
  }
  void childActivated(ChildWindow&) override {}
  void childDeactivated(ChildWindow& child) override { deactivated = &child; }
  void popupEditMenu(ChildWindow&, const QPoint&) override { ++popups; }
  void openOptions(int tab) override { optionsTab = tab; }
  void showMessage(const QString& text) override { messages.append(text); }
  QString askSaveFile(const QString&, const QString& proposed, const QString&) override {
    proposal = proposed;
    return saveAnswer;
  }
};

}  // namespace torvik::views
