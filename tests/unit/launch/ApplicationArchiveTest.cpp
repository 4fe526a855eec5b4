// The application archive: an embedded one, or the copy of a file next to the launcher.

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <thread>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "LaunchRoom.h"

namespace vessant::test {
namespace {

class ApplicationArchive : public LaunchRoom {
 protected:
  std::string archive(const std::string& arguments = "()") {
    return resolve("%APPLICATION_ARCHIVE%" + arguments);
  }
};

/// Ignores a signal for the length of a scope.
class IgnoredSignal {
 public:
  explicit IgnoredSignal(int number) : number_(number), handler_(std::signal(number, SIG_IGN)) {}
  IgnoredSignal(const IgnoredSignal&) = delete;
  IgnoredSignal& operator=(const IgnoredSignal&) = delete;
  ~IgnoredSignal() { std::signal(number_, handler_); }

 private:
  int number_;
  void (*handler_)(int);
};

/// Lets this process write no file beyond a size, for the length of a scope.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    ::getrlimit(RLIMIT_FSIZE, &oldLimit_);
    const rlimit limit = {bytes, oldLimit_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &oldLimit_); }

 private:
  IgnoredSignal ignored_{SIGXFSZ};
  rlimit oldLimit_ = {};
};

TEST_F(ApplicationArchive, IsEmptyWhenTheLauncherCarriesNone) {
  file.add(3, 1, "other.jar", "other");
  load();
  EXPECT_EQ(archive(), "");
  EXPECT_TRUE(tree.list("temp").empty());
}

TEST_F(ApplicationArchive, IsTheExtractedOne) {
  file.add(3, 1, "other.jar", "other").add(6, 2, "app.jar", "the application");
  load();
  const std::string path = archive();
  EXPECT_TRUE(path.ends_with("/app.jar")) << path;
  EXPECT_EQ(readFile(path), "the application");
}

TEST_F(ApplicationArchive, IsTheLastOfSeveralWhichLieTogether) {
  file.add(6, 1, "first.jar", "1").add(6, 2, "last.jar", "2").add(3, 3, "other.jar", "3");
  load();
  const std::string path = archive();
  EXPECT_TRUE(path.ends_with("/last.jar")) << path;
  EXPECT_EQ(readFile(path), "2");
  EXPECT_EQ(readFile(path.substr(0, path.rfind('/')) + "/first.jar"), "1");
}

TEST_F(ApplicationArchive, IsACopyOfTheNamedFile) {
  std::string content(10000, '\0');
  for (std::size_t i = 0; i < content.size(); ++i) content[i] = static_cast<char>(i % 251);
  tree.file("app/my app.jar", content);
  load();
  const std::string path = archive("(\"my app.jar\")");
  EXPECT_TRUE(path.ends_with("/my app.jar")) << path;
  EXPECT_NE(path, tree.path("app/my app.jar"));
  EXPECT_EQ(readFile(path), content);
  EXPECT_EQ(launch.applicationArchive, text(path));
}

TEST_F(ApplicationArchive, CopiesWholeBlocksAndAnEmptyFile) {
  for (const std::size_t size : {0U, 1U, 4095U, 4096U, 4097U, 8192U}) {
    tree.file("app/app.jar", std::string(size, 'x'));
    launch.applicationArchive = "";
    EXPECT_EQ(readFile(archive("(\"app.jar\")")), std::string(size, 'x'));
  }
}

TEST_F(ApplicationArchive, IsNamedByTheLastPartOfTheFilesPath) {
  tree.file("app/lib/inner/deep.jar", "deep");
  EXPECT_TRUE(archive("(\"lib/inner/deep.jar\")").ends_with("/deep.jar"));
  launch.applicationArchive = "";
  tree.file("app/win\\deep.jar", "win");
  const std::string path = archive("(\"win\\deep.jar\")");
  EXPECT_TRUE(path.ends_with("/deep.jar")) << path;
  EXPECT_EQ(readFile(path), "win");
}

TEST_F(ApplicationArchive, IsLookedForNextToTheOriginalLauncher) {
  tree.file("app/app.jar", "of the running launcher");
  tree.file("original/app.jar", "of the original");
  originalLauncherFileName = text(tree.path("original/setup.bin"));
  EXPECT_EQ(readFile(archive("(\"app.jar\")")), "of the original");
}

TEST_F(ApplicationArchive, IsLookedForAsItStandsWithoutADirectory) {
  originalLauncherFileName = "setup.bin";
  EXPECT_EQ(readFile(archive("(\"" + tree.file("elsewhere/app.jar", "here") + "\")")), "here");
}

TEST_F(ApplicationArchive, IsEmptyWhenTheFileIsMissing) {
  EXPECT_EQ(archive("(\"missing.jar\")"), "");
  EXPECT_EQ(launch.applicationArchive, "");
  EXPECT_TRUE(tree.list("temp").empty());
  tree.file("app/missing.jar", "now");
  EXPECT_EQ(readFile(archive("(\"missing.jar\")")), "now");
}

TEST_F(ApplicationArchive, IsEmptyWhenTheCopyHasNoName) {
  EXPECT_EQ(archive("(\"\")"), "");
  tree.dir("app/lib");
  EXPECT_EQ(archive("(\"lib/\")"), "");
  EXPECT_EQ(archive("(\"lib/..\")"), "");
  EXPECT_EQ(launch.applicationArchive, "");
}

TEST_F(ApplicationArchive, IsMadeOnce) {
  file.add(6, 1, "app.jar", "embedded");
  load();
  tree.file("app/other.jar", "copied");
  const std::string path = archive();
  EXPECT_EQ(archive(), path);
  EXPECT_EQ(archive("(\"other.jar\")"), path);
}

TEST_F(ApplicationArchive, StaysTheCopyOnceItIsMade) {
  file.add(6, 1, "app.jar", "embedded");
  load();
  tree.file("app/other.jar", "copied");
  const std::string path = archive("(\"other.jar\")");
  EXPECT_EQ(archive(), path);
  EXPECT_EQ(archive("(\"third.jar\")"), path);
  EXPECT_EQ(readFile(path), "copied");
}

TEST_F(ApplicationArchive, FallsBackToTheEmbeddedOneAfterAMissingFile) {
  file.add(6, 1, "app.jar", "embedded");
  load();
  EXPECT_EQ(resolve("<%APPLICATION_ARCHIVE%(\"missing.jar\")>"), "<>");
  EXPECT_EQ(readFile(archive()), "embedded");
}

TEST_F(ApplicationArchive, IsDeletedWithTheTemporaryFiles) {
  tree.file("app/app.jar", "bytes");
  const std::string path = archive("(\"app.jar\")");
  EXPECT_TRUE(tempFiles.cleanupTempFiles());
  EXPECT_FALSE(std::filesystem::exists(path));
  EXPECT_TRUE(tree.list("temp").empty());
}

TEST_F(ApplicationArchive, TellsACopyThatCannotBeWrittenWhole) {
  tree.file("app/app.jar", std::string(20000, 'x'));
  std::string message;
  {
    const FileSizeLimit limit(6000);
    message = thrownMessage([&] { static_cast<void>(archive("(\"app.jar\")")); });
  }
  EXPECT_EQ(message, "Error writing file = " + std::to_string(EFBIG) +
                         " There may not be enough temporary disk space. Try using -vs:tempdir to "
                         "use a temporary directory on a partition with more disk space.");
  const std::string path = str(launch.applicationArchive);
  EXPECT_TRUE(path.ends_with("/app.jar")) << path;
  EXPECT_EQ(readFile(path).size(), 6000U);
  EXPECT_EQ(archive(), path);
}

TEST_F(ApplicationArchive, TellsALastBlockThatCannotBeWritten) {
  tree.file("app/app.jar", std::string(200, 'x'));
  const FileSizeLimit limit(100);
  EXPECT_TRUE(thrownMessage([&] {
                static_cast<void>(archive("(\"app.jar\")"));
              }).starts_with("Error writing file = " + std::to_string(EFBIG)));
}

TEST_F(ApplicationArchive, NamesTheCopyThatCannotBeWrittenInTheLog) {
  tree.file("app/app.jar", std::string(20000, 'x'));
  {
    const FileSizeLimit limit(6000);
    EXPECT_FALSE(thrownMessage([&] { static_cast<void>(archive("(\"app.jar\")")); }).empty());
  }
  const std::string line =
      "Could not write " + str(launch.applicationArchive) + " :  File too large";
  EXPECT_TRUE(run.log.contains(line, LogLevel::Error)) << line;
}

TEST_F(ApplicationArchive, IsNotCopiedFurtherOnceTheRunIsCancelled) {
  tree.file("app/app.jar", std::string(20000, 'x'));
  run.cancelFlag.set();
  EXPECT_EQ(thrownMessage([&] { static_cast<void>(archive("(\"app.jar\")")); }),
            "Canceled by the user.");
  EXPECT_EQ(readFile(str(launch.applicationArchive)), "");
}

TEST_F(ApplicationArchive, IsANewFile) {
  tree.file("app/app.jar", "bytes");
  struct stat status = {};
  ASSERT_EQ(::lstat(archive("(\"app.jar\")").c_str(), &status), 0);
  EXPECT_TRUE(S_ISREG(status.st_mode));
  EXPECT_EQ(status.st_nlink, 1U);
}

TEST_F(ApplicationArchive, ReadsItsSourceToTheEndAfterAWriteError) {
  // More than a pipe holds: the writer only comes to its end when everything is read.
  const std::string content(300000, 'x');
  const std::string pipe = tree.path("app/pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const IgnoredSignal ignored(SIGPIPE);
  ssize_t written = 0;
  std::thread writer([&] {
    const int fd = ::open(pipe.c_str(), O_WRONLY | O_CLOEXEC);
    written = ::write(fd, content.data(), content.size());
    ::close(fd);
  });
  {
    const FileSizeLimit limit(6000);
    EXPECT_TRUE(thrownMessage([&] {
                  static_cast<void>(archive("(\"pipe\")"));
                }).starts_with("Error writing file = "));
  }
  writer.join();
  EXPECT_EQ(written, static_cast<ssize_t>(content.size()));
}

}  // namespace
}  // namespace vessant::test
