// Builds launcher files byte by byte, without any code of the launcher or the packer: what the
// tests hold against both.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vessant::test {

/// The types of embedded files, as the index numbers them.
enum FileKind : int {
  kScript = 0,
  kJvmFile = 1,
  kLaunchScript = 2,
  kClassPathArchive = 3,
  kJvmInstaller = 4,
  kVerificationClass = 5,
  kApplicationArchive = 6,
  kEmbeddedLauncher = 7,
};

/// Numbers as a launcher file writes them.
[[nodiscard]] std::string bigEndian32(std::uint32_t number);
[[nodiscard]] std::string bigEndian16(std::uint16_t number);

class LauncherFileBuilder {
 public:
  /// What stands in front of the appended files; empty by default.
  LauncherFileBuilder& stub(std::string_view bytes);
  /// The real launcher as the stub.
  LauncherFileBuilder& launcherStub();
  LauncherFileBuilder& add(int type, std::uint32_t id, std::string_view name,
                           std::string_view bytes);
  /// The same with size information.
  LauncherFileBuilder& addExpanding(int type, std::uint32_t id, std::string_view name,
                                    std::string_view bytes, std::uint32_t expandedFiles,
                                    std::uint32_t expandedSize);
  LauncherFileBuilder& modeByte(int mode);
  LauncherFileBuilder& identification(std::uint32_t value);

  [[nodiscard]] std::string bytes() const;
  /// Writes the file, executable, and returns its path.
  std::string write(const std::string& path) const;

 private:
  std::string stub_;
  std::string files_;
  std::vector<std::string> entries_;
  int modeByte_ = 0;
  std::uint32_t identification_ = 0xCA82CA82U;
  [[nodiscard]] std::string entryHead(int type, std::uint32_t id, std::string_view name,
                                      std::string_view bytes) const;
};

}  // namespace vessant::test
