#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>

#include "npa/setting_keys.h"

/// A query for one setting. The texts are logged by the queries whose collected reply the generator
/// reads itself; a query that an exchange of the table answers has none.
struct SettingQuery {
  npa::SettingKey key;
  /// The line before the request.
  const char* announcement = nullptr;
  /// Opens the line that logs the reply's size, which a dump follows; null for no such line.
  const char* responseName = nullptr;
};

/// The result of a query whose reply is only dumped.
inline constexpr int DumpedOnly = -1;

/// A record of a queried setting inside a reply:
///
///     A5 length(2) 50 E0 D8 00 group object size(2) value
using Record = std::span<const unsigned char>;

inline constexpr std::size_t RecordSizeOffset = 9;
inline constexpr std::size_t RecordValueOffset = 11;

/// Calls `visit` for each record of the setting in a collected reply, in order, until it returns
/// true. The argument is the rest of the reply from the record on: its header is there, its value
/// may be cut.
void visitRecords(std::span<const unsigned char> reply, npa::SettingKey key,
                  const std::function<bool(Record)>& visit);

/// Returns the first byte of a record's value; nothing if it did not arrive.
[[nodiscard]] std::optional<npa::Byte> statusIn(Record record);

/// Returns the status in the first record of the setting that has one; nothing without such a
/// record. Prints nothing.
[[nodiscard]] std::optional<npa::Byte> firstStatusIn(std::span<const unsigned char> reply,
                                                     npa::SettingKey key);
