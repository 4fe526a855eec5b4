// The Java homes that the launcher would try, found by the launcher's own search.
#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "packer/explain/DryRun.h"

namespace vessant {

/// What stands where a Java is looked for. Skipped: the launcher does not even look, for its
/// reasons.
enum class HomeState { Exists, Missing, NotExecutable, Skipped };

/// One property that a JVM file asks for, and what a Java answered.
struct PropertyAnswer {
  std::string name;
  std::string wanted;
  /// Nothing when the Java's answer ended before it.
  std::optional<std::string> got = {};
  bool isRight = false;
};

/// What came of running a home's Java.
struct HomeAnswer {
  std::string command;
  std::int32_t status = 0;
  /// Whether the verification class answered at all.
  bool answered = false;
  bool isTaken = false;
  std::vector<PropertyAnswer> properties;
  /// What the Java said on its standard error.
  std::string errors;
};

/// One place where the launcher looks, in the order in which it does.
struct Home {
  std::string path;
  /// The hint that led to it.
  std::string origin;
  HomeState state = HomeState::Missing;
  /// Why the launcher does not even look at it, for Skipped.
  std::string reason = {};
  std::optional<HomeAnswer> answer = {};
};

/// The homes of one JVM file.
struct HomesOfFile {
  const FileIndexEntry* entry = nullptr;
  std::string description;
  bool namesProperties = true;
  /// Whether the whole disk is searched behind the hints.
  bool searchesDisk = false;
  /// Whether a file in front of it keeps its hints from being tried.
  bool isHidden = false;
  std::vector<Home> homes;
};

/// The files in their order, each with its homes in theirs; the home that the user named comes
/// first in each. With the platform of `run` set to run commands, each home is verified.
[[nodiscard]] std::vector<HomesOfFile> listHomes(DryRun& run);

/// Writes the file's homes, a line each, and below each that was run what it answered.
void writeHomesOfFile(const HomesOfFile& file, std::ostream& out);

/// The home that the launcher would take: the first that was taken, or, where nothing was run, the
/// first that exists. Nothing when there is none.
struct ChosenHome {
  const HomesOfFile* file = nullptr;
  const Home* home = nullptr;
};
[[nodiscard]] std::optional<ChosenHome> chooseHome(const std::vector<HomesOfFile>& files);

}  // namespace vessant
