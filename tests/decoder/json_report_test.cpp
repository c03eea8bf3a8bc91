#include "decoder/json_report.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "decoder/decode.h"

namespace {

using nlohmann::json;

/// Returns the document for the reports of `fill`.
std::string textOf(const std::function<void(decoder::Report&)>& fill, bool showSecrets = false) {
  std::string text;
  decoder::JsonReport report([&](std::string_view piece) { text.append(piece); }, showSecrets);
  fill(report);
  report.finish();
  return text;
}

json documentOf(std::string_view input, const decoder::Options& options = {}) {
  return json::parse(textOf(
      [&](decoder::Report& report) {
        report.beginInput("log");
        decoder::decode(input, options, report);
      },
      options.showSecrets));
}

TEST(JsonReport, IsADocumentEvenWithoutInputs) {
  EXPECT_EQ(textOf([](decoder::Report&) {}), "{\"inputs\": []}\n");
}

TEST(JsonReport, HasEachInputWithItsPacketsAndProblems) {
  EXPECT_EQ(documentOf("nothing"),
            json::parse(R"({"inputs": [{"input": "log", "packets": [], "problems": []}]})"));
  EXPECT_EQ(documentOf("00 01\n\nA5 00 02 D4 E0"), json::parse(R"({"inputs": [{"input": "log",
    "packets": [{"line": 3, "role": "reply", "size": 5, "wrapped": false, "flag": "D4",
      "more_follows": false, "contents": [{"kind": "refused"}]}],
    "problems": [{"line": 1, "text": "2 bytes outside any packet"}]}]})"));
}

TEST(JsonReport, HasALineForEachPacketAndEachProblem) {
  EXPECT_EQ(textOf([](decoder::Report& report) {
              for (const char* name : {"a", "b"}) {
                report.beginInput(name);
                decoder::decode("A5 00 02 D4 E0 A5 00 02 D4 E0\n\nFF\n\nFF", {}, report);
              }
            }),
            [] {
              const std::string packet =
                  "{\"line\":1,\"role\":\"reply\",\"size\":5,\"wrapped\":false,\"flag\":\"D4\","
                  "\"more_follows\":false,\"contents\":[{\"kind\":\"refused\"}]}";
              const std::string text = "\"text\":\"1 byte outside any packet\"}";
              const std::string rest = "\"packets\": [\n" + packet + ",\n" + packet +
                                       "], \"problems\": [\n{\"line\":3," + text +
                                       ",\n{\"line\":5," + text + "]}";
              return "{\"inputs\": [\n{\"input\": \"a\", " + rest + ",\n{\"input\": \"b\", " +
                     rest + "\n]}\n";
            }());
}

TEST(JsonReport, ReportsAnInputThatCannotBeRead) {
  const json document = json::parse(textOf([](decoder::Report& report) {
    report.beginInput("missing");
    report.unreadable("No such \"file\" \xFF");
    report.beginInput("b");
  }));
  EXPECT_EQ(document["inputs"][0]["unreadable"], "No such \"file\" \uFFFD");
  EXPECT_EQ(document["inputs"][1]["input"], "b");
}

json settingsIn(const json& document) {
  return document["inputs"][0]["packets"][0]["contents"][0]["settings"];
}

constexpr std::string_view Settings =
    "A5 00 2D 50 E0 DA 01 28 02 00 00 04 00 00 00 01 28 05 00 00 02 00 0B 28 08 00 00 02 78 00 "
    "28 11 00 00 02 6B 00 28 05 00 00 00 28 FE 00 00 01 6B";

TEST(JsonReport, WritesValuesWithTheirTypes) {
  EXPECT_EQ(settingsIn(documentOf(Settings)), json::parse(R"([
    {"group": "28", "object": "02", "group_name": "wireless network", "name": "mode", "size": 4,
     "value": 1, "meaning": "ad-hoc"},
    {"group": "28", "object": "05", "group_name": "wireless network", "name": "channel", "size": 2,
     "value": 11},
    {"group": "28", "object": "08", "group_name": "wireless network", "name": "SSID", "size": 2,
     "value": "x"},
    {"group": "28", "object": "11", "group_name": "wireless network", "name": "pre-shared key",
     "size": 2, "masked": true},
    {"group": "28", "object": "05", "group_name": "wireless network", "name": "channel", "size": 0,
     "bytes": ""},
    {"group": "28", "object": "FE", "group_name": "wireless network", "size": 1, "masked": true}])"));
  EXPECT_EQ(settingsIn(documentOf("A5 00 0C 50 E0 D8 00 0A 02 00 04 C0 A8 01 14"))[0]["value"],
            "192.168.1.20");
  EXPECT_FALSE(settingsIn(documentOf("A5 00 06 50 E0 D8 00 28 11"))[0].contains("masked"));
}

TEST(JsonReport, ShowsSecretsIfTheOptionsSaySo) {
  decoder::Options options;
  options.showSecrets = true;
  const json settings = settingsIn(documentOf(Settings, options));
  EXPECT_EQ(settings[3]["value"], "k");
  EXPECT_EQ(settings[5]["bytes"], "6B");
  const auto content = [&](std::string_view input, const decoder::Options& how) {
    return documentOf(input, how)["inputs"][0]["packets"][0]["contents"][0];
  };
  EXPECT_EQ(content("A5 00 03 50 E0 6B", options)["bytes"], "6B");
  EXPECT_EQ(content("A5 00 03 50 E0 6B", {})["masked"], true);
  // Bytes that the log masks stay masked.
  EXPECT_EQ(content("zvkprinter: <- A5 00 03 50 E0 **", options)["masked"], true);
}

TEST(JsonReport, ReplacesInvalidUtf8) {
  EXPECT_EQ(
      settingsIn(documentOf("A5 00 0F 50 E0 DA 01 28 08 00 00 06 FF C3 A4 1B E2 82"))[0]["value"],
      "\uFFFD\u00E4\x1B\uFFFD");
}

TEST(JsonReport, HasMethodCallsAsXmlAndInParts) {
  // The texts are <method requestID="4"/>, and a byte that is not UTF-8.
  const json contents = documentOf(
      "A5 00 1D 50 E0 C0 03 00 01 3C 6D 65 74 68 6F 64 20 72 65 71 75 65 73 74 49 44 3D 22 34 22 "
      "2F 3E "
      "A5 00 07 50 E0 C0 03 00 01 FF")["inputs"][0]["packets"];
  EXPECT_EQ(contents[0]["contents"][0], json::parse(R"({"kind": "method call", "well_formed": true,
    "request_id": "4", "xml": "<method requestID=\"4\"/>"})"));
  EXPECT_EQ(contents[1]["contents"][0], json::parse(R"({"kind": "method call", "well_formed": false,
    "xml": "\ufffd"})"));
}

}  // namespace
