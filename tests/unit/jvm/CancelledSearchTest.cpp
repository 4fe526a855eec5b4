// A cancelled run starts no further candidate, wherever the candidates come from.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "launcher/base/Exceptions.h"
#include "support/Thrown.h"
#include "unit/jvm/JvmFixture.h"

namespace vessant::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kCanceled = "Canceled by the user.";

class CancelledSearch : public testing::Test {
 protected:
  CancelledSearch() { fixture.search.fileSystemRoot = text(fixture.tree.dir("root")); }

  /// Two homes that a search would verify one after the other. The user cancels during the first.
  void cancelDuringTheFirst() {
    const auto answer = fixture.run.platform.executor;
    fixture.run.platform.executor = [this, answer](const ChildCommand& command,
                                                   ProgressSink& progress) {
      fixture.run.cancelFlag.set();
      return answer(command, progress);
    };
  }
  std::string messageOfFind() {
    return thrownMessage([&] { fixture.find(); });
  }
  std::string messageOfFindAll(bool stopAtFirst = false) {
    return thrownMessage([&] { fixture.files.findAll(matches, stopAtFirst); });
  }

  JvmFixture fixture;
  JVMMatchPtrDeque matches;
};

TEST_F(CancelledSearch, StartsNothing) {
  const std::string home = fixture.home("root/jdk", "17");
  fixture.javaHome = text(home);
  fixture.run.platform.environment["PATH"] = home + "/bin";
  fixture.add(jvmFileText("17", "SEARCH_ALL: 1\n"));
  fixture.run.cancelFlag.set();
  EXPECT_EQ(messageOfFind(), kCanceled);
  EXPECT_EQ(messageOfFindAll(), kCanceled);
  EXPECT_EQ(
      thrownMessage([&] {
        static_cast<void>(fixture.files.verify(fixture.jvmFile(jvmFileText("17")), text(home)));
      }),
      kCanceled);
  EXPECT_THAT(fixture.verified(), IsEmpty());
  EXPECT_THAT(fixture.logged({"JVM search", "Processing"}), IsEmpty());
}

TEST_F(CancelledSearch, GivesNoMatchOfTheCandidateThatWasRunning) {
  const std::string home = fixture.home("jdk", "17");
  fixture.javaHome = text(home);
  fixture.add(jvmFileText("17"));
  cancelDuringTheFirst();
  EXPECT_EQ(messageOfFind(), kCanceled);
  EXPECT_FALSE(fixture.files.foundMatch());
  EXPECT_THAT(fixture.logged({"Found matching", "Refused", "Invalid magic"}), IsEmpty());
}

TEST_F(CancelledSearch, DoesNotTryTheHomeOfTheUserWithTheNextFile) {
  const std::string home = fixture.home("jdk", "17");
  fixture.javaHome = text(home);
  fixture.add(jvmFileText("11"));
  fixture.add(jvmFileText("17"));
  cancelDuringTheFirst();
  EXPECT_EQ(messageOfFind(), kCanceled);
  EXPECT_THAT(fixture.verified(), ElementsAre(home));
}

struct Hints {
  const char* name;
  const char* tags;
};

void PrintTo(const Hints& item, std::ostream* out) {
  *out << item.name;
}

class CancelledHints : public CancelledSearch, public testing::WithParamInterface<Hints> {};

INSTANTIATE_TEST_SUITE_P(Kinds, CancelledHints,
                         testing::Values(Hints{"Platform", "PLATFORM_HINT: HOMES\n"},
                                         Hints{"Path", "PATH_HINT:\nfirst\nsecond\n/:\n"},
                                         Hints{"PlatformPath", ""}),
                         [](const auto& item) { return item.param.name; });

TEST_P(CancelledHints, AreNotTriedFurther) {
  const std::string first = fixture.home("app/first", "11");
  const std::string second = fixture.home("app/second", "17");
  fixture.run.platform.environment["HOMES"] = first + ":" + second;
  fixture.run.platform.environment["PATH"] = first + "/bin:" + second + "/bin";
  fixture.add(jvmFileText("17", GetParam().tags));
  cancelDuringTheFirst();
  EXPECT_EQ(messageOfFind(), kCanceled);
  EXPECT_THAT(fixture.verified(), ElementsAre(first));
}

TEST_F(CancelledSearch, EndsTheWalkAtTheCandidateThatWasVerifiedAtOnce) {
  fixture.home("root/a/jdk", "11");
  fixture.home("root/b/jdk", "11");
  fixture.add(jvmFileText("17"));
  fixture.add(jvmFileText("11"));
  cancelDuringTheFirst();
  EXPECT_EQ(messageOfFindAll(true), kCanceled);
  EXPECT_EQ(fixture.verified().size(), 1U);
}

TEST_F(CancelledSearch, EndsBetweenTwoHomesThatTheWalkFound) {
  fixture.home("root/a/jdk", "17");
  fixture.home("root/b/jdk", "17");
  fixture.add(jvmFileText("17"));
  cancelDuringTheFirst();
  EXPECT_EQ(messageOfFindAll(), kCanceled);
  EXPECT_EQ(fixture.verified().size(), 1U);
}

TEST_F(CancelledSearch, EndsWithoutACandidate) {
  fixture.add(jvmFileText("17"));
  fixture.run.cancelFlag.set();
  EXPECT_EQ(messageOfFind(), kCanceled);
  EXPECT_EQ(messageOfFindAll(), kCanceled);
}

}  // namespace
}  // namespace vessant::test
