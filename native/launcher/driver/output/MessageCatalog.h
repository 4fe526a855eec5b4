// The catalog of messages: one row of texts a language. The rows are made by the build from the
// readable files in messages/ beside this header.
#pragma once

namespace vessant {

inline constexpr int kLanguageCount = 27;
inline constexpr int kLastMessage = 39;
/// The language code, the messages 1 to 39 and a null at the end.
inline constexpr int kRowLength = kLastMessage + 2;

/// The messages that the launcher shows, by their number in the catalog.
enum class MessageId : int {
  LanguageCode = 0,
  Initializing = 1,
  VerifyingJvm = 3,
  NoJvmFound = 4,
  NotLaunched = 5,
  Running = 7,
  PreparingJvm = 8,
  SearchingForJava = 9,
  SearchingForJvm = 10,
  ScanningDisks = 16,
  AskDestination = 17,
  ProgressDot = 18,
};

using MessageRow = const char* const[kRowLength];

/// The rows in the order of matching, each in its own character set.
extern const MessageRow kMessageCatalog[kLanguageCount];

}  // namespace vessant
