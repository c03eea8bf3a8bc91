#include "transport/hcio_connector.h"

#include <gtest/gtest.h>

namespace {

/// A connector without a type.
class PlainConnector : public HCIOConnector {
 public:
  int open() override { return 0; }
  int close() override { return 0; }
  int read(unsigned char* /*buf*/, int /*len*/) override { return 0; }
  int peek(unsigned char* /*buf*/, int /*len*/) override { return 0; }
  int write(unsigned char* /*buf*/, int /*len*/) override { return 0; }
  HCIOStatus isReadReady(unsigned int /*timeout*/) override { return setStatus(IO_READ_READY); }
  HCIOStatus isWriteReady(unsigned int /*timeout*/) override { return IO_TIMEOUT; }
};

}  // namespace

TEST(HcioConnector, HasNoStatusAndNoTypeAtFirst) {
  const PlainConnector connector;
  EXPECT_EQ(connector.getLastError(), 0);
  EXPECT_EQ(connector.getType(), HC_LOC_NONE);
}

TEST(HcioConnector, KeepsItsLastStatus) {
  PlainConnector connector;
  connector.isReadReady(0);
  connector.isWriteReady(0);
  EXPECT_EQ(connector.getLastError(), IO_READ_READY);
}

TEST(HcioConnector, StoresItsType) {
  PlainConnector connector;
  connector.setType(HC_LOC_LIBUSB);
  EXPECT_EQ(connector.getType(), HC_LOC_LIBUSB);
}

TEST(HcioStatus, HasItsNumbers) {
  EXPECT_EQ(IO_OK, 0);
  EXPECT_EQ(IO_FAILED, 1);
  EXPECT_EQ(IO_BAD_DEVICE, 16);
  EXPECT_EQ(IO_INTERRUPTED, 17);
  EXPECT_EQ(IO_READ_READY, 18);
  EXPECT_EQ(IO_WRITE_READY, 19);
  EXPECT_EQ(IO_TIMEOUT, 33);
  EXPECT_EQ(IO_TRY_AGAIN, 34);
  EXPECT_EQ(IO_SHORT_WRITE, 35);
  EXPECT_EQ(IO_NOTHING_WRITTEN, 36);
}

TEST(HcDeviceLocTypes, HasItsNumbers) {
  EXPECT_EQ(HC_LOC_NONE, 0);
  EXPECT_EQ(HC_LOC_USBLP, 2);
  EXPECT_EQ(HC_LOC_LIBUSB, 3);
}
