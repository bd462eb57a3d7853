// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <optional>
#include <string>

#include "base/profile.h"

namespace torvik::app {

/// The recent-path list: six slots that fill from slot 0 upward, the newest path in the highest filled one.
class RecentPaths {
 public:
  static constexpr int kSlots = 6;
  static constexpr int kEntries = 5;

  void load(const base::ProfileFile& settings);
  void save(base::ProfileFile& settings) const;
  void add(const std::string& path);
  void remove(const std::string& path);

  /// What menu entry i (0 to 4) shows: slot 4 - i, so that slot 5 is never shown: with all six filled the
  /// newest path is the one in hand. Empty: the entry is hidden.
  [[nodiscard]] const std::string& entry(int i) const { return m_slots.at(static_cast<std::size_t>(4 - i)); }
  [[nodiscard]] bool showsSeparator() const { return !m_slots[0].empty(); }

 private:
  std::array<std::string, kSlots> m_slots;
};

}  // namespace torvik::app
