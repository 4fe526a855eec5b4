#include "launcher/driver/output/Console.h"

#include "launcher/base/TextUtil.h"

namespace vessant {
namespace {

constexpr std::int32_t kUnitsPerLine = 70;
constexpr std::size_t kLongestAnswer = 1023;

/// A run that shows progress for long enough starts again from the smallest number.
std::int32_t wrappedSum(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

SString titleFrom(const SString& text) {
  return wideToText(decodeUnicodeEscapes(text));
}

}  // namespace

void Console::showMessage(const SString& text) {
  if (!state_.silent) printLine(text);
}

void Console::showAdvice(const SString& text) {
  if (!state_.silent) err_.write((text + "\n").view());
}

void Console::printResult(const SString& text) {
  printLine(text);
}

void Console::showStage(Stage stage) {
  switch (stage) {
    case Stage::Initializing:
      return showProgressLine(messages_.formatMessage(MessageId::Initializing, state_.uiTitle));
    case Stage::SearchingForJvm:
      return showProgressLine(messages_.formatMessage(MessageId::SearchingForJava));
    case Stage::Failed:  // Kept: nothing stands between the two sentences
      return showProgressLine(messages_.formatMessage(MessageId::NoJvmFound) +
                              messages_.formatMessage(MessageId::NotLaunched, state_.uiTitle));
    case Stage::Running:
      return showProgressLine(messages_.formatMessage(MessageId::Running, state_.uiTitle));
    case Stage::PreparingJvm:
      return showProgressLine(messages_.formatMessage(MessageId::PreparingJvm));
    default:
      return;
  }
}

/// The phase changes also where its line is not shown, but not in silence.
void Console::showSearchPhase(SearchPhase phase, const SString& text) {
  if (state_.silent) return;
  state_.searchPhase = phase;
  switch (phase) {
    case SearchPhase::Searching:
      return showProgressLine(messages_.formatMessage(MessageId::SearchingForJvm, text));
    case SearchPhase::Scanning:
      return showProgressLine(messages_.formatMessage(MessageId::ScanningDisks));
    case SearchPhase::Verifying:
      return showProgressLine(messages_.formatMessage(MessageId::VerifyingJvm, text));
    default:
      state_.searchPhase = SearchPhase::None;
  }
}

void Console::addProgressDots(std::int32_t count) {
  if (state_.silent) return;
  state_.progressCount = wrappedSum(state_.progressCount, count);
  if (state_.progressShown) {
    const SString dot = messages_.formatMessage(MessageId::ProgressDot);
    for (std::int32_t i = 0; i < count; ++i) out_.write(dot.view());
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
  return in_.readWord(kLongestAnswer);
}

void Console::setUiTitle(const SString& text) {
  state_.uiTitle = titleFrom(text);
  showTitle(text);
}

void Console::showTitle(const SString& text) {
  if (state_.silent || !state_.progressShown) return;
  printLine(titleFrom(text));
}

/// An empty line sets it apart from the dots in front of it.
void Console::showProgressLine(const SString& line) {
  if (!state_.silent && state_.progressShown) printLine("\n" + line);
}

void Console::printLine(const SString& text) {
  out_.write((text + "\n").view());
}

}  // namespace vessant
