// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <system_error>

#include "base/errors.h"

namespace torvik::base {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kReadBytes = 64 * 1024;
constexpr int kMostLinks = 40;
constexpr int kMostTemporaries = 1000;

[[noreturn]] void fail(const fs::path& path, std::string_view what, int error) {
  throw InputError(
      fmt::format("{}: {}: {}", printable(path.string()), what, std::generic_category().message(error)));
}

[[noreturn]] void failReading(const fs::path& path, int error) {
  fail(path, "can not be read", error);
}
[[noreturn]] void failWriting(const fs::path& path, int error) {
  fail(path, "can not be written", error);
}

/// Repeats a system call that a signal interrupted.
template <class Call>
auto uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

class Descriptor {
 public:
  Descriptor(const fs::path& path, int flags, mode_t mode = 0)
      : m_fd(uninterrupted([&] { return ::open(path.c_str(), flags | O_CLOEXEC, mode); })) {}
  ~Descriptor() {
    if (m_fd >= 0) ::close(m_fd);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  [[nodiscard]] bool isOpen() const { return m_fd >= 0; }
  [[nodiscard]] int get() const { return m_fd; }

  /// @return false where the system reports a late failure of a write
  bool close() {
    const int fd = m_fd;
    m_fd = -1;
    return ::close(fd) == 0 || errno == EINTR;
  }

 private:
  int m_fd;
};

/// Removes the file of that name, unless it was renamed.
class TemporaryName {
 public:
  explicit TemporaryName(fs::path path) : m_path(std::move(path)) {}
  ~TemporaryName() {
    if (!m_path.empty()) ::unlink(m_path.c_str());
  }
  TemporaryName(const TemporaryName&) = delete;
  TemporaryName& operator=(const TemporaryName&) = delete;

  bool renameTo(const fs::path& target) {
    if (std::rename(m_path.c_str(), target.c_str()) != 0) return false;
    m_path.clear();
    return true;
  }

 private:
  fs::path m_path;
};

bool writeAll(int fd, std::string_view content) {
  while (!content.empty()) {
    const ssize_t written = uninterrupted([&] { return ::write(fd, content.data(), content.size()); });
    if (written < 0) return false;
    content.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

/// Where a chain of symbolic links ends; that place need not exist.
fs::path linkTarget(fs::path path) {
  for (int link = 0; link < kMostLinks; ++link) {
    std::error_code error;
    const fs::path next = fs::read_symlink(path, error);
    if (error) break;
    path = next.is_absolute() ? next : path.parent_path() / next;
  }
  return path;
}

/// Devices and pipes have no content to replace.
void writeStraight(const fs::path& path, std::string_view content) {
  Descriptor file(path, O_WRONLY);
  if (!file.isOpen() || !writeAll(file.get(), content) || !file.close()) failWriting(path, errno);
}

/// Where the file system can, makes the rename itself outlive a crash.
void flushDirectory(const fs::path& directory) {
  const Descriptor file(directory, O_RDONLY | O_DIRECTORY);
  if (file.isOpen()) ::fsync(file.get());
}

}  // namespace

bool isFile(const fs::path& path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  return fs::exists(status) && !fs::is_directory(status);
}

std::string readWholeFile(const fs::path& path) {
  const Descriptor file(path, O_RDONLY | O_NONBLOCK);  // a pipe without a writer would keep us waiting
  struct stat status {};
  if (!file.isOpen() || ::fstat(file.get(), &status) != 0) failReading(path, errno);
  if (S_ISDIR(status.st_mode)) failReading(path, EISDIR);
  struct stat nothing {};
  const bool isNull =
      S_ISCHR(status.st_mode) && ::stat("/dev/null", &nothing) == 0 && status.st_rdev == nothing.st_rdev;
  if (!S_ISREG(status.st_mode) && !isNull)
    throw InputError(printable(path.string()) + ": can not be read: not a regular file");

  // The size is a hint only: the files of /proc have none.
  std::string content;
  std::size_t used = 0;
  std::size_t room = std::max(static_cast<std::size_t>(std::max<off_t>(status.st_size, 0)) + 1, kReadBytes);
  for (;;) {
    if (used == content.size()) {
      content.resize(content.size() + room);
      room = content.size();
    }
    const ssize_t got =
        uninterrupted([&] { return ::read(file.get(), content.data() + used, content.size() - used); });
    if (got < 0) failReading(path, errno);
    if (got == 0) break;
    used += static_cast<std::size_t>(got);
  }
  content.resize(used);
  return content;
}

void replaceWholeFile(const fs::path& path, std::string_view content, CreateParents createParents) {
  struct stat old {};
  const bool exists = ::stat(path.c_str(), &old) == 0;
  if (!exists && errno != ENOENT && errno != ENOTDIR) failWriting(path, errno);
  if (exists) {
    if (S_ISDIR(old.st_mode)) failWriting(path, EISDIR);
    if (!S_ISREG(old.st_mode)) return writeStraight(path, content);
    // A rename asks the folder's permission only.
    if (::access(path.c_str(), W_OK) != 0) failWriting(path, errno);
  }

  const fs::path target = linkTarget(path);
  const fs::path directory = target.has_parent_path() ? target.parent_path() : fs::path(".");
  if (createParents == CreateParents::Yes) {
    std::error_code error;
    fs::create_directories(directory, error);
    if (error) fail(directory, "can not be created", error.value());
  }

  const mode_t mode = exists ? old.st_mode & 07777U : 0666U;
  for (int number = 0; number < kMostTemporaries; ++number) {
    const fs::path name = directory / fmt::format(".torvik-{}-{}.tmp", ::getpid(), number);
    Descriptor file(name, O_WRONLY | O_CREAT | O_EXCL, mode);
    if (!file.isOpen() && errno == EEXIST) continue;
    if (!file.isOpen()) failWriting(path, errno);
    TemporaryName temporary(name);
    if (exists) {
      // Owner and group are kept where that is allowed.
      [[maybe_unused]] const int owned = ::fchown(file.get(), old.st_uid, old.st_gid);
      if (::fchmod(file.get(), mode) != 0) failWriting(path, errno);
    }
    if (!writeAll(file.get(), content) || ::fsync(file.get()) != 0 || !file.close() ||
        !temporary.renameTo(target)) {
      failWriting(path, errno);
    }
    flushDirectory(directory);
    return;
  }
  failWriting(path, EEXIST);
}

}  // namespace torvik::base
