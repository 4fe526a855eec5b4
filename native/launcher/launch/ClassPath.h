// The class path of a Java command, put together from options, side files, the JVM file, the launch
// script and the archives that the launcher carries.
#pragma once

#include <string_view>

#include "launcher/base/SString.h"
#include "launcher/base/StringDeque.h"
#include "launcher/launch/JvmTags.h"
#include "launcher/launch/LaunchContext.h"

namespace vessant {

class ClassPathBuilder {
 public:
  /// Both must outlive this.
  ClassPathBuilder(LaunchContext& context, const JvmTags& jvm);

  /// The whole class path, in its fixed order. `archive` is the launch script's own entry;
  /// `includeArchives` adds the embedded class-path archives.
  [[nodiscard]] SString build(const StringDeque& entries, const SString& archive,
                              bool includeArchives) const;

  /// True when the JVM file asks for the class path in an environment variable.
  [[nodiscard]] bool usesEnvironment() const { return useEnvironment_; }

  /// Appends an entry behind a separator. An empty one adds nothing.
  void appendClassPathEntry(SString& classPath, const SString& entry) const;
  /// Appends the text of an option: trimmed; "@" and a path stand for the list file of that name.
  void addClassPathOption(SString& classPath, const SString& text) const;
  /// The class path of a list file, one entry a line. A missing file is empty, and logged as a
  /// warning when `warn` is set.
  [[nodiscard]] SString readClassPathFile(const SString& path, bool warn) const;
  /// The same for the side file with the suffix.
  [[nodiscard]] SString readSideFileClassPath(std::string_view suffix) const;
  /// The extracted class-path archives, in double quotes if wanted.
  [[nodiscard]] SString extractedArchives(bool quote) const;

 private:
  [[nodiscard]] SString asEntry(const SString& entry) const;

  LaunchContext& context_;
  const JvmTags& jvm_;
  SString separator_;
  bool useEnvironment_;
};

}  // namespace vessant
