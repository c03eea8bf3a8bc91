#include "wifi/text_report.h"

#include <algorithm>
#include <array>
#include <vector>

#include "npa/status_texts.h"
#include "util/format.h"
#include "wifi/explanation.h"
#include "wifi/results.h"
#include "wifi/shown_text.h"
#include "wifi/translation.h"

namespace wifi {

namespace {

constexpr std::size_t ColumnGap = 2;

std::string padded(const std::string& text, std::size_t columns) {
  return text + std::string(columns - std::min(columns, columnsOf(text)), ' ');
}

const char* stateText(session::Printer::State state) {
  switch (state) {
    case session::Printer::State::NoPermission:
      return tr("no permission");
    case session::Printer::State::Busy:
      return tr("in use");
    case session::Printer::State::Ready:
      break;
  }
  return tr("ready");
}

std::string authenticationText(npa::Byte code) {
  return code < npa::AuthStatusTexts.size() ? tr(npa::AuthStatusTexts[code].data())
                                            : std::to_string(code);
}

std::string networkText(const std::string& ssid) {
  return ssid.empty() ? std::string(tr("none")) : shown(ssid);
}

}  // namespace

std::string addressText(const npa::Address& address) {
  return util::formatted("%d.%d.%d.%d", address[0], address[1], address[2], address[3]);
}

std::string listText(std::span<const session::Printer> printers) {
  constexpr std::size_t columns = 5;
  std::vector<std::array<std::string, columns>> rows;
  std::array<std::size_t, columns> widths{};
  for (const session::Printer& printer : printers) {
    const auto& row = rows.emplace_back(std::array<std::string, columns>{
        printer.device, printer.address.value_or("-"), nameOf(printer),
        shown(printer.serial.value_or("-")), stateText(printer.state)});
    for (std::size_t i = 0; i < columns; ++i) {
      widths[i] = std::max(widths[i], columnsOf(row[i]));
    }
  }
  std::string text;
  for (const auto& row : rows) {
    for (std::size_t i = 0; i + 1 < columns; ++i) {
      text.append(padded(row[i], widths[i] + ColumnGap));
    }
    text.append(row.back()).append("\n");
  }
  return text;
}

std::string labelledText(std::span<const LabelledValue> values) {
  std::size_t width = 0;
  for (const LabelledValue& line : values) {
    width = std::max(width, columnsOf(line.label));
  }
  std::string text;
  for (const LabelledValue& line : values) {
    text.append(padded(std::string(line.label) + ":", width + 1 + ColumnGap));
    text.append(line.value).append("\n");
  }
  return text;
}

std::string statusText(const session::Report& report) {
  const session::AdapterState& state = report.state;
  const std::string missing = tr("not reported");
  const auto values = std::to_array<LabelledValue>({
      {tr("Printer"), printerText(report.printer)},
      {tr("Network"), state.ssid ? networkText(*state.ssid) : missing},
      {tr("Address"), state.address ? addressText(*state.address) : missing},
      {tr("Trouble code"), state.troubleCode ? std::to_string(*state.troubleCode) : missing},
      {tr("Authentication"),
       state.authentication ? authenticationText(*state.authentication) : missing},
  });
  return labelledText(values);
}

std::string setText(const session::Report& report) {
  const std::string name = printerText(report.printer);
  const std::string ssid = shown(report.state.ssid.value_or(""));
  const std::string address =
      report.state.address ? addressText(*report.state.address) : std::string();
  switch (report.result) {
    case session::Result::Confirmed:
      return util::formatted(tr("%s is in the network \"%s\" with the address %s.\n"), name.c_str(),
                             ssid.c_str(), address.c_str());
    case session::Result::Unchanged:
      return util::formatted(
          tr("%s was in the network \"%s\" already, with the address %s. Nothing was stored.\n"),
          name.c_str(), ssid.c_str(), address.c_str());
    case session::Result::Skipped:
      return util::formatted(tr("%s was done before. Nothing was stored.\n"), name.c_str());
    default:
      return util::formatted(tr("%s has accepted the settings.\n"), name.c_str());
  }
}

}  // namespace wifi
