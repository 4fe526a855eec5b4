// What the log tells of Javas that were not taken, and that a cancelled search tries no more.

#include "system/SystemTest.h"

namespace vessant::test {
namespace {

using ::testing::Contains;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

struct Refusal : SystemTest {
  /// A search through the homes of a variable, in this order, that says why it found nothing.
  void addSearch(const std::vector<std::string>& homes) {
    for (const std::string& home : homes) {
      environment["HOMES"] += (environment["HOMES"].empty() ? "" : ":") + home;
    }
    addScript({"FIND_JVM 0 0"});
    addJvmFile("17...", "PLATFORM_HINT: HOMES\n");
  }
  std::string program(const std::string& home, const std::string& commands) {
    tree.program(home + "/bin/java", "#!/bin/sh\n" + commands + "\n");
    return tree.path(home);
  }
};

TEST_F(Refusal, IsLoggedWithItsReason) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP()
      << "AddressSanitizer copies a text that grows, and 64 MiB take it more than a minute";
#endif
  const std::string older = javaHome("older", "1.8.0_292");
  const std::string failing = program("failing", "echo 'no VM' >&2; exit 3");
  const std::string killed = program("killed", "kill -KILL $$");
  const std::string other = program("other", "echo hello");
  const std::string asking = program("asking", "read line && echo 1739021872; exit 4");
  const std::string endless =
      program("endless",
              "x=0123456789abcdef0123456789abcdef\nx=$x$x$x$x$x$x$x$x\nx=$x$x$x$x$x$x$x$x\n"
              "echo 1739021872; echo 17.0.1\nwhile :; do printf '%s\\n' "
              "$x$x$x$x$x$x$x$x$x$x$x$x$x$x; done");
  tree.file("data/bin/java", "no program");
  const std::string data = tree.path("data");
  input = "a line\n";
  addSearch({older, failing, killed, other, asking, endless, data, tree.path("missing"),
             tree.path("100%")});
  EXPECT_THAT(runLogged(), Ended(0, ""));
  const std::vector<std::string> lines = logLines();
  for (const std::string& refused :
       {older + ": java.version is 1.8.0_292, wanted 17...", failing + ": ended with status 3",
        killed + ": ended with status 137", other + ": no magic line",
        asking + ": ended with status 4", endless + ": too much output",
        data + ": not executable"}) {
    EXPECT_THAT(lines, Contains("Refused JVM at " + refused));
  }
  // The tenth is the one entry of PATH.
  EXPECT_THAT(lines, Contains("JVM search: 10 candidates, 7 existed, 6 ran, 1 differed"));
  EXPECT_LT(log().size(), 300U << 10) << "the endless output is not all in the log";
}

TEST_F(Refusal, IsNotSummedUpWhenAJavaIsFound) {
  addSearch({javaHome("older", "11.0.1"), javaHome("good", "17.0.1")});
  runLogged();
  EXPECT_THAT(logLines(), Contains("Refused JVM at " + tree.path("older") +
                                   ": java.version is 11.0.1, wanted 17..."));
  EXPECT_THAT(log(), Not(HasSubstr("JVM search: ")));
}

TEST_F(Refusal, OfTheHomeOfTheCommandLineIsLogged) {
  addScript({"VERIFY 0 0 3"});
  addJvmFile("17...");
  const std::string home = javaHome("older", "11.0.1");
  runLogged({"-vs:javahome", home});
  EXPECT_THAT(logLines(),
              Contains("Refused JVM at " + home + ": java.version is 11.0.1, wanted 17..."));
}

TEST_F(Refusal, IsNoMatterOfTheNextCandidateOnceTheRunIsCancelled) {
  environment["PATH"] = "/usr/bin:/bin";
  const std::string first = program("first", "kill -TERM $LAUNCHER");
  const std::string second = javaHome("second", "17.0.1");
  addSearch({first, second});
  addLaunchScript("echo started");
  pack();
  EXPECT_THAT(runCommand({"/bin/sh", "-c", "LAUNCHER=$$; export LAUNCHER; exec \"$0\" \"$@\"",
                          launcher, "-vs:tempdir", tempRoot, "-vs:log", logName()}),
              Ended(255, "Demo\nCanceled by the user.\n"));
  EXPECT_THAT(log(), EndsWith("ERROR: Canceled by the user.\n"));
  EXPECT_THAT(log(), Not(HasSubstr(second + "/bin/java")));
}

}  // namespace
}  // namespace vessant::test
