#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>

#include "npa/setting_keys.h"

/// A query for one setting. The texts are for the log. Only
/// `wnpaGenerator::collectReply` logs queries. Queries that do not use it have no texts.
struct SettingQuery {
  npa::SettingKey key;
  /// The log line before the request.
  const char* announcement = nullptr;
  /// The start of the log line with the size of the reply. A dump of the reply follows the line. If
  /// this is null, neither the line nor the dump is written.
  const char* responseName = nullptr;
};

/// The result of a query whose reply is only dumped. The result is the same whether a reply arrived
/// or not.
inline constexpr int DumpedOnly = -1;

/// The part of a reply from the start of a record to the end of the reply. In this layout the bytes
/// are in hex, and a number in parentheses is a count of bytes:
///
///     A5 length(2) 50 E0 D8 00 group object size(2) value
using Record = std::span<const unsigned char>;

/// Offsets in a record.
inline constexpr std::size_t RecordSizeOffset = 9;
inline constexpr std::size_t RecordValueOffset = 11;

/// Calls `visit` for each record of the setting in a collected reply, in order, until `visit`
/// returns true. The header of each visited record is complete, but its value may be cut.
void visitRecords(std::span<const unsigned char> reply, npa::SettingKey key,
                  const std::function<bool(Record)>& visit);

/// Returns the first byte of a record's value, or nothing if that byte did not arrive.
[[nodiscard]] std::optional<npa::Byte> statusIn(Record record);

/// Returns the status from the first record of `key` that contains a status. Returns nothing if no
/// record contains one. Prints nothing.
[[nodiscard]] std::optional<npa::Byte> firstStatusIn(std::span<const unsigned char> reply,
                                                     npa::SettingKey key);
