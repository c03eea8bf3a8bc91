#include "session/new_file.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <system_error>

#include "profiles.h"
#include "testing/files.h"

namespace {

using profiles::Problem;
using profiles::problemOf;
using session::NewFile;

class NewFileTest : public testing::Test {
 protected:
  /// Returns the count of names in the folder.
  std::size_t count() const {
    std::size_t result = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path(""))) {
      result += entry.path().empty() ? 0U : 1U;
    }
    return result;
  }

  /// Writes the content of the file that is not published yet.
  void fill(const NewFile& file) const {
    folder.write(std::filesystem::path(file.temporaryPath()).filename().string(), "content");
  }

  support::TemporaryFolder folder;
  std::string path = folder.path("new");
};

TEST_F(NewFileTest, AppearsWhenItIsPublished) {
  {
    NewFile file(path, "--output");
    EXPECT_TRUE(file.isEmpty());
    fill(file);
    EXPECT_FALSE(file.isEmpty());
    EXPECT_FALSE(std::filesystem::exists(path));
    file.publish();
  }
  EXPECT_EQ(support::fileContent(path), "content");
  EXPECT_EQ(count(), 1U);
  struct stat status {};
  ASSERT_EQ(::stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0644U);
}

TEST_F(NewFileTest, LeavesNothingIfItIsNotPublished) {
  {
    const NewFile file(path, "--output");
    fill(file);
    EXPECT_EQ(count(), 1U);
  }
  EXPECT_EQ(count(), 0U);
}

TEST_F(NewFileTest, IsRefusedIfThereIsOne) {
  const Problem exists = {"--output", path, "a file that does not exist yet"};
  folder.write("new", "old");
  EXPECT_EQ(problemOf([&] { const NewFile file(path, "--output"); }), exists);
  std::filesystem::remove(path);
  std::filesystem::create_symlink("nowhere", path);
  EXPECT_EQ(problemOf([&] { const NewFile file(path, "--output"); }), exists);
}

TEST_F(NewFileTest, NeedsAFolder) {
  const Problem problem =
      problemOf([&] { const NewFile file(folder.path("missing/new"), "--output"); });
  EXPECT_EQ(problem,
            (Problem{"--output", "No such file or directory", "a file that can be created"}));
}

TEST_F(NewFileTest, DoesNotReplaceAFileThatAppearsInTheMeantime) {
  {
    NewFile file(path, "--output");
    fill(file);
    folder.write("new", "another");
    EXPECT_THROW(file.publish(), std::system_error);
  }
  EXPECT_EQ(support::fileContent(path), "another");
  EXPECT_EQ(count(), 1U);
}

}  // namespace
