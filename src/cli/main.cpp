// The program's entry point: the help text without arguments, otherwise one run.

#include <memory>
#include <new>

#include "cli/zvk_setup.h"
#include "util/debug_line.h"

int main(int argc, char** argv) {
  if (argc <= 1) {
    return zvkSetup::showHelp();
  }
  // Other exceptions are not caught, on purpose: a missing argument ends the program abnormally.
  try {
    const auto setup = std::make_unique<zvkSetup>(argc, argv);
    return setup->getReturnCode();
  } catch (const std::bad_alloc&) {
    // The destructors have run: the device is closed and the terminal's echo is on again.
    util::debugLine("Out of memory!");
    return 1;
  }
}
