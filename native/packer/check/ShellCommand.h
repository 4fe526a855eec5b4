// A command line as a POSIX shell reads it: words, quotes and what stands outside of them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vessant {

/// Marks that stand in a trial command for what is known at run time only. None is a byte of any
/// text that an author writes. A path is kPathBegin, what it is, kPathEnd.
inline constexpr char kPathBegin = '\x01';
inline constexpr char kPathEnd = '\x02';
/// A value of unknown text.
inline constexpr char kAnything = '\x03';
/// Where the class path function puts its switch and its quotes.
inline constexpr char kClassPathBegin = '\x04';

/// One word, or one operator, of a command.
struct ShellWord {
  /// Without its quotes; marks stay.
  std::string text;
  /// ";", "|", ">" and their kin.
  bool isOperator = false;
  /// Whether the shell puts something in: $NAME, `command`.
  bool isComputed = false;
};

/// What a command's text says to a shell. Nothing is expanded: what a `$` stands for is not known.
struct ShellReading {
  std::vector<ShellWord> words;
  /// The quote that is never closed, or 0.
  char openQuote = 0;
  /// What the paths outside quotes are, in their order.
  std::vector<std::string> barePaths;
  /// Whether the class path function stands in quotes.
  bool classPathInQuotes = false;
};

/// Takes a trial command apart. Never fails: what is wrong with the command is told in the result.
[[nodiscard]] ShellReading readShellWords(std::string_view command);

}  // namespace vessant
