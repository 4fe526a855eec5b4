#include "system/SystemTest.h"

#include <algorithm>
#include <csignal>
#include <sstream>

namespace vessant::test {
namespace {

std::string quotedValue(std::string_view value) {
  std::string result = "\"";
  for (const char character : value)
    result += character == '"' ? "\"\"" : std::string(1, character);
  return result + "\"";
}

}  // namespace

std::string tag(std::string_view name, std::string_view value) {
  return std::string(name) + ": " + quotedValue(value) + "\n";
}

std::string tagBlock(std::string_view name, const std::vector<std::string>& values) {
  std::string result = std::string(name) + ":\n";
  for (const std::string& value : values) result += quotedValue(value) + "\n";
  return result + "/:\n";
}

std::string maskTempNames(const std::string& text) {
  constexpr std::string_view kPrefix = "/vsj";
  constexpr std::size_t kUniqueLetters = 6;
  std::string result;
  std::size_t start = 0;
  while (true) {
    const std::size_t name = text.find(kPrefix, start);
    if (name == std::string::npos) return result + text.substr(start);
    result += text.substr(start, name + kPrefix.size() - start);
    start = std::min(text.size(), name + kPrefix.size() + kUniqueLetters);
  }
}

std::string noInstaller(const std::string& launcherFile) {
  return launcherFile +
         ": This file carries no installer. It is incomplete or was changed. Please download or "
         "copy it again.\n";
}

void PrintTo(const ProcessResult& result, std::ostream* out) {
  *out << "status " << result.status << ", output " << ::testing::PrintToString(result.out)
       << ", errors " << ::testing::PrintToString(result.err);
}

SystemTest::SystemTest() {
  // Whoever started the tests may have had some of them ignored, which programs inherit.
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) std::signal(signal, SIG_DFL);
  tree.dir("app");
  file.launcherStub();
}

void SystemTest::TearDown() {
  EXPECT_THAT(tree.list("temp"), ::testing::IsEmpty()) << "the temporary root is not empty";
}

std::string SystemTest::javaHome(std::string_view relative, std::string_view version) {
  const std::string home =
      makeFakeJavaHome(tree, relative, {{"java.version", std::string(version)}});
  std::filesystem::rename(home + "/bin/java", home + "/bin/java.steps");
  tree.program(std::string(relative) + "/bin/java",
               "#!/bin/sh\n"
               "output=$(\"$0.steps\" \"$@\")\n"
               "status=$?\n"
               "printf '%s\\n' \"$output\"\n"
               "exit $status\n");
  return home;
}

void SystemTest::addScript(const std::vector<std::string>& statements) {
  file.add(kScript, kScriptId, "install.script", tagBlock("INSTRUCTIONS", statements));
}

void SystemTest::addLaunchScript(std::string_view command, std::string_view more) {
  file.add(kLaunchScript, kLaunchScriptId, "launch.script",
           tag("DESC", "Demo") + tag("COMMAND", command) + std::string(more));
}

void SystemTest::addJvmFile(std::string_view version, std::string_view more) {
  file.add(kJvmFile, kJvmFileId, "java.jvm", jvmFileText(version, more));
  file.add(kVerificationClass, kVerificationClassId, "verify.jar", "verification class");
}

void SystemTest::addInstaller(std::string_view command) {
  addScript({"FIND_JVM 0 0", "JMP0 @N1@ end", "LAUNCH \"@S2@\" 0", ":end"});
  addLaunchScript(command);
  addJvmFile("17.0.1", tag("PATH_HINT", javaHome("java17", "17.0.1")));
}

void SystemTest::pack() {
  file.write(launcher);
}

ProcessResult SystemTest::run(const std::vector<std::string>& arguments) {
  std::vector<std::string> all = {"-vs:tempdir", tempRoot};
  all.insert(all.end(), arguments.begin(), arguments.end());
  return runBare(all);
}

ProcessResult SystemTest::runLogged(const std::vector<std::string>& arguments) {
  std::vector<std::string> all = {"-vs:log", logName()};
  all.insert(all.end(), arguments.begin(), arguments.end());
  return run(all);
}

ProcessResult SystemTest::runBare(const std::vector<std::string>& arguments) {
  if (!std::filesystem::exists(launcher)) pack();
  std::vector<std::string> command = {launcher};
  command.insert(command.end(), arguments.begin(), arguments.end());
  return runCommand(command);
}

ProcessResult SystemTest::runCommand(const std::vector<std::string>& command) {
  return runProcess({.command = command,
                     .environment = environment,
                     .directory = startDirectory,
                     .input = input,
                     .timeLimitSeconds = timeLimitSeconds});
}

std::string SystemTest::log() const {
  return readFile(logName());
}

std::vector<std::string> SystemTest::logLines() const {
  std::istringstream text(log());
  std::vector<std::string> lines;
  for (std::string line; std::getline(text, line);) lines.push_back(line);
  return lines;
}

}  // namespace vessant::test
