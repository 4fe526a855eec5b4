// SHA-256 sums of an installer in the form of `sha256sum`: the whole file first, then each of the
// files that it carries.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "packer/Finding.h"
#include "packer/Installer.h"

struct evp_md_ctx_st;

namespace vessant {

/// By libcrypto.
class Sha256 {
 public:
  Sha256();
  void add(std::string_view bytes);
  /// The sum in small hexadecimal digits. Nothing can be added behind it.
  [[nodiscard]] std::string finish();

 private:
  struct Closer {
    void operator()(evp_md_ctx_st* context) const;
  };

  std::unique_ptr<evp_md_ctx_st, Closer> context_;
};

/// Sums up a whole installer and each of its files while their bytes are read for another purpose.
class OnePass {
 public:
  /// Is told how many bytes more were summed up.
  using Advance = std::function<void(std::uint64_t count)>;

  /// The installer's files must not overlap; it must outlive this.
  explicit OnePass(const Installer& installer, Advance advance = {});

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
  Advance advance_;
  std::uint64_t position_ = 0;
  Sha256 whole_;
  /// Indexes of the entries by offset.
  std::vector<std::size_t> order_;
  std::size_t current_ = 0;
  Sha256 currentSum_;
  std::vector<std::string> fileSums_;
};

/// One line of what sha256sum writes.
struct SumLine {
  /// 64 small hexadecimal digits.
  std::string sum;
  /// Without escapes: the bytes of the name.
  std::string name;
  /// In the file of sums, from 1.
  int line = 0;
};

/// The line without its break. A name with a backslash is written as `sha256sum` does: doubled,
/// with one more in front of the line.
[[nodiscard]] std::string lineOf(const SumLine& sum);

/// Reads such lines. Whatever is none is a finding, with `file` as its file.
[[nodiscard]] std::vector<SumLine> readSums(const std::string& file, const std::string& text,
                                            Findings& findings);

/// The sums of an installer, the whole file under its own name. Reads the rest of the pass.
[[nodiscard]] std::vector<SumLine> sumsOf(const Installer& installer, OnePass& pass);

/// Holds an installer's sums against those that it should have. The name of the whole file does
/// not count.
void compareSums(const Installer& installer, const std::vector<SumLine>& got,
                 const std::string& file, const std::vector<SumLine>& wanted, Findings& findings);

}  // namespace vessant
