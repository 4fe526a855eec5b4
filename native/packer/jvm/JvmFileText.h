// The text of a JVM file: which Java is wanted, and where to look for it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vessant {

/// Feature versions, both ends included.
struct JavaRange {
  /// The oldest one that the verification class runs on.
  static constexpr int kOldest = 8;
  /// A number that no Java will have soon; beyond it a typing mistake is more likely.
  static constexpr int kLargest = 999;

  int min = kOldest;
  std::optional<int> max = std::nullopt;  // nothing: any newer one
};

/// Reads one version: "17", and "1.8" for 8. Throws LauncherException for anything else, with the
/// text.
[[nodiscard]] int parseJavaVersion(std::string_view text);

/// Reads "17" (17 or newer) or "17-21". Throws LauncherException for anything else and for a range
/// that holds no version.
[[nodiscard]] JavaRange parseJavaRange(std::string_view text);

/// Throws LauncherException when the range holds no version.
void checkJavaRange(const JavaRange& range);

/// "Java 17 or newer", "Java 17 to 21" or "Java 17".
[[nodiscard]] std::string describe(const JavaRange& range);

/// Names of environment variables with the user's own choice of a Java home.
[[nodiscard]] std::vector<std::string> platformHints();

/// The same and then, newest version first, those that build machines set for each version, such
/// as JAVA_HOME_17_X64.
[[nodiscard]] std::vector<std::string> platformHints(const JavaRange& range);

/// Java homes: "jre" beside the installer, the places of the system's own choice, then, newest
/// version first, those of the distributions' and vendors' packages for each version of the range.
/// A range without an upper end stops at the newest Java known here: the places without a version
/// cover later ones.
[[nodiscard]] std::vector<std::string> pathHints(const JavaRange& range);

/// What an author asks of a Java.
struct JavaWish {
  JavaRange range;
  bool jdk = false;
  /// The value of java.vendor; empty: anybody's. One that ends in "..." is a prefix.
  std::string vendor = {};
  std::vector<std::string> modules = {};
};

/// "Java 17 or newer", with what else is asked: "a JDK", the vendor, the modules.
[[nodiscard]] std::string describe(const JavaWish& wish);

/// A JVM file for it, with hints for the places where Linux systems put their Javas. Throws
/// LauncherException when a module's name could not stand in the command of the verification or
/// the vendor is no line of text.
[[nodiscard]] std::string jvmFileText(const JavaWish& wish);

/// A JVM that is there, described by its own system properties.
struct KnownJava {
  std::string description;
  /// In the order in which they are asked.
  std::vector<std::pair<std::string, std::string>> properties;
  std::string home;
  /// Whether to look for it at its home, and at JAVA_HOME and its like, too.
  bool isLookedFor = true;
};

/// A JVM file for every JVM with the same values. The home is the file's own JVM_HOME.
[[nodiscard]] std::string jvmFileText(const KnownJava& java);

}  // namespace vessant
