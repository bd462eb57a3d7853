// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QString>
#include <functional>

#include "base/profile.h"
#include "job/steering.h"

namespace torvik::views {

class ChildWindow;

/// What a child window asks of the frame around it.
class Shell {
 public:
  virtual ~Shell() = default;

  [[nodiscard]] virtual job::JobState jobState() const = 0;

  /// The settings file, read whole. @throws InputError where it can not be read
  [[nodiscard]] virtual base::ProfileFile readSettings() const = 0;
  /// Reads the settings file, lets `change` write keys, and saves it whole. A write that fails is passed
  /// over.
  virtual void changeSettings(const std::function<void(base::ProfileFile&)>& change) = 0;

  /// The same for what the user has to know of. @throws InputError where it can not be read or written
  virtual void writeSettings(const std::function<void(base::ProfileFile&)>& change) = 0;

  /// The child became, or ceased to be, the active one, or its `commands` changed: the frame takes or drops
  /// them.
  virtual void childActivated(ChildWindow& child) = 0;
  virtual void childDeactivated(ChildWindow& child) = 0;

  /// Pops up the frame's Edit menu, with the child's own entries behind it.
  virtual void popupEditMenu(ChildWindow& child, const QPoint& globalPosition) = 0;

  /// Opens the options dialog on the page of the last time; @param tab 1-based, 0 leaves the stored one
  virtual void openOptions(int tab) = 0;

  /// A message box with the information icon. @param caption  empty: the title
  virtual void showMessage(const QString& text, const QString& caption = {}) = 0;
  /// The same box for what is no answer to a job: returns at once, and a job goes on behind it.
  virtual void notice(const QString& text, const QString& caption = {}) = 0;
  /// A file to write. Returns at once as well: the window that asks may be gone when the answer comes.
  /// @param filter  in the toolkit's form
  /// @param then    runs with the chosen path, and not where it was cancelled; what it throws is told
  virtual void askSaveFile(const QString& caption, const QString& proposal, const QString& filter,
                           std::function<void(const QString& path)> then) = 0;
  /// One existing file. @param proposal  a name, or "*." and an extension for none
  /// @param defaultExtension  without its dot
  virtual QString askOpenFile(const QString& caption, const QString& proposal, const QString& filter,
                              const QString& defaultExtension) = 0;
  /// Yes and No with No as default, question icon, title as caption. @return true for Yes
  virtual bool ask(const QString& question) = 0;

  /// The next Enter in a grid pastes: set by a copy with Ctrl+Insert, shared by all grids.
  bool PasteOnEnter = false;
};

}  // namespace torvik::views
