#include "wifi/guide_printer.h"

#include <cerrno>
#include <gtest/gtest.h>

#include "testing/standard_input.h"
#include "testing/sysfs_tree.h"
#include "testing/virtual_system.h"
#include "wifi/commands.h"
#include "wifi/results.h"
#include "wifi/secret_input.h"

// The questions that select a printer. Folders of the test stand in for the machine's devices. A
// pipe stands in for the terminal.

namespace {

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

/// A machine with two printers on usblp.
class PrinterQuestion : public testing::Test {
 protected:
  PrinterQuestion() {
    m_Tree.addUsblpPrinter(1, "X12", "MFG:Acme;MDL:L100;");
    m_Tree.addUsblpPrinter(2, "X13", "MFG:Acme;MDL:L200;");
  }

  /// Answers the questions with `input` and returns the device of the selected printer. Sets
  /// `shown` to the text that the program showed.
  std::string ask(const std::string& input) {
    const support::StandardInput answers(input);
    CaptureStderr();
    try {
      const session::Printer printer = wifi::askForPrinter(m_Tree.machine());
      shown = GetCapturedStderr();
      return printer.device;
    } catch (...) {
      shown = GetCapturedStderr();
      throw;
    }
  }

  virtual_system::Device& device(int number) {
    return m_System.device(m_Tree.node("usb/lp" + std::to_string(number)));
  }

  std::string addNode(int number) const {
    return m_Tree.addNode("usb/lp" + std::to_string(number));
  }

  void addProcess(const char* id, const char* name, int number) const {
    m_Tree.addProcess(id, name, addNode(number));
  }

  std::string shown;

 private:
  support::SysfsTree m_Tree;
  virtual_system::System m_System;
};

TEST_F(PrinterQuestion, ListsSeveralPrintersByMakeAndModel) {
  device(1);
  device(2);
  EXPECT_EQ(ask("2\n"), "/dev/usb/lp2");
  EXPECT_EQ(
      shown,
      "Which printer?\n  1) Acme L100 (/dev/usb/lp1)\n  2) Acme L200 (/dev/usb/lp2)\nNumber: ");
}

TEST_F(PrinterQuestion, IsAskedAgainIfThePrinterIsBusy) {
  device(1).openErrno = EBUSY;
  addProcess("77", "cups", 1);
  device(2);
  EXPECT_EQ(ask("1\n\n2\n"), "/dev/usb/lp2");
  EXPECT_NE(shown.find("/dev/usb/lp1 is in use by cups (process 77)."), std::string::npos) << shown;
  EXPECT_NE(shown.find("Press Enter to try again: Which printer?\n"), std::string::npos) << shown;
}

TEST_F(PrinterQuestion, IsAskedAgainIfThePrinterIsGone) {
  device(1).openErrno = ENODEV;
  device(2);
  EXPECT_EQ(ask("1\n\n2\n"), "/dev/usb/lp2");
  EXPECT_NE(shown.find("Press Enter to try again: Which printer?\n"), std::string::npos) << shown;
}

TEST_F(PrinterQuestion, EndsTheDialogueWithoutPermission) {
  device(1).openErrno = EACCES;
  addNode(1);
  device(2);
  try {
    ask("1\n");
    FAIL() << shown;
  } catch (const wifi::CommandError& error) {
    EXPECT_EQ(error.status, wifi::StatusNoPermission);
    EXPECT_TRUE(error.explanation.message.starts_with("No permission to use "))
        << error.explanation.message;
    EXPECT_NE(error.explanation.remedy, "");
  }
}

TEST_F(PrinterQuestion, EndsTheDialogueAtTheEndOfInput) {
  device(1);
  device(2);
  EXPECT_THROW(ask("7\n"), wifi::EndOfInput);
}

}  // namespace
