// What a Java answered to the verification, property by property.
#pragma once

#include "packer/explain/HomeList.h"

namespace vessant {

/// The launcher's own judgement of a verification that was run for real.
[[nodiscard]] HomeAnswer answerOf(const NotedCommand& command, const TagFile& tags);

}  // namespace vessant
