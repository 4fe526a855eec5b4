// A file that is made afresh in a directory that others may write to.
#pragma once

#include <fcntl.h>

#include "launcher/base/Handles.h"
#include "launcher/base/SString.h"

namespace vessant {

/// An open file with its place in a directory. It closes itself and stays, unless it is removed.
class NewFile {
 public:
  /// Removes what lies in `directory` (the current one when it is empty) under `name`, and makes an
  /// empty file there, for everybody within the process's mask: never through a link, never into a
  /// pipe or a file that somebody else holds open. A directory in the way stays, and so does the
  /// open file `keep`. When that fails, there is no file, and `error()` tells why.
  NewFile(const SString& directory, const SString& name, const UniqueFd& keep);

  /// 0, or the number of the error with which the making failed.
  [[nodiscard]] int error() const { return error_; }
  [[nodiscard]] int fd() const { return file_.get(); }

  /// Adds permission to run the file for everybody.
  void makeExecutable() const;
  /// Returns 0 or the number of a write error that shows only now, as one of a file system on the
  /// network may.
  [[nodiscard]] int close();
  /// Takes the file away again. A file that cannot be removed stays: the caller has a failure of
  /// its own to tell.
  void remove() const;

 private:
  // Each returns 0 or the number of its error.
  [[nodiscard]] int create(const UniqueFd& keep);
  [[nodiscard]] int open();
  [[nodiscard]] int clearPlace(const UniqueFd& keep) const;

  SString name_;
  UniqueFd directory_;
  int directoryFd_ = AT_FDCWD;  // nothing needs to be opened for the current one
  UniqueFd file_;
  int error_ = 0;
};

}  // namespace vessant
