// JVMFiles: the JVM files in their order, and the search for a Java VM that satisfies one of them.
#pragma once

#include <memory>
#include <optional>

#include "launcher/jvm/FindFiles.h"
#include "launcher/jvm/JVMFile.h"
#include "launcher/jvm/JVMMatch.h"
#include "launcher/jvm/JVMSearchContext.h"
#include "launcher/jvm/UnverifiedJVMMatch.h"

namespace vessant {

class JVMFiles : public FileFindListener {
 public:
  /// The context must outlive this.
  explicit JVMFiles(const JVMSearchContext& context) : context_(context) {}
  JVMFiles(const JVMFiles&) = delete;
  JVMFiles& operator=(const JVMFiles&) = delete;
  virtual ~JVMFiles() = default;

  void add(std::unique_ptr<JVMFile> jvmFile) { files_.add(std::move(jvmFile)); }
  [[nodiscard]] const JVMFilePtrDeque& files() const { return files_; }

  void setVerificationClass(const SString& classPath, const SString& className);
  /// The class to verify with: the one that was set or, when nothing was, the embedded one, which
  /// is extracted now.
  const VerificationClass& verificationClass();

  /// Looks for a JVM: at the home that the user named, then by the hints of each file and, where a
  /// file allows it, on the whole disk. Appends the match, if any.
  void find(JVMMatchPtrDeque& matches);
  /// Searches the whole disk and appends what verifies: everything, or only the first.
  void findAll(JVMMatchPtrDeque& matches, bool stopAtFirst);
  /// The match of the last search by find; none when it failed.
  [[nodiscard]] const std::optional<JVMMatch>& foundMatch() const { return foundMatch_; }

  /// A file of the whole-disk walk.
  bool fileFound(const SString& path) override;

 private:
  void prepare();
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

  const JVMSearchContext& context_;
  JVMFilePtrDeque files_;
  UnverifiedJVMMatchPtrDeque unverified_;
  std::optional<JVMMatch> foundMatch_;
  bool stopAtFirst_ = false;
  VerificationClass verificationClass_;
};

}  // namespace vessant
