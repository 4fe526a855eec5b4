#include "launcher/driver/LoadedObjects.h"

#include "launcher/base/Exceptions.h"

namespace vessant {

void LoadedObjects::load(EmbeddedObjectBuilder* builder) {
  try {
    state_.launcherFile.loadFileIndex(state_.originalLauncherFileName, builder, services_.log,
                                      services_.messages);
  } catch (const LauncherException& error) {
    throw LauncherException(services_.messages.errorText(ErrorId::IndexNotLoaded) +
                            error.message());
  }
}

void LoadedObjects::addJvmFile(TagFile& tags) {
  jvmFiles_.add(std::make_unique<JVMFile>(tags));
}

/// A title that the input file has set stays; the description is printed all the same.
void LoadedObjects::setLaunchScript(TagFile& tags) {
  makeLaunchScript(tags);
  const SString& description = launchScript_->description();
  if (services_.console.hasTitle()) {
    services_.console.showTitle(description);
  } else {
    services_.console.setUiTitle(description);
  }
}

void LoadedObjects::applyInputSettings(const InputFile& input) {
  applyScripts(input);
  applyVerificationClass(input);
  // Behind the launch script, whose description it replaces as the title.
  const SString title = input.text(inputkey::kUiTitle);
  if (!title.isEmpty()) services_.console.setUiTitle(title);
  applyJvmFiles(input);
}

void LoadedObjects::applyScripts(const InputFile& input) {
  const SString instructions = input.text(inputkey::kInstructions);
  if (!instructions.isEmpty()) setInstructions(readTagFile(instructions));
  const SString launchScript = input.text(inputkey::kLaunchScript);
  if (launchScript.isEmpty()) return;
  makeLaunchScript(readTagFile(launchScript));
  services_.console.setUiTitle(launchScript_->description());
}

/// A class is nothing without the path to it, nor the other way round.
void LoadedObjects::applyVerificationClass(const InputFile& input) {
  const SString classPath = input.text(inputkey::kVerifyClassPath);
  const SString className = input.text(inputkey::kVerifyClassName);
  if (classPath.isEmpty() || className.isEmpty()) return;
  jvmFiles_.setVerificationClass(classPath, className);
}

void LoadedObjects::applyJvmFiles(const InputFile& input) {
  const StringDeque* paths = input.jvmFiles();
  if (paths == nullptr) return;
  for (const SString& path : *paths) {
    state_.launcherFile.markJvmFilesFromInput();  // an empty entry marks it, too
    if (!path.isEmpty()) addJvmFile(readTagFile(path));
  }
}

TagFile& LoadedObjects::readTagFile(const SString& path) {
  tagFiles_.add(std::make_unique<TagFile>(path, services_.log));
  return *tagFiles_.getLast();
}

void LoadedObjects::makeLaunchScript(const TagFile& tags) {
  launchScript_ = std::make_unique<LaunchScript>(tags, true, services_.launch);
}

}  // namespace vessant
