#include <gtest/gtest.h>
#include <sys/select.h>

#include "testing/bytes.h"
#include "testing/open_usblp.h"
#include "testing/rows.h"
#include "testing/virtual_system.h"
#include "transport/usblp_connector.h"

using support::bytes;
using support::OpenUsblp;
using virtual_system::Device;
using virtual_system::System;

namespace {

struct SelectRow : support::Row {
  int result;
  HCIOStatus forReading;
  HCIOStatus forWriting;
};

class UsblpSelect : public OpenUsblp, public testing::WithParamInterface<SelectRow> {};

}  // namespace

TEST_P(UsblpSelect, SetsTheResultOfTheReadProbe) {
  device.readSelectResult = [] {
    return GetParam().result;
  };
  EXPECT_EQ(connector.isReadReady(1000), GetParam().forReading);
  EXPECT_EQ(connector.getLastError(), GetParam().forReading);
  EXPECT_EQ(device.readSelects, 1);
  EXPECT_EQ(device.writeSelects, 0);
}

TEST_P(UsblpSelect, SetsTheResultOfTheWriteProbe) {
  device.writeSelectResult = [] {
    return GetParam().result;
  };
  EXPECT_EQ(connector.isWriteReady(1000), GetParam().forWriting);
  EXPECT_EQ(connector.getLastError(), GetParam().forWriting);
  EXPECT_EQ(device.readSelects, 0);
  EXPECT_EQ(device.writeSelects, 1);
}

INSTANTIATE_TEST_SUITE_P(Results, UsblpSelect,
                         testing::Values(SelectRow{{"Ready"}, 1, IO_READ_READY, IO_WRITE_READY},
                                         SelectRow{{"Timeout"}, 0, IO_TIMEOUT, IO_TIMEOUT},
                                         SelectRow{{"Error"}, -1, IO_FAILED, IO_FAILED}),
                         support::rowName);

TEST_F(OpenUsblp, ProbeWaitsAtMostItsTimeoutInMicroseconds) {
  EXPECT_EQ(connector.isReadReady(1000), IO_TIMEOUT);
  EXPECT_EQ(system.now(), 1000);
  EXPECT_EQ(device.selectLimits, std::vector<long>{1000});
}

TEST_F(OpenUsblp, ProbeEndsWhenBytesArrive) {
  device.reply(bytes("01"), 300);
  EXPECT_EQ(connector.isReadReady(1000), IO_READ_READY);
  EXPECT_EQ(system.now(), 300);
}

TEST_F(OpenUsblp, ProbeStoresTheWholeTimeoutInTheMicroseconds) {
  connector.isReadReady(2'500'000);
  EXPECT_EQ(device.lastLimit.tv_sec, 0);
  EXPECT_EQ(device.lastLimit.tv_usec, 2'500'000);
  connector.isWriteReady(3'000'000);
  EXPECT_EQ(device.lastLimit.tv_sec, 0);
  EXPECT_EQ(device.lastLimit.tv_usec, 3'000'000);
}

TEST_F(OpenUsblp, ProbeFailsImmediatelyAfterClose) {
  connector.close();
  EXPECT_EQ(connector.isReadReady(1000), IO_FAILED);
  EXPECT_EQ(connector.getLastError(), IO_FAILED);
  EXPECT_EQ(connector.isWriteReady(1000), IO_FAILED);
  EXPECT_EQ(system.selects, 0);
  EXPECT_EQ(system.now(), 0);
}

namespace {

struct DescriptorRow : support::Row {
  int descriptor;
  bool fits;
};

class UsblpDescriptor : public testing::TestWithParam<DescriptorRow> {};

}  // namespace

TEST_P(UsblpDescriptor, IsProbedOnlyIfItFitsIntoADescriptorSet) {
  System system;
  Device& device = system.device("/dev/usb/lp0");
  device.descriptor = GetParam().descriptor;
  device.alwaysReadable = true;
  USBLPConnector connector("/dev/usb/lp", 0);
  ASSERT_EQ(connector.open(), 0);
  EXPECT_EQ(connector.isReadReady(1000), GetParam().fits ? IO_READ_READY : IO_FAILED);
  EXPECT_EQ(connector.isWriteReady(1000), GetParam().fits ? IO_WRITE_READY : IO_FAILED);
  EXPECT_EQ(system.selects, GetParam().fits ? 2 : 0);
}

INSTANTIATE_TEST_SUITE_P(Limits, UsblpDescriptor,
                         testing::Values(DescriptorRow{{"Lowest"}, 1, true},
                                         DescriptorRow{{"LastOfASet"}, FD_SETSIZE - 1, true},
                                         DescriptorRow{{"FirstBeyondASet"}, FD_SETSIZE, false},
                                         DescriptorRow{{"FarBeyondASet"}, FD_SETSIZE * 8, false}),
                         support::rowName);
