// Finds the printer that the user means.

#include <algorithm>
#include <iterator>
#include <utility>

#include "session/device_access.h"
#include "session/discovery.h"
#include "session/texts.h"
#include "session/usb_address.h"

namespace session {

namespace {

/// Returns true if the transport opens exactly the path `text`. From a path of another form the
/// transport takes only the number after "/lp" or "usblp". So it could open another printer than
/// the path names.
bool isUsblpPath(std::string_view text) {
  const std::string_view prefix = UsblpPrefix;
  return text.starts_with(prefix) && decimalNumber(text.substr(prefix.size()));
}

/// Returns make and model with one space between them.
std::string nameOf(const Printer& printer) {
  const bool both = printer.make && printer.model;
  return printer.make.value_or("") + (both ? " " : "") + printer.model.value_or("");
}

template <typename Condition>
std::vector<Printer> matches(const std::vector<Printer>& printers, Condition condition) {
  std::vector<Printer> result;
  std::ranges::copy_if(printers, std::back_inserter(result), condition);
  return result;
}

/// Returns the printers that `wanted` describes. `wanted` must not be empty.
std::vector<Printer> named(std::string_view wanted, const std::vector<Printer>& printers) {
  if (wanted.starts_with('/')) {
    return matches(printers, [wanted](const Printer& printer) {
      return printer.device == wanted || printer.node == wanted;
    });
  }
  if (const auto address = UsbAddress::parse(wanted)) {
    return matches(printers, [text = address->text()](const Printer& printer) {
      return printer.address == text;
    });
  }
  std::vector<Printer> result =
      matches(printers, [wanted](const Printer& printer) { return printer.serial == wanted; });
  if (result.empty()) {
    result = matches(printers, [part = lowerCase(wanted)](const Printer& printer) {
      return lowerCase(nameOf(printer)).find(part) != std::string::npos;
    });
  }
  return result;
}

/// Returns true if `other` can be the printer `printer`, which may have restarted since then.
bool canBe(const Printer& printer, const Printer& other) {
  if (printer.serial) {
    return other.serial == printer.serial;
  }
  return printer.port ? !other.serial && other.port == printer.port
                      : other.device == printer.device;
}

}  // namespace

Choice choosePrinter(std::string_view wanted, const Machine& machine) {
  using enum Choice::Problem;
  std::vector<Printer> printers = findPrinters(machine);
  std::vector<Printer> fitting = wanted.empty() ? printers : named(wanted, printers);
  Choice choice;
  if (fitting.size() == 1) {
    choice.printer = std::move(fitting.front());
  } else if (fitting.size() > 1) {
    choice.problem = Several;
    choice.candidates = std::move(fitting);
  } else if (isUsblpPath(wanted)) {
    choice.printer.device = choice.printer.node = wanted;
  } else {
    choice.problem = wanted.empty() ? NoPrinters : NoMatch;
    choice.candidates = std::move(printers);
  }
  return choice;
}

bool hasTwin(const Printer& printer, const Machine& machine) {
  return printer.serial && std::ranges::any_of(findPrinters(machine, StateTest::None),
                                               [&printer](const Printer& other) {
                                                 return other.serial == printer.serial &&
                                                        other.address != printer.address;
                                               });
}

std::optional<Printer> findAgain(const Printer& printer, bool hadTwin, const Machine& machine) {
  std::vector<Printer> fitting =
      matches(findPrinters(machine, StateTest::None),
              [&printer](const Printer& other) { return canBe(printer, other); });
  const auto difference = [&printer](const Printer& other) {
    return std::pair(other.address != printer.address, other.port != printer.port);
  };
  const auto best = std::ranges::min_element(fitting, {}, difference);
  if (best != fitting.end() && !(hadTwin && difference(*best) == std::pair(true, true))) {
    return std::move(*best);
  }
  const bool hasOnlyPath = !printer.serial && !printer.port;
  return hasOnlyPath && deviceExists(printer.node) ? std::optional(printer) : std::nullopt;
}

}  // namespace session
