// Turns the readable message files into the catalog that the launcher carries.
//
//     message_compiler OUTPUT ENGLISH.msg OTHER.msg...
//
// The files come in the order of the catalog's rows, the English one first: it is the model that
// the others are held against. The first flaw stops the build with the file, the line and the
// reason, and nothing is written.

#include <cerrno>
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

struct Language {
  std::string path;
  std::string code;
  std::string charset;
  std::map<int, Message> messages;
  int lastLine = 0;
};

[[noreturn]] void fail(const Language& language, int line, const std::string& reason) {
  throw std::runtime_error(language.path + ":" + std::to_string(line) + ": " + reason);
}

/// Converts text with the C library; the object owns the conversion descriptor.
class Converter {
 public:
  explicit Converter(const Language& language)
      : language_(language), descriptor_(iconv_open(language.charset.c_str(), "UTF-8")) {
    if (!isOpen()) fail(language, 1, "unknown character set " + language.charset);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  ~Converter() {
    if (isOpen()) iconv_close(descriptor_);
  }

  std::string convert(const Message& message) const;

 private:
  // iconv_open's answer to a failure is the pointer -1.
  bool isOpen() const { return reinterpret_cast<std::intptr_t>(descriptor_) != -1; }

  const Language& language_;
  iconv_t descriptor_;
};

std::string Converter::convert(const Message& message) const {
  std::string input = message.text;
  std::string output(input.size() * 4 + 16, '\0');
  char* in = input.data();
  char* out = output.data();
  std::size_t inLeft = input.size();
  std::size_t outLeft = output.size();
  iconv(descriptor_, nullptr, nullptr, nullptr, nullptr);
  // A positive count is that of characters converted to something else: as bad as a failure.
  if (iconv(descriptor_, &in, &inLeft, &out, &outLeft) != 0) {
    fail(language_, message.line,
         language_.charset + " cannot hold the text from here on: " + std::string(in, inLeft));
  }
  output.resize(output.size() - outLeft);
  return output;
}

std::size_t countOf(std::string_view text, std::string_view part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string_view::npos;
       at = text.find(part, at + part.size())) {
    ++count;
  }
  return count;
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
  if (!language.messages.emplace(static_cast<int>(number), message).second) {
    fail(language, lineNumber, "message " + std::to_string(number) + " stands here again");
  }
}

void readLine(Language& language, const std::string& line, int lineNumber) {
  constexpr std::string_view kCharset = "charset ";
  constexpr std::string_view kLanguage = "language ";
  if (line.empty() || line.front() == '#') return;
  if (line.starts_with(kCharset)) {
    language.charset = line.substr(kCharset.size());
  } else if (line.starts_with(kLanguage)) {
    language.code = line.substr(kLanguage.size());
  } else {
    readMessage(language, line, lineNumber);
  }
}

Language readLanguage(const std::string& path) {
  Language language;
  language.path = path;
  std::ifstream file(path);
  if (!file) fail(language, 1, "cannot be opened");
  std::string line;
  while (std::getline(file, line)) readLine(language, line, ++language.lastLine);
  const std::string fileName = path.substr(path.rfind('/') + 1);
  if (language.code + ".msg" != fileName) fail(language, 1, "its language is not that of its name");
  for (int number = 1; number <= kLastMessage; ++number) {
    if (!language.messages.contains(number)) {
      fail(language, language.lastLine, "message " + std::to_string(number) + " is missing");
    }
  }
  return language;
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
    if (text.starts_with(' ') != model.starts_with(' ') ||
        text.ends_with(' ') != model.ends_with(' ')) {
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
  const Converter converter(language);
  std::string row = "    {" + literal(language.code);
  for (const auto& [number, message] : language.messages) {
    row += ",\n     " + literal(converter.convert(message));
  }
  return row + ",\n     nullptr},\n";
}

std::string compile(const std::vector<std::string>& paths) {
  std::string source =
      "// Made from the message files; mend the texts there.\n\n"
      "#include \"launcher/driver/MessageCatalog.h\"\n\n"
      "namespace vessant {\n\n"
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
