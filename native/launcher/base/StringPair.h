// A name and a value, such as a Java system property and what it must be.
#pragma once

#include "launcher/base/PtrDeque.h"
#include "launcher/base/SString.h"

namespace vessant {

struct StringPair {
  SString name;
  SString value;
};

using StringPairPtrDE = PtrDE<StringPair>;
using StringPairPtrDeque = PtrDeque<StringPair>;

}  // namespace vessant
