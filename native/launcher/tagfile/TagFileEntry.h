// One tag of a tag file: a name and its values, of which a parsed tag has at least one.
#pragma once

#include <utility>

#include "launcher/base/PtrDeque.h"
#include "launcher/base/SString.h"
#include "launcher/base/StringDeque.h"

namespace vessant {

struct TagFileEntry {
  explicit TagFileEntry(SString tagName) : name(std::move(tagName)) {}

  SString name;
  StringDeque values;
};

using TagFileEntryPtrDE = PtrDE<TagFileEntry>;
using TagFileEntryPtrDeque = PtrDeque<TagFileEntry>;

}  // namespace vessant
