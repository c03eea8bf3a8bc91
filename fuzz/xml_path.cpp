// The first line of the input is a path, the rest is a document. A query and a list must have the
// results and the error lines of the model. A second query must have the same result.

#include <algorithm>
#include <string>
#include <vector>

#include "fuzz_target.h"
#include "outputs.h"
#include "testing/xml_model.h"
#include "xml/simple_xpath.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input = fuzz::textOf(data, size);
  const std::size_t line = std::min(input.find('\n'), input.size());
  const std::string path = input.substr(0, line);
  const std::string document = input.substr(std::min(line + 1, input.size()));

  simpleXPath xpath(document);
  std::string result;
  std::string expected;
  const fuzz::Output output = fuzz::outputOf([&] { result = xpath.query(path); });
  fuzz::require(result == xml_model::query(document, path, expected));
  fuzz::require(output == fuzz::Output{expected, ""});

  if (path.find('[') == std::string::npos) {
    std::vector<std::string> texts;
    expected.clear();
    const fuzz::Output lines = fuzz::outputOf([&] { texts = xpath.queryList(path); });
    fuzz::require(texts == xml_model::queryList(document, path, expected));
    fuzz::require(lines == fuzz::Output{expected, ""});
  }
  fuzz::outputOf([&] { fuzz::require(xpath.query(path) == result); });
  return 0;
}
