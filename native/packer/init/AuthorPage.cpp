#include "packer/init/AuthorPage.h"

#include <string_view>

#include "packer/Template.h"

namespace vessant {
namespace {

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

}  // namespace

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

}  // namespace vessant
