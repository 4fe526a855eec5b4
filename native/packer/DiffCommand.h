// `vspack diff`: what changed between two installers.
#pragma once

#include <CLI/App.hpp>

#include "packer/Session.h"

namespace vessant {

/// Compares two installers file by file: texts as a unified diff, others by their first different
/// byte. Leaves status 1 in `session`, to which `app` keeps a reference, when they differ.
void addDiffCommand(CLI::App& app, Session& session);

}  // namespace vessant
