#include "support/LauncherFileBuilder.h"

#include <stdexcept>

#include <sys/stat.h>

#include "support/BuildPaths.h"
#include "support/TempTree.h"

namespace vessant::test {

std::string bigEndian32(std::uint32_t number) {
  return {static_cast<char>(number >> 24), static_cast<char>(number >> 16),
          static_cast<char>(number >> 8), static_cast<char>(number)};
}

std::string bigEndian16(std::uint16_t number) {
  return {static_cast<char>(number >> 8), static_cast<char>(number)};
}

LauncherFileBuilder& LauncherFileBuilder::stub(std::string_view bytes) {
  if (!entries_.empty()) throw std::logic_error("the stub comes before the files");
  stub_ = bytes;
  return *this;
}

LauncherFileBuilder& LauncherFileBuilder::launcherStub() {
  return stub(readFile(kLauncher));
}

LauncherFileBuilder& LauncherFileBuilder::add(int type, std::uint32_t id, std::string_view name,
                                              std::string_view bytes) {
  entries_.push_back(entryHead(type, id, name, bytes) + '\0');
  files_ += bytes;
  return *this;
}

LauncherFileBuilder& LauncherFileBuilder::addExpanding(int type, std::uint32_t id,
                                                       std::string_view name,
                                                       std::string_view bytes,
                                                       std::uint32_t expandedFiles,
                                                       std::uint32_t expandedSize) {
  entries_.push_back(entryHead(type, id, name, bytes) + '\1' + bigEndian32(expandedFiles) +
                     bigEndian32(expandedSize));
  files_ += bytes;
  return *this;
}

LauncherFileBuilder& LauncherFileBuilder::modeByte(int mode) {
  modeByte_ = mode;
  return *this;
}

LauncherFileBuilder& LauncherFileBuilder::identification(std::uint32_t value) {
  identification_ = value;
  return *this;
}

std::string LauncherFileBuilder::bytes() const {
  std::string result = stub_ + files_;
  const std::size_t indexOffset = result.size();
  result += bigEndian32(static_cast<std::uint32_t>(entries_.size()));
  for (const std::string& entry : entries_) result += entry;
  result += static_cast<char>(modeByte_);
  result += bigEndian32(static_cast<std::uint32_t>(indexOffset));
  return result + bigEndian32(identification_);
}

std::string LauncherFileBuilder::write(const std::string& path) const {
  writeFile(path, bytes());
  if (::chmod(path.c_str(), 0755) != 0) throw std::runtime_error("cannot chmod " + path);
  return path;
}

std::string LauncherFileBuilder::entryHead(int type, std::uint32_t id, std::string_view name,
                                           std::string_view bytes) const {
  const std::size_t offset = stub_.size() + files_.size();
  return static_cast<char>(type) + bigEndian32(id) +
         bigEndian32(static_cast<std::uint32_t>(bytes.size())) +
         bigEndian32(static_cast<std::uint32_t>(offset)) +
         bigEndian16(static_cast<std::uint16_t>(name.size())) + std::string(name);
}

}  // namespace vessant::test
