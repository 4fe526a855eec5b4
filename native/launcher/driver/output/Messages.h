// The launcher's messages in the user's language, which the LANG variable names.
#pragma once

#include <optional>

#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"
#include "launcher/driver/output/MessageCatalog.h"

namespace vessant {

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

  [[nodiscard]] SString errorText(ErrorId error) const override;
  [[nodiscard]] SString formatError(ErrorId error, const SString& argument) const override;

 private:
  const Platform& platform_;
};

}  // namespace vessant
