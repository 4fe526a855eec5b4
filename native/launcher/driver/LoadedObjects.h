// The objects made from tag files: the instruction script, the launch script and the JVM files,
// whether they come from the launcher file or from files that the input file names.
#pragma once

#include <memory>

#include "launcher/archive/LauncherFile.h"
#include "launcher/driver/LauncherState.h"
#include "launcher/jvm/JVMFiles.h"
#include "launcher/launch/LaunchScript.h"
#include "launcher/tagfile/InputFile.h"
#include "launcher/tagfile/TagFile.h"

namespace vessant {

class LoadedObjects : private EmbeddedObjectBuilder {
 public:
  /// Both must outlive this.
  LoadedObjects(LauncherState& state, LauncherServices& services)
      : state_(state), services_(services), jvmFiles_(services.search) {}
  LoadedObjects(const LoadedObjects&) = delete;
  LoadedObjects& operator=(const LoadedObjects&) = delete;

  /// Reads the launcher file's index, alone or together with the objects that it describes; what
  /// was read before is not read again. Both throw LauncherException.
  void loadIndex() { load(nullptr); }
  void loadLauncherFile() { load(this); }

  /// Loads what the input file names and sets what else it says. What is loaded so stands in place
  /// of the embedded scripts and in front of the embedded JVM files. Throws LauncherException.
  void applyInputSettings(const InputFile& input);

  /// The script's tags; null when there is none.
  [[nodiscard]] const TagFile* instructions() const { return instructions_; }
  /// Null when there is none.
  [[nodiscard]] LaunchScript* launchScript() const { return launchScript_.get(); }
  [[nodiscard]] JVMFiles& jvmFiles() { return jvmFiles_; }

 private:
  // The launcher file calls these for its embedded files. The first launch script also gives the
  // product its title.
  void addJvmFile(TagFile& tags) override;
  [[nodiscard]] bool hasInstructions() const override { return instructions_ != nullptr; }
  void setInstructions(TagFile& tags) override { instructions_ = &tags; }
  [[nodiscard]] bool hasLaunchScript() const override { return launchScript_ != nullptr; }
  void setLaunchScript(TagFile& tags) override;

  void load(EmbeddedObjectBuilder* builder);
  void applyScripts(const InputFile& input);
  void applyVerificationClass(const InputFile& input);
  void applyJvmFiles(const InputFile& input);
  TagFile& readTagFile(const SString& path);
  void makeLaunchScript(const TagFile& tags);

  LauncherState& state_;
  LauncherServices& services_;
  TagFilePtrDeque tagFiles_;               // those read from disk, which the objects below refer to
  const TagFile* instructions_ = nullptr;  // owned by tagFiles_ or by the index
  std::unique_ptr<LaunchScript> launchScript_;
  JVMFiles jvmFiles_;
};

}  // namespace vessant
