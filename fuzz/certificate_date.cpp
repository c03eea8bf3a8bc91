// The input is the text of a certificate's first or last day of validity. The date must equal the
// date that a simple model finds, and the validity text must be cut correctly for every tested
// buffer size.

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <openssl/asn1.h>
#include <string>

#include "cert/cert_mgr.h"
#include "fuzz_target.h"

namespace {

/// The largest tested buffer size in bytes. Usual validity texts are shorter.
constexpr int LargestRoom = 80;
constexpr int SizeTooSmall = 25;

/// The initial values are not a valid date, so they show that no date was set.
struct Date {
  int year = -1;
  int month = -2;
  int day = -3;

  bool operator==(const Date&) const = default;
};

Date dateOf(const std::string& text) {
  const std::unique_ptr<ASN1_TIME, void (*)(ASN1_TIME*)> time(::ASN1_TIME_new(), ::ASN1_TIME_free);
  fuzz::require(::ASN1_STRING_set(time.get(), text.data(), static_cast<int>(text.size())) == 1);
  Date date;
  const bool hasLengthOfADate = text.size() >= 13 && text.size() <= 20;
  const int result = CertMgr::getASN1Date(time.get(), date.year, date.month, date.day);
  fuzz::require(result == (hasLengthOfADate ? 0 : -1));
  return date;
}

/// Returns the number in `count` characters from `start` on.
int numberIn(const std::string& text, std::size_t start, std::size_t count) {
  constexpr int decimal = 10;
  return static_cast<int>(std::strtol(text.substr(start, count).c_str(), nullptr, decimal));
}

/// The model: two digits of the year if the text has 13 characters, four if it has 14 to 20.
Date expectedDate(const std::string& text) {
  if (text.size() < 13 || text.size() > 20) {
    return {};
  }
  const std::size_t yearSize = text.size() == 13 ? 2 : 4;
  int year = numberIn(text, 0, yearSize);
  if (yearSize == 2) {
    year += year > 49 ? 1900 : 2000;
  }
  return {year, numberIn(text, yearSize, 2), numberIn(text, yearSize + 2, 2)};
}

/// Writes the validity from `from` to `to` into a buffer of `room` bytes. Returns the whole buffer
/// and sets `count` to the result of the call.
std::string validity(Date from, Date to, int room, int& count) {
  std::string out(static_cast<std::size_t>(room), '#');
  count = CertMgr::formatCMCADate(from.year, from.month, from.day, to.year, to.month, to.day,
                                  out.data(), room);
  return out;
}

bool isMonth(int month) {
  return month >= 1 && month <= 12;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input = fuzz::textOf(data, size);
  const Date date = dateOf(input);
  fuzz::require(date == expectedDate(input));

  constexpr Date other = {2030, 12, 25};
  int count = 0;
  const std::string whole = validity(date, other, LargestRoom, count);
  const std::string written = whole.substr(0, static_cast<std::size_t>(count));
  fuzz::require((count > 0) == isMonth(date.month));
  for (int room = 0; room < LargestRoom; ++room) {
    const std::string out = validity(date, other, room, count);
    if (room <= SizeTooSmall || written.empty()) {
      fuzz::require(count == 0 && out == std::string(out.size(), '#'));
    } else {
      const int length = std::min(static_cast<int>(written.size()), room - 1);
      fuzz::require(count == length);
      const std::string text = written.substr(0, static_cast<std::size_t>(length));
      fuzz::require(out.substr(0, out.find('\0')) == text);
    }
  }
  return 0;
}
