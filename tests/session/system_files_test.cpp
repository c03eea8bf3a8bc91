#include "session/system_files.h"

#include <algorithm>
#include <cerrno>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/files.h"
#include "testing/virtual_system.h"

namespace {

using session::namesIn;
using session::readText;

class SystemFiles : public testing::Test {
 protected:
  support::TemporaryFolder folder;
  virtual_system::System system;
};

TEST_F(SystemFiles, AreReadWhole) {
  EXPECT_EQ(readText(folder.write("file", "text\n")), "text\n");
  EXPECT_EQ(readText(folder.write("empty", "")), "");
}

TEST_F(SystemFiles, AreReadWholeInShortPieces) {
  system.fileTransfer = [](std::size_t) {
    return 2;
  };
  EXPECT_EQ(readText(folder.write("file", "texts")), "texts");
}

TEST_F(SystemFiles, AreReadUpToFourKibibytes) {
  EXPECT_EQ(readText(folder.write("file", std::string(5000, 'x'))), std::string(4096, 'x'));
}

TEST_F(SystemFiles, HaveNoTextIfTheyCannotBeRead) {
  EXPECT_EQ(readText(folder.path("missing")), std::nullopt);
  EXPECT_EQ(readText(folder.path("")), std::nullopt);
  const std::string file = folder.write("file", "texts");
  // The device disappears while its file is read.
  system.fileTransfer = [reads = 0](std::size_t) mutable {
    return ++reads == 1 ? 2 : -ENODEV;
  };
  EXPECT_EQ(readText(file), std::nullopt);
}

TEST_F(SystemFiles, AreListedByName) {
  folder.write("one", "");
  folder.write("two", "");
  auto names = namesIn(folder.path(""));
  std::ranges::sort(names);
  EXPECT_EQ(names, (std::vector<std::string>{"one", "two"}));
}

TEST_F(SystemFiles, AreNoneInAFolderThatCannotBeRead) {
  EXPECT_EQ(namesIn(folder.path("missing")), std::vector<std::string>());
  EXPECT_EQ(namesIn(folder.write("file", "")), std::vector<std::string>());
}

}  // namespace
