#include "packer/InitCommand.h"

#include <filesystem>
#include <memory>
#include <string>

#include "packer/ByteSource.h"
#include "packer/OutputFile.h"
#include "packer/Text.h"
#include "packer/WrittenText.h"
#include "packer/bundle/RuntimeInstaller.h"
#include "packer/init/Project.h"
#include "packer/init/ProjectDirectory.h"

namespace vessant {
namespace {

namespace fs = std::filesystem;

struct InitRequest {
  std::string directory;
  std::string jar;
  std::string main;
  std::string java;
  std::string title;
  std::string jre;
  bool force = false;
};

/// The range that the author names, else from the Java on that the jar was compiled for.
JavaRange rangeFor(const InitRequest& request, const ApplicationJar& jar) {
  if (request.java.empty()) return {.min = jar.feature};
  const JavaRange range = parseJavaRange(request.java);
  if (range.min >= jar.feature) return range;
  throw failure(jar.path + ": " + jar.mainClass + " was compiled for Java " +
                std::to_string(jar.feature) + "; --java " + request.java + " asks for less");
}

JavaSource javaSourceFor(const InitRequest& request) {
  if (request.jre.empty()) return JavaSource::Found;
  return request.java.empty() ? JavaSource::Bundled : JavaSource::FoundOrBundled;
}

Project projectFor(const InitRequest& request) {
  const std::string stem = fs::path(request.jar).stem().string();
  std::string name = safeFileName(stem);
  // verify.jar is the verification class.
  if (name.empty() || name == "verify") name = "app";
  Project project{.name = name,
                  .title = request.title.empty() ? stem : request.title,
                  .jar = readApplicationJar(request.jar, request.main),
                  .javaSource = javaSourceFor(request)};
  project.range = rangeFor(request, project.jar);
  static_cast<void>(escapedTitle(project.title));
  return project;
}

/// The runtime that travels must do for the program.
void checkRuntime(const std::string& home, const JavaFacts& java, const Project& project) {
  const JavaRange& range = project.range;
  if (java.feature >= range.min && java.feature <= range.max.value_or(java.feature)) return;
  throw failure(home + ": is Java " + std::to_string(java.feature) + ", and the program needs " +
                describe(range));
}

void writeRuntime(const InitRequest& request, const Project& project, const Session& session,
                  const std::string& path) {
  const std::string verifyJar = installedVerifyJar(session.program);
  checkRuntime(request.jre, askJava(request.jre, verifyJar), project);
  writeRuntimeInstaller({.home = request.jre}, verifyJar, path);
}

void writeText(const std::string& path, const std::string& text) {
  OutputFile file(path);
  file.write(text);
  file.publish();
}

void init(const InitRequest& request, Session& session) {
  const Project project = projectFor(request);
  ProjectDirectory directory(request.directory, request.force);
  for (const ProjectFile& file : textsOf(project)) {
    writeText(directory.stagePath(file.name), file.text);
  }
  OutputFile jar(directory.stagePath(jarNameOf(project)));
  jar.append(ByteSource(request.jar));
  jar.publish();
  if (!request.jre.empty()) {
    writeRuntime(request, project, session, directory.stagePath(runtimeNameOf(project)));
  }
  directory.publish();
}

void addOptions(CLI::App& command, InitRequest& request) {
  command.add_option("DIR", request.directory, "The directory to write")->required();
  command.add_option("--jar", request.jar, "The program")->required();
  command.add_option("--main", request.main,
                     "The class to start; the default is the one that the jar's manifest names");
  command.add_option("--java", request.java,
                     "17 for Java 17 or newer, 17-21 for Java 17 to 21; the default is the Java "
                     "that the class was compiled for, or newer");
  command.add_option("--title", request.title,
                     "The product's title; the default is the jar's name");
  command.add_option("--jre", request.jre,
                     "The home of a Java that the installer brings along; with --java it is used "
                     "where the machine has none");
  command.add_flag("--force", request.force, "Write into a directory that is not empty");
}

}  // namespace

void addInitCommand(CLI::App& app, Session& session) {
  CLI::App* command =
      app.add_subcommand("init", "Write a directory that pack turns into an installer for a jar");
  const auto request = std::make_shared<InitRequest>();
  addOptions(*command, *request);
  command->callback([request, &session] { init(*request, session); });
}

}  // namespace vessant
