#include "JarBuilder.h"

#include <memory>

#include <archive.h>
#include <archive_entry.h>

namespace vessant::test {
namespace {

using Members = std::map<std::string, std::string>;
using Archive = std::unique_ptr<archive, decltype(&archive_write_free)>;
using Entry = std::unique_ptr<archive_entry, decltype(&archive_entry_free)>;

std::string write(archive* target, const Members& members) {
  constexpr std::size_t kEnough = 1U << 20U;
  std::string bytes(kEnough, '\0');
  std::size_t used = 0;
  archive_write_set_bytes_in_last_block(target, 1);
  archive_write_open_memory(target, bytes.data(), bytes.size(), &used);
  for (const auto& [name, content] : members) {
    const Entry entry(archive_entry_new(), archive_entry_free);
    archive_entry_set_pathname(entry.get(), name.c_str());
    archive_entry_set_size(entry.get(), static_cast<la_int64_t>(content.size()));
    archive_entry_set_filetype(entry.get(), AE_IFREG);
    archive_entry_set_perm(entry.get(), 0644);
    archive_write_header(target, entry.get());
    archive_write_data(target, content.data(), content.size());
  }
  archive_write_close(target);
  bytes.resize(used);
  return bytes;
}

}  // namespace

std::string jarBytes(const Members& members) {
  const Archive target(archive_write_new(), archive_write_free);
  archive_write_set_format_zip(target.get());
  return write(target.get(), members);
}

std::string tarBytes(const Members& members, bool compressed) {
  const Archive target(archive_write_new(), archive_write_free);
  archive_write_set_format_ustar(target.get());
  if (compressed) archive_write_add_filter_gzip(target.get());
  return write(target.get(), members);
}

std::string elfBytes(int machine) {
  std::string bytes =
      "\x7F"
      "ELF\x02\x01\x01";
  bytes.resize(64, '\0');
  bytes[18] = static_cast<char>(machine & 0xFF);
  bytes[19] = static_cast<char>(machine >> 8);
  return bytes;
}

}  // namespace vessant::test
