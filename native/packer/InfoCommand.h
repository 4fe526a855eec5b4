// `vspack list` and `vspack info`: what an installer carries and is.
#pragma once

#include <CLI/App.hpp>

#include "packer/Session.h"

namespace vessant {

/// `list INSTALLER`: the index, in the order of the file; reads no packed file.
void addListCommand(CLI::App& app, Session& session);
/// `info INSTALLER`: what an author wants to see before a release; reads the texts and the
/// launcher's note, and no archive.
void addInfoCommand(CLI::App& app, Session& session);

}  // namespace vessant
