// A file system of a test's own, with a shell and nothing else, in which a launcher can search the
// whole disk.
#pragma once

#include "system/SystemTest.h"

namespace vessant::test {

/// The machine's root is "machine" of the tree; its launcher is /app/setup.bin, and its temporary
/// root the default one. Tests are skipped where the machine cannot be had.
class SmallMachine : public SystemTest {
 protected:
  void SetUp() override;
  void TearDown() override;

  /// The path under which a file of the machine is known in the tree.
  [[nodiscard]] static std::string inTree(std::string_view path) {
    return "machine" + std::string(path);
  }
  /// A fake Java home of the machine.
  void addJava(const std::string& home, const std::string& version);
  /// The text of a file of the machine.
  [[nodiscard]] std::string read(const std::string& path) const;

  /// Runs the launcher in the machine, started from its root.
  ProcessResult runInside(const std::vector<std::string>& arguments = {});
  /// The same with a log, /setup.log.
  ProcessResult runInsideLogged(const std::vector<std::string>& arguments = {});
  /// Runs any command in the machine.
  ProcessResult runCommandInside(const std::vector<std::string>& command);

 private:
  /// Copies a file into the machine, to where it lies outside.
  void copy(const std::string& path);
};

}  // namespace vessant::test
