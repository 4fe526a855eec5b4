// The written form of a tag file.
#pragma once

#include "launcher/base/SString.h"
#include "launcher/tagfile/TagTable.h"

namespace vessant {

/// Writes the tags that have values in the form that reading them gives back. When the file cannot
/// be created nothing is written. A file that cannot be written whole is removed, because what is
/// cut could pass for a whole one; a device is left alone, and behind a link the file is emptied.
/// Neither raises an error.
void writeTagFile(const TagTable& tags, const SString& path);

}  // namespace vessant
