#pragma once

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>

#include "testing/process.h"

/// Parses a JSON document of zvkwifi. If python3-jsonschema is installed, expects that the document
/// fits the schema.
inline nlohmann::json parsedDocument(const std::string& text) {
#ifdef VALIDATE_DOCUMENT
  const auto result = support::runProcess({VALIDATE_DOCUMENT, WIFI_SCHEMA}, text);
  EXPECT_EQ(result.status, 0) << result.err << text;
#endif
  return nlohmann::json::parse(text);
}
