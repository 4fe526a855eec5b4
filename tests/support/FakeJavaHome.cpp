#include "support/FakeJavaHome.h"

namespace vessant::test {

std::string makeFakeJavaHome(TempTree& tree, std::string_view relative,
                             const std::map<std::string, std::string>& properties) {
  const std::string home = tree.path(relative);
  std::string script =
      "#!/bin/sh\n"
      "value() {\n"
      "  case \"$1\" in\n";
  for (const auto& [name, value] : properties) {
    script += "    '" + name + "') echo '" + value + "';;\n";
  }
  script +=
      "    *) echo null;;\n"
      "  esac\n"
      "}\n"
      "verifying=\n"
      "for argument do\n"
      "  if [ -n \"$verifying\" ]; then value \"$argument\"\n"
      "  elif [ \"$argument\" = Verify ]; then verifying=1; echo noise; echo 1739021872; fi\n"
      "done\n"
      "[ -n \"$verifying\" ] && exit 0\n"
      "echo PROGRAM\n"
      "echo 'HOME=" +
      home +
      "'\n"
      "echo \"JAVA_HOME=$JAVA_HOME\"\n"
      "echo \"CWD=$(pwd)\"\n"
      "status=0\n"
      "for argument do\n"
      "  printf 'ARG=%s\\n' \"$argument\"\n"
      "  case \"$argument\" in --exit=*) status=${argument#--exit=};; esac\n"
      "done\n"
      "echo 'program error' >&2\n"
      "exit \"$status\"\n";
  tree.program(std::string(relative) + "/bin/java", script);
  return home;
}

std::string jvmFileText(std::string_view version, std::string_view more) {
  return "DESC: Java " + std::string(version) +
         "\n"
         "JVM_PROPERTIES: java.version=" +
         std::string(version) +
         "\n"
         "JVM_EXE: bin/java\n"
         "CLASSPATH: \"-cp \"\n"
         "CLASSPATH_SEPARATOR: \":\"\n"
         "SYSTEM: -D\n"
         "SYSTEM_SEPARATOR: =\n" +
         std::string(more);
}

}  // namespace vessant::test
