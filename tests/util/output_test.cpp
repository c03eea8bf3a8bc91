#include "util/output.h"

#include <gtest/gtest.h>
#include <string>

#include "testing/output.h"
#include "util/debug_line.h"
#include "util/utility.h"

using support::outputOf;

namespace {

/// Collects all output while it exists.
class Collector : public util::Output {
 public:
  Collector() { util::setOutput(this); }
  ~Collector() override { util::setOutput(nullptr); }
  Collector(const Collector&) = delete;
  Collector& operator=(const Collector&) = delete;

  void answer(std::string_view text) override { answers.append(text); }
  void diagnostic(std::string_view text) override { diagnostics.append(text); }
  void flushAnswers() override { answers.append("<flushed>"); }

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

TEST(Output, GoesToTheStandardStreamsByDefault) {
  EXPECT_EQ(outputOf(writeAll),
            (support::Output{"home\nConfiguring....\n", "D [ZVK] SSID = home\n41 |A\n"}));
}

TEST(Output, GoesToTheObjectOfAFrontEnd) {
  std::string answers;
  std::string diagnostics;
  EXPECT_EQ(outputOf([&] {
              const Collector collector;
              writeAll();
              answers = collector.answers;
              diagnostics = collector.diagnostics;
            }),
            support::Output());
  EXPECT_EQ(answers, "home\nConfiguring....\n<flushed>");
  EXPECT_EQ(diagnostics, "D [ZVK] SSID = home\n41 |A\n");
}

TEST(Output, ReturnsToTheStandardStreams) {
  { const Collector collector; }
  EXPECT_EQ(outputOf([] { util::writeAnswer("home\n"); }), (support::Output{"home\n", ""}));
}
