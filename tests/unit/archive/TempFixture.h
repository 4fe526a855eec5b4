// Temporary files below a root of the test's own, with TMPDIR out of the way.
#pragma once

#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "launcher/archive/TempFiles.h"
#include "support/FakeRun.h"
#include "support/ProcessScope.h"
#include "support/TempTree.h"

namespace vessant::test {

class TempFixture : public ::testing::Test {
 protected:
  ~TempFixture() override { temp.cleanupTempFiles(); }

  [[nodiscard]] std::string makeDir() { return str(temp.createTempDir()); }
  [[nodiscard]] std::string makeFile() { return str(temp.createTempFile()); }

  TempTree tree;
  ScopedEnvironment noTmpdir{"TMPDIR", std::nullopt};
  FakeRun run;
  SString root{tree.dir("root")};
  TempFiles temp{run.services, root};
};

}  // namespace vessant::test
