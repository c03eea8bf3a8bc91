#include "emulator/radio/lease_pipe.h"

#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <string_view>
#include <unistd.h>

#include "emulator/radio/private_folder.h"
#include "testing/files.h"
#include "util/unique_fd.h"

namespace {

using emulator::LeaseEvent;
using emulator::LeasePipe;
using emulator::parseLease;
using emulator::PrivateFolder;
using std::filesystem::perms;

perms modeOf(const std::string& path) {
  return std::filesystem::status(path).permissions();
}

TEST(ParseLease, ReadsAnAddress) {
  const auto event = parseLease("renew 10.0.0.5");
  ASSERT_TRUE(event);
  EXPECT_EQ(event->kind, LeaseEvent::Kind::Bound);
  EXPECT_EQ(event->address, (std::array<npa::Byte, 4>{10, 0, 0, 5}));
}

TEST(ParseLease, IgnoresInvalidLines) {
  EXPECT_FALSE(parseLease(""));
  EXPECT_FALSE(parseLease("bound"));
  EXPECT_FALSE(parseLease("bound 10.0.0"));
  EXPECT_FALSE(parseLease("other 10.0.0.5"));
}

TEST(LeasePipe, ReturnsTheEventsInOrder) {
  const PrivateFolder folder;
  LeasePipe pipe(folder);
  EXPECT_FALSE(pipe.next());
  const util::UniqueFd writer(::open(folder.path("lease").c_str(), O_WRONLY | O_NONBLOCK));
  constexpr std::string_view lines = "deconfig \nother \nleasefail \nbound 10.0";
  ASSERT_EQ(::write(writer.get(), lines.data(), lines.size()), static_cast<ssize_t>(lines.size()));
  EXPECT_EQ(pipe.next()->kind, LeaseEvent::Kind::Lost);
  EXPECT_EQ(pipe.next()->kind, LeaseEvent::Kind::Failed);
  EXPECT_FALSE(pipe.next());
  ASSERT_EQ(::write(writer.get(), ".0.5\n", 5), 5);
  EXPECT_EQ(pipe.next()->kind, LeaseEvent::Kind::Bound);
}

TEST(PrivateFolder, IsOnlyForItsOwnerAndGoesWithItsFiles) {
  std::string path;
  {
    const PrivateFolder folder;
    path = folder.path();
    EXPECT_EQ(modeOf(path), perms::owner_all);
    folder.write("key", "first, and longer");
    folder.write("key", "second");
    EXPECT_EQ(support::fileContent(folder.path("key")), "second");
    EXPECT_EQ(modeOf(folder.path("key")), perms::owner_read | perms::owner_write);
    folder.write("other", "");
    folder.remove("other");
    folder.remove("other");
    EXPECT_FALSE(std::filesystem::exists(folder.path("other")));
  }
  EXPECT_FALSE(std::filesystem::exists(path));
}

}  // namespace
