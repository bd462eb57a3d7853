// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <fstream>

#include "base/errors.h"
#include "message_of.h"
#include "temporary_folder.h"

namespace torvik::base {
namespace {

namespace fs = std::filesystem;
using tests::messageOf;
using tests::TemporaryFolder;

void put(const fs::path& path, std::string_view content) {
  std::ofstream(path, std::ios::binary) << content;
}

TEST(ReadWholeFile, AllBytesOfAnySize) {
  const TemporaryFolder folder;
  const fs::path path = folder / "a";
  for (const std::size_t size : {0U, 1U, 65535U, 65536U, 65537U, 1000000U}) {
    std::string content(size, '\0');
    for (std::size_t i = 0; i < size; ++i) content[i] = static_cast<char>(i * 7);
    put(path, content);
    EXPECT_EQ(readWholeFile(path), content) << size;
  }
}

TEST(ReadWholeFile, FilesThatTellNoSize) {
  EXPECT_EQ(readWholeFile("/proc/self/status").substr(0, 5), "Name:");

  EXPECT_EQ(readWholeFile("/dev/null"), "");
}

TEST(ReadWholeFile, ErrorsNameFileAndReason) {
  const TemporaryFolder folder;
  const std::string absent = (folder / "absent").string();
  EXPECT_EQ(messageOf([&] { readWholeFile(absent); }),
            absent + ": can not be read: No such file or directory");
  EXPECT_EQ(messageOf([&] { readWholeFile(folder.path()); }),
            folder.path().string() + ": can not be read: Is a directory");
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);  // nobody writes: reading would never end
  EXPECT_EQ(messageOf([&] { readWholeFile(folder / "pipe"); }),
            (folder / "pipe").string() + ": can not be read: not a regular file");
}

TEST(ReplaceWholeFile, NewOldLinkedAndSpecialFiles) {
  const TemporaryFolder folder;
  const fs::path path = folder / "a.inp";
  replaceWholeFile(path, "one");
  EXPECT_EQ(readWholeFile(path), "one");

  ::chmod(path.c_str(), 0666);
  replaceWholeFile(path, std::string(300000, 'x'));
  EXPECT_EQ(readWholeFile(path), std::string(300000, 'x'));
  struct stat status {};
  ASSERT_EQ(::stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0666U);

  fs::create_symlink("a.inp", folder / "link");
  fs::create_symlink("link", folder / "link to link");
  fs::create_symlink("new.inp", folder / "dangling");
  replaceWholeFile(folder / "link to link", "through links");
  replaceWholeFile(folder / "dangling", "made");
  EXPECT_EQ(readWholeFile(path), "through links");
  EXPECT_EQ(readWholeFile(folder / "new.inp"), "made");
  EXPECT_TRUE(fs::is_symlink(folder / "link to link") && fs::is_symlink(folder / "link") &&
              fs::is_symlink(folder / "dangling"));

  replaceWholeFile(folder / "x" / "y" / "z", "deep", CreateParents::Yes);
  EXPECT_EQ(readWholeFile(folder / "x" / "y" / "z"), "deep");
  EXPECT_EQ(folder.names(),
            (std::set<std::string>{"a.inp", "dangling", "link", "link to link", "new.inp", "x"}));

  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  replaceWholeFile("/dev/fd/" + std::to_string(ends[1]), "piped");
  char got[8] = {};
  EXPECT_EQ(::read(ends[0], got, sizeof got), 5);
  EXPECT_STREQ(got, "piped");
  ::close(ends[0]);
  ::close(ends[1]);
}

TEST(ReplaceWholeFile, FailureLeavesTheOldFileAndNothingElse) {
  const TemporaryFolder folder;
  const fs::path old = folder / "old";
  put(old, "old content");
  fs::create_directory(folder / "directory");
  fs::create_symlink("loop", folder / "loop");
  const auto before = folder.names();

  struct Case {
    const char* name;
    fs::path path;
    CreateParents parents;
    const char* message;
  };
  const Case cases[] = {
      {"folder missing", folder / "none" / "a", CreateParents::No,
       "none/a: can not be written: No such file"},
      {"a file as folder", old / "a", CreateParents::No, "old/a: can not be written: Not a directory"},
      {"a file as folder to create", old / "x" / "a", CreateParents::Yes,
       "old/x: can not be created: Not a directory"},
      {"a directory", folder / "directory", CreateParents::No,
       "directory: can not be written: Is a directory"},
      {"endless links", folder / "loop", CreateParents::No, "loop: can not be written: Too many levels"},
  };
  for (const Case& c : cases) {
    const std::string message = messageOf([&] { replaceWholeFile(c.path, "new", c.parents); });
    EXPECT_NE(message.find(c.message), std::string::npos) << c.name << ": " << message;
    EXPECT_EQ(folder.names(), before) << c.name;
    EXPECT_EQ(readWholeFile(old), "old content") << c.name;
  }
}

TEST(ReplaceWholeFile, DeviceThatFailsHalfWay) {
  const TemporaryFolder folder;
  const fs::path path = folder / "a";
  put(path, "old content");
  rlimit limit{};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &limit), 0);
  const rlimit small{4096, limit.rlim_max};
  const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
  const std::string message = messageOf([&] { replaceWholeFile(path, std::string(100000, 'n')); });
  ::setrlimit(RLIMIT_FSIZE, &limit);
  std::signal(SIGXFSZ, oldHandler);

  EXPECT_EQ(message, path.string() + ": can not be written: File too large");
  EXPECT_EQ(readWholeFile(path), "old content");
  EXPECT_EQ(folder.names(), (std::set<std::string>{"a"}));
}

TEST(ReplaceWholeFile, PermissionsAreRespected) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may write everywhere";
  const TemporaryFolder folder;
  const fs::path path = folder / "a";
  put(path, "old content");
  ::chmod(path.c_str(), 0444);
  EXPECT_EQ(messageOf([&] { replaceWholeFile(path, "new"); }),
            path.string() + ": can not be written: Permission denied");
  ::chmod(path.c_str(), 0644);
  ::chmod(folder.path().c_str(), 0555);
  EXPECT_EQ(messageOf([&] { replaceWholeFile(path, "new"); }),
            path.string() + ": can not be written: Permission denied");
  EXPECT_EQ(readWholeFile(path), "old content");
  EXPECT_EQ(folder.names(), (std::set<std::string>{"a"}));
}

TEST(IsFile, FilesButNoDirectories) {
  const TemporaryFolder folder;
  put(folder / "a", "");
  fs::create_symlink("nowhere", folder / "dangling");
  EXPECT_TRUE(isFile(folder / "a"));
  EXPECT_TRUE(isFile("/dev/null"));
  EXPECT_FALSE(isFile(folder.path()));
  EXPECT_FALSE(isFile(folder / "absent"));
  EXPECT_FALSE(isFile(folder / "dangling"));
  EXPECT_FALSE(isFile(""));
}

}  // namespace
}  // namespace torvik::base
