#include "util/debug_line.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <string>

#include "testing/output.h"
#include "testing/own_stack.h"

using support::Output;
using support::outputOf;

TEST(DebugLine, WritesPrefixTextAndLineEndToStandardErrorOnly) {
  const auto action = [] {
    util::debugLine("SSID = %s, %d bytes", "home", 4);
  };
  EXPECT_EQ(outputOf(action), (Output{"", "D [ZVK] SSID = home, 4 bytes\n"}));
}

TEST(DebugLine, WritesOnlyThePrefixForAnEmptyText) {
  EXPECT_EQ(outputOf([] { util::debugLine("%s", ""); }), (Output{"", "D [ZVK] \n"}));
}

TEST(DebugLine, KeepsPercentSignsOfItsArguments) {
  EXPECT_EQ(outputOf([] { util::debugLine("%s", "%s%n"); }), (Output{"", "D [ZVK] %s%n\n"}));
}

TEST(DebugLine, LeavesNoTextOnTheStack) {
  const std::string key = "kQ7-vT2x9-mR3";
  std::string stack;
  outputOf([&] { stack = support::stackAfter([&] { util::debugLine("PSK = %s", key.c_str()); }); });
  EXPECT_EQ(stack.find(key), std::string::npos);
  // Check the search itself: it finds a text that is left on the stack.
  stack = support::stackAfter([&] {
    std::array<volatile char, 64> copy;
    std::ranges::copy(key, copy.begin());
  });
  EXPECT_NE(stack.find(key), std::string::npos);
}

TEST(DebugLine, DoesNotCutLongTexts) {
  const std::string text(70'000, 'x');
  EXPECT_EQ(outputOf([&] { util::debugLine("%s", text.c_str()); }),
            (Output{"", "D [ZVK] " + text + "\n"}));
}
