#include "packer/ProjectCommands.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "packer/ByteSource.h"
#include "packer/OutputFile.h"
#include "packer/Text.h"
#include "packer/WrittenText.h"
#include "packer/bundle/RuntimeInstaller.h"
#include "packer/init/Project.h"
#include "packer/init/ProjectDirectory.h"
#include "packer/jvm/JavaHome.h"
#include "packer/jvm/JvmFileText.h"

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

/// A range beside a runtime says that a user's own Java will do, too.
JavaSource javaSourceFor(const InitRequest& request) {
  if (request.jre.empty()) return JavaSource::Found;
  return request.java.empty() ? JavaSource::Bundled : JavaSource::FoundOrBundled;
}

/// Everything that may be refused is refused here, before anything is written.
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

struct JvmRequest {
  std::string home;
  std::string min;
  std::string max;
  JavaWish wish;
  std::string output = "-";
};

/// Any of these makes sense with the oldest Java as its beginning.
bool namesRange(const JvmRequest& request) {
  return !request.min.empty() || !request.max.empty() || request.wish.jdk ||
         !request.wish.vendor.empty() || !request.wish.modules.empty();
}

std::string textForHome(const std::string& home, const Session& session) {
  const JavaFacts facts = askJava(home, installedVerifyJar(session.program));
  checkHomeForLauncher(facts.home);
  return jvmFileText(knownJava(facts));
}

std::string textForRange(const JvmRequest& request) {
  JavaWish wish = request.wish;
  if (!request.min.empty()) wish.range.min = parseJavaVersion(request.min);
  if (!request.max.empty()) wish.range.max = parseJavaVersion(request.max);
  return jvmFileText(wish);
}

void writeJvmFile(const JvmRequest& request, const Session& session) {
  if (request.home.empty() != namesRange(request)) {
    throw failure("jvm: either a Java home or a range that begins with --min must be given");
  }
  const std::string text =
      request.home.empty() ? textForRange(request) : textForHome(request.home, session);
  OutputFile file(request.output);
  file.write(text);
  file.publish();
}

}  // namespace

void addInitCommand(CLI::App& app, Session& session) {
  CLI::App* command =
      app.add_subcommand("init", "Write a directory that pack turns into an installer for a jar");
  const auto request = std::make_shared<InitRequest>();
  addOptions(*command, *request);
  command->callback([request, &session] { init(*request, session); });
}

void addJvmCommand(CLI::App& app, Session& session) {
  CLI::App* command = app.add_subcommand(
      "jvm", "Write a JVM file that accepts the Java in HOME, or a range of Javas");
  const auto request = std::make_shared<JvmRequest>();
  command->add_option("HOME", request->home, "The home of a Java that is on this machine");
  command->add_option("--min", request->min,
                      "The oldest Java wanted, such as 17; the default is 8");
  command->add_option("--max", request->max, "The newest Java wanted");
  command->add_flag("--jdk", request->wish.jdk, "It must have a compiler");
  command->add_option("--vendor", request->wish.vendor,
                      "The value of java.vendor; one that ends in ... is its beginning");
  command->add_option("--modules", request->wish.modules, "Modules that it must have")
      ->delimiter(',')
      ->allow_extra_args(false);
  command->add_option("-o,--output", request->output, "The file to write; - is standard output")
      ->capture_default_str();
  command->callback([request, &session] { writeJvmFile(*request, session); });
}

void addBundleJvmCommand(CLI::App& app, Session& session) {
  CLI::App* command = app.add_subcommand(
      "bundle-jvm", "Write a program that unpacks a Java runtime, for INSTALL_JVM to run");
  const auto request = std::make_shared<RuntimeRequest>();
  const auto output = std::make_shared<std::string>();
  command->add_option("HOME", request->home, "The home of the Java that the runtime is made of")
      ->required();
  command->add_option("-o,--output", *output, "The file to write; - is standard output")
      ->required();
  command
      ->add_option("--modules", request->modules,
                   "Take these modules and what they need, with the Java's own jlink; the default "
                   "is the whole Java")
      ->delimiter(',')
      ->allow_extra_args(false);
  command->add_flag("--compress", request->compress,
                    "Compress the runtime: a smaller file that takes longer to unpack");
  command->callback([request, output, &session] {
    writeRuntimeInstaller(*request, installedVerifyJar(session.program), *output);
  });
}

}  // namespace vessant
