#include "packer/init/ProjectTexts.h"

#include "packer/init/AuthorPage.h"
#include "packer/init/NoJavaMessage.h"
#include "packer/init/Title.h"
#include "packer/jvm/JvmFileText.h"
#include "packer/jvm/TagLines.h"

namespace vessant {
namespace {

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
