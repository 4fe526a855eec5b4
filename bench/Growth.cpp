// How the time of reading and running texts grows with their size. The column to look at is the
// one behind _BigO: N, not N^2.

#include <cstdio>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "launcher/base/Handles.h"
#include "launcher/base/RunServices.h"
#include "launcher/instructions/Interpreter.h"
#include "launcher/tagfile/TagFile.h"

namespace {

using vessant::SString;
using vessant::TagFile;

class NoLog : public vessant::LogSink {
 public:
  void log(const SString& /*text*/, vessant::LogLevel /*level*/) override {}
};

/// Keeps variables and does nothing else.
class NoActions : public vessant::InstructionActions {
 public:
  void throwIfCanceled() const override {}
  void findJvm(vessant::Display) override {}
  std::int32_t launchWithEmbeddedJvmFile(std::int32_t, std::int16_t) override { return 0; }
  void beginProgress() override {}
  void installEmbeddedJvm(std::int32_t) override {}
  std::int32_t launchWithJvmFile(const SString&, std::int16_t) override { return 0; }
  void verifyEmbeddedJvmFile(vessant::Display, std::int32_t) override {}
  void runEmbeddedLauncher(std::int32_t) override {}
  SString getStringVariable(std::int32_t) const override { return value_; }
  void setStringVariable(std::int32_t, const SString& value) override { value_ = value; }
  std::int32_t getNumericVariable(std::int32_t) const override { return 0; }
  void setNumericVariable(std::int32_t, std::int32_t) override {}

 private:
  SString value_;
};

vessant::StdFile fileWith(std::string& text) {
  return vessant::StdFile(::fmemopen(text.data(), text.size(), "rb"));
}

void load(TagFile& tags, std::string& text) {
  NoLog log;
  tags.load(fileWith(text).get(), "text", 0, TagFile::kToEndOfFile, log);
}

/// Tags with one value each, every one of them twice.
void DistinctTags(benchmark::State& state) {
  std::string text;
  for (std::int64_t i = 0; i < state.range(0); ++i) {
    text += "TAG_" + std::to_string(i % (state.range(0) / 2)) + ": some value or other\n";
  }
  for (auto iteration : state) {
    TagFile tags;
    load(tags, text);
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK(DistinctTags)->RangeMultiplier(4)->Range(1 << 12, 1 << 20)->Complexity();

void ValuesOfOneTag(benchmark::State& state) {
  std::string text = "VALUES:\n";
  for (std::int64_t i = 0; i < state.range(0); ++i) text += "  a value of twenty\n";
  text += "/:\n";
  for (auto iteration : state) {
    TagFile tags;
    load(tags, text);
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK(ValuesOfOneTag)->RangeMultiplier(4)->Range(1 << 12, 1 << 20)->Complexity();

void SetStatements(benchmark::State& state) {
  std::string text = "INSTRUCTIONS:\n";
  for (std::int64_t i = 0; i < state.range(0); ++i) text += "  SET S1 = \"value @N1@\"\n";
  text += "/:\n";
  TagFile tags;
  load(tags, text);
  for (auto iteration : state) {
    NoActions actions;
    benchmark::DoNotOptimize(vessant::runInstructions(tags, actions));
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK(SetStatements)->RangeMultiplier(4)->Range(1 << 10, 100000)->Complexity();

}  // namespace
