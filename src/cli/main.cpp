// The program's entry point. Without arguments it prints the help text, otherwise it performs one
// run.

#include <memory>
#include <new>

#include "cli/zvk_setup.h"
#include "util/debug_line.h"

int main(int argc, char** argv) {
  if (argc <= 1) {
    return zvkSetup::showHelp();
  }
  // Catches only `std::bad_alloc`, on purpose: if an argument is missing, the program must end
  // abnormally.
  try {
    const auto setup = std::make_unique<zvkSetup>(argc, argv);
    return setup->getReturnCode();
  } catch (const std::bad_alloc&) {
    // The destructors have run: the device is closed and the terminal's echo is on again.
    util::debugLine("Out of memory!");
    return 1;
  }
}
