#include "packer/Session.h"

#include <utility>

namespace vessant {
namespace {

constexpr std::chrono::seconds kPatience(1);
constexpr std::chrono::milliseconds kInterval(200);
constexpr const char* kClearLine = "\r\x1B[K";

}  // namespace

Progress::Progress(const Session& session, std::string what, std::uint64_t total)
    : session_(session), what_(std::move(what)), total_(total), next_(Clock::now() + kPatience) {}

Progress::~Progress() {
  if (shown_) session_.err << kClearLine << std::flush;
}

void Progress::advance(std::uint64_t bytes) {
  constexpr std::uint64_t kWhole = 100;
  done_ += bytes;
  if (!session_.errIsTerminal || total_ == 0 || Clock::now() < next_) return;
  next_ = Clock::now() + kInterval;
  shown_ = true;
  session_.err << kClearLine << what_ << ": " << done_ * kWhole / total_ << " %" << std::flush;
}

}  // namespace vessant
