#include "packer/init/Project.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "packer/WrittenText.h"
#include "packer/jvm/JvmFileText.h"

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

/// The names of packages are those that each distribution has had for years; a range with an end
/// needs one with a number in it.
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

constexpr std::string_view kPage = R"(# An installer for <JAR>

    vspack pack .
    ./<INSTALLER> ARGUMENTS

The first command writes the installer, which is one file. It starts the class
<MAIN>
with <JAVA>, hands its arguments on and ends with the program's exit status.

| file | |
|---|---|
| <NAME>.manifest | what is packed |
| <NAME>.instructions | what the launcher does, step by step |
| <NAME>.launch | the title, and the command that starts the program |
| <JAR> | the program: copy a new one here and pack again |
<FOUND><BROUGHT>| no-java.jvm | what the user reads when there is no Java; the status is then 3 |

`vspack check .` finds mistakes before a user does. To let users add Java options in a file
`<SIDE>` beside the installer, put `%RUNTIME_JAVAARGS%()` in front of
`<SWITCH>` in the launch command.
)";

constexpr std::string_view kFoundRow =
    "| java.jvm | which Java is wanted, and where to look for it; `vspack jvm` writes others |\n";
constexpr std::string_view kBroughtRow =
    "| <RUNTIME> | the Java that is unpacked; `vspack bundle-jvm` writes others |\n";

/// The launcher takes the part behind the last dot for an extension.
std::string sideFileOf(const std::string& installer) {
  return installer.substr(0, installer.rfind('.')) + ".ja";
}

std::string authorPage(const Project& project) {
  const bool looks = project.javaSource != JavaSource::Bundled;
  const bool brings = project.javaSource != JavaSource::Found;
  const std::string runtime = runtimeNameOf(project);
  return filled(kPage, {{"JAR", jarNameOf(project)},
                        {"INSTALLER", installerNameOf(project)},
                        {"MAIN", project.jar.mainClass},
                        {"JAVA", looks ? describe(project.range) : "the Java that it carries"},
                        {"NAME", project.name},
                        {"FOUND", std::string(looks ? kFoundRow : "")},
                        {"BROUGHT", brings ? filled(kBroughtRow, {{"RUNTIME", runtime}}) : ""},
                        {"SIDE", sideFileOf(installerNameOf(project))},
                        {"SWITCH", project.jar.startsByItself ? "-jar" : "-cp"}});
}

// The ids by which the script names files.
constexpr const char* kNoJavaId = "6";

bool looksForJava(const Project& project) {
  return project.javaSource != JavaSource::Bundled;
}

bool bringsJava(const Project& project) {
  return project.javaSource != JavaSource::Found;
}

std::string manifestText(const Project& project) {
  std::vector<std::string> files = {
      "instructions   1  " + project.name + ".instructions",
      "launch-script  2  " + project.name + ".launch",
      "application    3  " + jarNameOf(project),
  };
  if (looksForJava(project)) {
    files.emplace_back("verification   4  verify.jar");
    files.emplace_back("jvm            5  java.jvm");
  }
  files.push_back(std::string("jvm            ") + kNoJavaId + "  no-java.jvm");
  if (bringsJava(project)) files.push_back("jvm-installer  7  " + runtimeNameOf(project));
  return tagLine("OUTPUT", installerNameOf(project)) + tagBlock("FILES", files);
}

/// What happens at "no-java", and the end.
void addEnd(std::vector<std::string>& statements) {
  statements.insert(statements.end(),
                    {"GOTO end", ":no-java",
                     "// The launch command tells the user what is missing and ends with 3.",
                     std::string("ILAUNCH ") + kNoJavaId + " 0", ":end"});
}

/// "FIND_JVM 0 0" and "INSTALL_JVM 0" are silent: the launch command tells the user what is
/// missing.
std::vector<std::string> statementsOf(JavaSource source) {
  const bool isBundled = source == JavaSource::Bundled;
  const char* otherwise = source == JavaSource::FoundOrBundled ? "unpack" : "no-java";
  std::vector<std::string> statements;
  if (!isBundled) {
    statements = {"// Look for a Java that java.jvm accepts. S2 is then a JVM file for it.",
                  "FIND_JVM 0 0", std::string("JMP0 @N1@ ") + otherwise, "LAUNCH \"@S2@\" 0"};
  }
  if (source == JavaSource::FoundOrBundled) {
    statements.insert(statements.end(), {"GOTO end", ":unpack"});
  }
  if (source != JavaSource::Found) {
    statements.insert(
        statements.end(),
        {"// Unpack the Java that comes with this. S1 is then the path of its JVM file.",
         "INSTALL_JVM 0", "JMP0 @N1@ no-java", "LAUNCH \"@S1@\" 0"});
  }
  addEnd(statements);
  return statements;
}

/// The launcher sets JAVA_HOME to the home that it found; as a variable it may hold any character.
/// -jar and -cp take the archive alone, so that no class beside the installer is ever loaded.
std::string launchText(const Project& project) {
  const std::string archive = "'%APPLICATION_ARCHIVE%()'";
  const std::string program = project.jar.startsByItself
                                  ? "-jar " + archive
                                  : "-cp " + archive + " '" + project.jar.mainClass + "'";
  return tagLine("DESC", escapedTitle(project.title)) + "DISPLAY_CONSOLE: 1\n" +
         "AUTO_SET_WORKING_DIR: 0\n" +
         tagLine("COMMAND",
                 std::string("@") + kNoJavaTag + "@ \"$JAVA_HOME\"/@JVM_EXE@ " + program);
}

}  // namespace

std::string safeFileName(const std::string& name) {
  constexpr std::string_view kSafe =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._-";
  std::string safe;
  for (const char character : name) {
    const bool isSafe = kSafe.find(character) != std::string_view::npos;
    if (isSafe || !safe.ends_with('-')) safe += isSafe ? character : '-';
  }
  const std::size_t first = safe.find_first_not_of("-.");
  if (first == std::string::npos) return "";
  return safe.substr(first, safe.find_last_not_of("-.") + 1 - first);
}

std::string installerNameOf(const Project& project) {
  return project.name + "-installer";
}

std::string jarNameOf(const Project& project) {
  return project.name + ".jar";
}

std::string runtimeNameOf(const Project& project) {
  return project.name + "-jre";
}

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

std::vector<ProjectFile> textsOf(const Project& project) {
  std::vector<ProjectFile> files = {
      {project.name + ".manifest", manifestText(project)},
      {project.name + ".instructions", tagBlock("INSTRUCTIONS", statementsOf(project.javaSource))},
      {project.name + ".launch", launchText(project)},
      {"no-java.jvm", bringsJava(project) ? noRuntimeFileText() : noJavaFileText(project.range)},
      {"README.md", authorPage(project)},
  };
  if (looksForJava(project)) {
    files.push_back({"java.jvm", jvmFileText(JavaWish{.range = project.range})});
  }
  return files;
}

}  // namespace vessant
