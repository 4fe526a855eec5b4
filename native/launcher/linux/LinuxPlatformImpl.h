// The operating system's services on Linux.
#pragma once

#include "launcher/base/RunServices.h"

namespace vessant {

class LinuxPlatformImpl : public Platform {
 public:
  ChildResult executeCommand(const ChildCommand& command, ProgressSink& progress) override;

  [[nodiscard]] SString getEnvironmentVariable(const SString& name) const override;
  /// The text handed to the environment is never freed, because the environment keeps pointing at
  /// it. An empty name does nothing.
  void setEnvironmentVariable(const SString& name, const SString& value) override;

  [[nodiscard]] bool hasFreeSpace(const SString& directory, std::uint32_t byteCount,
                                  std::uint32_t fileCount) const override;
  [[nodiscard]] bool isNoExec(const SString& path) const override;
};

}  // namespace vessant
