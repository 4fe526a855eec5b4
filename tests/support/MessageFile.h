// The readable message files and the character sets, read without any code of the compiler: what
// the catalog is held against.
#pragma once

#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace vessant::test {

struct MessageFile {
  std::string language;
  std::string charset;
  std::map<int, std::string> texts;  // UTF-8
};

/// The rows of the catalog and their character sets, in the order in which languages match.
struct CatalogRow {
  const char* language;
  const char* charset;
};
void PrintTo(const CatalogRow& row, std::ostream* out);
[[nodiscard]] const std::vector<CatalogRow>& catalogRows();

/// The file of a language.
[[nodiscard]] MessageFile readMessageFile(const std::string& language);

/// The text in another character set. Throws when the set does not have one of its characters or
/// the text is not in the set it is said to be in.
[[nodiscard]] std::string convert(const std::string& text, const std::string& from,
                                  const std::string& to);

}  // namespace vessant::test
