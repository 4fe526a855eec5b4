// Environment variables that hold a list of directories, such as PATH.
#pragma once

#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"
#include "launcher/base/StringDeque.h"

namespace vessant {

/// Fills `list` with the pieces of the variable `name` between its colons, in order, empty pieces
/// included. An unset or empty variable, or an empty name, gives an empty list.
void splitEnvironmentPath(StringDeque& list, const SString& name, const Platform& platform);

}  // namespace vessant
