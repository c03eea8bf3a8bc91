// Captures the C library's output streams.

#include "outputs.h"

#include "fuzz_target.h"

namespace fuzz {

namespace {

/// Replaces `stream` by another stream during the object's lifetime. The destructor closes the
/// other stream.
class ReplacedStream {
 public:
  ReplacedStream(std::FILE*& stream, std::FILE* other) : m_Stream(stream), m_Original(stream) {
    require(other != nullptr);
    m_Stream = other;
  }
  ~ReplacedStream() {
    std::fclose(m_Stream);
    m_Stream = m_Original;
  }
  ReplacedStream(const ReplacedStream&) = delete;
  ReplacedStream& operator=(const ReplacedStream&) = delete;

 private:
  std::FILE*& m_Stream;
  std::FILE* m_Original;
};

/// The text of a memory stream. The text is complete when the stream is closed.
struct Text {
  ~Text() { std::free(start); }
  Text() = default;
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;

  std::FILE* open() { return ::open_memstream(&start, &size); }
  std::string copy() const { return {start, size}; }

  char* start = nullptr;
  std::size_t size = 0;
};

}  // namespace

Output outputOf(const std::function<void()>& action) {
  Text out;
  Text err;
  {
    const ReplacedStream input(stdin, std::fopen("/dev/null", "re"));
    const ReplacedStream output(stdout, out.open());
    const ReplacedStream errors(stderr, err.open());
    action();
  }
  return {out.copy(), err.copy()};
}

}  // namespace fuzz
