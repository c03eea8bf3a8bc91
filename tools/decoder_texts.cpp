// The texts of zvknpa.

#include "decoder/options.h"
#include "tools/companion_texts.h"

namespace tools {

void addDecoderTexts(Texts& texts) {
  addOptionTexts(texts, "zvknpa", decoder::optionGroups());
}

}  // namespace tools
