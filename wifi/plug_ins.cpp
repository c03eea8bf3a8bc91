#include "wifi/plug_ins.h"

#include <algorithm>
#include <set>

namespace wifi {

namespace {

using namespace std::chrono_literals;

/// The printer must have had the same device for so long. By then udev has set the permissions of
/// the device file.
constexpr auto SettleTime = 500ms;
/// The same for a printer without usblp. The system may have to load the driver first.
constexpr auto SettleTimeWithoutDriver = 3s;
/// A printer that has accepted settings may restart within this time.
constexpr std::chrono::seconds RestartTime = 30s;
/// A printer that is gone for less than this time and keeps its address was not unplugged: only its
/// interfaces were set up again.
constexpr auto ShortestAbsence = 2s;

auto settleTimeOf(const session::Printer& printer) {
  const bool hasDriver = printer.device.starts_with(session::UsblpPrefix);
  return hasDriver ? std::chrono::milliseconds(SettleTime) : SettleTimeWithoutDriver;
}

}  // namespace

PlugIns::Key PlugIns::keyOf(const session::Printer& printer) {
  return {printer.serial.has_value(), printer.serial.value_or(printer.port.value_or(""))};
}

PlugIns::PlugIns(std::span<const session::Printer> present, const Rules& rules, Time now)
    : m_Rules(rules) {
  for (const session::Printer& printer : present) {
    Record& record = m_Records[keyOf(printer)];
    see(record, printer, now);
    record.isHandled = true;
  }
}

PlugIns::Decision PlugIns::decide(std::span<const session::Printer> printers, Time now) {
  Decision decision;
  std::set<Key> keys;
  for (const session::Printer& printer : printers) {
    const Key key = keyOf(printer);
    if (!keys.insert(key).second) {
      continue;  // a twin: the printers cannot be distinguished
    }
    Record& record = m_Records[key];
    see(record, printer, now);
    if (record.isHandled || record.isWorking) {
      continue;
    }
    if (const Time settled = record.since + settleTimeOf(printer); now < settled) {
      decision.next = std::min(decision.next.value_or(settled), settled);
      continue;
    }
    record.isHandled = true;
    if (printer.serial && record.end == End::Done && !m_Rules.force) {
      decision.done.push_back(printer);
      continue;
    }
    if (printer.serial) {
      discount(record);
    }
    record.isWorking = true;
    decision.ready.push_back(printer);
  }
  for (auto& [key, record] : m_Records) {
    if (!record.gone && !keys.contains(key)) {
      record.gone = now;
    }
  }
  return decision;
}

void PlugIns::see(Record& record, const session::Printer& printer, Time now) const {
  const std::string address = printer.address.value_or("");
  const bool wasUnplugged = record.gone && now - *record.gone >= ShortestAbsence;
  record.gone.reset();
  if (record.address != address || wasUnplugged) {
    record.address = address;
    record.device = printer.device;
    record.since = now;
    // A printer without a serial number may be another one. If it is the same one, setting it up
    // again stores nothing unless --force is given.
    record.isHandled = (printer.serial || m_Rules.force) && isRestart(record, now);
  } else if (record.device != printer.device) {
    record.device = printer.device;
    record.since = now;
  }
}

bool PlugIns::isRestart(const Record& record, Time now) const {
  if (record.isWorking || !record.end || record.end == End::Failed) {
    return false;
  }
  // A printer that was waited for in vain has had this time to restart.
  const auto waited = record.end == End::Unconfirmed ? m_Rules.waited : 0s;
  return now - record.ended < RestartTime - waited;
}

void PlugIns::discount(Record& record) {
  if (record.end) {
    --(record.end == End::Done ? m_Done : m_Failed);
    record.end.reset();
  }
}

void PlugIns::finish(const session::Printer& printer, End end, Time now) {
  Record& record = m_Records[keyOf(printer)];
  record.isWorking = false;
  record.end = end;
  record.ended = now;
  ++(end == End::Done ? m_Done : m_Failed);
  if (end != End::Failed) {
    record.isHandled = true;  // if it came back during the work, it had restarted
  }
}

}  // namespace wifi
