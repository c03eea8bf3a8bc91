#include "wifi/outcome.h"

#include <nlohmann/json.hpp>

namespace wifi {

std::string bytesOf(const Outcome& outcome) {
  Json json = {{"status", outcome.status}, {"text", outcome.text}};
  if (outcome.entry) {
    json["entry"] = *outcome.entry;
  }
  if (outcome.error) {
    json["message"] = outcome.error->message;
    json["remedy"] = outcome.error->remedy;
  }
  std::string bytes;
  Json::to_cbor(json, bytes);
  return bytes;
}

std::optional<Outcome> outcomeFrom(std::string_view bytes) {
  const Json json = Json::from_cbor(bytes, true, false);
  if (json.is_discarded()) {
    return std::nullopt;
  }
  Outcome outcome = {.status = json.at("status"), .text = json.at("text")};
  if (json.contains("entry")) {
    outcome.entry = std::make_shared<const Json>(json.at("entry"));
  }
  if (json.contains("message")) {
    outcome.error = {json.at("message"), json.at("remedy")};
  }
  return outcome;
}

}  // namespace wifi
