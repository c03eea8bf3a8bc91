#include "session/device_access.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <grp.h>
#include <gtest/gtest.h>
#include <numeric>
#include <pwd.h>
#include <string>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "testing/bytes.h"
#include "testing/fake_libusb.h"
#include "testing/open_descriptors.h"
#include "testing/rows.h"
#include "testing/sysfs_tree.h"
#include "testing/virtual_system.h"

namespace {

using session::findUser;
using session::OpenFailure;
using session::Printer;
using session::tryOpen;
using support::Bytes;
using Kind = session::OpenFailure::Kind;

Printer printerAt(const std::string& device, const std::string& node) {
  Printer printer;
  printer.device = device;
  printer.node = node;
  return printer;
}

class Access : public testing::Test {
 protected:
  std::optional<OpenFailure> open(const Printer& printer) const {
    return tryOpen(printer, tree.machine());
  }

  support::SysfsTree tree;
  virtual_system::System system;
};

struct ErrorRow : support::Row {
  int error;
  Kind kind;
};

class AccessError : public Access, public testing::WithParamInterface<ErrorRow> {};

TEST_P(AccessError, BecomesAKindOfFailure) {
  system.device("/dev/usb/lp0").openErrno = GetParam().error;
  const auto failure = open(printerAt("/dev/usb/lp0", "/dev/usb/lp0"));
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->kind, GetParam().kind);
  EXPECT_EQ(failure->error, GetParam().error);
  EXPECT_EQ(failure->node, "/dev/usb/lp0");
}

INSTANTIATE_TEST_SUITE_P(Errors, AccessError,
                         testing::Values(ErrorRow{{"Enoent"}, ENOENT, Kind::NoSuchPrinter},
                                         ErrorRow{{"Enodev"}, ENODEV, Kind::NoSuchPrinter},
                                         ErrorRow{{"Enxio"}, ENXIO, Kind::NoSuchPrinter},
                                         ErrorRow{{"Eacces"}, EACCES, Kind::NoPermission},
                                         ErrorRow{{"Eperm"}, EPERM, Kind::NoPermission},
                                         ErrorRow{{"Ebusy"}, EBUSY, Kind::Busy},
                                         ErrorRow{{"Eio"}, EIO, Kind::Failed}),
                         support::rowName);

// --- usblp --------------------------------------------------------------------------------------

/// A fixture with a printer on usblp.
class UsblpAccess : public Access {
 protected:
  bool opens() const { return !open(printerAt("/dev/usb/lp0", "/dev/usb/lp0")); }

  std::size_t bytesRead() const {
    return std::accumulate(device.readSizes.begin(), device.readSizes.end(), std::size_t{0});
  }

  virtual_system::Device& device = system.device("/dev/usb/lp0");
};

TEST_F(UsblpAccess, OpensTheNodeOfThePrinter) {
  const std::string node = tree.node("usb/lp0");
  EXPECT_EQ(open(printerAt("/dev/usb/lp0", node))->kind, Kind::NoSuchPrinter);
  system.device(node);
  EXPECT_FALSE(open(printerAt("/dev/usb/lp0", node)));
  EXPECT_EQ(device.opens, 0);
}

TEST_F(UsblpAccess, OpensWithoutWaitingAndCloses) {
  EXPECT_TRUE(opens());
  EXPECT_EQ(device.openFlags, O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  EXPECT_EQ(device.opens, 1);
  EXPECT_EQ(device.closes, 1);
}

TEST_F(UsblpAccess, WaitsATenthOfASecondForOldBytes) {
  EXPECT_TRUE(opens());
  EXPECT_EQ(system.now(), 100'000);
  EXPECT_EQ(device.reads, 0);
}

TEST_F(UsblpAccess, DiscardsOldBytes) {
  device.reply(Bytes(1024, 1));
  device.reply(Bytes(1024, 2));
  device.reply(Bytes(952, 3), 50'000);
  EXPECT_TRUE(opens());
  EXPECT_TRUE(device.arrivals.empty());
  EXPECT_EQ(device.reads, 3);
}

TEST_F(UsblpAccess, WaitsATenthOfASecondAltogether) {
  device.reply(Bytes(8, 1), 60'000);
  device.reply(Bytes(8, 2), 90'000);
  device.reply(Bytes(8, 3), 120'000);
  EXPECT_TRUE(opens());
  EXPECT_EQ(system.now(), 100'000);
  EXPECT_EQ(device.arrivals.size(), 1U);
}

TEST_F(UsblpAccess, DiscardsAtMost64Kibibytes) {
  for (int i = 0; i < 100; ++i) {
    device.reply(Bytes(1000, 1));
  }
  EXPECT_TRUE(opens());
  std::size_t left = 0;
  for (const auto& arrival : device.arrivals) {
    left += arrival.bytes.size();
  }
  EXPECT_EQ(100'000 - left, 0x10000U);
}

TEST_F(UsblpAccess, StopsAtTheFirstReadWithoutBytes) {
  for (const int error : {EAGAIN, EIO, ENODEV}) {
    device.alwaysReadable = true;
    device.reads = 0;
    device.readResult = [error] {
      return -error;
    };
    EXPECT_TRUE(opens());
    EXPECT_EQ(device.reads, 1);
  }
}

TEST_F(UsblpAccess, StopsAtAnEmptyTransfer) {
  device.reply({});
  device.reply(Bytes(8, 1));
  EXPECT_TRUE(opens());
  EXPECT_EQ(device.reads, 1);
}

TEST_F(UsblpAccess, StopsWhenTheWaitFails) {
  device.readSelectResult = [] {
    return -1;
  };
  EXPECT_TRUE(opens());
  EXPECT_EQ(device.reads, 0);
}

TEST_F(UsblpAccess, ReadsWithoutWaitingOnADescriptorThatSelectCannotTake) {
  device.descriptor = 1024;
  device.reply(Bytes(8, 1));
  EXPECT_TRUE(opens());
  EXPECT_EQ(system.selects, 0);
  EXPECT_TRUE(device.arrivals.empty());
}

// --- libusb -------------------------------------------------------------------------------------

/// A fixture with a printer on libusb.
class LibUsbAccess : public Access {
 protected:
  LibUsbAccess() { library.addPrinter("001", "005"); }

  std::optional<OpenFailure> open() const { return Access::open(printerAt("1:5", node)); }

  fake_libusb::Library library;
  const std::string node = tree.node("bus/usb/001/005");
  virtual_system::Device& device = system.device(node);
};

TEST_F(LibUsbAccess, OpensTheNodeForWritingFirst) {
  library.onOpen = [this](const struct usb_device*) {
    EXPECT_FALSE(device.isOpen);
  };
  EXPECT_FALSE(open());
  EXPECT_EQ(device.openFlags, O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  EXPECT_EQ(device.reads, 0);
  EXPECT_EQ(library.count("usb_claim_interface(0)"), 1);
  EXPECT_EQ(library.openHandles, 0);
}

TEST_F(LibUsbAccess, DoesNotAskLibUsbWithoutTheNode) {
  for (const auto& [error, kind] :
       {std::pair(ENOENT, Kind::NoSuchPrinter), std::pair(EACCES, Kind::NoPermission)}) {
    device.openErrno = error;
    const auto failure = open();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->kind, kind);
    EXPECT_EQ(failure->error, error);
    EXPECT_EQ(library.calls, std::vector<std::string>());
  }
}

TEST_F(LibUsbAccess, IsBusyIfTheInterfaceCannotBeClaimed) {
  library.claim = [](int) {
    return -EBUSY;
  };
  tree.addProcess("321", "scan", node);
  const auto failure = open();
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->kind, Kind::Busy);
  EXPECT_EQ(failure->error, EBUSY);
  EXPECT_EQ(failure->node, node);
  ASSERT_TRUE(failure->user);
  EXPECT_EQ(failure->user->pid, 321);
}

TEST_F(LibUsbAccess, TakesBusAndDeviceNumberFromTheAddress) {
  library.addPrinter("002", "007");
  EXPECT_TRUE(Access::open(printerAt("5:1", node)));
  EXPECT_TRUE(Access::open(printerAt("1:7", node)));
  EXPECT_FALSE(Access::open(printerAt("2:7", node)));
}

TEST_F(LibUsbAccess, DiscardsOldBytes) {
  library.incoming = Bytes(1000, 1);
  EXPECT_FALSE(open());
  EXPECT_TRUE(library.incoming.empty());
  EXPECT_EQ(library.readTimeouts, std::vector<int>(17, 100));
  EXPECT_EQ(system.now(), 100'000);
}

TEST_F(LibUsbAccess, DiscardsAtMost64Kibibytes) {
  library.incoming = Bytes(100'000, 1);
  EXPECT_FALSE(open());
  // The last packet that is read is the one that would fill the connector's ring buffer.
  EXPECT_EQ(library.incoming.size(), 100'000U - 0x10000U);
}

TEST_F(LibUsbAccess, GivesUpOnAPrinterThatNeverStops) {
  library.bulkRead = [this](const char*, int) {
    system.advance(90'000);
    return 1;
  };
  EXPECT_FALSE(open());
  EXPECT_GE(system.now(), 1'000'000);
  EXPECT_LT(system.now(), 2'200'000);
}

TEST_F(LibUsbAccess, LeavesNoDescriptorOpen) {
  const std::string file = tree.addNode("bus/usb/001/006");
  library.addPrinter("001", "006");
  const long before = support::openDescriptors();
  EXPECT_FALSE(Access::open(printerAt("1:6", file)));
  EXPECT_EQ(support::openDescriptors(), before);
}

// --- What the user needs to know ----------------------------------------------------------------

/// A fixture with a device file that exists but cannot be opened.
class Refusal : public Access {
 protected:
  OpenFailure failure(int error) {
    system.device(node).openErrno = error;
    return open(printerAt("/dev/usb/lp0", node)).value();
  }

  const std::string node = tree.addNode("usb/lp0");
};

TEST_F(Refusal, NamesOwnerAndGroupOfTheNode) {
  struct stat status {};
  ASSERT_EQ(::stat(node.c_str(), &status), 0);
  const passwd* const owner = ::getpwuid(status.st_uid);
  const group* const group = ::getgrgid(status.st_gid);
  if (owner == nullptr || group == nullptr) {
    GTEST_SKIP() << "this user or its group has no name";
  }
  const OpenFailure refused = failure(EACCES);
  EXPECT_EQ(refused.owner, owner->pw_name);
  EXPECT_EQ(refused.group, group->gr_name);
  EXPECT_FALSE(refused.user);
}

TEST_F(Refusal, NumbersAnOwnerAndAGroupWithoutName) {
  if (::chown(node.c_str(), 54321, 54322) != 0) {
    GTEST_SKIP() << "only root can give a file away";
  }
  const OpenFailure refused = failure(EACCES);
  EXPECT_EQ(refused.owner, "54321");
  EXPECT_EQ(refused.group, "54322");
}

TEST_F(Refusal, ReportsWhetherTheGroupMayReadAndWrite) {
  for (const auto& [mode, expected] : {std::pair(0660U, true), std::pair(0640U, false),
                                       std::pair(0620U, false), std::pair(0606U, false)}) {
    ASSERT_EQ(::chmod(node.c_str(), mode), 0);
    EXPECT_EQ(failure(EACCES).groupMayUse, expected) << mode;
  }
}

TEST_F(Refusal, HasNoOwnerWithoutANode) {
  std::filesystem::remove(node);
  const OpenFailure refused = failure(ENOENT);
  EXPECT_EQ(refused.owner, "");
  EXPECT_EQ(refused.group, "");
  EXPECT_FALSE(refused.groupMayUse);
}

TEST_F(Refusal, NamesTheProcessThatUsesABusyDevice) {
  tree.addProcess("321", "spooler", node);
  const OpenFailure busy = failure(EBUSY);
  ASSERT_TRUE(busy.user);
  EXPECT_EQ(busy.user->pid, 321);
  EXPECT_EQ(busy.user->name, "spooler");
  EXPECT_FALSE(failure(EACCES).user);
}

// --- The process --------------------------------------------------------------------------------

class User : public testing::Test {
 protected:
  std::optional<session::Process> user() const { return findUser(node, tree.machine()); }

  support::SysfsTree tree;
  const std::string node = tree.addNode("usb/lp0");
};

TEST_F(User, IsNobodyWithoutProcesses) {
  EXPECT_FALSE(user());
  std::filesystem::remove_all(tree.machine().processes);
  EXPECT_FALSE(user());
}

TEST_F(User, IsNobodyIfOthersUseOtherFiles) {
  tree.addProcess("321", "spooler", node + "1");
  tree.addProcess("322", "spooler", tree.node("usb"));
  EXPECT_FALSE(user());
}

TEST_F(User, HasTheNodeAmongItsFiles) {
  tree.addProcess("12", "other", tree.node("usb/lp1"));
  tree.addProcess("321", "spooler", node);
  ASSERT_TRUE(user());
  EXPECT_EQ(user()->pid, 321);
  EXPECT_EQ(user()->name, "spooler");
}

TEST_F(User, IsTheOldestOfSeveral) {
  for (const char* id : {"1000", "9", "321"}) {
    tree.addProcess(id, "spooler", node);
  }
  ASSERT_TRUE(user());
  EXPECT_EQ(user()->pid, 9);
}

TEST_F(User, IsNotThisProcess) {
  tree.addProcess(std::to_string(::getpid()), "zvkwifi", node);
  EXPECT_FALSE(user());
}

TEST_F(User, HasANumber) {
  for (const char* id : {"self", "-5", "12a", "99999999999"}) {
    tree.addProcess(id, "spooler", node);
  }
  EXPECT_FALSE(user());
}

TEST_F(User, IsSkippedIfItHasEnded) {
  tree.addProcess("5", std::nullopt, node);
  std::filesystem::create_directory(tree.machine().processes + "/6");
  EXPECT_FALSE(user());
  tree.addProcess("321", "spooler", node);
  ASSERT_TRUE(user());
  EXPECT_EQ(user()->pid, 321);
}

TEST_F(User, IsFoundThroughALinkToTheNode) {
  const std::string link = tree.node("usb/lp16");
  std::filesystem::create_symlink(node, link);
  tree.addProcess("321", "spooler", std::filesystem::canonical(node).string());
  EXPECT_TRUE(findUser(link, tree.machine()));
}

TEST_F(User, HasANameWithoutControlBytes) {
  tree.addProcess("321", "spo\x1B\noler", node);
  ASSERT_TRUE(user());
  EXPECT_EQ(user()->name, "spooler");
}

TEST(RealUser, IsFoundInProc) {
  const support::TemporaryFolder folder;
  const std::string file = folder.write("node", "");
  EXPECT_FALSE(findUser(file));
  int ready[2];
  ASSERT_EQ(::pipe(ready), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    ::prctl(PR_SET_NAME, "spooler");
    ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    ::close(ready[0]);
    ::write(ready[1], "x", 1);
    ::pause();
    ::_exit(0);
  }
  ::close(ready[1]);
  char byte = 0;
  ASSERT_EQ(::read(ready[0], &byte, 1), 1);
  const auto found = findUser(file);
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  ::close(ready[0]);
  ASSERT_TRUE(found);
  EXPECT_EQ(found->pid, child);
  EXPECT_EQ(found->name, "spooler");
}

}  // namespace
