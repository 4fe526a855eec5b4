// The objects that a launcher file's embedded tag files describe.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "launcher/archive/LauncherFile.h"
#include "launcher/base/Exceptions.h"
#include "support/FakeRun.h"
#include "support/LauncherFileBuilder.h"
#include "support/TempTree.h"
#include "support/Thrown.h"

namespace vessant::test {
namespace {

/// Notes each object by the tag "ID" of its file, in the log, so that it stands among the lines.
class RecordingBuilder : public EmbeddedObjectBuilder {
 public:
  explicit RecordingBuilder(LogSink& log) : log_(log) {}

  void addJvmFile(TagFile& tags) override { note("jvm", tags); }
  [[nodiscard]] bool hasInstructions() const override { return instructions; }
  void setInstructions(TagFile& tags) override {
    note("instructions", tags);
    instructions = true;
  }
  [[nodiscard]] bool hasLaunchScript() const override { return launchScript; }
  void setLaunchScript(TagFile& tags) override {
    note("launch", tags);
    launchScript = true;
  }

  bool instructions = false;
  bool launchScript = false;
  std::vector<std::string> made;
  std::vector<const TagFile*> files;

 private:
  void note(const std::string& kind, const TagFile& tags) {
    if (tags.findValues("BAD") != nullptr) throw InstructionsException("not so", 7);
    made.push_back(kind + " " + str(tags.getValue("ID")));
    files.push_back(&tags);
    log_.log(SString(made.back()), LogLevel::Information);
  }

  LogSink& log_;
};

class EmbeddedObjects : public ::testing::Test {
 protected:
  void load() {
    const SString path(builder.write(tree.path("setup.bin")));
    launcher.loadFileIndex(path, &objects, run.log, run.messages);
  }

  TempTree tree;
  FakeRun run;
  LauncherFileBuilder builder;
  LauncherFile launcher;
  RecordingBuilder objects{run.log};
};

using Made = std::vector<std::string>;

TEST_F(EmbeddedObjects, AreMadeInTheOrderOfTheIndex) {
  builder.add(1, 1, "a.jvm", "ID: a\n").add(2, 2, "l", "ID: l\n").add(0, 3, "i", "ID: i\n");
  builder.add(1, 4, "b.jvm", "ID: b\n");
  load();
  EXPECT_EQ(objects.made, (Made{"jvm a", "launch l", "instructions i", "jvm b"}));
}

TEST_F(EmbeddedObjects, AreMadeBehindTheListing) {
  builder.add(1, 1, "a.jvm", "ID: a\n").add(3, 2, "jar", "ID: jar\n");
  load();
  EXPECT_EQ(
      run.log.texts(),
      (Made{"file type: 1\n  file id: 1\n  length: 6\n  offset: 0\n  file name: a.jvm",
            "file type: 3\n  file id: 2\n  length: 8\n  offset: 6\n  file name: jar", "jvm a"}));
}

TEST_F(EmbeddedObjects, UseTheFirstScriptOfEachKind) {
  builder.add(2, 1, "l1", "ID: 1\n").add(2, 2, "l2", "ID: 2\n");
  builder.add(0, 3, "i1", "ID: 3\n").add(0, 4, "i2", "ID: 4\n");
  load();
  EXPECT_EQ(objects.made, (Made{"launch 1", "instructions 3"}));
}

TEST_F(EmbeddedObjects, LeaveTheScriptsThatTheRunHasAlready) {
  objects.instructions = objects.launchScript = true;
  builder.add(2, 1, "l", "ID: 1\n").add(0, 2, "i", "ID: 2\n").add(1, 3, "j", "ID: 3\n");
  load();
  EXPECT_EQ(objects.made, (Made{"jvm 3"}));
}

TEST_F(EmbeddedObjects, ComeFromTagFilesThatTheEntriesKeep) {
  builder.add(1, 1, "a.jvm", "ID: a\n").add(2, 2, "l1", "ID: 1\n").add(2, 3, "l2", "ID: 2\n");
  builder.add(6, 4, "app.jar", "ID: 4\n");
  load();
  const FileIndexEntryPtrDeque& index = launcher.index();
  EXPECT_EQ(objects.files, (std::vector<const TagFile*>{index.get(0)->tagFile.get(),
                                                        index.get(1)->tagFile.get()}));
  ASSERT_NE(index.get(2)->tagFile, nullptr) << "read, though nothing is made of it";
  EXPECT_EQ(index.get(2)->tagFile->getValue("ID"), "2");
  EXPECT_EQ(index.get(3)->tagFile, nullptr);
  EXPECT_EQ(index.get(0)->tagFile->sourceName(), "a.jvm");
}

TEST_F(EmbeddedObjects, AreReadWithinTheLengthOfTheirEntries) {
  builder.stub("ID: stub\n").add(1, 1, "a", "ID: a\n").add(3, 2, "b", "ID: b\nno tag file");
  load();
  EXPECT_EQ(objects.made, (Made{"jvm a"}));
}

TEST_F(EmbeddedObjects, MayBeEmpty) {
  builder.add(0, 1, "i", "").add(1, 2, "j", "").add(2, 3, "l", "");
  load();
  EXPECT_EQ(objects.made, (Made{"instructions ", "jvm ", "launch "}));
}

// The index may have been read for its files alone, before anybody knew that the objects are
// needed.
TEST_F(EmbeddedObjects, AreMadeForAnIndexThatWasReadWithoutThem) {
  const SString path(builder.add(1, 1, "a", "ID: a\n").write(tree.path("setup.bin")));
  launcher.loadFileIndex(path, nullptr, run.log, run.messages);
  const FileIndexEntry* entry = launcher.index().get(0);
  run.log.clear();
  launcher.loadFileIndex(path, &objects, run.log, run.messages);
  EXPECT_EQ(run.log.texts(), Made{"jvm a"}) << "the listing stands in the log already";
  EXPECT_EQ(launcher.index().count(), 1);
  EXPECT_EQ(launcher.index().get(0), entry) << "the index was read again";
}

TEST_F(EmbeddedObjects, AreMadeOnce) {
  const SString path(builder.add(1, 1, "a", "ID: a\n").write(tree.path("setup.bin")));
  for (int i = 0; i < 3; ++i) launcher.loadFileIndex(path, &objects, run.log, run.messages);
  EXPECT_EQ(objects.made, (Made{"jvm a"}));
}

TEST_F(EmbeddedObjects, AreNotMadeAgainAfterAFailure) {
  builder.add(1, 1, "a", "ID: a\n").add(1, 2, "b", "oops\n").add(1, 3, "c", "ID: c\n");
  EXPECT_FALSE(thrownMessage([&] { load(); }).empty());
  load();
  EXPECT_EQ(objects.made, (Made{"jvm a"}));
  EXPECT_EQ(launcher.index().count(), 3);
  EXPECT_EQ(objects.files.front(), launcher.index().get(0)->tagFile.get());
  EXPECT_EQ(objects.files.front()->getValue("ID"), "a");
}

TEST_F(EmbeddedObjects, PassOnTheSyntaxErrorOfAnyScript) {
  builder.add(0, 1, "good", "ID: 1\n").add(0, 2, "spare.script", "ID: 2\noops\n");
  EXPECT_EQ(thrownMessage([&] { load(); }),
            "Syntax error in spare.script at line 2 ==> "
            "Missing colon at the end of the tag name.");
  EXPECT_FALSE(launcher.isLoaded());
  EXPECT_EQ(objects.made, (Made{"instructions 1"}));
}

TEST_F(EmbeddedObjects, PutTheKindInFrontOfAScriptsError) {
  const std::pair<int, const char*> kinds[] = {
      {0, "Error loading instructions file.not so"},
      {1, "Error loading JVM file.not so"},
      {2, "Error loading launch script.not so"},
  };
  for (const auto& [type, message] : kinds) {
    LauncherFile fresh;
    const SString path(LauncherFileBuilder().add(type, 1, "x", "BAD: 1\n").write(tree.path("x")));
    EXPECT_EQ(thrownMessage([&] { fresh.loadFileIndex(path, &objects, run.log, run.messages); }),
              message);
    EXPECT_FALSE(fresh.isLoaded());
  }
}

TEST_F(EmbeddedObjects, MayPointBeyondTheEndOfTheFile) {
  const std::string entry = '\1' + bigEndian32(1) + bigEndian32(0xFFFFFFFF) +
                            bigEndian32(0xFFFFFFFF) + bigEndian16(1) + "a" + '\0';
  const SString path(
      tree.file("setup.bin", bigEndian32(1) + entry + bigEndian32(0) + bigEndian32(0xCA82CA82)));
  launcher.loadFileIndex(path, &objects, run.log, run.messages);
  EXPECT_EQ(objects.made, (Made{"jvm "}));
}

TEST_F(EmbeddedObjects, DoNotExistInAFileWithoutIdentification) {
  builder.add(1, 1, "a", "ID: a\n").identification(0);
  load();
  EXPECT_TRUE(objects.made.empty());
}

}  // namespace
}  // namespace vessant::test
