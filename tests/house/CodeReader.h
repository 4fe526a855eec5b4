// Reads C++ in the project's own form as far as the rules of the house need it: where functions
// begin and end, which are declared without a body, and which lines are comments.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace vessant::test {

struct FunctionRange {
  /// As written behind the return type, such as "TagFile::load".
  std::string name;
  /// Counted from 1: the line on which the signature begins, and that of the closing brace.
  std::size_t firstLine = 0;
  std::size_t lastLine = 0;

  [[nodiscard]] std::size_t length() const { return lastLine - firstLine + 1; }
};

struct CodeOutline {
  /// Every function with a body; a lambda counts only where it is no part of another function, as
  /// in a table.
  std::vector<FunctionRange> functions;
  /// The functions that are declared here and must be defined elsewhere; none that is pure,
  /// defaulted or deleted.
  std::vector<std::string> declarations;
  /// The classes, structures and enumerations that are defined here.
  std::vector<std::string> types;
};

[[nodiscard]] CodeOutline outlineOf(const std::vector<std::string>& lines);

/// The lines with comments, preprocessor lines and the insides of literals made blank.
[[nodiscard]] std::string blankedCode(const std::vector<std::string>& lines);

/// The lines that hold nothing but a comment.
[[nodiscard]] std::size_t commentLines(const std::vector<std::string>& lines);

/// The name behind the last "::", such as "load".
[[nodiscard]] std::string lastPart(const std::string& name);
/// The class of a member that is defined outside of it; empty for a free function.
[[nodiscard]] std::string ownerOf(const std::string& name);

}  // namespace vessant::test
