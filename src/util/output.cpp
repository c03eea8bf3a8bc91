// The default output, which writes to the standard streams, and the selection of another output.

#include "util/output.h"

#include <cstdio>

namespace util {

namespace {

class StandardStreams : public Output {
 public:
  void answer(std::string_view text) override { std::fwrite(text.data(), 1, text.size(), stdout); }
  void diagnostic(std::string_view text) override {
    std::fwrite(text.data(), 1, text.size(), stderr);
  }
  void flushAnswers() override { std::fflush(stdout); }
};

StandardStreams standardStreams;
Output* current = &standardStreams;  ///< never null, not owned

}  // namespace

void setOutput(Output* output) {
  current = output == nullptr ? &standardStreams : output;
}

void writeAnswer(std::string_view text) {
  current->answer(text);
}

void showProgress(std::string_view text) {
  current->answer(text);
  current->flushAnswers();
}

void writeDiagnostic(std::string_view text) {
  current->diagnostic(text);
}

}  // namespace util
