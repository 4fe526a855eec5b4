// Reads an installer once from its start to its end, for those who want all of its bytes and for
// those who want the bytes of one packed file.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "packer/Installer.h"
#include "packer/Sha256.h"

namespace vessant {

/// Sums up a whole installer and each of its files while their bytes are read for another purpose.
class OnePass {
 public:
  /// The installer's files must not overlap; it must outlive this.
  explicit OnePass(const Installer& installer);

  /// The bytes of the file from `position` on have just been read. What was read before or lies
  /// further ahead than a little is passed over, and read when its turn comes.
  void offer(std::uint64_t position, std::string_view bytes);
  /// Reads on to `position`.
  void readTo(std::uint64_t position);

  /// The sum of the whole file, which is read to its end.
  [[nodiscard]] std::string wholeSum();
  /// The sums of the packed files, in the order of the index, after that.
  [[nodiscard]] const std::vector<std::string>& fileSums() const { return fileSums_; }

 private:
  void add(std::string_view bytes);

  const Installer& installer_;
  std::uint64_t position_ = 0;
  Sha256 whole_;
  /// Indexes of the entries by offset.
  std::vector<std::size_t> order_;
  std::size_t current_ = 0;
  Sha256 currentSum_;
  std::vector<std::string> fileSums_;
};

}  // namespace vessant
