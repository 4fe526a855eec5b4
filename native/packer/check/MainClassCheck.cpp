#include "packer/check/MainClassCheck.h"

#include <algorithm>
#include <array>
#include <vector>

#include "packer/Text.h"

namespace vessant {
namespace {

constexpr std::array<std::string_view, 3> kClassPathOptions = {"-cp", "-classpath", "--class-path"};
/// Options whose value is the next word.
constexpr std::array<std::string_view, 9> kOptionsWithValue = {
    "-p",          "--upgrade-module-path", "--add-modules",  "--add-exports", "--add-opens",
    "--add-reads", "--limit-modules",       "--patch-module", "--source"};

template <std::size_t Count>
bool isOneOf(const std::array<std::string_view, Count>& options, const std::string& word) {
  return std::find(options.begin(), options.end(), word) != options.end();
}

bool hasPath(const std::string& text) {
  return text.find(kPathBegin) != std::string::npos;
}

/// Java takes a class name with slashes, too.
std::string withDots(std::string name) {
  std::replace(name.begin(), name.end(), '/', '.');
  return name;
}

std::vector<std::string> split(const std::string& text, const std::string& separator) {
  std::vector<std::string> parts;
  std::size_t start = 0;
  std::size_t end = separator.empty() ? std::string::npos : text.find(separator);
  while (end != std::string::npos) {
    parts.push_back(text.substr(start, end - start));
    start = end + separator.size();
    end = text.find(separator, start);
  }
  parts.push_back(text.substr(start));
  return parts;
}

/// A class of the same simple name, which the author may have meant.
std::string sameSimpleName(const JarFile& jar, const std::string& className) {
  const std::string simple = className.substr(className.rfind('.') + 1) + ".class";
  std::string best;
  for (const std::string& name : jar.names) {
    const bool isSame = name == simple || name.ends_with("/" + simple);
    if (isSame && (best.empty() || name < best)) best = name;
  }
  if (best.empty()) return "";
  return "; did you mean \"" + withDots(best.substr(0, best.size() - 6)) + "\"?";
}

/// The words behind the Java program, up to the end of its command.
std::vector<ShellWord> argumentsOfJava(const ShellReading& command, const std::string& executable) {
  const auto isJava = [&executable](const ShellWord& word) {
    return !executable.empty() && word.text.ends_with("/" + executable);
  };
  const auto isOperator = [](const ShellWord& word) { return word.isOperator; };
  const auto java = std::find_if(command.words.begin(), command.words.end(), isJava);
  if (java == command.words.end()) return {};
  return {java + 1, std::find_if(java, command.words.end(), isOperator)};
}

std::string whyJarFails(const JarFile* jar) {
  if (jar == nullptr || !jar->isZip()) return "";
  if (jar->mainClass.empty()) return "the manifest of the jar names no Main-Class";
  if (!jar->classPath.empty() || jar->holdsClass(jar->mainClass)) return "";
  return "the jar has no class " + quotedName(jar->mainClass) + ", which its manifest names" +
         sameSimpleName(*jar, jar->mainClass);
}

}  // namespace

JavaStart readJavaStart(const ShellReading& command, const std::string& executable) {
  const std::vector<ShellWord> words = argumentsOfJava(command, executable);
  JavaStart start;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string& text = words[i].text;
    const bool hasNext = i + 1 < words.size();
    if (text == "-jar") return {hasNext, "", hasNext ? words[i + 1].text : ""};
    if (isOneOf(kClassPathOptions, text) && hasNext) start.classPath = words[i + 1].text;
    if (isOneOf(kClassPathOptions, text) || isOneOf(kOptionsWithValue, text)) ++i;
    if (text.starts_with("-m") || text.starts_with("--module")) return {};
    if (text.starts_with('-')) continue;
    start.isKnown = !words[i].isComputed && !text.starts_with('@') && !hasPath(text);
    start.mainClass = withDots(text);
    return start;
  }
  return {};
}

std::string whyStartFails(const JavaStart& start, const std::string& separator,
                          const JarOfEntry& jarOfEntry) {
  if (!start.isKnown) return "";
  if (start.mainClass.empty()) return whyJarFails(jarOfEntry(start.classPath));
  std::string hint;
  bool hasJar = false;
  for (const std::string& entry : split(start.classPath, separator)) {
    if (entry.empty()) continue;
    const JarFile* jar = jarOfEntry(entry);
    const bool isAll = jar != nullptr && jar->isZip() && jar->classPath.empty();
    if (!isAll || jar->holdsClass(start.mainClass)) return "";
    hasJar = true;
    if (hint.empty()) hint = sameSimpleName(*jar, start.mainClass);
  }
  if (!hasJar) return "";
  return "no packed jar has the class " + quotedName(start.mainClass) + hint;
}

}  // namespace vessant
