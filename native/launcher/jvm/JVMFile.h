// JVMFile: one kind of Java VM that the installer accepts.
//
// It says how to recognise the VM (the system properties it must report), where its executable lies
// inside a Java home and where to look for homes. As a macro handler it puts its tags into
// commands: @TAG@.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "launcher/base/PtrDeque.h"
#include "launcher/base/SString.h"
#include "launcher/base/StringDeque.h"
#include "launcher/base/StringPair.h"
#include "launcher/jvm/JVMMatch.h"
#include "launcher/jvm/JVMSearchContext.h"
#include "launcher/launch/MacroHandler.h"
#include "launcher/tagfile/TagFile.h"

namespace vessant {

class JVMFile : public MacroHandler {
 public:
  /// The tags are the caller's and must outlive this.
  explicit JVMFile(TagFile& tags) : tags_(tags) {}
  JVMFile(const JVMFile&) = delete;
  JVMFile& operator=(const JVMFile&) = delete;
  virtual ~JVMFile() = default;

  [[nodiscard]] TagFile& tags() const { return tags_; }
  /// The first value of a tag; empty when it is absent.
  [[nodiscard]] SString tag(std::string_view name) const { return tags_.getValue(name); }
  [[nodiscard]] SString description() const { return tag("DESC"); }
  /// The path of the Java executable inside a home.
  [[nodiscard]] SString executable() const { return tag("JVM_EXE"); }
  /// Whether the whole disk may be searched for this VM.
  [[nodiscard]] bool searchAll() const { return tags_.getBoolean("SEARCH_ALL", false); }
  /// The file's name for messages.
  [[nodiscard]] const SString& fileName() const { return tags_.sourceName(); }

  void handleMacro(SString& text, char delimiter, SString::Size start, SString::Size& end) override;

  /// Runs the Java at `home` and compares what it reports with what this file asks for. Returns the
  /// match, or none. A bad candidate is logged, not thrown.
  [[nodiscard]] std::unique_ptr<JVMMatch> verifyAt(const SString& home,
                                                   const VerificationClass& verificationClass,
                                                   const JVMSearchContext& context);
  /// The same for the home that this file names itself.
  [[nodiscard]] std::unique_ptr<JVMMatch> verifyOwnHome(const VerificationClass& verificationClass,
                                                        const JVMSearchContext& context);
  /// Whether `output` holds the magic line and, after it, the expected values. Output that ends
  /// early is accepted. Kept: older verification classes print fewer lines.
  [[nodiscard]] static bool matchOutput(const SString& output, const StringPairPtrDeque& expected,
                                        LogSink& log);

  /// The three searches by hints: the first candidate that verifies, or none.
  [[nodiscard]] std::unique_ptr<JVMMatch> searchPlatformHints(
      const VerificationClass& verificationClass, const JVMSearchContext& context);
  [[nodiscard]] std::unique_ptr<JVMMatch> searchPathHints(
      const VerificationClass& verificationClass, const JVMSearchContext& context);
  [[nodiscard]] std::unique_ptr<JVMMatch> searchPlatformJVMPathHints(
      const VerificationClass& verificationClass, const JVMSearchContext& context);

 private:
  /// False, with a warning, for a file that names no property and so can verify nothing.
  [[nodiscard]] bool namesProperties(LogSink& log) const;
  [[nodiscard]] bool runVerification(const SString& home,
                                     const VerificationClass& verificationClass,
                                     const JVMSearchContext& context);
  [[nodiscard]] SString verificationCommand(const SString& home,
                                            const VerificationClass& verificationClass,
                                            StringPairPtrDeque& expected, LogSink& log) const;
  [[nodiscard]] bool beginHintSearch(const char* kind, const JVMSearchContext& context) const;
  [[nodiscard]] std::unique_ptr<JVMMatch> tryRelativeHint(
      const SString& hint, const VerificationClass& verificationClass,
      const JVMSearchContext& context);

  TagFile& tags_;
};

using JVMFilePtrDE = PtrDE<JVMFile>;
using JVMFilePtrDeque = PtrDeque<JVMFile>;

/// `text` with the @TAG@ macros of a JVM file expanded.
[[nodiscard]] SString expandJVMMacros(JVMFile& jvmFile, const SString& text);

}  // namespace vessant
