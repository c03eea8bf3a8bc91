// Runs a target on every file in the folders that the command line names, without a fuzzing engine.
// The test suite uses this program to check the seeds. The program fails if there are no files.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "fuzz_target.h"

namespace {

void replay(const std::filesystem::path& path) {
  std::fprintf(stderr, "%s\n", path.c_str());
  std::ifstream file(path, std::ios::binary);
  const std::string seed{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  // Copies the seed into a buffer of the exact size, so that a sanitizer detects a read past the
  // end.
  const std::basic_string<std::uint8_t> bytes(seed.begin(), seed.end());
  LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

}  // namespace

int main(int argc, char** argv) {
  int count = 0;
  for (int i = 1; i < argc; ++i) {
    for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
      replay(entry.path());
      ++count;
    }
  }
  std::fprintf(stderr, "%d seeds\n", count);
  return count > 0 ? 0 : 1;
}
