// The temporary files and directories of a run.
//
// Life cycle: a path is made under the temporary root and registered in the same step; whoever
// asked for it uses it freely; cleanupTempFiles deletes everything registered, once, at the end of
// the run. A path that must outlive the run is unregistered first. Names are made new and never
// taken over from what already lies there. With each path goes the identity of what was made, so
// that the clean-up leaves alone what somebody else has put in its place.
#pragma once

#include <optional>

#include "launcher/base/Deque.h"
#include "launcher/base/PathUtil.h"
#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"

namespace vessant {

inline constexpr const char* kDefaultTempRoot = "/tmp";

class TempFiles {
 public:
  /// `root` is the run's setting, empty until the user names one. Both must outlive this.
  TempFiles(const RunServices& services, SString& root) : services_(services), root_(root) {}
  TempFiles(const TempFiles&) = delete;
  TempFiles& operator=(const TempFiles&) = delete;

  void setTempRoot(const SString& path) { root_ = path; }
  /// The root in use. Throws LauncherException when it is no directory.
  SString getTempRoot();
  /// The root in use or to be used, whether or not it exists.
  [[nodiscard]] SString tempRootSetting() const;

  /// A new directory or a new empty file, registered; the path is absolute, so that a change of
  /// the current directory does not hide it from the clean-up. The C library may prefer the
  /// directory that TMPDIR names to the root. Throw LauncherException on failure.
  SString createTempDir();
  SString createTempFile();

  /// For what somebody else has made; the clean-up deletes it, too. A path under which nothing lies
  /// yet is deleted whatever lies there then.
  void registerTempFile(const SString& path);
  /// Forget the first registered path that is equal, so that it stays: its user outlives this run.
  void unregisterTempFile(const SString& path);
  void unregisterTempDir(const SString& path);

  /// Deletes the files, then the directories with all they hold, in the order of their making.
  /// Returns whether every path was handled, which one that stays is, too; never throws.
  bool cleanupTempFiles();

 private:
  struct TempPath {
    SString path;
    std::optional<FileIdentity> identity;
  };
  using TempPaths = PtrDeque<TempPath>;

  /// Registers what was made; returns its path.
  static SString add(TempPaths& paths, TempPath temp);
  static void removeFirst(TempPaths& paths, const SString& path);
  SString newName();
  void deleteAll(const TempPaths& paths);

  const RunServices& services_;
  SString& root_;
  TempPaths files_;
  TempPaths directories_;
};

/// Removes an embedded launcher's own file, and its directory when that is then empty. Failures are
/// ignored: the run is over.
void deleteOwnExecutable(const SString& launcherFileName) noexcept;

}  // namespace vessant
