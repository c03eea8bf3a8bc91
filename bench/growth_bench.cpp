// The tasks that measure how the cost of parsing and querying grows with the input, one for each
// shape of input.

#include <benchmark/benchmark.h>
#include <functional>
#include <string>
#include <vector>

#include "documents.h"
#include "growth.h"
#include "xml/simple_sax_parser.h"
#include "xml/simple_xpath.h"

namespace {

using Size = std::size_t;

/// Returns a tag with `count` attributes. The name of attribute i is "a" with the number
/// first + (i * step) % count.
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

/// Returns a document with `count` elements inside each other and `count` siblings in the innermost
/// element. In a path query on this document only the first step does not match.
std::string deepSiblings(Size count) {
  return bench::repeat("<a>", count) + bench::repeat("<a/>", count) + bench::repeat("</a>", count);
}

/// A shape of document: its name, which can end with the unit of the size, its smallest size, and
/// the function that makes a document of a size.
struct Document {
  const char* name;
  Size smallest;
  std::function<std::string(Size)> make;
  double bar = bench::LinearBar;
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
      {"attributes, in order", 1024, [](Size n) { return tagWithAttributes(n, 1'000'000, 1); },
       bench::SortingBar},
      {"attributes, counted", 1024, [](Size n) { return tagWithAttributes(n, 1, 1); },
       bench::SortingBar},
      // The size is a power of two, so an odd step visits each number once.
      {"attributes, scattered", 1024,
       [](Size n) { return tagWithAttributes(n, 1'000'000, 0x9E3779B1U); }, bench::SortingBar},
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
      {"text", 16 << 10,
       [](Size n) {
         return "<a>" + std::string(n, 'x') + "</a>";
       }},
      {"name", 32 << 10,
       [](Size n) {
         return "<" + std::string(n, 'a') + "/>";
       }},
      {"value", 16 << 10,
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

/// Returns a function that makes a document of a size, and returns the task of parsing it.
auto parseOf(const Document& document) {
  return [&document](Size size) {
    return [text = document.make(size)] {
      SimpleSAXHandler handler;
      SimpleSAXParser parser(handler);
      benchmark::DoNotOptimize(parser.parseXMLString(text.c_str()));
    };
  };
}

/// Returns the task of querying a document.
auto queryOf(const std::string& document, const std::string& path) {
  return [xpath = simpleXPath(document), path]() mutable {
    benchmark::DoNotOptimize(xpath.query(path));
  };
}

[[maybe_unused]] const bool AreAdded = [] {
  for (const Document& document : documents()) {
    bench::growth("parse, " + std::string(document.name), document.smallest, parseOf(document),
                  document.bar);
  }
  bench::growth("path query, reply, bytes", 32 << 10, [](Size size) {
    return queryOf(bench::makeReply(size), "/response/MapElem/child[@name='last']/a");
  });
  bench::growth("path query, depth and steps", 1024,
                [](Size size) { return queryOf(deepSiblings(size), "/b" + pathOf(size)); });
  return true;
}();

}  // namespace
