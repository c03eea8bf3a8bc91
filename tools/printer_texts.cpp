// The texts of zvkprinter.

#include "emulator/run/option_table.h"
#include "tools/companion_texts.h"

namespace tools {

void addPrinterTexts(Texts& texts) {
  addCommandTexts(texts, "zvkprinter", emulator::commands());
  addOptionTexts(texts, "zvkprinter", emulator::optionGroups());
}

}  // namespace tools
