// Where the build has put what the tests run and read. In one source file, so that moving the
// checkout compiles that file again and no other.
#pragma once

namespace vessant::test {

extern const char* const kSourceDir;
extern const char* const kBinaryDir;
extern const char* const kLauncher;
extern const char* const kVspack;
extern const char* const kMessageCompiler;
/// A program that imitates other programs.
extern const char* const kTestHelper;
/// The launcher with system calls that fail as the environment says.
extern const char* const kFaultyLauncher;

}  // namespace vessant::test
