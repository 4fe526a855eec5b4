// JVMFiles: the JVM files in their order, and the search for a Java VM that satisfies one of them.
//
// A search tries the home that the user named, then the hints of each file and, where a file allows
// it, the whole disk: a walk collects every file that could be a Java executable, and the homes are
// verified, mostly when the walk is over.
#pragma once

#include <memory>
#include <optional>

#include "launcher/base/Deque.h"
#include "launcher/jvm/FindFiles.h"
#include "launcher/jvm/JVMFile.h"
#include "launcher/jvm/JVMSearch.h"

namespace vessant {

/// Candidate homes that the walk found for one JVM file.
struct UnverifiedJVMMatch {
  explicit UnverifiedJVMMatch(JVMFile& file) : jvmFile(file) {}

  JVMFile& jvmFile;
  /// Each home once, in the order found.
  StringDeque homes;
};

using UnverifiedJVMMatchPtrDE = PtrDE<UnverifiedJVMMatch>;
using UnverifiedJVMMatchPtrDeque = PtrDeque<UnverifiedJVMMatch>;

class JVMFiles : public FileFindListener {
 public:
  /// The context must outlive this.
  explicit JVMFiles(const JVMSearchContext& context) : search_{context} {}
  JVMFiles(const JVMFiles&) = delete;
  JVMFiles& operator=(const JVMFiles&) = delete;
  virtual ~JVMFiles() = default;

  void add(std::unique_ptr<JVMFile> jvmFile) { files_.add(std::move(jvmFile)); }
  [[nodiscard]] const JVMFilePtrDeque& files() const { return files_; }

  /// The class to verify with. When neither text is ever set it is the embedded one, which is
  /// extracted when something is first verified.
  void setVerificationClass(const SString& classPath, const SString& className);
  [[nodiscard]] const VerificationClass& verificationClass() const {
    return search_.verificationClass;
  }

  // A search logs at its end what became of its candidates, unless it found something. All three
  // throw LauncherException when the run is cancelled.

  /// Looks for a JVM: at the home that the user named, then by the hints of each file and, where a
  /// file allows it, on the whole disk. Appends the match, if any.
  void find(JVMMatchPtrDeque& matches);
  /// Searches the whole disk and appends what verifies: everything, or only the first.
  void findAll(JVMMatchPtrDeque& matches, bool stopAtFirst);
  /// Verifies one home with a JVM file, which need not be one of these. An empty `home` stands for
  /// the one that the file names itself. Returns the match or none.
  [[nodiscard]] std::unique_ptr<JVMMatch> verify(JVMFile& jvmFile, const SString& home);
  /// The match of the last search by find; none when it failed.
  [[nodiscard]] const std::optional<JVMMatch>& foundMatch() const { return foundMatch_; }

  /// A file of the whole-disk walk.
  bool fileFound(const SString& path) override;

 private:
  [[nodiscard]] const RunServices& services() const;
  void begin();
  void finish(JVMMatchPtrDeque& matches, std::int32_t known);
  void prepareVerificationClass();
  void keep(const std::unique_ptr<JVMMatch>& match);
  void tryUserHome();
  /// Returns whether the file tried last may be searched for on the whole disk.
  bool tryHints();
  void tryHintsOf(JVMFile& jvmFile);
  void searchWholeDisk(JVMMatchPtrDeque& matches);
  void collectExecutables(StringDeque& executables) const;
  void verifyCollected(JVMMatchPtrDeque& matches);
  void considerHome(std::int32_t position, const SString& home);
  UnverifiedJVMMatch& unverifiedOf(JVMFile& jvmFile);

  JVMSearch search_;
  JVMFilePtrDeque files_;
  UnverifiedJVMMatchPtrDeque unverified_;
  std::optional<JVMMatch> foundMatch_;
  bool stopAtFirst_ = false;
};

}  // namespace vessant
