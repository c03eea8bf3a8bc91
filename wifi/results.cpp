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
    {Result::Failed, "failed", StatusInternalError},
    {Result::Skipped, "skipped", StatusDone},
});

}  // namespace

const ResultRow& rowOf(Result result) {
  return *std::ranges::find(Rows, result, &ResultRow::result);
}

int exitStatusOf(const session::Report& report, bool waited, int signal) {
  if (report.result == Result::Interrupted && signal != 0) {
    return StatusSignalBase + signal;
  }
  const bool isDone = report.result == Result::Stored && !waited;
  return isDone ? StatusDone : rowOf(report.result).status;
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
