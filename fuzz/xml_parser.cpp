// The input is an XML document. The callbacks must keep the guarantees that `CheckingHandler`
// checks. Replacing entities must not make a text longer.

#include "fuzz_target.h"
#include "testing/checking_handler.h"
#include "xml/simple_sax_parser.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string document = fuzz::textOf(data, size);
  CheckingHandler handler;
  const SimpleSAXParser entities(handler);
  const int result = SimpleSAXParser(handler).parseXMLString(document);
  fuzz::require(result == 0 || result == -1);
  fuzz::require(handler.isConsistent());

  std::string text = document;
  entities.replaceEntities(text);
  fuzz::require(text.size() <= document.size());
  fuzz::require(document.find('&') != std::string::npos || text == document);
  return 0;
}
