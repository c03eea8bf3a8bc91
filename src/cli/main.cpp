#include <memory>
#include <new>

#include "cli/zvk_setup.h"
#include "util/debug_line.h"

int main(int argc, char** argv) {
  if (argc <= 1) {
    return zvkSetup::showHelp();
  }
  try {
    const auto setup = std::make_unique<zvkSetup>(argc, argv);
    return setup->getReturnCode();
  } catch (const std::bad_alloc&) {
    // Like any other end it closes the device and gives the terminal its echo back.
    util::debugLine("Out of memory!");
    return 1;
  }
}
