// A new installer, as `vspack init` is asked for one, and what it writes for the author to pack and
// to go on with.
#pragma once

#include <string>
#include <vector>

#include "packer/check/JarFile.h"
#include "packer/jvm/JvmFileText.h"

namespace vessant {

/// Where the program's Java comes from.
enum class JavaSource {
  /// The user's machine.
  Found,
  /// The installer brings it.
  Bundled,
  /// The user's machine, and where there is none the installer.
  FoundOrBundled,
};

/// A file name of letters, digits, ".", "_" and "-" alone, made of any file name: nothing of it
/// means something to a shell or to the launcher's macros.
[[nodiscard]] std::string safeFileName(const std::string& name);

struct Project {
  /// What its files are called: safe in a shell, without extension.
  std::string name;
  /// As the author writes it, in UTF-8.
  std::string title;
  ApplicationJar jar;
  JavaRange range = {};
  JavaSource javaSource = JavaSource::Found;
};

/// The names of what is packed from it, and of its two large files.
[[nodiscard]] std::string installerNameOf(const Project& project);
[[nodiscard]] std::string jarNameOf(const Project& project);
[[nodiscard]] std::string runtimeNameOf(const Project& project);

/// A JVM file that is no JVM's: launched, it makes the launch command print on standard error which
/// Java is needed, what to install and how to name one, and end with status 3.
[[nodiscard]] std::string noJavaFileText(const JavaRange& range);

/// The same for a bundled runtime that could not be unpacked or run.
[[nodiscard]] std::string noRuntimeFileText();

/// The tag of those two files that the launch command prints.
inline constexpr const char* kNoJavaTag = "NO_JAVA";

/// One file of the directory; the name has no directory in front.
struct ProjectFile {
  std::string name;
  std::string text;
};

/// All texts of a project: manifest, script, launch script, JVM files and a page for the author.
/// Throws LauncherException when the title cannot be shown.
[[nodiscard]] std::vector<ProjectFile> textsOf(const Project& project);

}  // namespace vessant
