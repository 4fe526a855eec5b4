// What of a Java home travels with an installer.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "packer/bundle/RuntimeTree.h"
#include "support/TempTree.h"
#include "support/Thrown.h"

namespace vessant::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// "name", "name/" for a directory, "name*" for a program, "name -> target" for a link.
std::string shown(const RuntimeEntry& entry) {
  if (entry.kind == RuntimeEntry::Kind::Link) return entry.name + " -> " + entry.target;
  if (entry.kind == RuntimeEntry::Kind::Directory) return entry.name + "/";
  return entry.name + (entry.isExecutable ? "*" : "");
}

struct RuntimeTree : testing::Test {
  std::vector<std::string> collect() {
    std::vector<std::string> names;
    for (const RuntimeEntry& entry : collectRuntime(tree.path("home"))) {
      names.push_back(shown(entry));
    }
    return names;
  }

  TempTree tree;
};

TEST_F(RuntimeTree, ListsFilesProgramsAndDirectoriesByName) {
  tree.file("home/release", "x");
  tree.program("home/bin/java", "#!/bin/sh\n");
  tree.dir("home/empty");
  EXPECT_THAT(collect(), ElementsAre("bin/", "bin/java*", "empty/", "release"));
}

TEST_F(RuntimeTree, TellsWhereAFileIsAndHowLong) {
  tree.file("home/release", "four");
  const std::vector<RuntimeEntry> entries = collectRuntime(tree.path("home"));
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(entries.front().size, 4U);
  EXPECT_EQ(entries.front().source, tree.path("home/release"));
}

TEST_F(RuntimeTree, LeavesOutWhatNoProgramNeeds) {
  for (const char* name : {"jmods/java.base.jmod", "lib/src.zip", "src.zip", "man/man1/java.1",
                           "demo/x", "sample/x"}) {
    tree.file(std::string("home/") + name);
  }
  tree.file("home/lib/man");
  EXPECT_THAT(collect(), ElementsAre("lib/", "lib/man"));
}

TEST_F(RuntimeTree, KeepsLinksWithinTheHome) {
  tree.file("home/lib/server/libjvm.so");
  tree.link("home/lib/libjvm.so", "server/libjvm.so");
  tree.link("home/absolute.so", tree.path("home/lib/server/libjvm.so"));
  tree.link("home/lib64", "lib");
  EXPECT_THAT(collect(), ElementsAre("absolute.so -> lib/server/libjvm.so", "lib/",
                                     "lib/libjvm.so -> server/libjvm.so", "lib/server/",
                                     "lib/server/libjvm.so", "lib64 -> lib"));
}

TEST_F(RuntimeTree, BringsWhatLinksOutOfTheHomeLeadTo) {
  tree.file("etc/java/security/java.security");
  tree.link("etc/java/more", "security");
  tree.file("home/x");
  tree.link("home/conf", "../etc/java");
  EXPECT_THAT(collect(), ElementsAre("conf/", "conf/more/", "conf/more/java.security",
                                     "conf/security/", "conf/security/java.security", "x"));
}

TEST_F(RuntimeTree, LeavesOutLinksThatLeadNowhereOrToWhatIsLeftOut) {
  tree.file("home/jmods/a.jmod");
  tree.link("home/dangling", "/no/such/file");
  tree.link("home/circle", "circle");
  tree.link("home/mods", "jmods");
  EXPECT_THAT(collect(), IsEmpty());
}

TEST_F(RuntimeTree, RefusesDirectoriesThatHoldThemselves) {
  tree.dir("home");
  tree.dir("outside");
  tree.link("outside/again", ".");
  tree.link("home/outside", "../outside");
  EXPECT_THAT(thrownMessage([this] { collect(); }),
              HasSubstr("a link leads back to the directory that it is in"));
}

TEST_F(RuntimeTree, RefusesSpecialFiles) {
  tree.dir("home");
  ASSERT_EQ(::mkfifo(tree.path("home/pipe").c_str(), 0600), 0);
  EXPECT_EQ(thrownMessage([this] { collect(); }),
            tree.path("home/pipe") + ": is neither a file nor a directory");
}

TEST_F(RuntimeTree, NamesWhatIsNotThere) {
  EXPECT_THAT(thrownMessage([this] { collect(); }), HasSubstr("home: No such file"));
}

}  // namespace
}  // namespace vessant::test
