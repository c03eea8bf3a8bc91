#include "util/debug_line.h"

#include <gtest/gtest.h>
#include <string>

#include "testing/output.h"

using support::Output;
using support::outputOf;

TEST(DebugLine, WritesPrefixTextAndLineEndToStandardErrorAlone) {
  const auto action = [] {
    util::debugLine("SSID = %s, %d bytes", "home", 4);
  };
  EXPECT_EQ(outputOf(action), (Output{"", "D [ZVK] SSID = home, 4 bytes\n"}));
}

TEST(DebugLine, WritesAnEmptyTextAsThePrefixAlone) {
  EXPECT_EQ(outputOf([] { util::debugLine("%s", ""); }), (Output{"", "D [ZVK] \n"}));
}

TEST(DebugLine, KeepsPercentSignsOfItsArguments) {
  EXPECT_EQ(outputOf([] { util::debugLine("%s", "%s%n"); }), (Output{"", "D [ZVK] %s%n\n"}));
}

TEST(DebugLine, DoesNotCutLongTexts) {
  const std::string text(70'000, 'x');
  EXPECT_EQ(outputOf([&] { util::debugLine("%s", text.c_str()); }),
            (Output{"", "D [ZVK] " + text + "\n"}));
}
