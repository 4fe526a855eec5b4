#include "support/MessageFile.h"

#include <memory>
#include <sstream>
#include <stdexcept>
#include <type_traits>

#include <iconv.h>

#include "support/BuildPaths.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

struct CloseConversion {
  void operator()(iconv_t descriptor) const { iconv_close(descriptor); }
};
using Conversion = std::unique_ptr<std::remove_pointer_t<iconv_t>, CloseConversion>;

}  // namespace

void PrintTo(const CatalogRow& row, std::ostream* out) {
  *out << row.language;
}

const std::vector<CatalogRow>& catalogRows() {
  static const std::vector<CatalogRow> rows = {
      {"en", "ASCII"},      {"bg", "CP866"},      {"cs", "ISO-8859-2"}, {"da", "CP850"},
      {"de", "CP850"},      {"el", "ISO-8859-7"}, {"es", "CP850"},      {"fi", "CP850"},
      {"fr", "CP850"},      {"hr", "CP1250"},     {"hu", "ISO-8859-2"}, {"it", "CP850"},
      {"ja", "EUC-JP"},     {"ko", "EUC-KR"},     {"nl", "ASCII"},      {"no", "CP850"},
      {"pl", "ISO-8859-2"}, {"pt", "CP850"},      {"pt_BR", "CP850"},   {"ro", "ISO-8859-2"},
      {"ru", "ISO-8859-5"}, {"sk", "CP1250"},     {"sl", "CP1250"},     {"sv", "CP850"},
      {"tr", "CP857"},      {"zh", "GB2312"},     {"zh_TW", "BIG5"},
  };
  return rows;
}

MessageFile readMessageFile(const std::string& language) {
  MessageFile file;
  std::istringstream lines(readFile(
      std::string(kSourceDir) + "/native/launcher/driver/output/messages/" + language + ".msg"));
  for (std::string line; std::getline(lines, line);) {
    const std::size_t blank = line.find(' ');
    if (line.starts_with('#') || blank == std::string::npos) continue;
    const std::string key = line.substr(0, blank);
    const std::string value = line.substr(blank + 1);
    if (key == "charset") {
      file.charset = value;
    } else if (key == "language") {
      file.language = value;
    } else {
      file.texts[std::stoi(key)] = value.substr(1, value.size() - 2);  // without its quotes
    }
  }
  return file;
}

std::string convert(const std::string& text, const std::string& from, const std::string& to) {
  const iconv_t opened = iconv_open(to.c_str(), from.c_str());
  if (reinterpret_cast<std::intptr_t>(opened) == -1) throw std::runtime_error("no such set");
  const Conversion conversion(opened);
  std::string input = text;
  std::string output(text.size() * 4 + 16, '\0');
  char* in = input.data();
  char* out = output.data();
  std::size_t inLeft = input.size();
  std::size_t outLeft = output.size();
  if (iconv(conversion.get(), &in, &inLeft, &out, &outLeft) != 0) {
    throw std::runtime_error("not convertible from " + from + " to " + to + ": " + text);
  }
  output.resize(output.size() - outLeft);
  return output;
}

}  // namespace vessant::test
