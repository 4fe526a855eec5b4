// Whole searches with real processes: Java homes made of shell scripts.
#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "unit/jvm/JvmFixture.h"

namespace vessant::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RealSearch : public testing::Test {
 protected:
  RealSearch() {
    fixture.runForReal();
    fixture.file.add(kVerificationClass, 1, "verify.jar", "class");
    fixture.load();
    fixture.search.fileSystemRoot = text(fixture.tree.dir("root"));
  }
  std::string java(const std::string& home, const std::string& version) {
    return makeFakeJavaHome(fixture.tree, home, {{"java.version", version}, {"os.arch", "amd64"}});
  }

  JvmFixture fixture;
};

TEST_F(RealSearch, FindsTheJavaOfAHint) {
  const std::string home = java("app/my jre", "17.0.2");
  fixture.add(jvmFileText("17...", "PATH_HINT: my jre\n"));
  EXPECT_THAT(fixture.find(), ElementsAre(home));
}

TEST_F(RealSearch, PassesOverWhatIsNoMatch) {
  const std::string older = java("older", "11.0.1");
  const std::string good = java("good", "17.0.2");
  fixture.tree.program("broken/bin/java", "#!/bin/sh\necho broken >&2\nexit 1\n");
  fixture.tree.file("data/bin/java", "no program");
  fixture.tree.dir("directory/bin/java");
  fixture.add(jvmFileText("17...", "PLATFORM_HINT: HOMES\n"));
  fixture.run.platform.environment["HOMES"] = older + ":" + fixture.tree.path("broken") + ":" +
                                              fixture.tree.path("data") + ":" +
                                              fixture.tree.path("directory") + ":" + good;
  EXPECT_THAT(fixture.find(), ElementsAre(good));
  EXPECT_EQ(fixture.logged({"Invalid magic value: "}).size(), 3U);
}

TEST_F(RealSearch, ChecksAllPropertiesInTheOrderOfTheFile) {
  const std::string home = java("jdk", "17");
  const std::string start =
      "JVM_EXE: bin/java\nCLASSPATH: \"-cp \"\nCLASSPATH_SEPARATOR: :\n"
      "JVM_PROPERTIES:\nos.arch=amd64\njava.version=17\nno.such=";
  fixture.javaHome = text(home);
  fixture.add(start + "other\n/:\n");
  EXPECT_THAT(fixture.find(), IsEmpty());
  fixture.add(start + "null\n/:\n");
  EXPECT_THAT(fixture.find(), ElementsAre(home));
}

TEST_F(RealSearch, GivesTheJavaItsClassPathAndArguments) {
  fixture.tree.program("jdk/bin/java",
                       "#!/bin/sh\nfor argument do echo \"[$argument]\"; done\npwd -P\n"
                       "echo 1739021872\necho 17\n");
  fixture.javaHome = text(fixture.tree.path("jdk"));
  fixture.add(jvmFileText("17", "REQ_JAVA_ARGS: -Xmx64m \"-Da=b c\"\n"));
  EXPECT_EQ(fixture.find().size(), 1U);
  const std::string classPath = str(fixture.files.verificationClass().classPath);
  const std::string output = "[-cp]\n[:" + classPath.substr(1, classPath.size() - 2) + ":]\n" +
                             "[-Xmx64m]\n[-Da=b c]\n[Verify]\n[java.version]\n" +
                             fixture.tree.path("app") + "\n1739021872\n17\n";
  EXPECT_TRUE(fixture.run.log.contains(output));
}

TEST_F(RealSearch, FindsTheFirstMatchOnTheDisk) {
  java("root/old", "11");
  const std::string good = java("root/deep/er/jdk", "17");
  fixture.add(jvmFileText("17", "SEARCH_ALL: 1\n"));
  EXPECT_THAT(fixture.find(), ElementsAre(good));
}

TEST_F(RealSearch, FindsEveryMatchOnTheDisk) {
  const std::string one = java("root/one", "17");
  const std::string two = java("root/two", "11");
  java("root/three", "8");
  fixture.tree.link("root/four", one);
  fixture.add(jvmFileText("17"));
  fixture.add(jvmFileText("11"));
  JVMMatchPtrDeque matches;
  fixture.files.findAll(matches, false);
  EXPECT_THAT(homesOf(matches), ElementsAre(one, two));
}

TEST_F(RealSearch, StaysInItsDirectory) {
  const std::filesystem::path before = std::filesystem::current_path();
  java("root/jdk", "17");
  fixture.add(jvmFileText("17", "SEARCH_ALL: 1\n"));
  EXPECT_EQ(fixture.find().size(), 1U);
  EXPECT_EQ(std::filesystem::current_path(), before);
}

TEST_F(RealSearch, FindsTheSameTwice) {
  const std::string home = java("root/jdk", "17");
  fixture.add(jvmFileText("21", "SEARCH_ALL: 1\n"));
  fixture.add(jvmFileText("17"));
  EXPECT_THAT(fixture.find(), ElementsAre(home));
  EXPECT_THAT(fixture.find(), ElementsAre(home));
}

}  // namespace
}  // namespace vessant::test
