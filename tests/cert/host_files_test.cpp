#include <cerrno>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <vector>

#include "cert/cert_mgr.h"
#include "testing/bytes.h"
#include "testing/files.h"
#include "testing/open_descriptors.h"
#include "testing/output.h"
#include "testing/virtual_system.h"

namespace {

using support::Bytes;
using support::openDescriptors;
using support::outputOf;
using support::TemporaryFolder;

constexpr unsigned int BufferSize = 16384;

class HostFile : public testing::Test {
 private:
  /// Runs an operation and returns its result. Sets `err` and `leftOpen`.
  template <typename Operation>
  auto withDescriptors(Operation operation) {
    support::Output output;
    const long before = openDescriptors();
    const auto result = resultOf(operation, output);
    leftOpen = openDescriptors() - before;
    err = output.err;
    return result;
  }

 protected:
  void SetUp() override {
    // The first capture of the output may open descriptors, so it happens before the descriptors
    // are counted.
    outputOf([] {});
  }

  /// Sets the results of the next reads or writes of the file: a count limits the transfer, a
  /// negative number is an error. Later transfers are complete.
  void script(std::deque<ssize_t> results) {
    system.fileTransfer = [results = std::move(results)](std::size_t size) mutable {
      if (results.empty()) {
        return static_cast<ssize_t>(size);
      }
      const ssize_t result = results.front();
      results.pop_front();
      return result;
    };
  }

  int load(const std::string& path) {
    buffer.assign(BufferSize, '#');
    return withDescriptors(
        [&] { return CertMgr::loadFromFile(buffer.data(), BufferSize, path.c_str()); });
  }

  bool save(const std::string& path, std::string content) {
    return withDescriptors([&] {
      return CertMgr::saveToFile(reinterpret_cast<unsigned char*>(content.data()),
                                 static_cast<unsigned int>(content.size()), path.c_str());
    });
  }

  std::string loaded(std::size_t size) const {
    return {buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(size)};
  }

  std::string loading(const std::string& path, std::uint64_t size) const {
    return "D [ZVK] Loading file " + path + ", " + std::to_string(size) + " bytes\n";
  }

  virtual_system::System system;
  TemporaryFolder folder;
  Bytes buffer;
  std::string err;
  long leftOpen = 0;
};

using LoadFromFile = HostFile;
using SaveToFile = HostFile;

// --- Reading ------------------------------------------------------------------------------------

TEST_F(LoadFromFile, ReadsTheWholeFileAndLogsItsSize) {
  const std::string path = folder.write("f", "abc");
  EXPECT_EQ(load(path), 3);
  EXPECT_EQ(loaded(4), "abc#");
  EXPECT_EQ(err, loading(path, 3));
  EXPECT_EQ(leftOpen, 0);
}

TEST_F(LoadFromFile, ReturnsZeroForAnEmptyFile) {
  const std::string path = folder.write("f", "");
  EXPECT_EQ(load(path), 0);
  EXPECT_EQ(err, loading(path, 0));
  EXPECT_EQ(leftOpen, 0);
}

TEST_F(LoadFromFile, ReadsAFileAsLargeAsTheBuffer) {
  const std::string content(BufferSize, 'x');
  EXPECT_EQ(load(folder.write("f", content)), 16384);
  EXPECT_EQ(loaded(BufferSize), content);
  EXPECT_EQ(leftOpen, 0);
}

TEST_F(LoadFromFile, RejectsALargerFileAndLeavesItOpen) {
  const std::string path = folder.write("f", std::string(BufferSize + 1, 'x'));
  EXPECT_EQ(load(path), -1);
  EXPECT_EQ(loaded(1), "#");
  EXPECT_EQ(err, loading(path, BufferSize + 1));
  EXPECT_EQ(leftOpen, 1);
}

// A file with a hole, so that it takes no space. Its size does not fit in 32 bits.
TEST_F(LoadFromFile, RejectsAFileOfFourGibibytes) {
  constexpr std::uint64_t size = (std::uint64_t{1} << 32U) + 10;
  const std::string path = folder.write("f", "abc");
  std::filesystem::resize_file(path, size);
  EXPECT_EQ(load(path), -1);
  EXPECT_EQ(loaded(1), "#");
  EXPECT_EQ(err, loading(path, size));
  EXPECT_EQ(leftOpen, 1);
}

TEST_F(LoadFromFile, FailsSilentlyIfTheFileCannotBeOpened) {
  std::filesystem::create_symlink("nowhere", folder.path("dangling"));
  for (const char* name : {"absent", "dangling", "absent/file"}) {
    EXPECT_EQ(load(folder.path(name)), -1) << name;
    EXPECT_EQ(err, "") << name;
    EXPECT_EQ(leftOpen, 0) << name;
  }
  EXPECT_EQ(CertMgr::loadFromFile(buffer.data(), BufferSize, nullptr), -1);
}

TEST_F(LoadFromFile, FailsSilentlyWithoutPermission) {
  const std::string path = folder.write("f", "abc");
  system.device(path).openErrno = EACCES;
  EXPECT_EQ(load(path), -1);
  EXPECT_EQ(err, "");
}

TEST_F(LoadFromFile, ReportsThatADirectoryCannotBeRead) {
  const std::string path = folder.path("");
  const std::size_t size = [&] {
    struct stat status = {};
    ::stat(path.c_str(), &status);
    return static_cast<std::size_t>(status.st_size);
  }();
  ASSERT_GT(size, 0U);
  EXPECT_EQ(load(path), -1);
  EXPECT_EQ(err, loading(path, size) + "D [ZVK] loadFromFile error (1): " + std::to_string(EISDIR) +
                     ", bytes=0, size=" + std::to_string(size) + "\n");
  EXPECT_EQ(leftOpen, 0);
}

TEST_F(LoadFromFile, DoesNotWaitForTheWriterOfANamedPipe) {
  const std::string path = folder.path("pipe");
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  EXPECT_EQ(load(path), 0);
  EXPECT_EQ(leftOpen, 0);
}

TEST_F(LoadFromFile, ContinuesAfterAShortRead) {
  const std::string path = folder.write("f", "abcdef");
  script({2, 1});
  EXPECT_EQ(load(path), 6);
  EXPECT_EQ(loaded(7), "abcdef#");
  EXPECT_EQ(err, loading(path, 6));
}

TEST_F(LoadFromFile, ContinuesAfterAFirstReadThatFails) {
  script({-EINTR});
  EXPECT_EQ(load(folder.write("f", "abc")), 3);
}

TEST_F(LoadFromFile, EndsIfTheFirstReadReportsEagain) {
  const std::string path = folder.write("f", "abc");
  script({-EAGAIN});
  EXPECT_EQ(load(path), -1);
  EXPECT_EQ(err, loading(path, 3) + "D [ZVK] loadFromFile error (2): 11, bytes=0, size=3\n");
  EXPECT_EQ(leftOpen, 0);
}

TEST_F(LoadFromFile, RetriesTheRestAfterEagain) {
  script({1, -EAGAIN, 1, -EAGAIN});
  EXPECT_EQ(load(folder.write("f", "abc")), 3);
  EXPECT_EQ(loaded(4), "abc#");
}

TEST_F(LoadFromFile, RetriesTheRestForFiveSeconds) {
  const std::string path = folder.write("f", "abc");
  bool isFirst = true;
  system.fileTransfer = [&isFirst](std::size_t /*size*/) -> ssize_t {
    return std::exchange(isFirst, false) ? 1 : -EAGAIN;
  };
  EXPECT_EQ(load(path), -1);
  EXPECT_EQ(err, loading(path, 3));
  EXPECT_GE(system.now(), 4 * virtual_system::Second);
  EXPECT_LE(system.now(), 6 * virtual_system::Second);
  EXPECT_EQ(leftOpen, 0);
}

TEST_F(LoadFromFile, RestartsTheFiveSecondsWithEachByte) {
  auto next = system.now();
  system.fileTransfer = [&](std::size_t /*size*/) -> ssize_t {
    if (system.now() < next) {
      return -EAGAIN;
    }
    next = system.now() + 3 * virtual_system::Second;
    return 1;
  };
  EXPECT_EQ(load(folder.write("f", "abcd")), 4);
  EXPECT_EQ(loaded(5), "abcd#");
  EXPECT_GE(system.now(), 9 * virtual_system::Second);
}

TEST_F(LoadFromFile, CountsTheTimeOfTheReadsThemselves) {
  bool isFirst = true;
  system.fileTransfer = [&](std::size_t /*size*/) -> ssize_t {
    system.advance(virtual_system::Second);
    return std::exchange(isFirst, false) ? 1 : -EAGAIN;
  };
  EXPECT_EQ(load(folder.write("f", "abc")), -1);
  EXPECT_LE(system.now(), 7 * virtual_system::Second);
}

TEST_F(LoadFromFile, IgnoresAnEarlierError) {
  const std::string path = folder.write("f", "abcdef");
  script({2});
  buffer.assign(BufferSize, '#');
  outputOf([&] {
    errno = EAGAIN;
    EXPECT_EQ(CertMgr::loadFromFile(buffer.data(), BufferSize, path.c_str()), 6);
  });
  EXPECT_EQ(loaded(7), "abcdef#");
}

TEST_F(LoadFromFile, EndsIfTheRestCannotBeRead) {
  const std::string path = folder.write("f", "abcdef");
  script({2, 1, -EIO});
  EXPECT_EQ(load(path), -1);
  EXPECT_EQ(err, loading(path, 6) + "D [ZVK] loadFromFile error (1): 5, bytes=3, size=6\n");
  EXPECT_EQ(leftOpen, 0);
}

TEST_F(LoadFromFile, EndsIfTheFileBecomesShorter) {
  const std::string path = folder.write("f", "abc");
  script({2, 0});
  EXPECT_EQ(load(path), -1);
  EXPECT_EQ(err, loading(path, 3));
  EXPECT_EQ(leftOpen, 0);
}

// --- Writing ------------------------------------------------------------------------------------

TEST_F(SaveToFile, CreatesAFile) {
  const mode_t before = ::umask(0);
  const std::string path = folder.path("f");
  EXPECT_TRUE(save(path, std::string("a\0b", 3)));
  ::umask(before);
  EXPECT_EQ(support::fileContent(path), std::string("a\0b", 3));
  EXPECT_EQ(err, "");
  EXPECT_EQ(leftOpen, 0);
  struct stat status = {};
  ASSERT_EQ(::stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0644U);
}

TEST_F(SaveToFile, ReplacesTheContentOfAFile) {
  const std::string path = folder.write("f", "something longer");
  EXPECT_TRUE(save(path, "new"));
  EXPECT_EQ(support::fileContent(path), "new");
  EXPECT_TRUE(save(path, ""));
  EXPECT_EQ(support::fileContent(path), "");
}

TEST_F(SaveToFile, FailsSilentlyIfTheFileCannotBeOpened) {
  for (const std::string& path : {folder.path(""), folder.path("absent/f"), std::string()}) {
    EXPECT_FALSE(save(path, "x")) << path;
    EXPECT_EQ(err, "") << path;
    EXPECT_EQ(leftOpen, 0) << path;
  }
  EXPECT_FALSE(CertMgr::saveToFile(buffer.data(), 0, nullptr));
}

TEST_F(SaveToFile, DoesNotWaitForTheReaderOfANamedPipe) {
  const std::string path = folder.path("pipe");
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  EXPECT_FALSE(save(path, "abc"));
  EXPECT_EQ(err, "");
  EXPECT_EQ(leftOpen, 0);
}

TEST_F(SaveToFile, FailsSilentlyWithoutPermission) {
  const std::string path = folder.path("f");
  system.device(path).openErrno = EACCES;
  EXPECT_FALSE(save(path, "abc"));
  EXPECT_EQ(err, "");
}

TEST_F(SaveToFile, ReportsAFullDisk) {
  EXPECT_FALSE(save("/dev/full", "abc"));
  EXPECT_EQ(err, "D [ZVK] saveToFile error (1): 28, bytes=0\n\n");
  EXPECT_EQ(leftOpen, 0);
}

TEST_F(SaveToFile, ContinuesAfterAShortWrite) {
  const std::string path = folder.path("f");
  script({2, 1});
  EXPECT_TRUE(save(path, "abcdef"));
  EXPECT_EQ(support::fileContent(path), "abcdef");
  EXPECT_EQ(err, "");
}

TEST_F(SaveToFile, EndsIfTheFirstWriteReportsEagain) {
  script({-EAGAIN});
  EXPECT_FALSE(save(folder.path("f"), "abc"));
  EXPECT_EQ(err, "D [ZVK] saveToFile error (2): 11, bytes=0\n\n");
  EXPECT_EQ(leftOpen, 0);
}

TEST_F(SaveToFile, RetriesTheRestAfterEagain) {
  const std::string path = folder.path("f");
  script({1, -EAGAIN, 1, -EAGAIN});
  EXPECT_TRUE(save(path, "abc"));
  EXPECT_EQ(support::fileContent(path), "abc");
}

TEST_F(SaveToFile, FailsIfTheFileAcceptsNoMoreBytes) {
  const std::string path = folder.path("f");
  script({2, 0});
  EXPECT_FALSE(save(path, "abc"));
  EXPECT_EQ(support::fileContent(path), "ab");
  EXPECT_EQ(err, "");
  EXPECT_EQ(leftOpen, 0);
}

TEST_F(SaveToFile, EndsIfTheRestCannotBeWritten) {
  script({2, 1, -ENOSPC});
  EXPECT_FALSE(save(folder.path("f"), "abcdef"));
  EXPECT_EQ(err, "D [ZVK] saveToFile error (1): 28, bytes=3\n\n");
}

}  // namespace
