// What a header declares is found in the source of its own name, and nowhere else.

#include <algorithm>
#include <map>
#include <set>

#include <gtest/gtest.h>

#include "house/CodeReader.h"
#include "house/SourceTree.h"

namespace vessant::test {
namespace {

struct Unit {
  bool hasHeader = false;
  bool hasSource = false;
  std::set<std::string> declared;
  std::set<std::string> defined;
  std::set<std::string> types;
};

void add(Unit& unit, const SourceFile& file) {
  const bool isHeader = file.path.ends_with(".h");
  (isHeader ? unit.hasHeader : unit.hasSource) = true;
  const CodeOutline outline = outlineOf(file.lines);
  unit.types.insert(outline.types.begin(), outline.types.end());
  for (const FunctionRange& function : outline.functions) unit.defined.insert(function.name);
  if (!isHeader) return;
  for (const std::string& name : outline.declarations) unit.declared.insert(lastPart(name));
}

std::map<std::string, Unit> readUnits() {
  std::map<std::string, Unit> units;
  for (const SourceFile& file : sourceFiles()) add(units[file.unit()], file);
  return units;
}

bool defines(const Unit& unit, const std::string& declared) {
  return std::any_of(unit.defined.begin(), unit.defined.end(),
                     [&](const std::string& name) { return lastPart(name) == declared; });
}

TEST(Names, WhatAHeaderDeclaresStandsInTheSourceOfItsName) {
  std::size_t checked = 0;
  for (const auto& [name, unit] : readUnits()) {
    for (const std::string& declared : unit.declared) {
      EXPECT_TRUE(defines(unit, declared)) << name << ".h declares " << declared;
      ++checked;
    }
  }
  EXPECT_GT(checked, 200U) << "the declarations were not found";
}

TEST(Names, ASourceHasAHeaderOfItsNameOrOffersNothing) {
  for (const auto& [name, unit] : readUnits()) {
    const bool isProgram = unit.defined.contains("main");
    EXPECT_TRUE(unit.hasHeader || isProgram || unit.defined.empty()) << name << ".cpp";
  }
}

TEST(Names, ASourceImplementsTheClassesOfItsOwnUnitOnly) {
  for (const auto& [name, unit] : readUnits()) {
    for (const std::string& function : unit.defined) {
      const std::string owner = ownerOf(function);
      EXPECT_TRUE(owner.empty() || unit.types.contains(owner)) << name << ".cpp: " << function;
    }
  }
}

}  // namespace
}  // namespace vessant::test
