// JVM files as vspack writes them: read back by the launcher's own reader.

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "launcher/tagfile/TagFile.h"
#include "packer/WrittenText.h"
#include "packer/jvm/JvmFileText.h"
#include "support/BuildPaths.h"
#include "support/FakeRun.h"
#include "support/TempTree.h"
#include "support/Thrown.h"

namespace vessant::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

struct JvmFileText : testing::Test {
  std::vector<std::string> values(const std::string& text, const char* name) {
    const std::string path = tree.file("x.jvm", text);
    const TagFile tags(SString(std::string_view(path)), log);
    std::vector<std::string> found;
    const StringDeque* list = tags.findValues(name);
    if (list == nullptr) return found;
    for (const SString& value : *list) found.emplace_back(value.view());
    return found;
  }
  std::vector<std::string> properties(const JavaWish& wish) {
    return values(jvmFileText(wish), "JVM_PROPERTIES");
  }

  TempTree tree;
  RecordingLog log;
};

TEST_F(JvmFileText, AsksForTheRange) {
  EXPECT_THAT(properties({.range = {17, {}}}), ElementsAre("vessant.java.min.17=true"));
  EXPECT_THAT(properties({.range = {17, 21}}),
              ElementsAre("vessant.java.min.17=true", "vessant.java.max.21=true"));
}

TEST_F(JvmFileText, AsksForWhatElseIsWished) {
  const JavaWish wish = {.range = {11, {}},
                         .jdk = true,
                         .vendor = "Azul Systems, Inc.",
                         .modules = {"java.desktop", "jdk.crypto.ec"}};
  EXPECT_THAT(
      properties(wish),
      ElementsAre("vessant.java.min.11=true", "vessant.jdk=true", "java.vendor=Azul Systems, Inc.",
                  "vessant.module.java.desktop=true", "vessant.module.jdk.crypto.ec=true"));
  EXPECT_THAT(values(jvmFileText(wish), "DESC"),
              ElementsAre("Java 11 or newer (JDK) of Azul Systems, Inc. with java.desktop, "
                          "jdk.crypto.ec"));
}

TEST_F(JvmFileText, HasWhatEveryLaunchNeeds) {
  const std::string text = jvmFileText(JavaWish{});
  EXPECT_THAT(values(text, "JVM_EXE"), ElementsAre("bin/java"));
  EXPECT_THAT(values(text, "CLASSPATH"), ElementsAre("-classpath "));
  EXPECT_THAT(values(text, "CLASSPATH_SEPARATOR"), ElementsAre(":"));
  EXPECT_THAT(values(text, "SYSTEM"), ElementsAre("-D"));
  EXPECT_THAT(values(text, "SYSTEM_SEPARATOR"), ElementsAre("="));
}

TEST_F(JvmFileText, RefusesNamesThatAShellWouldRead) {
  for (const char* name : {"", "java.base; rm x", "java base", "$(x)", "java/base", "a,b"}) {
    EXPECT_THAT(
        thrownMessage([&] {
          static_cast<void>(jvmFileText(JavaWish{.range = {}, .vendor = "", .modules = {name}}));
        }),
        HasSubstr("is no name of a module"))
        << name;
  }
  EXPECT_EQ(
      thrownMessage([] {
        static_cast<void>(jvmFileText(JavaWish{.range = {}, .vendor = "a\nb", .modules = {}}));
      }),
      "the vendor must be one line of text");
}

TEST_F(JvmFileText, DescribesAKnownJava) {
  KnownJava java{
      .description = "Java 17", .properties = {{"os.arch", "amd64"}}, .home = "/opt/my java"};
  const std::string text = jvmFileText(java);
  EXPECT_THAT(values(text, "JVM_PROPERTIES"), ElementsAre("os.arch=amd64"));
  EXPECT_THAT(values(text, "JVM_HOME"), ElementsAre("/opt/my java"));
  EXPECT_THAT(values(text, "PATH_HINT"), ElementsAre("/opt/my java"));
  EXPECT_THAT(values(text, "DESC"), ElementsAre("Java 17"));
  java.isLookedFor = false;
  EXPECT_THAT(values(jvmFileText(java), "PATH_HINT"), IsEmpty());
}

TEST_F(JvmFileText, TheExamplesAreWhatVspackWrites) {
  for (const int oldest : {8, 17}) {
    const std::string name = "/examples/jvm/java-" + std::to_string(oldest) + "-or-newer.jvm";
    EXPECT_EQ(readFile(kSourceDir + name), jvmFileText({.range = {oldest, {}}})) << name;
  }
}

}  // namespace
}  // namespace vessant::test
