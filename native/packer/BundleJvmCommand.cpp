#include "packer/BundleJvmCommand.h"

#include <memory>
#include <string>

#include "packer/bundle/RuntimeInstaller.h"

namespace vessant {

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
