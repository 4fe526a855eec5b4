#include "unit/driver/DriverRun.h"

#include <filesystem>

#include "launcher/base/Exceptions.h"
#include "support/FakeJavaHome.h"
#include "support/StandardStreams.h"

namespace vessant::test {

DriverRun::DriverRun() {
  environment.set("LANG", "C");
  environment.set("PATH", "");
  environment.unset("JAVA_HOME");
  environment.unset("TMPDIR");
  tree.dir("app");
  state.log.fileName = SString(tree.path("log.txt"));
  state.tempDirectory = SString(tree.dir("temp"));
}

DriverRun& DriverRun::script(const std::vector<std::string>& statements) {
  std::string text = "INSTRUCTIONS:\n";
  for (const std::string& statement : statements) text += "  " + statement + "\n";
  file.add(kScript, 1, "script.tag", text + "/:\n");
  return *this;
}

DriverRun& DriverRun::launchScript(const std::string& command, const std::string& more) {
  file.add(kLaunchScript, 2, "launch.tag", "COMMAND: " + command + "\n" + more);
  return *this;
}

DriverRun& DriverRun::jvmFile(std::uint32_t id, const std::string& text) {
  file.add(kJvmFile, id, "java" + std::to_string(id) + ".jvm", text);
  return *this;
}

DriverRun& DriverRun::verificationClass() {
  file.add(kVerificationClass, 5, "verify.jar", "a jar");
  return *this;
}

DriverRun& DriverRun::jvmInstaller(const std::string& commands) {
  file.add(kJvmInstaller, 4, "installer", "#!/bin/sh\n" + commands);
  return *this;
}

std::string DriverRun::javaHome(const std::string& name, const std::string& version) {
  return makeFakeJavaHome(tree, name, {{"java.version", version}});
}

std::string DriverRun::inputFile(const std::string& text, bool withLog) {
  return tree.file("in.tag", (withLog ? "LOGFILE: " + tree.path("log.txt") + "\n" : "") + text);
}

std::int32_t DriverRun::run(const std::vector<std::string>& arguments) {
  file.write(launcherFile);
  launcher_.reset();
  launcher_ = std::make_unique<LauncherMain>(state);
  const StdoutCapture capture;
  const std::int32_t result = launcher_->run(ArgumentList(arguments), SString(launcherFile));
  out = capture.text();
  return result;
}

void DriverRun::perform(const std::function<void(LauncherMain&)>& operation) {
  const StdoutCapture capture;
  operation(*launcher_);
  out = capture.text();
}

std::string DriverRun::failureOf(const std::function<void(LauncherMain&)>& operation) {
  std::string text;
  perform([&](LauncherMain& launcher) {
    try {
      operation(launcher);
    } catch (const LauncherException& error) {
      text = str(error.message());
    }
  });
  return text;
}

std::string DriverRun::log() const {
  const std::string path = tree.path("log.txt");
  return std::filesystem::exists(path) ? readFile(path) : "";
}

std::string DriverRun::s(int number) const {
  return str(state.variables.getStringVariable(number));
}

std::int32_t DriverRun::n(int number) const {
  return state.variables.getNumericVariable(number);
}

std::vector<std::string> texts(const StringDeque& list) {
  std::vector<std::string> result;
  for (const SString& text : list) result.push_back(str(text));
  return result;
}

ArgumentList::ArgumentList(const std::vector<std::string>& arguments) {
  for (const std::string& argument : arguments) add(SString(argument));
}

std::string errorLine(const std::string& text) {
  return "ERROR: " + text + "\n";
}

}  // namespace vessant::test
