// A command line as a POSIX shell reads it: words, quotes and what stands outside of them; and what
// the Java program in it starts, which must be in the jars that it is started from.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "packer/check/JarFile.h"

namespace vessant {

/// Marks that stand in a trial command for what is known at run time only. None is a byte of any
/// text that an author writes. A path is kPathBegin, what it is, kPathEnd.
inline constexpr char kPathBegin = '\x01';
inline constexpr char kPathEnd = '\x02';
/// A value of unknown text.
inline constexpr char kAnything = '\x03';
/// Where the class path function puts its switch and its quotes.
inline constexpr char kClassPathBegin = '\x04';

struct ShellWord {
  /// Without its quotes; marks stay.
  std::string text;
  /// ";", "|", ">" and their kin.
  bool isOperator = false;
  /// Whether the shell puts something in: $NAME, `command`.
  bool isComputed = false;
};

struct ShellReading {
  std::vector<ShellWord> words;
  /// The quote that is never closed, or 0.
  char openQuote = 0;
  /// What the paths outside quotes are, in their order.
  std::vector<std::string> barePaths;
  /// Whether the class path function stands in quotes.
  bool classPathInQuotes = false;
};

[[nodiscard]] ShellReading readShellWords(std::string_view command);

/// What a Java command starts, as far as its words tell.
struct JavaStart {
  /// False when the words do not tell.
  bool isKnown = false;
  /// The main class; empty when a jar's manifest names it.
  std::string mainClass;
  /// The entries of the class path, or the one jar of -jar.
  std::string classPath;
};

/// `executable`: how the word that is the Java program ends.
[[nodiscard]] JavaStart readJavaStart(const ShellReading& command, const std::string& executable);

/// The packed jar that a class path entry of a trial command stands for, or null.
using JarOfEntry = std::function<const JarFile*(const std::string& entry)>;

/// Why the start must fail; empty when it need not, or when that cannot be told.
[[nodiscard]] std::string whyStartFails(const JavaStart& start, const std::string& separator,
                                        const JarOfEntry& jarOfEntry);

}  // namespace vessant
