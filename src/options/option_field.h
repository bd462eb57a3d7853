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

namespace torvik::widgets {
class EntryBox;
}

namespace torvik::options {

inline constexpr int kAxisTab = 4;
inline constexpr int kMessagesTab = 5;
inline constexpr int kTabs = 6;

/// Object name of a control, `Check12` or `Text01_2`.
QString controlName(std::string_view name, int index);

/// A key, its control and what the control showed for the key's value last.
class OptionField {
 public:
  /// The control has no parent yet: the order of the Tab key is that in which a page takes its controls.
  OptionField(const base::OptionKey& key, QObject& owner);

  [[nodiscard]] const base::OptionKey& key() const { return *m_key; }
  [[nodiscard]] const base::OptionControl& control() const { return m_key->control; }
  // What the key's kind has: a box for numbers and texts, a check box for flags, else option buttons.
  widgets::EntryBox* box = nullptr;
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
  const base::OptionKey* m_key;
  std::string m_value;
  QString m_shown;
};

}  // namespace torvik::options
