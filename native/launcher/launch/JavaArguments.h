// What a Java command is given: its class path, put together from options, side files, the JVM
// file, the launch script and the archives that the launcher carries; its system properties; and
// the arguments of the Java VM.
//
// Side files are small text files next to the launcher file by which a user or an administrator
// adds to all three without touching the installer.
#pragma once

#include <string_view>

#include "launcher/base/Deque.h"
#include "launcher/base/SString.h"
#include "launcher/launch/JvmTags.h"
#include "launcher/launch/LaunchContext.h"

namespace vessant {

/// The extensions of the side files.
namespace sidefile {
inline constexpr std::string_view kClassPathFirst = ".cp1";
inline constexpr std::string_view kClassPath = ".cp";
inline constexpr std::string_view kClassPathLast = ".cp2";
inline constexpr std::string_view kSystemProperties = ".sp";
inline constexpr std::string_view kJavaArguments = ".ja";
}  // namespace sidefile

/// The launcher file's path without its extension, and the suffix. A bare name, without any
/// directory, keeps its extension.
[[nodiscard]] SString sideFilePath(const SString& launcherFile, std::string_view suffix);

/// Reads the lines of a text file, trimmed, into `lines`. Returns whether it could be opened: a
/// side file that is not there is no error.
bool readLines(const SString& path, StringDeque& lines);

/// A system property as the JVM file writes it; the value's @ macros are expanded. Nothing is
/// quoted.
[[nodiscard]] SString systemProperty(const SString& name, const SString& value, JvmTags& jvm);

/// The properties of the ".sp" side file, separated by blanks. Lines without "=" are skipped.
[[nodiscard]] SString runtimeSystemProperties(const SString& launcherFile, JvmTags& jvm);

/// The arguments of the ".ja" side file, separated by blanks, then a blank and the arguments that
/// the JVM always requires. The blank is put even when nothing came before. Kept: command templates
/// join it to the text in front.
[[nodiscard]] SString runtimeJavaArguments(const SString& launcherFile, JvmTags& jvm);

/// Puts a class path together; the JVM file says with which separator.
class ClassPathBuilder {
 public:
  /// Both must outlive this.
  ClassPathBuilder(LaunchContext& context, const JvmTags& jvm);

  /// The whole class path, in its fixed order. `archive` is the launch script's own entry;
  /// `includeArchives` adds the embedded class-path archives.
  [[nodiscard]] SString build(const StringDeque& entries, const SString& archive,
                              bool includeArchives) const;

  /// True when the JVM file asks for the class path in an environment variable.
  [[nodiscard]] bool usesEnvironment() const { return useEnvironment_; }

  /// Appends an entry behind a separator. An empty one adds nothing.
  void appendClassPathEntry(SString& classPath, const SString& entry) const;
  /// Appends the text of an option: trimmed; "@" and a path stand for the list file of that name.
  void addClassPathOption(SString& classPath, const SString& text) const;
  /// The class path of a list file, one entry a line. A missing file is empty, and logged as a
  /// warning when `warn` is set.
  [[nodiscard]] SString readClassPathFile(const SString& path, bool warn) const;
  /// The same for the side file with the suffix.
  [[nodiscard]] SString readSideFileClassPath(std::string_view suffix) const;
  /// The extracted class-path archives, in double quotes if wanted.
  [[nodiscard]] SString extractedArchives(bool quote) const;

 private:
  [[nodiscard]] SString asEntry(const SString& entry) const;

  LaunchContext& context_;
  const JvmTags& jvm_;
  SString separator_;
  bool useEnvironment_;
};

}  // namespace vessant
