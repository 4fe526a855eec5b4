#include "packer/Commands.h"

#include <cstdio>
#include <exception>
#include <vector>

#include <unistd.h>

#include "launcher/base/Exceptions.h"
#include "launcher/base/PathUtil.h"
#include "launcher/driver/output/Messages.h"
#include "launcher/linux/LinuxPlatformImpl.h"
#include "packer/LauncherFileWriter.h"
#include "packer/Listing.h"
#include "packer/Manifest.h"

namespace vessant {
namespace {

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kWrongCall = 2;

constexpr const char* kUsage =
    "usage: vspack pack MANIFEST [-o INSTALLER] [-l LAUNCHER] [-I DIRECTORY]...\n"
    "       vspack list INSTALLER\n"
    "\n"
    "pack  writes the installer that MANIFEST describes\n"
    "        -o  writes it to this file instead of the manifest's OUTPUT\n"
    "        -l  puts this launcher in front; the default is the manifest's LAUNCHER, else the\n"
    "            one next to vspack\n"
    "        -I  looks here, too, for files that are not found beside the manifest\n"
    "list  shows the files that an installer carries\n";

/// The readers' log lines are repeated in the errors that they throw.
class NoLog : public LogSink {
 public:
  void log(const SString& /*text*/, LogLevel /*level*/) override {}
};

struct PackOptions {
  SString manifest;
  SString output;
  SString launcher;
  SearchPath searchPath;
};

/// The launcher that was built and installed together with this packer.
SString launcherBesidePacker() {
  char self[4096] = {};
  if (::readlink("/proc/self/exe", self, sizeof(self) - 1) < 0) return "launcher";
  return joinPath(directoryOf(self), "launcher");
}

/// Returns whether the arguments make sense.
bool readOptions(const std::vector<SString>& arguments, PackOptions& options) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const SString& argument = arguments[i];
    if (!argument.view().starts_with('-')) {
      if (!options.manifest.isEmpty()) return false;
      options.manifest = argument;
      continue;
    }
    if (i + 1 == arguments.size()) return false;
    const SString& value = arguments[++i];
    if (argument == "-o") {
      options.output = value;
    } else if (argument == "-l") {
      options.launcher = value;
    } else if (argument == "-I") {
      options.searchPath.push_back(value);
    } else {
      return false;
    }
  }
  return !options.manifest.isEmpty();
}

class Packer {
 public:
  int run(const SString& command, const std::vector<SString>& arguments);

 private:
  int pack(const PackOptions& options);

  LinuxPlatformImpl platform_;
  Messages messages_{platform_};
  NoLog log_;
};

int Packer::run(const SString& command, const std::vector<SString>& arguments) {
  if (command == "list" && arguments.size() == 1) {
    std::fputs(listLauncherFile(arguments.front(), log_, messages_).cString(), stdout);
    return kDone;
  }
  PackOptions options;
  if (command == "pack" && readOptions(arguments, options)) return pack(options);
  std::fputs(kUsage, stderr);
  return kWrongCall;
}

int Packer::pack(const PackOptions& options) {
  Manifest manifest = readManifest(options.manifest, options.searchPath, log_);
  if (!options.output.isEmpty()) manifest.output = options.output;
  if (!options.launcher.isEmpty()) manifest.launcher = options.launcher;
  if (manifest.launcher.isEmpty()) manifest.launcher = launcherBesidePacker();
  if (manifest.output.isEmpty()) {
    throw LauncherException(options.manifest + ": there is no OUTPUT tag and no -o option");
  }
  writeLauncherFile(manifest, log_, messages_);
  return kDone;
}

}  // namespace

int runPacker(int argumentCount, const char* const* arguments) {
  const SString command = argumentCount > 1 ? arguments[1] : "";
  std::vector<SString> rest;
  for (int i = 2; i < argumentCount; ++i) rest.emplace_back(arguments[i]);
  try {
    return Packer().run(command, rest);
  } catch (const LauncherException& error) {
    std::fprintf(stderr, "vspack: %s\n", error.message().cString());
  } catch (const std::exception& error) {
    std::fprintf(stderr, "vspack: %s\n", error.what());
  }
  return kFailed;
}

}  // namespace vessant
