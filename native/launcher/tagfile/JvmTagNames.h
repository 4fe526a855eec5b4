// The names of a JVM file's tags. What each is for stands with the author's manual; here are the
// spellings, once.
#pragma once

namespace vessant::jvmtag {

// How the Java VM is recognised, and what a user reads of it.
inline constexpr const char* kDescription = "DESC";
inline constexpr const char* kProperties = "JVM_PROPERTIES";
inline constexpr const char* kExecutable = "JVM_EXE";

// Where it is looked for.
inline constexpr const char* kPathHint = "PATH_HINT";
inline constexpr const char* kPlatformHint = "PLATFORM_HINT";
inline constexpr const char* kSearchAll = "SEARCH_ALL";

// The one that was found, and the file that describes it to the next stage.
inline constexpr const char* kHome = "JVM_HOME";
inline constexpr const char* kFile = "JVM_FILE";
inline constexpr const char* kTemporary = "JVM_TEMP";

// How its command line is written.
inline constexpr const char* kRequiredArguments = "REQ_JAVA_ARGS";
inline constexpr const char* kClassPathOption = "CLASSPATH";
inline constexpr const char* kClassPathSeparator = "CLASSPATH_SEPARATOR";
inline constexpr const char* kOwnClassPath = "JVM_CLASSPATH";
inline constexpr const char* kUseClassPathVariable = "USE_CP_ENV_VAR";
inline constexpr const char* kClassPathVariable = "CP_ENV_VAR";
inline constexpr const char* kSystemProperty = "SYSTEM";
inline constexpr const char* kSystemSeparator = "SYSTEM_SEPARATOR";
inline constexpr const char* kWizardEnvironment = "SET_ENV_FOR_WIZARD";

}  // namespace vessant::jvmtag
