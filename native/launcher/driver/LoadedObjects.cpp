#include "launcher/driver/LoadedObjects.h"

namespace vessant {

void LoadedObjects::addJvmFile(TagFile& tags) {
  jvmFiles_.add(std::make_unique<JVMFile>(tags));
}

void LoadedObjects::setInstructions(TagFile& tags) {
  instructions_ = std::make_unique<InstructionScript>(tags);
}

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
  const SString instructions = input.text(inputkey::kInstructions);
  if (!instructions.isEmpty()) setInstructions(readTagFile(instructions));
  const SString launchScript = input.text(inputkey::kLaunchScript);
  if (!launchScript.isEmpty()) {
    makeLaunchScript(readTagFile(launchScript));
    services_.console.setUiTitle(launchScript_->description());
  }
  const SString classPath = input.text(inputkey::kVerifyClassPath);
  const SString className = input.text(inputkey::kVerifyClassName);
  if (!classPath.isEmpty() && !className.isEmpty()) {
    jvmFiles_.setVerificationClass(classPath, className);
  }
  const SString title = input.text(inputkey::kUiTitle);
  if (!title.isEmpty()) services_.console.setUiTitle(title);
  const StringDeque* jvmFiles = input.jvmFiles();
  if (jvmFiles == nullptr) return;
  for (const SString& path : *jvmFiles) {
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
