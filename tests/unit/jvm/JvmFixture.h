// JVM files, Java homes and a Java that answers by its home, over a fake run.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "launcher/jvm/JVMFile.h"
#include "launcher/jvm/JVMFiles.h"
#include "launcher/linux/LinuxPlatformImpl.h"
#include "support/FakeJavaHome.h"
#include "support/LaunchFixture.h"

namespace vessant::test {

struct JvmFixture : LaunchFixture {
  /// A fake Java answers each verification; see `versions`.
  JvmFixture();

  /// Runs real processes from now on. The environment stays a fake one.
  void runForReal();

  /// A JVM file that is in no collection, from its text.
  JVMFile& jvmFile(const std::string& text);
  /// One that `files` owns. Its source name is that of its tag file.
  JVMFile& add(const std::string& text);

  /// Makes "bin/java" in a home of the tree and lets the fake Java there report a version. Returns
  /// the home.
  std::string home(const std::string& relative, const std::string& version);

  /// `files.find` into a list of its own: the homes found.
  std::vector<std::string> find();
  /// The homes whose Java was run, in order.
  [[nodiscard]] std::vector<std::string> verified() const;
  /// The log lines that begin with one of the texts, in order.
  [[nodiscard]] std::vector<std::string> logged(const std::vector<std::string>& beginnings) const;

  /// What the fake Java reports by its home. A home that is not in here is no Java.
  std::map<std::string, std::string> versions;
  JVMSearch verification{search, {"\"/v/verify.jar\"", "\"Verify\""}};
  JVMFiles files{search};

 private:
  TagFile& keep(const std::string& text);
  std::int32_t answer(const ChildCommand& command) const;

  std::vector<std::unique_ptr<TagFile>> tagFiles_;
  std::vector<std::unique_ptr<JVMFile>> jvmFiles_;
  LinuxPlatformImpl realPlatform_;
};

[[nodiscard]] SString text(std::string_view bytes);
[[nodiscard]] std::vector<std::string> homesOf(const JVMMatchPtrDeque& matches);

}  // namespace vessant::test
