#include "packer/IndexReader.h"

#include "launcher/base/Exceptions.h"

namespace vessant {

void loadIndex(LauncherFile& file, const SString& path, LogSink& log,
               const MessageSource& messages) {
  try {
    file.loadFileIndex(path, nullptr, log, messages);
  } catch (const LauncherException& error) {
    throw LauncherException(path + ": " + error.message());
  }
}

}  // namespace vessant
