// The launcher's messages in the user's language, which the LANG variable names, and the catalog of
// them, whose rows the build makes from the readable files in messages/ beside this header.
#pragma once

#include <optional>

#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"

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

/// What the launcher says, in one of the languages of the catalog.
class Messages : public MessageSource {
 public:
  /// LANG is read from the platform's environment, anew for every message.
  explicit Messages(const Platform& platform) : platform_(platform) {}

  /// The row of the catalog to use, 0 (English) when LANG names none of the languages.
  [[nodiscard]] int languageIndex() const;

  /// A message with `argument` in place of its "%s", cut after 1023 bytes.
  [[nodiscard]] SString formatMessage(int number, const SString& argument = "") const;
  [[nodiscard]] SString formatMessage(MessageId id, const SString& argument = "") const {
    return formatMessage(static_cast<int>(id), argument);
  }

  /// Empty for an error that has no text.
  [[nodiscard]] SString errorText(ErrorId error) const override;
  [[nodiscard]] SString formatError(ErrorId error, const SString& argument) const override;

 private:
  const Platform& platform_;
};

}  // namespace vessant
