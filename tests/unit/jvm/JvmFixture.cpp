#include "unit/jvm/JvmFixture.h"

namespace vessant::test {
namespace {

constexpr std::string_view kJava = "/bin/java\" ";

/// The home in a verification command; empty in any other command.
std::string homeIn(const ChildCommand& command) {
  const std::string line = str(command.command);
  const std::size_t end = line.find(kJava);
  if (!line.starts_with('"') || end == std::string::npos) return "";
  return line.substr(1, end - 1);
}

}  // namespace

JvmFixture::JvmFixture() {
  run.platform.executor = [this](const ChildCommand& command, ProgressSink& /*progress*/) {
    return ChildResult{.exitCode = answer(command)};
  };
}

void JvmFixture::runForReal() {
  run.platform.executor = [this](const ChildCommand& command, ProgressSink& progress) {
    return realPlatform_.executeCommand(command, progress);
  };
}

JVMFile& JvmFixture::jvmFile(const std::string& text) {
  return *jvmFiles_.emplace_back(std::make_unique<JVMFile>(keep(text)));
}

JVMFile& JvmFixture::add(const std::string& text) {
  auto owned = std::make_unique<JVMFile>(keep(text));
  JVMFile& added = *owned;
  files.add(std::move(owned));
  return added;
}

TagFile& JvmFixture::keep(const std::string& text) {
  return *tagFiles_.emplace_back(tags(text));
}

std::string JvmFixture::home(const std::string& relative, const std::string& version) {
  tree.program(relative + "/bin/java", "#!/bin/sh\n");
  versions[tree.path(relative)] = version;
  return tree.path(relative);
}

std::vector<std::string> JvmFixture::find() {
  JVMMatchPtrDeque matches;
  files.find(matches);
  return homesOf(matches);
}

std::vector<std::string> JvmFixture::verified() const {
  std::vector<std::string> homes;
  for (const ChildCommand& command : run.platform.commands) homes.push_back(homeIn(command));
  return homes;
}

std::vector<std::string> JvmFixture::logged(const std::vector<std::string>& beginnings) const {
  std::vector<std::string> lines;
  for (const std::string& line : run.log.texts()) {
    for (const std::string& beginning : beginnings) {
      if (line.starts_with(beginning)) lines.push_back(line);
    }
  }
  return lines;
}

std::int32_t JvmFixture::answer(const ChildCommand& command) const {
  const auto found = versions.find(homeIn(command));
  if (found == versions.end()) return 127;
  command.stdoutText->append("1739021872\n" + found->second + "\n");
  return 0;
}

SString text(std::string_view bytes) {
  return bytes;
}

std::vector<std::string> homesOf(const JVMMatchPtrDeque& matches) {
  std::vector<std::string> homes;
  for (const JVMMatch& match : matches) homes.push_back(str(match.home()));
  return homes;
}

}  // namespace vessant::test
