// What holds for the tags of every kind of text.
#pragma once

#include <set>
#include <string>

#include "packer/Finding.h"
#include "packer/check/TagText.h"

namespace vessant {

/// Tags beyond the known ones that a JVM file may have, because a command puts them in as @TAG@.
using MacroTags = std::set<std::string, std::less<>>;

/// Reports unknown and doubled tags, switches that are neither 0 nor 1, values that nobody reads
/// and titles that users would see garbled.
void checkTags(const TagText& text, TextKind kind, const MacroTags& macroTags, Findings& findings);

/// Reports a tag that must be there, at the text's first line.
void requireTag(const TagText& text, const char* name, const std::string& purpose,
                Findings& findings);

}  // namespace vessant
