// Standard output, standard error and standard input, straight on their descriptors.
//
// Nothing is held back in a buffer: what was shown is there before a child writes behind it and
// when the process is killed, and a child reads on where the launcher has stopped. A stream that
// blocks does not keep an interrupted run from ending.
#pragma once

#include <cstddef>
#include <string_view>

#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"

namespace vessant {

class OutputStream {
 public:
  /// Neither the descriptor nor the flag is owned; both must outlive this.
  OutputStream(int fd, const CancelFlag& cancelFlag) : fd_(fd), cancelFlag_(cancelFlag) {}

  /// Writes the whole text, however long its reader takes. A text that cannot be written is passed
  /// over: there is nobody to tell. Once the run is interrupted, a reader that does not take a text
  /// at once loses the rest of it.
  void write(std::string_view text);

 private:
  [[nodiscard]] bool isWritable() const;

  int fd_;
  const CancelFlag& cancelFlag_;
};

class InputStream {
 public:
  /// Neither the descriptor nor the flag is owned; both must outlive this.
  InputStream(int fd, const CancelFlag& cancelFlag) : fd_(fd), cancelFlag_(cancelFlag) {}

  /// Reads one word as scanf's "%s" does: whitespace in front is skipped, and the word is what
  /// comes before the next, cut after `most` bytes. The character that ends it is read, too. Empty
  /// when the input ends or fails before there is a word, and when the run is interrupted.
  [[nodiscard]] SString readWord(std::size_t most);

 private:
  [[nodiscard]] int readByte();

  int fd_;
  const CancelFlag& cancelFlag_;
};

}  // namespace vessant
