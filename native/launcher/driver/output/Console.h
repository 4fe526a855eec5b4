// What the user sees: one-line messages, the progress display and a question, on standard output.
//
// Silence hides everything but the result lines of the input file's actions. The progress display
// can be switched off by itself.
#pragma once

#include <cstdint>

#include <unistd.h>

#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"
#include "launcher/driver/output/Messages.h"
#include "launcher/driver/output/StandardStreams.h"

namespace vessant {

/// The process-wide state of the console.
struct ConsoleState {
  bool silent = false;
  bool progressShown = true;
  std::int32_t progressCount = 0;
  /// How many times 70 units the line breaks have closed.
  std::int32_t progressLines = 0;
  SearchPhase searchPhase = SearchPhase::None;
  /// The product's title, in the locale's encoding.
  SString uiTitle;
};

/// What the launcher is doing; the numbers are those of the display's stage lines.
enum class Stage : int {
  Initializing = 0,
  SearchingForJvm = 1,
  Failed = 2,
  Running = 3,
  PreparingJvm = 4,
};

/// Where a console reads and writes.
struct ConsoleDescriptors {
  int in = STDIN_FILENO;
  int out = STDOUT_FILENO;
  int err = STDERR_FILENO;
};

class Console : public ProgressSink {
 public:
  static constexpr std::int32_t kProgressDone = 100;

  /// All must outlive this. A question and a reader that does not read end with `cancelFlag`.
  Console(ConsoleState& state, const Messages& messages, const CancelFlag& cancelFlag,
          ConsoleDescriptors descriptors = {})
      : state_(state),
        messages_(messages),
        in_(descriptors.in, cancelFlag),
        out_(descriptors.out, cancelFlag),
        err_(descriptors.err, cancelFlag) {}

  /// One line, unless silent.
  void showMessage(const SString& text);
  /// One line on standard error, unless silent: advice for the user, where programs that read
  /// standard output do not meet it.
  void showAdvice(const SString& text);
  /// One line of a result, also in silence: programs read it.
  void printResult(const SString& text);

  void showStage(Stage stage);
  void showSearchPhase(SearchPhase phase, const SString& text) override;
  /// Forgets the phase without showing anything.
  void resetSearchPhase() { showSearchPhase(SearchPhase::None, ""); }
  /// Prints dots and moves the count on by twice their number. Kept: the line breaks depend on it.
  void addProgressDots(std::int32_t count) override;
  /// Sets the count, and ends the line of dots at every 70 units.
  void setProgress(std::int32_t value);
  /// Sets the count that stands for done, so that a run without dots ends with a line break, too.
  void finishProgress() { setProgress(kProgressDone); }

  /// Asks where to install a JVM and reads one word. Empty in silence, at the end of the input and
  /// when the run is cancelled.
  [[nodiscard]] SString askDestinationDirectory();

  /// Sets the title that the stages show and prints it. Backslash-u escapes become characters.
  void setUiTitle(const SString& text);
  /// Prints a title in the same way without setting it.
  void showTitle(const SString& text);

  /// Turns the progress display on; in silence it stays off.
  void enableProgress() { state_.progressShown = !state_.silent; }
  void disableProgress() { state_.progressShown = false; }
  void setSilent(bool silent) { state_.silent = silent; }
  [[nodiscard]] bool hasTitle() const { return !state_.uiTitle.isEmpty(); }
  [[nodiscard]] bool isSilent() const { return state_.silent; }
  [[nodiscard]] bool isProgressShown() const { return state_.progressShown; }

 private:
  void showProgressLine(const SString& line);
  void printLine(const SString& text);

  ConsoleState& state_;
  const Messages& messages_;
  InputStream in_;
  OutputStream out_;
  OutputStream err_;
};

}  // namespace vessant
