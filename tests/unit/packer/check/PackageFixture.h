// A package without a flaw, in which a test breaks one thing.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "packer/Finding.h"
#include "packer/check/PackageCheck.h"
#include "support/TempTree.h"

namespace vessant::test {

class PackageFixture : public testing::Test {
 protected:
  PackageFixture();

  /// Replaces the content of a file, or adds one in the end. The manifest's line of a file is its
  /// place, counted from 10.
  void put(FileType type, std::uint32_t id, const std::string& name, const std::string& content);
  void drop(const std::string& name);
  /// Makes a file as long as this on disk, with nothing in it.
  void growTo(const std::string& name, std::uint64_t length);
  /// Replaces the first `from` in a file by `to`. A text that is not there fails the test.
  void change(const std::string& name, const std::string& from, const std::string& to);
  /// Puts another script in place: its statements begin in line 2.
  void script(const std::string& statements);
  /// Replaces the launch command, which stands in line 3 of setup.launch.
  void command(const std::string& line);

  [[nodiscard]] Findings check(bool strict = false);
  /// "FILE:LINE name" of each finding, in order.
  [[nodiscard]] std::vector<std::string> found(bool strict = false);
  /// The texts of the findings.
  [[nodiscard]] std::vector<std::string> texts();

  TempTree tree;
  std::string launcherPath;

 private:
  struct Part {
    FileType type;
    std::uint32_t id;
    std::string name;
    std::string content;
    std::uint64_t length = 0;
  };
  Part& part(const std::string& name);

  std::vector<Part> parts_;
};

}  // namespace vessant::test
