#include "launcher/driver/output/Console.h"

#include <poll.h>

#include "launcher/base/SignalWait.h"
#include "launcher/base/TextUtil.h"
#include "launcher/base/UnicodeEscapes.h"

namespace vessant {
namespace {

constexpr std::int32_t kUnitsPerLine = 70;
constexpr SString::Size kLongestAnswer = 1023;

/// A run that shows progress for long enough starts again from the smallest number.
std::int32_t wrappedSum(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

SString titleFrom(const SString& text) {
  return wideToText(decodeUnicodeEscapes(text));
}

}  // namespace

Console::~Console() {
  flushUnlessInterrupted(out_, cancelFlag_);
}

void Console::showMessage(const SString& text) {
  if (!state_.silent) printLine(text);
}

void Console::printResult(const SString& text) {
  printLine(text);
}

void Console::showStage(Stage stage) {
  SString first;
  SString second;
  switch (stage) {
    case Stage::Initializing:
      second = messages_.formatMessage(MessageId::Initializing, state_.uiTitle);
      break;
    case Stage::SearchingForJvm:
      second = messages_.formatMessage(MessageId::SearchingForJava);
      break;
    case Stage::Failed:
      first = messages_.formatMessage(MessageId::NoJvmFound);
      second = messages_.formatMessage(MessageId::NotLaunched, state_.uiTitle);
      break;
    case Stage::Running:
      second = messages_.formatMessage(MessageId::Running, state_.uiTitle);
      break;
    case Stage::PreparingJvm:
      second = messages_.formatMessage(MessageId::PreparingJvm);
      break;
    default:
      return;
  }
  if (state_.silent || !state_.progressShown) return;
  printLine("");
  print(first, true);
  printLine(second);
}

void Console::showSearchPhase(SearchPhase phase, const SString& text) {
  if (state_.silent) return;
  SString line;
  switch (phase) {
    case SearchPhase::Searching:
      line = messages_.formatMessage(MessageId::SearchingForJvm, text);
      break;
    case SearchPhase::Scanning:
      line = messages_.formatMessage(MessageId::ScanningDisks);
      break;
    case SearchPhase::Verifying:
      line = messages_.formatMessage(MessageId::VerifyingJvm, text);
      break;
    default:
      state_.searchPhase = SearchPhase::None;
      return;
  }
  state_.searchPhase = phase;
  if (!state_.progressShown) return;
  printLine("");
  printLine(line);
}

void Console::addProgressDots(std::int32_t count) {
  if (state_.silent) return;
  state_.progressCount = wrappedSum(state_.progressCount, count);
  if (state_.progressShown) {
    const SString dot = messages_.formatMessage(MessageId::ProgressDot);
    for (std::int32_t i = 0; i < count; ++i) print(dot, true);
  }
  setProgress(wrappedSum(state_.progressCount, count));
}

void Console::setProgress(std::int32_t value) {
  if (state_.silent) return;
  state_.progressCount = value;
  const std::int32_t lines = value / kUnitsPerLine;
  if (!state_.progressShown || lines <= state_.progressLines) return;
  printLine("");
  state_.progressLines = lines;
}

SString Console::askDestinationDirectory() {
  if (state_.silent) return "";
  if (state_.progressShown) printLine(messages_.formatMessage(MessageId::AskDestination));
  // The question must be there before the answer is waited for.
  flushUnlessInterrupted(out_, cancelFlag_);
  return readWord();
}

/// Character by character: each wait can be interrupted, and what stands behind the answer is left
/// for the program.
SString Console::readWord() {
  std::setvbuf(in_, nullptr, _IONBF, 0);
  SString word;
  while (word.length() < kLongestAnswer) {
    if (!waitUntilReady(::fileno(in_), POLLIN, cancelFlag_)) return "";
    const int character = std::getc(in_);
    if (character == EOF) break;
    if (!isWideSpaceChar(static_cast<char>(character))) {
      word += static_cast<char>(character);
    } else if (!word.isEmpty()) {
      break;
    }
  }
  return cancelFlag_.isInterrupted() ? SString() : word;
}

void Console::setUiTitle(const SString& text) {
  state_.uiTitle = titleFrom(text);
  showTitle(text);
}

void Console::showTitle(const SString& text) {
  if (state_.silent || !state_.progressShown) return;
  printLine(titleFrom(text));
}

void Console::print(const SString& text, bool flush) {
  if (!waitUntilReady(::fileno(out_), POLLOUT, cancelFlag_)) return;
  std::fwrite(text.cString(), 1, text.length(), out_);
  if (flush) std::fflush(out_);
}

void Console::printLine(const SString& text) {
  print(text + "\n", false);
}

}  // namespace vessant
