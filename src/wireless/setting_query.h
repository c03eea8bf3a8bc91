#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>

#include "npa/setting_keys.h"

/// A query for one setting. The texts are for the log. Queries that an exchange of the table runs
/// have no texts, because only `collectReply` logs them.
struct SettingQuery {
  npa::SettingKey key;
  /// The log line before the request.
  const char* announcement = nullptr;
  /// The start of the log line with the size of the reply. A dump follows it. If this is null,
  /// there is neither.
  const char* responseName = nullptr;
};

/// The result of a query whose reply is only dumped, with or without a reply.
inline constexpr int DumpedOnly = -1;

/// The rest of a reply, from a record of a queried setting on. The bytes are in hex; a number in
/// parentheses is a count of bytes:
///
///     A5 length(2) 50 E0 D8 00 group object size(2) value
using Record = std::span<const unsigned char>;

/// Offsets in a record.
inline constexpr std::size_t RecordSizeOffset = 9;
inline constexpr std::size_t RecordValueOffset = 11;

/// Calls `visit` for each record of the setting in a collected reply, in order, until it returns
/// true. The header of the record is complete; its value may be cut.
void visitRecords(std::span<const unsigned char> reply, npa::SettingKey key,
                  const std::function<bool(Record)>& visit);

/// Returns the first byte of a record's value, or nothing if it did not arrive.
[[nodiscard]] std::optional<npa::Byte> statusIn(Record record);

/// Returns the status in the first record of the setting that has one, or nothing if no record has
/// one. Prints nothing.
[[nodiscard]] std::optional<npa::Byte> firstStatusIn(std::span<const unsigned char> reply,
                                                     npa::SettingKey key);
