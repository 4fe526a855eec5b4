// `vspack verify` and `vspack sums`: whether an installer is whole, and still what it was.
#pragma once

#include <CLI/App.hpp>

#include "packer/Session.h"

namespace vessant {

// Each adds a command to `app`, which keeps a reference to `session`: the command writes to its
// streams and leaves its exit status in it. A LauncherException that it throws is a wrong call or a
// file that cannot be read, status 2.

/// Prints the SHA-256 of the whole installer and then of each packed file, in the form and with the
/// escapes of sha256sum. An installer whose files lie over each other is refused with status 2.
void addSumsCommand(CLI::App& app, Session& session);

/// Checks structure, texts and archives and, with --sums, what `sums` printed before, in one pass.
/// Status 1 when an error was found.
void addVerifyCommand(CLI::App& app, Session& session);

}  // namespace vessant
