#include "util/unique_fd.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>
#include <utility>

namespace {

using util::UniqueFd;

bool isOpen(int fd) {
  return ::fcntl(fd, F_GETFD) != -1;
}

int opened() {
  return ::open("/dev/null", O_RDONLY | O_CLOEXEC);
}

TEST(UniqueFd, ClosesItsDescriptor) {
  const int fd = opened();
  {
    const UniqueFd owner(fd);
    EXPECT_TRUE(owner);
    EXPECT_EQ(owner.get(), fd);
  }
  EXPECT_FALSE(isOpen(fd));
  EXPECT_FALSE(UniqueFd());
}

TEST(UniqueFd, ReleasesTheDescriptorOpen) {
  UniqueFd owner(opened());
  const int fd = owner.release();
  EXPECT_FALSE(owner);
  EXPECT_TRUE(isOpen(fd));
  ::close(fd);
}

TEST(UniqueFd, ClosesTheOldDescriptorInAnAssignment) {
  const int first = opened();
  const int second = opened();
  UniqueFd owner(first);
  UniqueFd other(second);
  owner = std::move(other);
  EXPECT_EQ(owner.get(), second);
  EXPECT_FALSE(isOpen(first));
  EXPECT_TRUE(isOpen(second));
}

TEST(UniqueFd, OwnsDescriptorZero) {
  // Without a standard input, the first file that a program opens gets descriptor 0.
  const UniqueFd saved(::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3));
  ASSERT_TRUE(saved);
  ::close(STDIN_FILENO);
  {
    const UniqueFd owner(opened());
    EXPECT_EQ(owner.get(), 0);
    EXPECT_TRUE(owner);
  }
  EXPECT_FALSE(isOpen(0));
  ::dup2(saved.get(), STDIN_FILENO);
}

}  // namespace
