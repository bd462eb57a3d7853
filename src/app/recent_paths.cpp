// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/recent_paths.h"

#include <algorithm>

#include "base/number_text.h"

namespace torvik::app {

namespace {
constexpr const char* kSection = "RecentPath";
}

void RecentPaths::load(const base::ProfileFile& settings) {
  for (int i = 0; i < kSlots; ++i)
    m_slots[static_cast<std::size_t>(i)] = settings.ProfileGetString(kSection, base::plainText(i), "");
}

void RecentPaths::save(base::ProfileFile& settings) const {
  for (int i = 0; i < kSlots; ++i)
    settings.ProfileWrite(kSection, base::plainText(i), m_slots[static_cast<std::size_t>(i)]);
}

void RecentPaths::remove(const std::string& path) {
  const auto found = std::find(m_slots.begin(), m_slots.end(), path);
  if (found == m_slots.end() || path.empty()) return;
  std::move(found + 1, m_slots.end(), found);
  m_slots.back().clear();
}

void RecentPaths::add(const std::string& path) {
  remove(path);
  auto empty = std::find(m_slots.begin(), m_slots.end(), std::string());
  if (empty == m_slots.end()) {
    std::move(m_slots.begin() + 1, m_slots.end(), m_slots.begin());
    empty = m_slots.end() - 1;
  }
  *empty = path;
}

}  // namespace torvik::app
