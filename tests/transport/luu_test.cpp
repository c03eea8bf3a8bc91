#include "transport/luu.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/fake_libusb.h"

namespace {

using Numbers = std::vector<long>;
using Pointers = std::vector<const void*>;

/// The wrappers over a device that is open.
class Luu : public testing::Test {
 protected:
  void TearDown() override { luu_usb_close(handle); }

  void expectCall(const std::string& call, const Numbers& numbers, const Pointers& pointers) const {
    EXPECT_EQ(library.calls.back(), call);
    EXPECT_EQ(library.lastNumbers, numbers);
    EXPECT_EQ(library.lastPointers, pointers);
  }

  fake_libusb::Library library;
  struct usb_device* device = library.addPrinter("002", "005");
  usb_dev_handle* handle = luu_usb_open(device);
  char bytes[4] = {};
};

}  // namespace

TEST(LuuInitialize, GivesZeroWithoutLibusb) {
  EXPECT_EQ(luu_initialize(), 0);
}

TEST_F(Luu, Opens) {
  expectCall("usb_open()", {}, {device});
  EXPECT_NE(handle, nullptr);
}

TEST_F(Luu, GivesNoHandleWhenLibusbGivesNone) {
  library.opens = false;
  EXPECT_EQ(luu_usb_open(device), nullptr);
}

TEST_F(Luu, Initialises) {
  luu_usb_init();
  expectCall("usb_init()", {}, {});
}

TEST_F(Luu, FindsBusses) {
  library.idleResult = 51;
  EXPECT_EQ(luu_usb_find_busses(), 51);
  expectCall("usb_find_busses()", {}, {});
}

TEST_F(Luu, FindsDevices) {
  library.idleResult = 52;
  EXPECT_EQ(luu_usb_find_devices(), 52);
  expectCall("usb_find_devices()", {}, {});
}

TEST_F(Luu, GivesTheFirstBus) {
  EXPECT_EQ(luu_usb_get_busses(), library.firstBus());
  expectCall("usb_get_busses()", {}, {});
}

TEST_F(Luu, SetsAConfiguration) {
  library.setConfiguration = -16;
  EXPECT_EQ(luu_usb_set_configuration(handle, 3), -16);
  expectCall("usb_set_configuration(3)", {3}, {handle});
}

TEST_F(Luu, ClaimsAnInterface) {
  library.claim = [](int) {
    return -1;
  };
  EXPECT_EQ(luu_usb_claim_interface(handle, 2), -1);
  expectCall("usb_claim_interface(2)", {2}, {handle});
}

TEST_F(Luu, ReleasesAnInterface) {
  library.idleResult = -19;
  EXPECT_EQ(luu_usb_release_interface(handle, 2), -19);
  expectCall("usb_release_interface(2)", {2}, {handle});
}

TEST_F(Luu, Closes) {
  usb_dev_handle* const second = luu_usb_open(device);
  library.idleResult = 53;
  EXPECT_EQ(luu_usb_close(second), 53);
  expectCall("usb_close()", {}, {second});
}

TEST_F(Luu, WritesInBulk) {
  library.bulkWrite = [](const fake_libusb::Bytes&) {
    return -110;
  };
  EXPECT_EQ(luu_usb_bulk_write(handle, 0x02, bytes, 4, 5000), -110);
  expectCall("usb_bulk_write(2)", {2, 4, 5000}, {handle, bytes});
}

TEST_F(Luu, ReadsInBulk) {
  library.bulkRead = [](char*, int) {
    return -32;
  };
  EXPECT_EQ(luu_usb_bulk_read(handle, 0x81, bytes, 4, 1000), -32);
  expectCall("usb_bulk_read(129)", {129, 4, 1000}, {handle, bytes});
}

TEST_F(Luu, ClearsAHalt) {
  library.idleResult = -1;
  EXPECT_EQ(luu_usb_clear_halt(handle, 0x81), -1);
  expectCall("usb_clear_halt(129)", {129}, {handle});
}

TEST_F(Luu, SetsAnAlternateInterface) {
  library.idleResult = 41;
  EXPECT_EQ(luu_usb_set_altinterface(handle, 1), 41);
  expectCall("usb_set_altinterface(1)", {1}, {handle});
}

TEST_F(Luu, SendsAControlMessage) {
  library.idleResult = 42;
  EXPECT_EQ(luu_usb_control_msg(handle, 1, 2, 3, 4, bytes, 5, 6), 42);
  expectCall("usb_control_msg(1)", {1, 2, 3, 4, 5, 6}, {handle, bytes});
}

TEST_F(Luu, GivesTheErrorText) {
  EXPECT_STREQ(luu_usb_strerror(), "no error");
  expectCall("usb_strerror()", {}, {});
}

TEST_F(Luu, GetsAString) {
  library.idleResult = 43;
  EXPECT_EQ(luu_usb_get_string_simple(handle, 7, bytes, sizeof bytes), 43);
  expectCall("usb_get_string_simple(7)", {7, 4}, {handle, bytes});
}
