#include "wifi/results.h"

#include <algorithm>
#include <array>

namespace wifi {

namespace {

using session::Result;

constexpr auto Rows = std::to_array<ResultRow>({
    {Result::Ok, "ok", StatusDone},
    {Result::Unchanged, "unchanged", StatusDone},
    {Result::Confirmed, "confirmed", StatusDone},
    {Result::Stored, "stored", StatusNotConfirmed},
    {Result::DryRun, "dry-run", StatusDone},
    {Result::Invalid, "invalid", StatusInvalid},
    {Result::NoSuchPrinter, "no-such-printer", StatusNoPrinter},
    {Result::NoPermission, "no-permission", StatusNoPermission},
    {Result::Busy, "busy", StatusBusy},
    {Result::Refused, "refused", StatusRefused},
    {Result::NoAnswer, "no-answer", StatusNoAnswer},
    {Result::Interrupted, "interrupted", StatusSignalBase},
});

}  // namespace

const ResultRow& rowOf(Result result) {
  return *std::ranges::find(Rows, result, &ResultRow::result);
}

int exitStatusOf(std::span<const session::Report> reports, bool waited, int signal) {
  const auto statusOf = [=](const session::Report& report) {
    if (report.result == Result::Stored && !waited) {
      return static_cast<int>(StatusDone);
    }
    return rowOf(report.result).status;
  };
  if (signal != 0) {
    return StatusSignalBase + signal;
  }
  if (reports.size() == 1) {
    return statusOf(reports.front());
  }
  const bool allDone = std::ranges::all_of(
      reports, [&](const session::Report& report) { return statusOf(report) == StatusDone; });
  return allDone ? StatusDone : StatusSomeFailed;
}

std::string_view wordOf(session::Printer::State state) {
  switch (state) {
    case session::Printer::State::NoPermission:
      return "no-permission";
    case session::Printer::State::Busy:
      return "busy";
    case session::Printer::State::Ready:
      break;
  }
  return "ready";
}

}  // namespace wifi
