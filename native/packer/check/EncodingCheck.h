// The bytes of a text, before anything is read from them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "packer/Finding.h"

namespace vessant {

/// Reports a byte order mark, UTF-16, carriage returns that end no line and zero bytes. Returns
/// what is left to read, or nothing when the text cannot be read at all.
[[nodiscard]] std::optional<std::string_view> checkEncoding(const std::string& file,
                                                            std::string_view bytes,
                                                            Findings& findings);

}  // namespace vessant
