#include "wifi/outcome.h"

namespace wifi {

std::string bytesOf(const Outcome& outcome) {
  Json json = {{"status", outcome.status}, {"entry", outcome.entry}, {"text", outcome.text}};
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
  Outcome outcome = {
      .status = json.at("status"), .entry = json.at("entry"), .text = json.at("text")};
  if (json.contains("message")) {
    outcome.error = {json.at("message"), json.at("remedy")};
  }
  return outcome;
}

}  // namespace wifi
