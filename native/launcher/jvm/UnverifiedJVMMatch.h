// Candidate homes that the whole-disk walk found for one JVM file, to be verified after the walk.
#pragma once

#include "launcher/base/PtrDeque.h"
#include "launcher/base/StringDeque.h"
#include "launcher/jvm/JVMFile.h"

namespace vessant {

struct UnverifiedJVMMatch {
  explicit UnverifiedJVMMatch(JVMFile& file) : jvmFile(file) {}

  JVMFile& jvmFile;
  /// Each home once, in the order found.
  StringDeque homes;
};

using UnverifiedJVMMatchPtrDE = PtrDE<UnverifiedJVMMatch>;
using UnverifiedJVMMatchPtrDeque = PtrDeque<UnverifiedJVMMatch>;

}  // namespace vessant
