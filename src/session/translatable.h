#pragma once

namespace session {

/// Marks a text that front ends translate, so that xgettext finds it
/// (`--keyword=translatable`). Returns the text unchanged.
constexpr const char* translatable(const char* text) {
  return text;
}

}  // namespace session
