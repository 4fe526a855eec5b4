#include "launcher/launch/MacroFunctions.h"

#include "launcher/base/PathUtil.h"
#include "launcher/launch/ApplicationArchive.h"
#include "launcher/launch/ClassPath.h"
#include "launcher/launch/SideFiles.h"
#include "launcher/tagfile/JvmTagNames.h"

namespace vessant {
namespace {

/// The search goes on behind the inserted text, so a replacement that holds the search text is not
/// replaced again. An empty search text replaces nothing.
SString replaceAll(const MacroCall& call) {
  const SString search = expandJVMMacros(call.jvm, call.arguments.get(0));
  const SString replacement = expandJVMMacros(call.jvm, call.arguments.get(1));
  const SString text = call.arguments.get(2);
  if (search.isEmpty()) return text;
  SString result;
  SString::Size start = 0;
  for (auto found = text.find(search); found != SString::npos; found = text.find(search, start)) {
    result.append(text, start, found - start).append(replacement);
    start = found + search.length();
  }
  return result.append(text, start, SString::npos);
}

SString runtimeSystemProp(const MacroCall& call) {
  return runtimeSystemProperties(call.context.originalLauncherFileName, call.jvm);
}

SString runtimeJavaArgs(const MacroCall& call) {
  return runtimeJavaArguments(call.context.originalLauncherFileName, call.jvm);
}

SString systemProp(const MacroCall& call) {
  return systemProperty(call.arguments.get(0), call.arguments.get(1), call.jvm);
}

/// Hands the class path to the program in an environment variable.
void setClassPathVariable(const MacroCall& call, const SString& classPath) {
  const RunServices& services = call.context.services;
  const SString name = call.jvm.tag(jvmtag::kClassPathVariable);
  if (name.isEmpty()) {
    services.log(
        "If USE_CP_ENV_VAR is set to 1 in the jvm file, then the jvm file should also define "
        "CP_ENV_VAR.",
        LogLevel::Error);
    return;
  }
  services.platform.setEnvironmentVariable(name, classPath);
  services.log("Set env var " + name + " to " + classPath + "\n");
}

SString classPath(const MacroCall& call) {
  const ClassPathBuilder builder(call.context, call.jvm);
  const SString path = builder.build(call.arguments, call.archive, call.includeArchives);
  if (builder.usesEnvironment()) {
    setClassPathVariable(call, path);
    return "";
  }
  return path.isEmpty() ? path : call.jvm.tag(jvmtag::kClassPathOption) + path;
}

SString ifExists(const MacroCall& call) {
  if (call.jvm.tag(call.arguments.get(0)).isEmpty()) return "";
  return expandJVMMacros(call.jvm, call.arguments.get(1));
}

SString launcherFile(const MacroCall& call) {
  return call.context.launcherFileName;
}

SString launcherDir(const MacroCall& call) {
  return directoryOf(call.context.originalLauncherFileName);
}

SString applicationArchive(const MacroCall& call) {
  if (call.arguments.isEmpty()) return embeddedApplicationArchive(call.context);
  return copiedApplicationArchive(call.context, call.arguments.get(0));
}

SString tempDir(const MacroCall& call) {
  SString root = call.context.tempFiles.getTempRoot();
  if (root.view().ends_with('\\')) root.erase(root.length() - 1);
  return root;
}

constexpr const char* kNoMessage = "";

// In the order of comparison. The messages' two wordings, and the one of APPLICATION_ARCHIVE, which
// takes an argument after all, are kept: authors know them.
constexpr MacroFunction kFunctions[] = {
    {"REPLACE", 3, 3, "REPLACE function requires 3 arguments.", false, replaceAll},
    {"RUNTIME_SYSTEMPROP", 0, 0, "RUNTIME_SYSTEMPROP function takes no arguments.", false,
     runtimeSystemProp},
    {"RUNTIME_JAVAARGS", 0, 0, "RUNTIME_JAVAARGS function takes no arguments.", false,
     runtimeJavaArgs},
    {"SYSTEMPROP", 2, 2, "SYSTEMPROP function requires 2 arguments.", false, systemProp},
    {"CP", 0, MacroFunction::kAnyCount, kNoMessage, true, classPath},
    {"IF_EXISTS", 2, 2, "IF_EXISTS function requires 2 arguments.", false, ifExists},
    {"LAUNCHER_FILE", 0, 0, "LAUNCHER_FILE function takes 0 arguments.", false, launcherFile},
    {"LAUNCHER_DIR", 0, 0, "LAUNCHER_DIR function takes 0 arguments.", false, launcherDir},
    {"APPLICATION_ARCHIVE", 0, 1, "APPLICATION_ARCHIVE function takes 0 arguments.", false,
     applicationArchive},
    {"TEMP_DIR", 0, 0, "TEMP_DIR function takes 0 arguments.", false, tempDir},
};

}  // namespace

const MacroFunction* findMacroFunction(const SString& name) {
  for (const MacroFunction& function : kFunctions) {
    if (name == function.name) return &function;
  }
  return nullptr;
}

}  // namespace vessant
