// A range of Java versions, as authors write it ("17", "17-21"), and where Linux systems put such
// Javas.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vessant {

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

}  // namespace vessant
