// Turns the readable message files into the catalog that the launcher carries.
//
//     message_compiler OUTPUT ENGLISH.msg OTHER.msg...
//
// The files come in the order of the catalog's rows, the English one first: it is the model that
// the others are held against. The first flaw stops the build with the file, the line and the
// reason, and nothing is written.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <iconv.h>

namespace {

constexpr int kLastMessage = 39;
constexpr std::string_view kPlaceholder = "%s";
constexpr std::string_view kLineBreak = "\\n";
// The same in every language: an internal name and the step of the progress display.
constexpr int kUntranslated[] = {13, 18};

struct Message {
  std::string text;  // UTF-8
  int line = 0;
};

/// A line above the messages that names something.
struct Heading {
  std::string name;
  int line = 0;
};

struct Language {
  std::string path;
  Heading code;
  Heading charset;
  std::map<int, Message> messages;
  int lastLine = 0;
};

[[noreturn]] void fail(const Language& language, int line, const std::string& reason) {
  throw std::runtime_error(language.path + ":" + std::to_string(line) + ": " + reason);
}

/// Converts UTF-8 with the C library; the object owns the conversion descriptor.
class Converter {
 public:
  explicit Converter(const std::string& charset)
      : descriptor_(iconv_open(charset.c_str(), "UTF-8")) {}
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  ~Converter() {
    if (isOpen()) iconv_close(descriptor_);
  }

  // iconv_open's answer to a failure is the pointer -1.
  bool isOpen() const { return reinterpret_cast<std::intptr_t>(descriptor_) != -1; }

  /// Returns the rest of the text from the first character that cannot be converted; empty when
  /// all of it could.
  std::string convert(std::string text, std::string& output) const;

 private:
  iconv_t descriptor_;
};

std::string Converter::convert(std::string text, std::string& output) const {
  output.resize(text.size() * 4 + 16);
  char* in = text.data();
  char* out = output.data();
  std::size_t inLeft = text.size();
  std::size_t outLeft = output.size();
  iconv(descriptor_, nullptr, nullptr, nullptr, nullptr);
  const std::size_t replaced = iconv(descriptor_, &in, &inLeft, &out, &outLeft);
  output.resize(output.size() - outLeft);
  // A positive count is that of characters converted to something else: as bad as a failure.
  if (replaced != 0 && inLeft == 0) return text;
  return {in, inLeft};
}

bool isUtf8(const std::string& text) {
  static const Converter decoder("UTF-32LE");
  std::string ignored;
  return decoder.convert(text, ignored).empty();
}

std::size_t countOf(std::string_view text, std::string_view part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string_view::npos;
       at = text.find(part, at + part.size())) {
    ++count;
  }
  return count;
}

bool isControl(char character) {
  return static_cast<unsigned char>(character) < 0x20 || character == 0x7F;
}

void readHeading(const Language& language, Heading& heading, const std::string& name, int line) {
  if (heading.line != 0) fail(language, line, "such a line stands above already");
  heading = {name, line};
}

void readMessage(Language& language, const std::string& line, int lineNumber) {
  char* end = nullptr;
  const long number = std::strtol(line.c_str(), &end, 10);
  const std::size_t open = line.find('"');
  const std::size_t close = line.rfind('"');
  if (*end != ' ' || open != static_cast<std::size_t>(end - line.c_str()) + 1 || open == close ||
      close + 1 != line.size()) {
    fail(language, lineNumber, "expected: number, one blank, text in double quotes");
  }
  if (number < 1 || number > kLastMessage) {
    fail(language, lineNumber, "there is no message " + std::to_string(number));
  }
  const Message message{line.substr(open + 1, close - open - 1), lineNumber};
  if (std::any_of(message.text.begin(), message.text.end(), isControl)) {
    fail(language, lineNumber, "a tab or another control character in the text");
  }
  if (!language.messages.emplace(static_cast<int>(number), message).second) {
    fail(language, lineNumber, "message " + std::to_string(number) + " stands here again");
  }
}

void readLine(Language& language, const std::string& line, int lineNumber) {
  constexpr std::string_view kCharset = "charset ";
  constexpr std::string_view kLanguage = "language ";
  if (!isUtf8(line)) fail(language, lineNumber, "the line is not UTF-8");
  if (line.empty() || line.front() == '#') return;
  if (line.starts_with(kCharset)) {
    readHeading(language, language.charset, line.substr(kCharset.size()), lineNumber);
  } else if (line.starts_with(kLanguage)) {
    readHeading(language, language.code, line.substr(kLanguage.size()), lineNumber);
  } else {
    readMessage(language, line, lineNumber);
  }
}

void requireHeading(const Language& language, const Heading& heading, const char* keyword) {
  if (heading.line != 0) return;
  fail(language, std::max(language.lastLine, 1), std::string("no line '") + keyword + " NAME'");
}

Language readLanguage(const std::string& path) {
  Language language;
  language.path = path;
  std::ifstream file(path);
  if (!file) fail(language, 1, "cannot be opened");
  std::string line;
  while (std::getline(file, line)) readLine(language, line, ++language.lastLine);
  requireHeading(language, language.charset, "charset");
  requireHeading(language, language.code, "language");
  const std::string fileName = path.substr(path.rfind('/') + 1);
  if (language.code.name + ".msg" != fileName) {
    fail(language, language.code.line, "the language is not that of the file's name");
  }
  for (int number = 1; number <= kLastMessage; ++number) {
    if (!language.messages.contains(number)) {
      fail(language, language.lastLine, "message " + std::to_string(number) + " is missing");
    }
  }
  return language;
}

std::size_t leadingBlanks(std::string_view text) {
  return std::min(text.find_first_not_of(' '), text.size());
}

std::size_t trailingBlanks(std::string_view text) {
  return text.size() - (text.find_last_not_of(' ') + 1);
}

/// What callers rely on: the placeholder, and blanks where further text is joined on.
void checkAgainst(const Language& english, const Language& language) {
  for (const auto& [number, message] : language.messages) {
    const std::string& model = english.messages.at(number).text;
    const std::string& text = message.text;
    if (countOf(text, kPlaceholder) != countOf(model, kPlaceholder)) {
      fail(language, message.line, "the English text has another number of %s");
    }
    if (countOf(text, "%") != countOf(text, kPlaceholder)) {
      fail(language, message.line, "a % that begins no %s");
    }
    if (countOf(text, kLineBreak) != countOf(model, kLineBreak)) {
      fail(language, message.line, "the English text has another number of \\n");
    }
    if (leadingBlanks(text) != leadingBlanks(model) ||
        trailingBlanks(text) != trailingBlanks(model)) {
      fail(language, message.line, "blanks at the ends of the text must be as in English");
    }
  }
  for (const int number : kUntranslated) {
    const Message& message = language.messages.at(number);
    if (message.text != english.messages.at(number).text) {
      fail(language, message.line, "this text is the same in every language");
    }
  }
}

/// A C string literal. Octal escapes always have three digits, so that no digit of the text joins.
std::string literal(const std::string& bytes) {
  std::string result = "\"";
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    const bool plain = byte >= 0x20 && byte < 0x7F && byte != '"' && byte != '\\' && byte != '?';
    if (plain) {
      result += character;
    } else {
      char escape[5];
      std::snprintf(escape, sizeof(escape), "\\%03o", byte);
      result += escape;
    }
  }
  return result + "\"";
}

std::string rowOf(const Language& language) {
  const std::string& charset = language.charset.name;
  const Converter converter(charset);
  // A slash would begin the C library's suffixes that let it replace or drop characters.
  if (!converter.isOpen() || charset.empty() || charset.find('/') != std::string::npos) {
    fail(language, language.charset.line, "unknown character set " + charset);
  }
  std::string row = "    {" + literal(language.code.name);
  for (const auto& [number, message] : language.messages) {
    std::string bytes;
    const std::string rest = converter.convert(message.text, bytes);
    if (!rest.empty()) {
      fail(language, message.line, charset + " cannot hold the text from here on: " + rest);
    }
    row += ",\n     " + literal(bytes);
  }
  return row + ",\n     nullptr},\n";
}

std::string compile(const std::vector<std::string>& paths) {
  std::string source =
      "// Made from the message files; mend the texts there.\n\n"
      "#include \"launcher/driver/output/Messages.h\"\n\n"
      "namespace vessant {\n\n"
      "static_assert(kLanguageCount == " +
      std::to_string(paths.size()) +
      ", \"one file for each row\");\n\n"
      "const MessageRow kMessageCatalog[kLanguageCount] = {\n";
  const Language english = readLanguage(paths.front());
  for (const std::string& path : paths) {
    const Language language = readLanguage(path);
    checkAgainst(english, language);
    source += rowOf(language);
  }
  return source + "};\n\n}  // namespace vessant\n";
}

void write(const std::string& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  file.close();
  if (!file) throw std::runtime_error(path + ": cannot be written");
}

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount < 3) {
    std::fputs("usage: message_compiler OUTPUT ENGLISH.msg OTHER.msg...\n", stderr);
    return 2;
  }
  try {
    write(arguments[1], compile({arguments + 2, arguments + argumentCount}));
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
