#include <memory>

#include "cli/zvk_setup.h"

int main(int argc, char** argv) {
  if (argc <= 1) {
    return zvkSetup::showHelp();
  }
  const auto setup = std::make_unique<zvkSetup>(argc, argv);
  return setup->getReturnCode();
}
