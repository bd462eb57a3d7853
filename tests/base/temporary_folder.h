// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdlib>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <string>

namespace torvik::tests {

/// An empty folder of its own, removed at the end of the test.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "torvik-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    m_path = name;
  }
  ~TemporaryFolder() {
    std::error_code error;
    std::filesystem::remove_all(m_path, error);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return m_path; }
  std::filesystem::path operator/(const std::string& name) const { return m_path / name; }

  [[nodiscard]] std::set<std::string> names() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_path))
      names.insert(entry.path().filename());
    return names;
  }

 private:
  std::filesystem::path m_path;
};

}  // namespace torvik::tests
