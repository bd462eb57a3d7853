// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

#include "base/checksum.h"
#include "message_of.h"
#include "temporary_folder.h"

namespace torvik::base {
namespace fs = std::filesystem;

TEST(Files, ComeBackWholeAndLinksAndPermissionsStay) {
  const tests::TemporaryFolder folder;
  for (const std::size_t size : {0U, 1U, 65535U, 65536U, 65537U, 1000000U}) {
    std::string content(size, '\0');
    for (std::size_t i = 0; i < size; ++i) content[i] = static_cast<char>(i * 7);
    replaceWholeFile(folder / "x/y/z", content, CreateParents::Yes);
    EXPECT_EQ(readWholeFile(folder / "x/y/z"), content) << size;
  }
  EXPECT_EQ(readWholeFile("/proc/self/status").substr(0, 5), "Name:") << "a file that tells no size";

  replaceWholeFile(folder / "a", "one");
  ::chmod((folder / "a").c_str(), 0666);
  fs::create_symlink("link", folder / "link to link");
  fs::create_symlink("a", folder / "link");
  fs::create_symlink("new", folder / "dangling");
  EXPECT_TRUE(isFile(folder / "link") && isFile("/dev/null"));
  EXPECT_FALSE(isFile(folder.path()) || isFile(folder / "dangling") || isFile(""));
  replaceWholeFile(folder / "link to link", "through links ");
  replaceWholeFile(folder / "dangling", "made");
  EXPECT_EQ(readWholeFile(folder / "a") + readWholeFile(folder / "new"), "through links made");
  EXPECT_EQ(fs::status(folder / "a").permissions(), static_cast<fs::perms>(0666));
  EXPECT_EQ(folder.names().size(), 6U);
}

TEST(Files, FailureLeavesTheOldFileAndNothingElse) {
  const tests::TemporaryFolder folder;
  const fs::path old = folder / "old";
  replaceWholeFile(old, "old content");
  fs::create_symlink("loop", folder / "loop");
  const auto expect = [&](const fs::path& path, const std::string& message, auto parents) {
    EXPECT_EQ(tests::messageOf([&] { replaceWholeFile(path, std::string(9999, 'n'), parents); }),
              (folder / message).string());
    EXPECT_EQ(folder.names().size(), 2U) << message;
    EXPECT_EQ(readWholeFile(old), "old content") << message;
  };
  expect(folder / "no/a", "no/a: can not be written: No such file or directory", CreateParents::No);
  expect(old / "x/a", "old/x: can not be created: Not a directory", CreateParents::Yes);
  expect(folder / "", ": can not be written: Is a directory", CreateParents::No);
  expect("/dev/full", "/dev/full: can not be written: No space left on device", CreateParents::No);
  expect(folder / "loop", "loop: can not be written: Too many levels of symbolic links", CreateParents::No);
  const auto read = [&] { return readWholeFile(folder.path()); };
  EXPECT_EQ(tests::messageOf(read), folder.path().string() + ": can not be read: Is a directory");

  rlimit limit{};
  ::getrlimit(RLIMIT_FSIZE, &limit);
  const rlimit small{4096, limit.rlim_max};
  std::signal(SIGXFSZ, SIG_IGN);
  ::setrlimit(RLIMIT_FSIZE, &small);
  expect(old, "old: can not be written: File too large", CreateParents::No);
  ::setrlimit(RLIMIT_FSIZE, &limit);

  ::chmod(old.c_str(), 0444);
  if (::geteuid() != 0) expect(old, "old: can not be written: Permission denied", CreateParents::No);
}

/// The first example of FIPS 180.
TEST(Checksum, IsSha256OfTheBytesOfAFile) {
  const tests::TemporaryFolder folder;
  replaceWholeFile(folder / "a", "abc");
  EXPECT_EQ(checksumOfFile(folder / "a"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
  EXPECT_EQ(checksumOfFile(folder / "b") + checksumOfFile(folder.path()), "");
}

}  // namespace torvik::base
