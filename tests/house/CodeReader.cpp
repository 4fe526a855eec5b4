#include "house/CodeReader.h"

#include <algorithm>
#include <cctype>
#include <regex>

namespace vessant::test {
namespace {

/// Replaces what is no code by blanks, so that every character keeps its line.
class Blanker {
 public:
  explicit Blanker(std::string text) : text_(std::move(text)) {}

  std::string run() {
    while (at_ < text_.size()) step();
    return std::move(text_);
  }

 private:
  void step() {
    if (isAtLineStart() && text_[at_] == '#') {
      blankDirective();
    } else if (starts("//")) {
      blankTo(text_.find('\n', at_));
    } else if (starts("/*")) {
      blankTo(behind(text_.find("*/", at_ + 2), 2));
    } else if (starts("R\"")) {
      blankRawText();
    } else if (text_[at_] == '"' || (text_[at_] == '\'' && !isDigitSeparator())) {
      blankQuoted(text_[at_]);
    } else {
      ++at_;
    }
  }

  [[nodiscard]] bool starts(const char* begin) const { return text_.compare(at_, 2, begin) == 0; }
  [[nodiscard]] bool isAtLineStart() const { return at_ == 0 || text_[at_ - 1] == '\n'; }
  [[nodiscard]] bool isDigitSeparator() const {
    return at_ > 0 && std::isxdigit(static_cast<unsigned char>(text_[at_ - 1])) != 0;
  }

  /// To the end of the line, and on where that ends in a backslash.
  void blankDirective() {
    std::size_t end = text_.find('\n', at_);
    while (end != std::string::npos && text_[end - 1] == '\\') end = text_.find('\n', end + 1);
    blankTo(end);
  }

  void blankRawText() {
    const std::size_t open = text_.find('(', at_);
    const std::string close = ")" + text_.substr(at_ + 2, open - at_ - 2) + "\"";
    blankTo(behind(text_.find(close, open), close.size()));
  }

  void blankQuoted(char quote) {
    std::size_t end = at_ + 1;
    while (end < text_.size() && text_[end] != quote) end += text_[end] == '\\' ? 2 : 1;
    ++at_;
    blankTo(end);
    ++at_;
  }

  [[nodiscard]] static std::size_t behind(std::size_t place, std::size_t length) {
    return place == std::string::npos ? place : place + length;
  }

  void blankTo(std::size_t end) {
    for (end = std::min(end, text_.size()); at_ < end; ++at_) {
      if (text_[at_] != '\n') text_[at_] = ' ';
    }
  }

  std::string text_;
  std::size_t at_ = 0;
};

bool isTypeHead(const std::string& head) {
  static const std::regex type(R"(^(template ?<.*> )?(class|struct|union|enum)\b[^()]*$)");
  return std::regex_search(head, type);
}

std::string typeName(const std::string& head) {
  static const std::regex name(R"((?:class|struct|union|enum class|enum) (\w+))");
  std::smatch match;
  return std::regex_search(head, match, name) ? match[1].str() : "";
}

/// The head without what stands in parentheses, angles and brackets.
std::string outermost(const std::string& head) {
  std::string outer;
  int depth = 0;
  for (std::size_t i = 0; i < head.size(); ++i) {
    const bool isArrow = head[i] == '>' && i > 0 && head[i - 1] == '-';
    const bool opens = head[i] == '(' || head[i] == '<' || head[i] == '[';
    const bool closes = (head[i] == ')' || head[i] == '>' || head[i] == ']') && !isArrow;
    if (closes) --depth;
    if (depth == 0) outer += head[i];
    if (opens) ++depth;
  }
  return outer;
}

/// The name in front of the parameters; empty where the head is no function's.
std::string functionName(const std::string& written) {
  static const std::regex alignment(R"(\balignas ?\([^()]*\) ?)");
  const std::string head = std::regex_replace(written, alignment, "");
  if (head.find("operator()") != std::string::npos) return "operator()";
  const std::string outer = outermost(head);
  const std::size_t open = outer.find('(');
  if (open == std::string::npos) return "";
  static const std::regex name(R"(((?:[\w]+::)*(?:operator ?\S+|~?\w+)) ?$)");
  std::smatch match;
  const std::string front = outer.substr(0, open);
  const bool isSet = front.find('=') != std::string::npos && !front.ends_with("=") &&
                     front.find("operator") == std::string::npos;
  if (isSet || !std::regex_search(front, match, name)) return "";
  return match[1].str();
}

bool isLambda(const std::string& head) {
  static const std::regex lambda(R"(\[[^\]]*\] ?(\([^{}]*\))?( mutable)?( -> [^{}]*)? ?$)");
  return std::regex_search(head, lambda);
}

/// Whether the brace behind this head opens a member's value in a constructor's list.
bool isMemberValue(const std::string& head) {
  static const std::regex list(R"(\) (noexcept )?: .*\w ?$)");
  return std::regex_search(head, list);
}

/// Where the last part of a name begins to be told from its class; a conversion's type may have
/// colons of its own.
std::size_t lastColons(const std::string& name) {
  const std::size_t conversion = name.find("operator");
  return name.rfind("::", conversion == 0 ? 0 : conversion);
}

enum class Scope { Names, Type, Value, Function };

class Outliner {
 public:
  explicit Outliner(const std::string& code) : code_(code) {}

  CodeOutline run() {
    for (char letter : code_) {
      take(letter);
      if (letter == '\n') ++line_;
    }
    return std::move(outline_);
  }

 private:
  struct Open {
    Scope scope;
    std::string head;
    std::size_t firstLine;
  };

  void take(char letter) {
    if (letter == '{') {
      open();
    } else if (letter == '}') {
      close();
    } else if (letter == ';' && parentheses_ == 0) {
      endStatement();
    } else {
      addToHead(letter);
    }
  }

  void addToHead(char letter) {
    if (letter == '(') ++parentheses_;
    if (letter == ')') --parentheses_;
    const bool isBlank = std::isspace(static_cast<unsigned char>(letter)) != 0;
    if (head_.empty() && !isBlank) firstLine_ = line_;
    if (isBlank && (head_.empty() || head_.back() == ' ')) return;
    head_ += isBlank ? ' ' : letter;
    for (const char* access : {"public:", "private:", "protected:"}) {
      if (head_ == access) head_.clear();
    }
  }

  [[nodiscard]] Scope current() const { return open_.empty() ? Scope::Names : open_.back().scope; }

  [[nodiscard]] Scope scopeOfHead() const {
    const bool isInFunction = std::any_of(open_.begin(), open_.end(), [](const Open& outer) {
      return outer.scope == Scope::Function;
    });
    if (isInFunction) return Scope::Value;
    if (isLambda(head_)) return Scope::Function;
    if (current() == Scope::Value || parentheses_ > 0) return Scope::Value;
    if (head_.starts_with("namespace") || head_.starts_with("extern")) return Scope::Names;
    if (isTypeHead(head_)) return Scope::Type;
    if (functionName(head_).empty() || isMemberValue(head_)) return Scope::Value;
    return Scope::Function;
  }

  void open() {
    const Scope scope = scopeOfHead();
    if (scope == Scope::Type) outline_.types.push_back(typeName(head_));
    open_.push_back({scope, head_, firstLine_});
    outerParentheses_.push_back(parentheses_);
    parentheses_ = 0;
    head_.clear();
  }

  void close() {
    if (open_.empty()) return;
    const Open ended = open_.back();
    open_.pop_back();
    parentheses_ = outerParentheses_.back();
    outerParentheses_.pop_back();
    head_.clear();
    if (ended.scope == Scope::Function) {
      outline_.functions.push_back({functionName(ended.head), ended.firstLine, line_});
    }
    // What a value belongs to goes on behind it: a constructor's list, a variable's declaration.
    if (ended.scope == Scope::Value) {
      head_ = ended.head + " ()";
      firstLine_ = ended.firstLine;
    }
  }

  void endStatement() {
    const Scope scope = current();
    if (scope == Scope::Names || scope == Scope::Type) declare();
    head_.clear();
  }

  void declare() {
    static const std::regex none(
        R"(^(using|friend|typedef|static_assert|return)\b|= (0|default|delete)$|\(\*|\) ?\[)");
    const std::string name = functionName(head_);
    if (name.empty()) return;
    // Outside of its class a defaulted function is defined, not declared.
    const bool isDefinition = !ownerOf(name).empty() && head_.ends_with("= default");
    if (isDefinition) outline_.functions.push_back({name, firstLine_, line_});
    if (!std::regex_search(head_, none)) outline_.declarations.push_back(name);
  }

  const std::string& code_;
  CodeOutline outline_;
  std::vector<Open> open_;
  std::vector<int> outerParentheses_;
  std::string head_;
  int parentheses_ = 0;
  std::size_t line_ = 1;
  std::size_t firstLine_ = 1;
};

}  // namespace

std::string blankedCode(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return Blanker(std::move(text)).run();
}

CodeOutline outlineOf(const std::vector<std::string>& lines) {
  const std::string code = blankedCode(lines);
  return Outliner(code).run();
}

std::size_t commentLines(const std::vector<std::string>& lines) {
  return static_cast<std::size_t>(
      std::count_if(lines.begin(), lines.end(), [](const std::string& line) {
        const std::size_t first = line.find_first_not_of(' ');
        return first != std::string::npos && line.compare(first, 2, "//") == 0;
      }));
}

std::string lastPart(const std::string& name) {
  const std::size_t colons = lastColons(name);
  return colons == std::string::npos ? name : name.substr(colons + 2);
}

std::string ownerOf(const std::string& name) {
  const std::size_t colons = lastColons(name);
  return colons == std::string::npos ? "" : lastPart(name.substr(0, colons));
}

}  // namespace vessant::test
