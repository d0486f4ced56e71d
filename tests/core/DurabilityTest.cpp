// What a power cut would show cannot be tried here, but the order of the calls that guard against it can:
// this program's own fsync and rename stand before the library's.
#include "core/FileManager.h"
#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace {

std::vector<std::string> diskCalls;

}  // namespace

extern "C" int fsync(int file) {
  struct stat status {};
  fstat(file, &status);
  diskCalls.emplace_back(S_ISDIR(status.st_mode) ? "sync folder" : "sync file");
  return static_cast<int>(syscall(SYS_fsync, file));
}

extern "C" int rename(const char* from, const char* to) {
  diskCalls.emplace_back("rename");
  return static_cast<int>(syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0));
}

namespace {

TEST(Writing, ADurableFileIsOnTheDiskBeforeItsNameIsAndItsNameWhenTheCallReturns) {
  const TemporaryFolder folder;
  diskCalls.clear();
  ASSERT_TRUE(writeToFileAtomically(folder / "settings", "new", Durability::Durable));
  EXPECT_EQ(diskCalls, (std::vector<std::string>{"sync file", "rename", "sync folder"}));
  diskCalls.clear();
  ASSERT_TRUE(writeToFileAtomically(folder / "log", "new", Durability::Deferred));
  EXPECT_EQ(diskCalls, std::vector<std::string>{"rename"});
}

}  // namespace
