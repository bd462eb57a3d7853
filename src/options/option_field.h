// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <optional>
#include <span>
#include <string>

#include "base/settings.h"

class QButtonGroup;
class QCheckBox;
class QObject;

namespace torvik::views {
class EntryBox;
}

namespace torvik::options {

/// The control that edits a key; its kind of widget follows the key's kind.
struct OptionControl {
  base::OptionId id;
  int tab;  ///< from 1
  const char* name;
  int index;  ///< -1: not of an array
  const char* caption;
};

inline constexpr int kAxisTab = 4;
inline constexpr int kMessagesTab = 5;
inline constexpr int kTabs = 6;

/// The controls in the order of `base::optionKeys()`, which is that of the tabs. Two keys have none:
/// `SelectedTab` follows the tabs, `CurvatureUserRangeStep` is the main window's.
std::span<const OptionControl> optionControls();

/// Object name of a control, `Check12` or `Text01_2`.
QString controlName(const char* name, int index);

/// A key, its control and what the control showed for the key's value last.
class OptionField {
 public:
  /// The control has no parent yet: the order of the Tab key is that in which a page takes its controls.
  OptionField(const OptionControl& control, QObject& owner);

  [[nodiscard]] const OptionControl& control() const { return *m_control; }
  [[nodiscard]] const base::OptionKey& key() const { return base::optionKey(m_control->id); }
  // What the key's kind has: a box for numbers and texts, a check box for flags, else option buttons.
  views::EntryBox* box = nullptr;
  QCheckBox* check = nullptr;
  QButtonGroup* choice = nullptr;

  /// Shows a value in its text form. @return false where no option button stands for it
  bool show(const std::string& value);
  /// What OK writes; nothing while no option button is on. The bytes of a text that is not edited stay.
  [[nodiscard]] std::optional<std::string> value() const;
  [[nodiscard]] bool holdsNumber() const;

  /// The stored value, or its default, in the form that the control shows.
  /// @throws InputError of the key where it is no number
  [[nodiscard]] std::string stored(const base::ProfileFile& settings) const;

 private:
  const OptionControl* m_control;
  std::string m_value;
  QString m_shown;
};

}  // namespace torvik::options
