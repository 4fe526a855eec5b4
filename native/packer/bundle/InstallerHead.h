// The shell script in front of a bundled runtime's archive.
#pragma once

#include <cstdint>
#include <string>

namespace vessant {

struct RuntimeFacts {
  /// What unpacking makes: files, directories and links; and the bytes of the files.
  std::uint64_t files = 0;
  std::uint64_t bytes = 0;
  /// The machine of its programs as ELF numbers it, and whether its integers are big-endian.
  std::uint16_t machine = 0;
  bool isBigEndian = false;
  /// Whether the archive behind the script is compressed with gzip.
  bool isCompressed = false;
};

/// The directory that the runtime is unpacked into, and the file that tells of it.
inline constexpr const char* kRuntimeDirectory = "jre";
inline constexpr const char* kRuntimeJvmFile = "jvm";
/// The name of that file while the runtime is not proven; the last one in the archive.
inline constexpr const char* kUnprovenJvmFile = "jvm.new";

/// A POSIX shell script, to be followed by the tar archive at once. It unpacks the archive into the
/// current directory, runs the runtime once and only then renames the JVM file. Whatever goes wrong
/// is told in one line on standard error; what was unpacked is then removed again. The second line
/// says what is unpacked, `# vspack bundle-jvm unpacks=FILES:BYTES`, for the packer to read.
[[nodiscard]] std::string installerHead(const RuntimeFacts& facts);

/// A pattern of the shell for what `uname -m` may say on machines that run such programs; empty
/// when that is not known.
[[nodiscard]] std::string unamePattern(std::uint16_t machine, bool isBigEndian);

}  // namespace vessant
