#include "packer/Sums.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <map>
#include <numeric>
#include <sstream>
#include <utility>

#include <openssl/evp.h>

#include "packer/Text.h"

namespace vessant {
namespace {

void require(int result) {
  if (result != 1) throw failure("SHA-256 is not available here");
}

constexpr std::size_t kSumLength = 64;

bool mustEscape(std::string_view name) {
  return name.find_first_of("\\\n\r") != std::string_view::npos;
}

std::string escaped(std::string_view name) {
  std::string text;
  for (const char character : name) {
    if (character == '\\') {
      text += "\\\\";
    } else if (character == '\n') {
      text += "\\n";
    } else if (character == '\r') {
      text += "\\r";
    } else {
      text += character;
    }
  }
  return text;
}

std::string unescaped(std::string_view text) {
  std::string name;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isEscape = text[i] == '\\' && i + 1 < text.size();
    if (isEscape) ++i;
    if (isEscape && text[i] == 'n') {
      name += '\n';
    } else if (isEscape && text[i] == 'r') {
      name += '\r';
    } else {
      name += text[i];
    }
  }
  return name;
}

bool isSum(std::string_view text) {
  return text.size() == kSumLength &&
         text.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
}

std::string lowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

/// Returns a line without a sum when `line` is none.
SumLine readLine(std::string line) {
  if (line.ends_with('\r')) line.pop_back();
  const bool isEscaped = line.starts_with('\\');
  if (isEscaped) line.erase(0, 1);
  const std::string sum = line.substr(0, kSumLength);
  const std::string mark = line.size() > kSumLength + 2 ? line.substr(kSumLength, 2) : "";
  if (!isSum(sum) || (mark != "  " && mark != " *")) return {};
  const std::string name = line.substr(kSumLength + 2);
  return {lowerCase(sum), isEscaped ? unescaped(name) : name};
}

}  // namespace

void Sha256::Closer::operator()(evp_md_ctx_st* context) const {
  EVP_MD_CTX_free(context);
}

Sha256::Sha256() : context_(EVP_MD_CTX_new()) {
  require(context_ == nullptr ? 0 : EVP_DigestInit_ex(context_.get(), EVP_sha256(), nullptr));
}

void Sha256::add(std::string_view bytes) {
  require(EVP_DigestUpdate(context_.get(), bytes.data(), bytes.size()));
}

std::string Sha256::finish() {
  constexpr const char* kDigits = "0123456789abcdef";
  unsigned char sum[EVP_MAX_MD_SIZE];
  unsigned length = 0;
  require(EVP_DigestFinal_ex(context_.get(), sum, &length));
  std::string text;
  for (unsigned i = 0; i < length; ++i) text += {kDigits[sum[i] >> 4U], kDigits[sum[i] & 0xFU]};
  return text;
}

OnePass::OnePass(const Installer& installer, Advance advance)
    : installer_(installer),
      advance_(std::move(advance)),
      order_(installer.entries().size()),
      fileSums_(installer.entries().size()) {
  std::iota(order_.begin(), order_.end(), 0);
  std::stable_sort(order_.begin(), order_.end(), [&installer](std::size_t a, std::size_t b) {
    const FileIndexEntry& first = installer.entries()[a];
    const FileIndexEntry& second = installer.entries()[b];
    return std::pair(first.offset, first.length) < std::pair(second.offset, second.length);
  });
}

void OnePass::offer(std::uint64_t position, std::string_view bytes) {
  constexpr std::uint64_t kLittle = 1U << 18U;
  if (position + bytes.size() <= position_ || position > position_ + kLittle) return;
  readTo(position);
  bytes.remove_prefix(position_ - position);
  add(bytes);
}

void OnePass::readTo(std::uint64_t position) {
  if (position <= position_) return;
  const ByteSource& file = installer_.bytes();
  file.part(position_, position - position_, file.label()).forEachBlock([this](auto block) {
    add(block);
  });
}

/// Gives each stretch of the bytes to the file whose it is.
void OnePass::add(std::string_view bytes) {
  whole_.add(bytes);
  const std::uint64_t end = position_ + bytes.size();
  while (current_ < order_.size()) {
    const FileIndexEntry& entry = installer_.entries()[order_[current_]];
    const std::uint64_t fileEnd = std::uint64_t{entry.offset} + entry.length;
    const std::uint64_t from = std::max<std::uint64_t>(entry.offset, position_);
    const std::uint64_t to = std::min(fileEnd, end);
    if (from < to) currentSum_.add(bytes.substr(from - position_, to - from));
    if (fileEnd > end) break;
    fileSums_[order_[current_++]] = std::exchange(currentSum_, Sha256()).finish();
  }
  position_ = end;
  if (advance_) advance_(bytes.size());
}

std::string OnePass::wholeSum() {
  readTo(installer_.size());
  add("");  // for files of no length at the very end
  return whole_.finish();
}

std::string lineOf(const SumLine& sum) {
  const bool isEscaped = mustEscape(sum.name);
  return (isEscaped ? "\\" : "") + sum.sum + "  " + (isEscaped ? escaped(sum.name) : sum.name);
}

std::vector<SumLine> readSums(const std::string& file, const std::string& text,
                              Findings& findings) {
  std::vector<SumLine> sums;
  std::istringstream stream(text);
  int number = 0;
  for (std::string line; std::getline(stream, line);) {
    ++number;
    if (line.empty()) continue;
    SumLine sum = readLine(line);
    sum.line = number;
    if (sum.sum.empty()) {
      findings.error(file, number, "bad-sum", "expected 64 hexadecimal digits, two blanks, a name");
    } else {
      sums.push_back(sum);
    }
  }
  if (sums.empty()) findings.error(file, 0, "bad-sum", "there are no sums in this file");
  return sums;
}

std::vector<SumLine> sumsOf(const Installer& installer, OnePass& pass) {
  std::vector<SumLine> sums = {
      {pass.wholeSum(), std::filesystem::path(installer.path()).filename().string()}};
  for (std::size_t i = 0; i < installer.entries().size(); ++i) {
    sums.push_back({pass.fileSums()[i], str(installer.entries()[i].fileName)});
  }
  return sums;
}

void compareSums(const Installer& installer, const std::vector<SumLine>& got,
                 const std::string& file, const std::vector<SumLine>& wanted, Findings& findings) {
  if (wanted.empty()) return;
  const auto report = [&](int line, const std::string& text) {
    findings.error(file, line, "wrong-sum", text);
  };
  if (wanted.front().sum != got.front().sum) {
    report(wanted.front().line, printable(installer.path()) + " as a whole has another sum");
  }
  std::map<std::string, std::string> missing;
  for (std::size_t i = 1; i < got.size(); ++i) missing[got[i].name] = got[i].sum;
  for (std::size_t i = 1; i < wanted.size(); ++i) {
    const auto found = missing.find(wanted[i].name);
    if (found == missing.end()) {
      report(wanted[i].line, quotedName(wanted[i].name) + " is not in the installer");
      continue;
    }
    if (found->second != wanted[i].sum) {
      report(wanted[i].line, quotedName(wanted[i].name) + " has another sum");
    }
    missing.erase(found);
  }
  for (const auto& [name, sum] : missing) report(0, quotedName(name) + " has no sum here");
}

}  // namespace vessant
