#include "launcher/launch/MacroHandler.h"

#include <algorithm>
#include <cstdint>

namespace vessant {
namespace {

/// The closing delimiter is looked for this far behind the opening one, so that a doubled delimiter
/// closes nothing.
constexpr std::size_t kShortestMacro = 2;

/// Macros in what a pass was given are used up one by one: they end. Those that stand in values may
/// lead back to themselves, so what is spent on them is bounded, in bytes moved and a share for
/// each turn. The bound is far beyond every command that the system would run (128 KiB), and it is
/// reached in a fraction of a second.
constexpr std::size_t kShareOfTurn = 1024;
constexpr std::size_t kMostSpent = std::size_t{32} << 20;

/// Doubled delimiters become single ones, from the left: three become two.
SString collapseDoubled(const SString& source, char delimiter) {
  const char characters[] = {delimiter, delimiter};
  const std::string_view doubled(characters, sizeof(characters));
  const std::string_view text = source.view();
  std::size_t found = text.find(doubled);
  if (found == std::string_view::npos) return source;
  std::string result;
  std::size_t start = 0;
  while (found != std::string_view::npos) {
    result.append(text, start, found + 1 - start);
    start = found + doubled.size();
    found = text.find(doubled, start);
  }
  return std::string_view(result.append(text, start));
}

}  // namespace

MacroText::MacroText(const SString& source) : buffer_(source.view()), untouched_(source.length()) {}

std::string_view MacroText::rest() const {
  return std::string_view(buffer_).substr(rest_);
}

SString MacroText::whole() const {
  std::string text(buffer_, 0, done_);
  return std::string_view(text.append(rest()));
}

void MacroText::pass(std::size_t count) {
  if (done_ != rest_) std::copy_n(buffer_.data() + rest_, count, buffer_.data() + done_);
  done_ += count;
  rest_ += count;
}

void MacroText::replace(std::size_t count, std::string_view value) {
  count = std::min(count, buffer_.size() - rest_);
  if (isInValue()) movedInValues_ += count + value.size();
  rest_ += count;
  untouched_ = std::min(untouched_, buffer_.size() - rest_);
  if (rest_ - done_ < value.size()) widenGap(value.size());
  rest_ -= value.size();
  buffer_.replace(rest_, value.size(), value);
}

/// By the size of the text, so that however a text grows, its bytes are moved a few times each.
void MacroText::widenGap(std::size_t size) {
  const std::size_t added = size + buffer_.size() / 2;
  buffer_.insert(rest_, added, '\0');
  rest_ += added;
}

SString expandMacros(const SString& source, MacroHandler& handler, char delimiter) {
  if (source.find(delimiter) == SString::npos) return source;
  MacroText text(source);
  std::size_t turnsInValues = 0;
  while (true) {
    const std::size_t start = text.rest().find(delimiter);
    if (start == std::string_view::npos) break;
    text.pass(start);
    const std::size_t end = text.rest().find(delimiter, kShortestMacro);
    if (end == std::string_view::npos) break;
    if (text.isInValue()) ++turnsInValues;
    const std::size_t spent = turnsInValues * kShareOfTurn + text.movedInValues();
    if (spent > kMostSpent) throw EndlessMacro(source);
    handler.handleMacro(text, delimiter, static_cast<SString::Size>(end));
  }
  return collapseDoubled(text.whole(), delimiter);
}

SString macroName(const MacroText& text, SString::Size end) {
  return text.rest().substr(1, end - 1);
}

}  // namespace vessant
