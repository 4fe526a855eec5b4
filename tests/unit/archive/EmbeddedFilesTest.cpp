// The copies of embedded files that a run makes once.

#include <filesystem>
#include <string>

#include "TempFixture.h"
#include "launcher/archive/Extraction.h"
#include "support/LauncherFileBuilder.h"
#include "support/Thrown.h"

namespace vessant::test {
namespace {

namespace fs = std::filesystem;

class EmbeddedCopies : public TempFixture {
 protected:
  void load() {
    builder.write(str(path));
    launcher.loadFileIndex(path, nullptr, run.log, run.messages);
  }
  std::string extracted(std::int32_t index) {
    return str(files.extractedPath(*launcher.index().get(index)));
  }
  static std::string directoryOf(const std::string& file) {
    return fs::path(file).parent_path().string();
  }

  SString path{tree.path("setup.bin")};
  LauncherFileBuilder builder;
  LauncherFile launcher;
  FileExtractor extractor{path, launcher, run.services};
  EmbeddedFiles files{launcher, extractor, temp};
};

/// The bytes are all there, but they are those of another file, or of another time.
struct ReplacedLauncherFile : EmbeddedCopies {
  void expectRefused() {
    EXPECT_EQ(thrownMessage([this] { extracted(0); }),
              "Unable to extract embedded files from the launcher. ");
    EXPECT_TRUE(run.log.contains(
        "The launcher file " + str(path) + " has changed: wanted 3 bytes of a.jar, found 0",
        LogLevel::Error));
  }
};

TEST_F(ReplacedLauncherFile, OfTheSameLengthIsNoticed) {
  builder.add(3, 1, "a.jar", "AAA");
  load();
  tree.file("other", std::string(fs::file_size(str(path)), 'x'));
  fs::last_write_time(tree.path("other"), fs::last_write_time(str(path)) + std::chrono::seconds(1));
  fs::rename(tree.path("other"), str(path));
  expectRefused();
}

TEST_F(ReplacedLauncherFile, ThatIsLongerIsNoticed) {
  builder.add(3, 1, "a.jar", "AAA");
  load();
  const auto written = fs::last_write_time(str(path));
  fs::resize_file(str(path), fs::file_size(str(path)) + 1);
  fs::last_write_time(str(path), written);
  expectRefused();
}

TEST_F(ReplacedLauncherFile, MovedToAnotherInodeIsTheSame) {
  builder.add(3, 1, "a.jar", "AAA");
  load();
  const auto written = fs::last_write_time(str(path));
  fs::copy_file(str(path), tree.path("other"));
  fs::last_write_time(tree.path("other"), written);
  fs::rename(tree.path("other"), str(path));
  EXPECT_EQ(readFile(extracted(0)), "AAA");
}

TEST_F(EmbeddedCopies, LieInTemporaryDirectoriesOfTheirOwn) {
  builder.add(3, 1, "a.jar", "AAA").add(3, 2, "a.jar", "BBB");
  load();
  const std::string first = extracted(0);
  const std::string second = extracted(1);
  EXPECT_EQ(fs::path(first).filename(), "a.jar");
  EXPECT_NE(directoryOf(first), directoryOf(second));
  EXPECT_EQ(directoryOf(directoryOf(first)), tree.path("root"));
  EXPECT_EQ(readFile(first), "AAA");
  EXPECT_EQ(readFile(second), "BBB");
}

TEST_F(EmbeddedCopies, AreMadeOnce) {
  builder.add(5, 1, "verify.jar", "AAA");
  load();
  const std::string first = extracted(0);
  fs::remove(first);
  EXPECT_EQ(extracted(0), first);
  EXPECT_FALSE(fs::exists(first));
  EXPECT_EQ(tree.list("root").size(), 1U);
}

TEST_F(EmbeddedCopies, GoWithTheTemporaryDirectories) {
  builder.add(3, 1, "a.jar", "AAA").add(6, 2, "b.jar", "BBB");
  load();
  static_cast<void>(extracted(0));
  static_cast<void>(files.extractApplicationArchives());
  temp.cleanupTempFiles();
  EXPECT_TRUE(tree.list("root").empty());
}

TEST_F(EmbeddedCopies, AreTriedAgainAfterAFailure) {
  builder.add(3, 1, "a.jar", "AAA");
  load();
  run.platform.enoughSpace = false;
  EXPECT_FALSE(thrownMessage([&] { extracted(0); }).empty());
  run.platform.enoughSpace = true;
  EXPECT_EQ(readFile(extracted(0)), "AAA");
}

TEST_F(EmbeddedCopies, PutAllApplicationArchivesIntoOneDirectory) {
  builder.add(6, 1, "a.jar", "AAA").add(3, 2, "class.path", "CCC").add(6, 3, "b.jar", "BBB");
  load();
  const std::string last = str(files.extractApplicationArchives());
  EXPECT_EQ(fs::path(last).filename(), "b.jar");
  EXPECT_EQ(readFile(last), "BBB");
  EXPECT_EQ(readFile(directoryOf(last) + "/a.jar"), "AAA");
  EXPECT_EQ(tree.list("root").size(), 3U);
}

TEST_F(EmbeddedCopies, MakeTheApplicationArchivesAtEveryCall) {
  builder.add(6, 1, "a.jar", "AAA");
  load();
  const std::string first = str(files.extractApplicationArchives());
  const std::string second = str(files.extractApplicationArchives());
  EXPECT_NE(first, second) << "who asks keeps the path";
  EXPECT_EQ(readFile(second), "AAA");
}

TEST_F(EmbeddedCopies, MakeNothingWithoutApplicationArchives) {
  builder.add(3, 1, "a.jar", "AAA");
  load();
  EXPECT_EQ(files.extractApplicationArchives(), "");
  EXPECT_TRUE(tree.list("root").empty());
}

// The first archive alone would pass for all of them.
TEST_F(EmbeddedCopies, FailAgainWhenOneApplicationArchiveCannotBeWritten) {
  builder.add(6, 1, "a.jar", "AAA").add(6, 2, "missing/b.jar", "BBB");
  load();
  const std::string failure =
      thrownMessage([&] { static_cast<void>(files.extractApplicationArchives()); });
  EXPECT_TRUE(failure.starts_with("Error writing file = 2")) << failure;
  EXPECT_EQ(thrownMessage([&] { static_cast<void>(files.extractApplicationArchives()); }), failure);
}

}  // namespace
}  // namespace vessant::test
