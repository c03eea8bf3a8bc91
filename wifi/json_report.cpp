#include "wifi/json_report.h"

#include <cmath>
#include <nlohmann/json.hpp>
#include <utility>

#include "npa/status_texts.h"
#include "wifi/results.h"
#include "wifi/text_report.h"

namespace wifi {

namespace {

constexpr int SchemaVersion = 1;

template <typename T>
Json orNull(const std::optional<T>& value) {
  return value ? Json(*value) : Json(nullptr);
}

Json orNull(const std::string& text) {
  return text.empty() ? Json(nullptr) : Json(text);
}

Json errorJson(const Explanation& error) {
  return {{"message", error.message}, {"remedy", error.remedy}};
}

Json authenticationJson(const std::optional<npa::Byte>& code) {
  if (!code) {
    return nullptr;
  }
  const bool known = *code < npa::AuthStatusTexts.size();
  return {{"code", *code}, {"text", known ? npa::AuthStatusTexts[*code] : std::string_view()}};
}

std::string textOf(const Json& document) {
  return document.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

Json printerJson(const session::Printer& printer) {
  return {{"device", printer.device},         {"address", orNull(printer.address)},
          {"serial", orNull(printer.serial)}, {"make", orNull(printer.make)},
          {"model", orNull(printer.model)},   {"state", wordOf(printer.state)}};
}

Json arrayOf(const std::vector<JsonEntry>& entries) {
  Json array = Json::array();
  for (const JsonEntry& entry : entries) {
    array.push_back(entry ? *entry : Json());
  }
  return array;
}

}  // namespace

JsonEntry listEntry(const session::Printer& printer) {
  Json json = printerJson(printer);
  json["result"] = rowOf(session::Result::Ok).word;
  return std::make_shared<const Json>(std::move(json));
}

JsonEntry reportEntry(const session::Report& report, Fields fields, double seconds,
                      const std::optional<Explanation>& error,
                      const std::function<void(Json&)>& addKeys) {
  Json json = printerJson(report.printer);
  json["result"] = rowOf(report.result).word;
  if (fields == Fields::Set) {
    json["ssid_before"] = orNull(report.ssidBefore);
  }
  if (fields != Fields::ResultOnly) {
    const session::AdapterState& state = report.state;
    json["ssid"] = orNull(state.ssid);
    json["ip"] = state.address ? Json(addressText(*state.address)) : Json(nullptr);
    json["trouble_code"] = orNull(state.troubleCode);
    json["authentication"] = authenticationJson(state.authentication);
  }
  constexpr double tenths = 10.0;
  json["seconds"] = std::round(seconds * tenths) / tenths;
  json["error"] = error ? errorJson(*error) : Json(nullptr);
  if (addKeys) {
    addKeys(json);
  }
  return std::make_shared<const Json>(std::move(json));
}

void addCertificates(const session::CertificateReport& report, Json& entry) {
  if (report.report.result != session::Result::Ok) {
    return;
  }
  entry["certificates"] = Json::array();
  entry["authorities"] = Json::array();
  for (const std::string& name : report.certificates) {
    entry["certificates"].push_back({{"name", name}});
  }
  for (const session::AuthorityEntry& authority : report.authorities) {
    entry["authorities"].push_back({{"name", authority.name},
                                    {"file", orNull(authority.file)},
                                    {"common_name", orNull(authority.commonName)}});
  }
}

std::string documentText(const std::vector<JsonEntry>& printers) {
  return textOf({{"schema", SchemaVersion}, {"printers", arrayOf(printers)}});
}

std::string documentText(const std::vector<JsonEntry>& printers, const Summary& summary) {
  return textOf(
      {{"schema", SchemaVersion},
       {"printers", arrayOf(printers)},
       {"summary",
        {{"done", summary.done}, {"failed", summary.failed}, {"skipped", summary.skipped}}}});
}

std::string errorText(const Explanation& error) {
  return textOf(
      {{"schema", SchemaVersion}, {"printers", Json::array()}, {"error", errorJson(error)}});
}

}  // namespace wifi
