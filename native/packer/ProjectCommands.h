// The commands that write what an installer is packed from: `vspack init` the whole directory for a
// jar, `vspack jvm` a JVM file for a Java that is there or for a range of them, `vspack bundle-jvm`
// a runtime that unpacks itself.
#pragma once

#include <CLI/App.hpp>

#include "packer/Session.h"

namespace vessant {

/// `init DIR --jar JAR`: writes a directory that `pack` turns into an installer at once, or
/// nothing. Runs the Java of `--jre` to learn its version.
void addInitCommand(CLI::App& app, Session& session);

/// `jvm HOME` runs the Java in HOME and describes it; `jvm --min N` runs nothing. The text goes to
/// standard output unless `-o` names a file.
void addJvmCommand(CLI::App& app, Session& session);
/// `bundle-jvm HOME -o FILE`: runs the Java of HOME, with `--modules` also its jlink, in a
/// temporary directory that goes again.
void addBundleJvmCommand(CLI::App& app, Session& session);

}  // namespace vessant
