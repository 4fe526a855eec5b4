#include "packer/init/NoJavaMessage.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "packer/jvm/TagLines.h"

namespace vessant {
namespace {

/// Those that distributions go on offering for years, oldest first.
constexpr int kLongTerm[] = {8, 11, 17, 21, 25};
/// A version that all of them have at present.
constexpr int kEverywhere = 21;
/// What "default-jre" of the oldest Debian and Ubuntu in use is.
constexpr int kDebianDefault = 17;

/// A command of the shell. The lines must be free of what printf, single quotes and the launcher's
/// macros would read: percent signs, backslashes, apostrophes, "@" and "#".
std::string printAndEnd(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\\n";
  return "printf '" + text + "' >&2; exit 3;";
}

/// The version to install: the oldest of the range that is easy to come by.
int recommended(const JavaRange& range) {
  const int oldest = range.max ? range.min : std::max(range.min, kEverywhere);
  for (const int version : kLongTerm) {
    if (version >= oldest && version <= range.max.value_or(version)) return version;
  }
  return range.min;
}

std::vector<std::string> installCommands(const JavaRange& range) {
  const int version = recommended(range);
  const std::string number = std::to_string(version);
  const std::string dotted = version == JavaRange::kOldest ? "1.8.0" : number;
  const bool isDefault = !range.max && range.min <= kDebianDefault;
  return {
      "  Debian, Ubuntu:  sudo apt install " +
          (isDefault ? "default-jre" : "openjdk-" + number + "-jre"),
      "  Fedora:          sudo dnf install java-" + (range.max ? dotted : "latest") + "-openjdk",
      "  openSUSE:        sudo zypper install java-" + dotted + "-openjdk",
      "  Arch:            sudo pacman -S jre" + (range.max ? number : "") + "-openjdk"};
}

std::string fileText(const std::string& description, const std::vector<std::string>& lines) {
  return tagLine("DESC", description) + tagLine(kNoJavaTag, printAndEnd(lines));
}

}  // namespace

std::string noJavaFileText(const JavaRange& range) {
  std::vector<std::string> lines = {
      "This program needs " + describe(range) + ", and none was found.",
      "Install one, for example with one of these commands:"};
  for (std::string& command : installCommands(range)) lines.push_back(std::move(command));
  lines.insert(
      lines.end(),
      {"Or name one that is somewhere else, with the arguments", "  -vs:javahome DIRECTORY",
       "or in the environment variable JAVA_HOME: the directory that holds bin/java."});
  return fileText("no Java", lines);
}

std::string noRuntimeFileText() {
  return fileText("no bundled Java",
                  {"The Java that comes with this program could not be unpacked, or does not run "
                   "here.",
                   "There may be too little room in the temporary directory, or programs may not "
                   "run in it:",
                   "  -vs:tempdir DIRECTORY   uses another one",
                   "  -vs:log FILE            writes down what went wrong"});
}

}  // namespace vessant
