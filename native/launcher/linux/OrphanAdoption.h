// Keeps the processes below the launcher within its reach.
#pragma once

namespace vessant {

/// While it lives, a process that a child of the launcher started, and whose own parent has ended,
/// becomes the launcher's child instead of the system's: it can be waited for, and found.
class OrphanAdoption {
 public:
  OrphanAdoption();
  OrphanAdoption(const OrphanAdoption&) = delete;
  OrphanAdoption& operator=(const OrphanAdoption&) = delete;
  ~OrphanAdoption();

  /// Kills all that was started meanwhile, also what has left its group, its session and its
  /// parent. Does nothing in a launcher that had children before, or is given those of a whole
  /// machine as its first process: they could not be told apart.
  void killAll() const;

 private:
  bool hasOthers_;
};

}  // namespace vessant
