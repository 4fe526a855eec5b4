// A tag file: whatever can be read can be written, and reads back as the same tags and values.

#include <cstdlib>

#include <unistd.h>

#include "FuzzInput.h"
#include "launcher/base/Exceptions.h"
#include "launcher/tagfile/TagFile.h"

namespace {

using vessant::TagFile;

void checkSame(const TagFile& a, const TagFile& b) {
  if (a.entries().count() != b.entries().count()) std::abort();
  for (std::int32_t i = 0; i < a.entries().count(); ++i) {
    const vessant::TagFileEntry& left = *a.entries().get(i);
    const vessant::TagFileEntry& right = *b.entries().get(i);
    if (!(left.name == right.name) || left.values.count() != right.values.count()) std::abort();
    for (std::int32_t j = 0; j < left.values.count(); ++j) {
      if (!(left.values.get(j) == right.values.get(j))) std::abort();
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const vessant::StdFile stream = vessant::fuzz::streamOf(data, size);
  if (stream == nullptr) return 0;
  vessant::fuzz::QuietRun run;
  vessant::LogSink& log = run.services.log;
  TagFile tags;
  try {
    tags.load(stream.get(), "input", 0, TagFile::kToEndOfFile, log);
  } catch (const vessant::LauncherException&) {
    return 0;
  }
  char path[] = "/tmp/vessant-fuzz-XXXXXX";
  ::close(::mkstemp(path));
  tags.save(path);
  const TagFile again(path, log);
  ::unlink(path);
  checkSame(tags, again);
  return 0;
}
