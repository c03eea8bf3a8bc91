#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <vector>

#include "testing/command_line.h"
#include "testing/output.h"
#include "testing/usblp_printer.h"

using support::bytes;
using support::CommandLine;
using support::HelpText;
using support::Output;
using support::outputOf;

/// The program's `main`. The build renames it for the tests.
int programMain(int argc, char** argv);

TEST(Main, PrintsTheHelpWithoutArguments) {
  for (const bool withProgram : {true, false}) {
    CommandLine line(withProgram ? std::vector<std::string>{"zvkconfig"}
                                 : std::vector<std::string>());
    int status = -77;
    EXPECT_EQ(outputOf([&] { status = programMain(line.count(), line.vector()); }),
              (Output{HelpText, ""}));
    EXPECT_EQ(status, 0);
  }
}

using MainWithPrinter = support::UsblpPrinter;

TEST_F(MainWithPrinter, ReturnsTheResultOfTheCommand) {
  CommandLine line({"zvkconfig", "-c", "--ssid=x"});
  int status = -77;
  answer({bytes("00")});
  outputOf([&] { status = programMain(line.count(), line.vector()); });
  EXPECT_EQ(status, 1);
  answer({bytes("A5 00 01 D4")});
  outputOf([&] { status = programMain(line.count(), line.vector()); });
  EXPECT_EQ(status, -1);
}

TEST_F(MainWithPrinter, DoesNotCatchAMissingArgument) {
  CommandLine line({"zvkconfig", "-c"});
  EXPECT_THROW(programMain(line.count(), line.vector()), std::out_of_range);
}
