#pragma once

#include <string>
#include <string_view>

/// The predefined entities: &amp; &quot; &apos; &lt; &gt;.
namespace xml {

/// Returns the character of `entity`, such as "<" for "&lt;". Returns an empty text unless it is
/// one of the predefined entities.
std::string_view characterOf(std::string_view entity);

/// Replaces every entity in `text`, from "&" to the next ";", by its character. Removes unknown
/// entities. Does not search a replaced character again, and does not search the character after a
/// removed entity.
void replaceEntities(std::string& text);

}  // namespace xml
