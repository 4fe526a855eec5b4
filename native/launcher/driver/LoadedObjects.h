// The objects made from tag files: the instruction script, the launch script and the JVM files,
// whether they come from the launcher file or from files that the input file names.
#pragma once

#include <memory>

#include "launcher/archive/LauncherFile.h"
#include "launcher/driver/LauncherServices.h"
#include "launcher/instructions/InstructionScript.h"
#include "launcher/jvm/JVMFiles.h"
#include "launcher/launch/LaunchScript.h"
#include "launcher/tagfile/InputFile.h"
#include "launcher/tagfile/TagFile.h"

namespace vessant {

class LoadedObjects : public EmbeddedObjectBuilder {
 public:
  /// The services must outlive this.
  explicit LoadedObjects(LauncherServices& services)
      : services_(services), jvmFiles_(services.search) {}

  // Embedded files. The first launch script also gives the product its title.
  void addJvmFile(TagFile& tags) override;
  [[nodiscard]] bool hasInstructions() const override { return instructions_ != nullptr; }
  void setInstructions(TagFile& tags) override;
  [[nodiscard]] bool hasLaunchScript() const override { return launchScript_ != nullptr; }
  void setLaunchScript(TagFile& tags) override;

  /// Loads what the input file names and sets what else it says. Throws LauncherException.
  void applyInputSettings(const InputFile& input);

  /// Null when there is none.
  [[nodiscard]] const InstructionScript* instructions() const { return instructions_.get(); }
  [[nodiscard]] LaunchScript* launchScript() const { return launchScript_.get(); }
  [[nodiscard]] JVMFiles& jvmFiles() { return jvmFiles_; }

 private:
  TagFile& readTagFile(const SString& path);
  void makeLaunchScript(const TagFile& tags);

  LauncherServices& services_;
  TagFilePtrDeque tagFiles_;  // those read from disk, which the objects below refer to
  std::unique_ptr<InstructionScript> instructions_;
  std::unique_ptr<LaunchScript> launchScript_;
  JVMFiles jvmFiles_;
};

}  // namespace vessant
