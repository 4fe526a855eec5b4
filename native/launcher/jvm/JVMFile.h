// JVMFile: one kind of Java VM that the installer accepts.
//
// It says how to recognise the VM (the system properties it must report), where its executable lies
// inside a Java home and where to look for homes. As a macro handler it puts its tags into
// commands: @TAG@.
#pragma once

#include <memory>

#include "launcher/base/Deque.h"
#include "launcher/base/SString.h"
#include "launcher/jvm/JVMSearch.h"
#include "launcher/launch/JvmTags.h"
#include "launcher/tagfile/JvmTagNames.h"

namespace vessant {

class JVMFile : public JvmTags {
 public:
  /// The tags are the caller's and must outlive this.
  explicit JVMFile(TagFile& tags) : JvmTags(tags) {}

  [[nodiscard]] SString description() const { return tag(jvmtag::kDescription); }
  /// The path of the Java executable inside a home.
  [[nodiscard]] SString executable() const { return tag(jvmtag::kExecutable); }
  /// Whether the whole disk may be searched for this VM.
  [[nodiscard]] bool searchAll() const { return tags().getBoolean(jvmtag::kSearchAll, false); }
  /// The file's name for messages.
  [[nodiscard]] const SString& fileName() const { return tags().sourceName(); }

  /// Runs the Java at `home` and compares what it reports with what this file asks for. Returns the
  /// match, which the caller owns, or none. A bad candidate is logged, not thrown. A home that is
  /// run stays in the tag JVM_HOME, as an absolute path, for all who share the tags.
  [[nodiscard]] std::unique_ptr<JVMMatch> verifyAt(const SString& home, JVMSearch& search);
  /// The part of verifyAt that runs the Java: whether it reports what is asked for.
  [[nodiscard]] bool runVerification(const SString& home, JVMSearch& search);
  /// verifyAt for the home that this file names itself.
  [[nodiscard]] std::unique_ptr<JVMMatch> verifyOwnHome(JVMSearch& search);
  /// Whether `output` holds the magic line and, after it, the expected values.
  [[nodiscard]] static bool matchOutput(const SString& output, const StringPairPtrDeque& expected,
                                        LogSink& log);

  /// The three searches by hints: the first candidate that verifies, or none. See HintSearch.
  [[nodiscard]] std::unique_ptr<JVMMatch> searchPlatformHints(JVMSearch& search);
  [[nodiscard]] std::unique_ptr<JVMMatch> searchPathHints(JVMSearch& search);
  [[nodiscard]] std::unique_ptr<JVMMatch> searchPlatformJVMPathHints(JVMSearch& search);
};

using JVMFilePtrDE = PtrDE<JVMFile>;
using JVMFilePtrDeque = PtrDeque<JVMFile>;

}  // namespace vessant
