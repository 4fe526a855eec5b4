// What the fuzz targets share: the input as a stream and as a text, and a run that does nothing.
#pragma once

#include <cstddef>
#include <cstdint>

#include "launcher/base/RunServices.h"
#include "launcher/base/StdFile.h"

namespace vessant::fuzz {

/// The bytes as a stream to read from; null for an empty input.
[[nodiscard]] StdFile streamOf(const std::uint8_t* data, std::size_t size);
[[nodiscard]] SString textOf(const std::uint8_t* data, std::size_t size);

class QuietLog : public LogSink {
 public:
  void log(const SString& /*text*/, LogLevel /*level*/) override {}
};

class QuietProgress : public ProgressSink {
 public:
  void addProgressDots(std::int32_t /*count*/) override {}
  void showSearchPhase(SearchPhase /*phase*/, const SString& /*text*/) override {}
};

/// Runs no command and has an environment of one variable.
class QuietPlatform : public Platform {
 public:
  ChildResult executeCommand(const ChildCommand&, ProgressSink&) override { return {}; }
  [[nodiscard]] SString getEnvironmentVariable(const SString& name) const override;
  void setEnvironmentVariable(const SString&, const SString&) override {}
  [[nodiscard]] bool hasFreeSpace(const SString&, std::uint32_t, std::uint32_t) const override {
    return true;
  }
};

}  // namespace vessant::fuzz
