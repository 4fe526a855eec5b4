#include "packer/explain/LaunchPlan.h"

#include "launcher/base/PathUtil.h"
#include "launcher/launch/JvmTags.h"
#include "launcher/launch/LaunchScript.h"
#include "launcher/launch/SideFiles.h"
#include "launcher/tagfile/JvmTagNames.h"
#include "packer/Text.h"

namespace vessant {
namespace {

/// A copy of a file beside the installer would be made for %APPLICATION_ARCHIVE%("file"); here it
/// has its place already, so that none is.
void planApplicationArchive(DryRun& run, const TagFile& script) {
  constexpr std::string_view kCall = "%APPLICATION_ARCHIVE%(\"";
  const std::string command = str(script.getValue("COMMAND"));
  const std::size_t call = command.find(kCall);
  if (call == std::string::npos) return;
  const std::size_t start = call + kCall.size();
  const std::string file = command.substr(start, command.find('"', start) - start);
  const SString directory = joinPath(run.tempFiles.tempRootSetting(), "vsjXXXXXX");
  run.launch.applicationArchive = joinPath(directory, fileNameOf(sstr(file)));
}

}  // namespace

LaunchPlan planLaunch(DryRun& run, const FileIndexEntry& launchScript,
                      const FileIndexEntry& jvmFile, const std::string& home) {
  const std::unique_ptr<TagFile> scriptTags = readTags(run, launchScript);
  const std::unique_ptr<TagFile> jvmTags = readTags(run, jvmFile);
  if (!home.empty()) jvmTags->setValue(jvmtag::kHome, absolutePath(sstr(home)));
  planApplicationArchive(run, *scriptTags);
  LaunchScript script(*scriptTags, true, run.launch);
  JvmTags jvm(*jvmTags);
  static_cast<void>(run.platform.take());
  const bool runs = std::exchange(run.platform.runs, false);
  LaunchPlan plan;
  try {
    script.execute(jvm, &run.arguments.passThrough, run.arguments.javaConsole);
    const NotedCommand command = run.platform.take().front();
    plan = {command.command, command.directory, command.collectsOutput, command.variables, ""};
  } catch (const LauncherException& error) {
    plan.failure = str(error.message());
  }
  run.platform.runs = runs;
  return plan;
}

std::vector<SideFile> sideFilesOf(const DryRun& run) {
  std::vector<SideFile> files;
  const auto add = [&](std::string_view suffix, const char* purpose) {
    const SString path = sideFilePath(run.path, suffix);
    files.push_back({str(path), purpose, fileExists(path)});
  };
  add(sidefile::kClassPathFirst, "class path, in front");
  add(sidefile::kClassPath, "class path, in the middle");
  add(sidefile::kClassPathLast, "class path, at the end");
  add(sidefile::kSystemProperties, "system properties");
  add(sidefile::kJavaArguments, "Java arguments");
  return files;
}

}  // namespace vessant
