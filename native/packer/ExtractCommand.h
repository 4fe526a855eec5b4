// `vspack extract` and `vspack cat`: the files of an installer, without running it.
#pragma once

#include <CLI/App.hpp>

#include "packer/Session.h"

namespace vessant {

// Each adds a command to `app`, which keeps a reference to `session` for its streams and status.

/// Writes the bytes of one packed file, of whatever name, to the session's output.
void addCatCommand(CLI::App& app, Session& session);

/// Writes packed files into a directory and, when none is named, the launcher and a manifest that
/// packs them again. All names are checked before the first file is written; each file takes its
/// name when it is whole, so that an interrupt or a full disk leaves whole files only.
void addExtractCommand(CLI::App& app, Session& session);

}  // namespace vessant
