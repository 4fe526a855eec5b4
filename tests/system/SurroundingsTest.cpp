// Surroundings that no author thinks of: limits, masks, variables, names and namespaces that a
// launcher inherits from whoever starts it. It does its job or says why not, ends in time, and
// leaves nothing behind.

#include <unistd.h>

#include "system/SystemTest.h"

namespace vessant::test {
namespace {

constexpr int kProgramRan = 7;
/// Whether the program runs is the machine's matter; what counts is an orderly end.
constexpr int kAnyOrderlyEnd = -1;
constexpr int kCannotBeTried = 99;

/// A shell script that starts the launcher, "$0", with its arguments, "$@".
struct Surrounding {
  const char* name;
  const char* script;
  int status = kProgramRan;
};

void PrintTo(const Surrounding& surrounding, std::ostream* out) {
  *out << surrounding.name;
}

struct Surroundings : SystemTest, ::testing::WithParamInterface<Surrounding> {
  Surroundings() {
    environment["PATH"] = "/usr/bin:/bin:/usr/sbin:/sbin";
    timeLimitSeconds = 60;
    addInstaller("test -s %APPLICATION_ARCHIVE%() && exit 7");
    file.add(kApplicationArchive, 30, "app.zip", std::string(200000, 'a'));
    pack();
  }
};

#ifdef __SANITIZE_ADDRESS__
/// The sanitizers have a need of their own for descriptors and for /proc.
bool spoilsSanitizers(std::string_view name) {
  return name.starts_with("Files") || name == "NoProc";
}
#else
bool spoilsSanitizers(std::string_view /*name*/) {
  return false;
}
#endif

TEST_P(Surroundings, AreNoReasonForADisorderlyEnd) {
  if (spoilsSanitizers(GetParam().name)) GTEST_SKIP() << "the sanitizers cannot live there";
  const ProcessResult result = runCommand({"/bin/sh", "-c", GetParam().script, launcher,
                                           "-vs:tempdir", tempRoot, "-vs:log", logName()});
  if (result.status == kCannotBeTried) GTEST_SKIP() << "not to be had on this machine";
  if (GetParam().status != kAnyOrderlyEnd) {
    EXPECT_EQ(result.status, GetParam().status) << result.out << result.err;
  } else {
    EXPECT_TRUE(result.status < 128 || result.status == 255) << result.status;
    EXPECT_FALSE(result.status == 255 && result.out.empty()) << "nothing said";
  }
}

std::string nameOf(const ::testing::TestParamInfo<Surrounding>& item) {
  return item.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    Limits, Surroundings,
    ::testing::Values(Surrounding{"Files3", "ulimit -n 3; exec \"$0\" \"$@\"", kAnyOrderlyEnd},
                      Surrounding{"Files4", "ulimit -n 4; exec \"$0\" \"$@\"", kAnyOrderlyEnd},
                      Surrounding{"Files5", "ulimit -n 5; exec \"$0\" \"$@\"", kAnyOrderlyEnd},
                      Surrounding{"Files6", "ulimit -n 6; exec \"$0\" \"$@\"", kAnyOrderlyEnd},
                      Surrounding{"Files7", "ulimit -n 7; exec \"$0\" \"$@\"", kAnyOrderlyEnd},
                      Surrounding{"Files8", "ulimit -n 8; exec \"$0\" \"$@\"", kAnyOrderlyEnd},
                      Surrounding{"Files9", "ulimit -n 9; exec \"$0\" \"$@\"", kAnyOrderlyEnd},
                      Surrounding{"Files10", "ulimit -n 10; exec \"$0\" \"$@\"", kAnyOrderlyEnd},
                      Surrounding{"Files11", "ulimit -n 11; exec \"$0\" \"$@\"", kAnyOrderlyEnd},
                      Surrounding{"Files16", "ulimit -n 16; exec \"$0\" \"$@\""},
                      Surrounding{"NoBytes", "ulimit -f 0; exec \"$0\" \"$@\"", 255},
                      Surrounding{"FewBytes", "ulimit -f 100; exec \"$0\" \"$@\"", 255},
                      Surrounding{"SmallStack", "ulimit -s 128; exec \"$0\" \"$@\""},
                      Surrounding{"NoCore", "ulimit -c 0; exec \"$0\" \"$@\""}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Masks, Surroundings,
    ::testing::Values(Surrounding{"All", "umask 777; exec \"$0\" \"$@\"", kAnyOrderlyEnd},
                      Surrounding{"Write", "umask 277; exec \"$0\" \"$@\"", kAnyOrderlyEnd},
                      Surrounding{"Others", "umask 077; exec \"$0\" \"$@\""},
                      Surrounding{"None", "umask 0; exec \"$0\" \"$@\""},
                      Surrounding{"IgnoredSignals",
                                  "trap '' HUP INT QUIT USR1 USR2 PIPE ALRM TERM TSTP TTIN TTOU; "
                                  "exec \"$0\" \"$@\""},
                      Surrounding{"IgnoredChildren", "trap '' CHLD; exec \"$0\" \"$@\""},
                      Surrounding{"Nohup", "exec nohup \"$0\" \"$@\""},
                      Surrounding{"Session", "exec setsid -w \"$0\" \"$@\""},
                      Surrounding{"Background", "\"$0\" \"$@\" & wait $!"},
                      Surrounding{"InheritedChild", "sleep 0.1 & exec \"$0\" \"$@\""},
                      Surrounding{"Pipe", "{ \"$0\" \"$@\"; exit $?; } </dev/null"}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Variables, Surroundings,
    ::testing::Values(
        Surrounding{"None", "exec env -i \"$0\" \"$@\""},
        Surrounding{"NoPath", "unset PATH; exec \"$0\" \"$@\""},
        Surrounding{"OddPath", "PATH=::/nowhere:.:; exec \"$0\" \"$@\""},
        Surrounding{"OddLanguage", "LANG=%s%n%s%n; exec \"$0\" \"$@\""},
        Surrounding{"OddJavaHome", "JAVA_HOME='%x%@y@#z#'; export JAVA_HOME; exec \"$0\" \"$@\""},
        Surrounding{"OddLocale",
                    "LC_ALL=../../etc LOCPATH=/ GCONV_PATH=/ TZ=:/etc/passwd; "
                    "export LC_ALL LOCPATH GCONV_PATH TZ; exec \"$0\" \"$@\""},
        Surrounding{"OddShell",
                    "IFS=t ENV=/nowhere CDPATH=/; export IFS ENV CDPATH; exec \"$0\" \"$@\""},
        Surrounding{"Large",
                    "v=$(head -c 100000 /dev/zero | tr '\\0' x); a=$v b=$v c=$v d=$v e=$v; "
                    "export a b c d e; exec \"$0\" \"$@\""},
        Surrounding{"MissingTempDirectory", "TMPDIR=/nowhere; export TMPDIR; exec \"$0\" \"$@\""},
        Surrounding{
            "RelativeTempDirectory",
            "mkdir own; TMPDIR=own; export TMPDIR; \"$0\" \"$@\"; s=$?; rmdir own && exit $s"},
        Surrounding{
            "TempDirectoryWithALineBreak",
            "TMPDIR=\"$(pwd)/a\nb\"; mkdir \"$TMPDIR\"; export TMPDIR; \"$0\" \"$@\"; s=$?; "
            "rmdir \"$TMPDIR\" && exit $s",
            kAnyOrderlyEnd}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Names, Surroundings,
    ::testing::Values(
        Surrounding{"Link", "ln -s \"$0\" link; exec ./link \"$@\""},
        Surrounding{"LinkToALink", "ln -s \"$0\" a; ln -s a b; exec ./b \"$@\""},
        Surrounding{"SecondName", "ln \"$0\" second && exec ./second \"$@\""},
        Surrounding{"Descriptor", "exec 9<\"$0\"; exec /proc/self/fd/9 \"$@\""},
        Surrounding{"RemovedDirectory", "mkdir d && cd d && rmdir ../d; exec \"$0\" \"$@\""},
        Surrounding{"MissingRoot", "exec \"$0\" \"$@\" -vs:tempdir /nowhere", 255},
        Surrounding{"RootThatIsAFile", "exec \"$0\" \"$@\" -vs:tempdir \"$0\"", 255},
        Surrounding{"RootThatIsADevice", "exec \"$0\" \"$@\" -vs:tempdir /dev/full", 255},
        Surrounding{"RootThatTakesNothing", "exec \"$0\" \"$@\" -vs:tempdir /proc", 255},
        Surrounding{"LogThatIsADirectory", "exec \"$0\" \"$@\" -vs:log /"},
        Surrounding{"LogThatIsFull", "exec \"$0\" \"$@\" -vs:log /dev/full"},
        Surrounding{"LongArgument", "exec \"$0\" \"$@\" $(head -c 100000 /dev/zero | tr '\\0' x)"},
        Surrounding{"ManyArguments", "exec \"$0\" \"$@\" $(seq 5000)"},
        Surrounding{"TooManyArguments", "exec \"$0\" \"$@\" $(seq 30000)", 127}),
    nameOf);

// Only for root; who cannot have them ends with 99.
INSTANTIATE_TEST_SUITE_P(
    Namespaces, Surroundings,
    ::testing::Values(
        Surrounding{"FirstProcess",
                    "unshare -pf --mount-proc true || exit 99; "
                    "exec unshare -pf --mount-proc \"$0\" \"$@\""},
        Surrounding{"SameProcessId",
                    "unshare -pf --mount-proc true || exit 99; for i in 1 2 3 4; do "
                    "unshare -pf --mount-proc \"$0\" \"$@\" & p=\"$p $!\"; done; "
                    "for i in $p; do wait $i || s=$?; done; exit $s"},
        Surrounding{"NoProc",
                    "unshare -m true || exit 99; exec unshare -m sh -c "
                    "'mount -t tmpfs x /proc || exit 99; exec \"$0\" \"$@\"' \"$0\" \"$@\""},
        Surrounding{"NoDevices",
                    "unshare -m true || exit 99; exec unshare -m sh -c "
                    "'mount -t tmpfs x /dev || exit 99; exec \"$0\" \"$@\"' \"$0\" \"$@\""},
        Surrounding{"RootThatIsReadOnly",
                    "unshare -m true || exit 99; exec unshare -m sh -c "
                    "'mount -t tmpfs -o ro x \"$2\" || exit 99; exec \"$0\" \"$@\"' \"$0\" \"$@\"",
                    255}),
    nameOf);

}  // namespace
}  // namespace vessant::test
