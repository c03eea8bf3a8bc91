#include "util/utility.h"

#include <gtest/gtest.h>

TEST(IntToChar, StoresTheHighByteFirst) {
  unsigned int value = 0x1234;
  unsigned int length = 2;
  unsigned char out[2] = {};
  EXPECT_EQ(Utility::IntToChar(&value, out, &length), 0);
  EXPECT_EQ(out[0], 0x12);
  EXPECT_EQ(out[1], 0x34);
}
