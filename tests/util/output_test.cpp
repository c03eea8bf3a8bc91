#include "util/output.h"

#include <gtest/gtest.h>
#include <string>

#include "testing/output.h"
#include "util/debug_line.h"
#include "util/utility.h"

using support::outputOf;

namespace {

/// Keeps what is written for as long as it lives.
class Kept : public util::Output {
 public:
  Kept() { util::setOutput(this); }
  ~Kept() override { util::setOutput(nullptr); }
  Kept(const Kept&) = delete;
  Kept& operator=(const Kept&) = delete;

  void answer(std::string_view text) override { answers.append(text); }
  void diagnostic(std::string_view text) override { diagnostics.append(text); }
  void flushAnswers() override { answers.append("<shown>"); }

  std::string answers;
  std::string diagnostics;
};

void writeAll() {
  util::writeAnswer("home\n");
  util::showProgress("Configuring....\n");
  util::debugLine("SSID = %s", "home");
  unsigned char byte = 0x41;
  Utility::ShowBytes(&byte, 1);
}

}  // namespace

TEST(Output, IsTheStandardStreamsAtFirst) {
  EXPECT_EQ(outputOf(writeAll),
            (support::Output{"home\nConfiguring....\n", "D [ZVK] SSID = home\n41 |A\n"}));
}

TEST(Output, GoesWhereAFrontEndSetsIt) {
  std::string answers;
  std::string diagnostics;
  EXPECT_EQ(outputOf([&] {
              const Kept kept;
              writeAll();
              answers = kept.answers;
              diagnostics = kept.diagnostics;
            }),
            support::Output());
  EXPECT_EQ(answers, "home\nConfiguring....\n<shown>");
  EXPECT_EQ(diagnostics, "D [ZVK] SSID = home\n41 |A\n");
}

TEST(Output, ReturnsToTheStandardStreams) {
  { const Kept kept; }
  EXPECT_EQ(outputOf([] { util::writeAnswer("home\n"); }), (support::Output{"home\n", ""}));
}
