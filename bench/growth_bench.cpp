// How the cost grows: each shape of input at six sizes, each the double of the one before.

#include <benchmark/benchmark.h>
#include <cstdint>
#include <functional>
#include <numeric>
#include <string>
#include <vector>

#include "documents.h"
#include "util/base64.h"
#include "xml/simple_sax_parser.h"
#include "xml/simple_xpath.h"

namespace {

using Size = std::size_t;

constexpr int Sizes = 6;

/// A tag with `count` attributes, the names being numbers from `first` on that are taken `step`
/// apart, modulo `count`.
std::string tagWithAttributes(Size count, Size first, Size step) {
  std::string tag = "<a";
  for (Size i = 0; i < count; ++i) {
    tag += " a" + std::to_string(first + i * step % count) + "=\"1\"";
  }
  return tag + "/>";
}

std::string pathOf(Size steps) {
  return bench::repeat("/a", steps);
}

/// Siblings at the bottom of a path whose first step alone does not match.
std::string deepSiblings(Size count) {
  return bench::repeat("<a>", count) + bench::repeat("<a/>", count) + bench::repeat("</a>", count);
}

struct Document {
  const char* name;
  Size smallest;
  std::function<std::string(Size)> make;
};

const std::vector<Document>& documents() {
  static const std::vector<Document> all = {
      {"reply, bytes", 32 << 10, bench::makeReply},
      {"elements", 4096,
       [](Size n) {
         return "<a>" + bench::repeat("<b>1</b>", n) + "</a>";
       }},
      {"depth", 4096,
       [](Size n) {
         return bench::repeat("<a>", n) + bench::repeat("</a>", n);
       }},
      {"attributes, in order", 1024,
       [](Size n) {
         return tagWithAttributes(n, 1'000'000, 1);
       }},
      {"attributes, counted", 1024,
       [](Size n) {
         return tagWithAttributes(n, 1, 1);
       }},
      // An odd step visits each number below a power of two once.
      {"attributes, scattered", 1024,
       [](Size n) {
         return tagWithAttributes(n, 1'000'000, 0x9E3779B1U);
       }},
      {"attributes, repeated", 4096,
       [](Size n) {
         return "<a" + bench::repeat(" a=\"1\"", n) + "/>";
       }},
      {"entities, known", 4096,
       [](Size n) {
         return "<a>" + bench::repeat("&amp;", n) + "</a>";
       }},
      {"entities, unknown", 4096,
       [](Size n) {
         return "<a>" + bench::repeat("&no;", n) + "</a>";
       }},
      {"ampersands alone", 32 << 10,
       [](Size n) {
         return "<a>" + std::string(n, '&') + "</a>";
       }},
      {"text", 128 << 10,
       [](Size n) {
         return "<a>" + std::string(n, 'x') + "</a>";
       }},
      {"name", 32 << 10,
       [](Size n) {
         return "<" + std::string(n, 'a') + "/>";
       }},
      {"value", 128 << 10,
       [](Size n) {
         return "<a b=\"" + std::string(n, 'x') + "\"/>";
       }},
      {"stray <", 32 << 10,
       [](Size n) {
         return "<a>" + std::string(n, '<') + "</a>";
       }},
      {"comment of dashes", 32 << 10,
       [](Size n) {
         return "<!--" + std::string(n, '-') + "-->";
       }},
  };
  return all;
}

void addDoublings(const std::string& name, Size smallest,
                  const std::function<void(benchmark::State&)>& run) {
  auto* added = benchmark::RegisterBenchmark(("growth: " + name).c_str(), run);
  for (int i = 0; i < Sizes; ++i) {
    added->Arg(static_cast<std::int64_t>(smallest << static_cast<unsigned int>(i)));
  }
}

Size sizeOf(const benchmark::State& state) {
  return static_cast<Size>(state.range(0));
}

void growthOfParse(const Document& document, benchmark::State& state) {
  const std::string text = document.make(sizeOf(state));
  SimpleSAXHandler handler;
  SimpleSAXParser parser(handler);
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(parser.parseXMLString(text.c_str()));
  }
}

void growthOfQuery(const std::string& document, const std::string& path, benchmark::State& state) {
  simpleXPath xpath(document);
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(xpath.query(path));
  }
}

void growthOfBase64(bool isEncoding, benchmark::State& state) {
  std::vector<unsigned char> bytes(sizeOf(state), 0x5A);
  std::string text(bytes.size() * 2, '\0');
  Base64::encode(bytes.data(), bytes.size(), text.data(), text.size());
  while (state.KeepRunning()) {
    if (isEncoding) {
      Base64::encode(bytes.data(), bytes.size(), text.data(), text.size());
    } else {
      Base64::decode(text.c_str(), bytes.data(), bytes.size());
    }
    benchmark::ClobberMemory();
  }
}

[[maybe_unused]] const bool AreAdded = [] {
  for (const Document& document : documents()) {
    addDoublings("parse, " + std::string(document.name), document.smallest,
                 [&document](benchmark::State& state) { growthOfParse(document, state); });
  }
  addDoublings("query, reply, bytes", 32 << 10, [](benchmark::State& state) {
    growthOfQuery(bench::makeReply(sizeOf(state)), "/response/MapElem/child[@name='last']/a",
                  state);
  });
  addDoublings("query, depth and steps", 1024, [](benchmark::State& state) {
    growthOfQuery(deepSiblings(sizeOf(state)), "/b" + pathOf(sizeOf(state)), state);
  });
  addDoublings("encode, bytes", 64 << 10,
               [](benchmark::State& state) { growthOfBase64(true, state); });
  addDoublings("decode, bytes", 64 << 10,
               [](benchmark::State& state) { growthOfBase64(false, state); });
  return true;
}();

}  // namespace
