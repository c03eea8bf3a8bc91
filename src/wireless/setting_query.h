#pragma once

#include <cstddef>
#include <functional>
#include <span>

#include "npa/packet.h"

/// A query for one setting. The texts are for those whose collected reply the generator looks at
/// itself.
struct SettingQuery {
  npa::Byte group;
  npa::Byte object;
  const char* announcement = nullptr;
  /// Opens the line that tells the reply's size, with a dump behind it; null for no such line.
  const char* responseName = nullptr;
};

/// What a query returns that does nothing with the reply but dump it.
inline constexpr int DumpedOnly = -1;

/// A record of a queried setting inside a reply:
///
///     A5 length(2) 50 E0 D8 00 group object size(2) value
using Record = std::span<const unsigned char>;

inline constexpr std::size_t RecordSizeOffset = 9;
inline constexpr std::size_t RecordValueOffset = 11;

/// Calls `visit` with the rest of the reply from each record of the queried setting on, in order,
/// until it returns true. The record's header is sure to be there, its value is not.
void visitRecords(std::span<const unsigned char> reply, const SettingQuery& query,
                  const std::function<bool(Record)>& visit);
