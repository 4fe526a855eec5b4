#include "support/BuildPaths.h"

namespace vessant::test {

const char* const kSourceDir = VESSANT_SOURCE_DIR;
const char* const kBinaryDir = VESSANT_BINARY_DIR;
const char* const kLauncher = VESSANT_BINARY_DIR "/bin/launcher";
const char* const kVspack = VESSANT_BINARY_DIR "/bin/vspack";
const char* const kMessageCompiler = VESSANT_BINARY_DIR "/bin/message_compiler";
const char* const kTestHelper = VESSANT_BINARY_DIR "/tests/test_helper";
const char* const kFaultyLauncher = VESSANT_BINARY_DIR "/tests/faulty_launcher";

}  // namespace vessant::test
