#include "packer/JvmCommands.h"

#include <memory>
#include <string>
#include <vector>

#include "packer/OutputFile.h"
#include "packer/Text.h"
#include "packer/bundle/RuntimeInstaller.h"
#include "packer/jvm/JavaQuestion.h"
#include "packer/jvm/JvmFileText.h"

namespace vessant {
namespace {

struct JvmRequest {
  std::string home;
  std::string min;
  std::string max;
  JavaWish wish;
  std::string output = "-";
};

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
