// The launcher's messages in the user's language, for rooms that put them into their exceptions.
#pragma once

#include <cstdint>

#include "launcher/base/SString.h"

namespace vessant {

/// The error texts that the launcher's own code raises.
enum class ErrorId : int {
  InputFileNotLoaded = 0,
  InstructionsNotLoaded = 1,
  LaunchScriptNotLoaded = 2,
  JvmFileNotLoaded = 3,
  InvalidJvmFileId = 4,
  InvalidAction = 5,
  MissingLogFileName = 6,
  ExtractionFailed = 7,
  IndexNotLoaded = 8,
  NoJvmInstaller = 9,
  InvalidJvm = 10,
  MissingInputFileName = 11,
  NoJvmFound = 12,
  SearchAllFailed = 13,
  InputFileNotOpened = 14,
  WriteFailed = 15,
  TempSpaceHint = 16,
  Canceled = 17,
  TempRootMissing = 18,
};

class MessageSource {
 public:
  virtual ~MessageSource() = default;
  /// The text as it is stored, without substitution; empty for an unknown number.
  [[nodiscard]] virtual SString errorText(ErrorId error) const = 0;
  /// The text with `argument` in place of its "%s".
  [[nodiscard]] virtual SString formatError(ErrorId error, const SString& argument) const = 0;
};

}  // namespace vessant
