#include "transport/luu.h"

#include <gtest/gtest.h>
#include <vector>

#include "testing/fake_libusb.h"

namespace {

/// A fixture for tests of the wrappers, with an open device. Every libusb call returns `Error`.
class Luu : public testing::Test {
 protected:
  static constexpr int Error = -19;

  Luu() {
    library.unusedResult = Error;
    library.setConfiguration = Error;
    library.claim = [](int) {
      return Error;
    };
    library.bulkWrite = [](const fake_libusb::Bytes&) {
      return Error;
    };
    library.bulkRead = [](char*, int) {
      return Error;
    };
  }
  void TearDown() override { luu_usb_close(handle); }

  /// Expects that the last libusb call was `call` with these arguments: the numbers in order and
  /// the pointers in order.
  void expectCall(const char* call, const std::vector<long>& numbers,
                  const std::vector<const void*>& pointers) const {
    EXPECT_EQ(library.calls.back(), call);
    EXPECT_EQ(library.lastNumbers, numbers);
    EXPECT_EQ(library.lastPointers, pointers);
  }
  /// Expects the last libusb call as above, and that the wrapper returned the call's result.
  void expectCall(int result, const char* call, const std::vector<long>& numbers,
                  const std::vector<const void*>& pointers) const {
    EXPECT_EQ(result, Error) << call;
    expectCall(call, numbers, pointers);
  }

  fake_libusb::Library library;
  struct usb_device* device = library.addPrinter("002", "005");
  usb_dev_handle* handle = luu_usb_open(device);
  char data[4] = {};
};

TEST_F(Luu, PassesArgumentsOnAndReturnsTheResult) {
  usb_dev_handle* const h = handle;
  expectCall(luu_usb_find_busses(), "usb_find_busses()", {}, {});
  expectCall(luu_usb_find_devices(), "usb_find_devices()", {}, {});
  expectCall(luu_usb_set_configuration(h, 3), "usb_set_configuration(3)", {3}, {h});
  expectCall(luu_usb_claim_interface(h, 2), "usb_claim_interface(2)", {2}, {h});
  expectCall(luu_usb_release_interface(h, 2), "usb_release_interface(2)", {2}, {h});
  expectCall(luu_usb_bulk_write(h, 2, data, 4, 5), "usb_bulk_write(2)", {2, 4, 5}, {h, data});
  expectCall(luu_usb_bulk_read(h, 129, data, 4, 5), "usb_bulk_read(129)", {129, 4, 5}, {h, data});
  expectCall(luu_usb_clear_halt(h, 129), "usb_clear_halt(129)", {129}, {h});
  expectCall(luu_usb_set_altinterface(h, 1), "usb_set_altinterface(1)", {1}, {h});
  expectCall(luu_usb_control_msg(h, 1, 2, 3, 4, data, 5, 6), "usb_control_msg(1)",
             {1, 2, 3, 4, 5, 6}, {h, data});
  expectCall(luu_usb_get_string_simple(h, 7, data, 4), "usb_get_string_simple(7)", {7, 4},
             {h, data});
  usb_dev_handle* const second = luu_usb_open(device);
  expectCall(luu_usb_close(second), "usb_close()", {}, {second});
}

TEST_F(Luu, ReturnsPointersUnchanged) {
  expectCall("usb_open()", {}, {device});
  EXPECT_NE(handle, nullptr);
  library.opens = false;
  EXPECT_EQ(luu_usb_open(device), nullptr);
  luu_usb_init();
  expectCall("usb_init()", {}, {});
  EXPECT_EQ(luu_usb_get_busses(), library.firstBus());
  expectCall("usb_get_busses()", {}, {});
  EXPECT_STREQ(luu_usb_strerror(), "no error");
  expectCall("usb_strerror()", {}, {});
}

TEST(LuuInitialize, ReturnsZeroWithoutCallingLibusb) {
  EXPECT_EQ(luu_initialize(), 0);
}

}  // namespace
