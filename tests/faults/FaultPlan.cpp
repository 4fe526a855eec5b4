#include "faults/FaultPlan.h"

#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

// The real one: the plan is asked by the other.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the linker gives the name
extern "C" long __real_syscall(long number, ...);

namespace vessant::test {
namespace {

using Counter = std::atomic<std::uint32_t>;
constexpr std::size_t kBytes = kFaultyCallCount * sizeof(Counter);

/// One plan for the whole process, because the calls that ask for it know of no other.
class FaultPlan {
 public:
  FaultPlan() {
    readFault();
    openUses();
    // Shared, so that a forked copy goes on counting where its parent stood.
    const int flags = file_ < 0 ? MAP_SHARED | MAP_ANONYMOUS : MAP_SHARED;
    void* memory = ::mmap(nullptr, kBytes, PROT_READ | PROT_WRITE, flags, file_, 0);
    if (memory == MAP_FAILED) std::abort();
    uses_ = static_cast<Counter*>(memory);
    if (file_ >= 0) __real_syscall(SYS_close, file_);
  }

  [[nodiscard]] Fault use(FaultyCall call) {
    const auto index = static_cast<std::size_t>(call);
    const std::uint32_t number = ++uses_[index];
    return index == call_ && number == number_ ? fault_ : Fault::None;
  }

 private:
  void readFault() {
    const char* plan = std::getenv("VESSANT_FAULT");
    if (plan == nullptr) return;
    const char* number = std::strchr(plan, ':') + 1;
    const char* kind = std::strchr(number, ':') + 1;
    for (std::size_t i = 0; i < kFaultyCallCount; ++i) {
      const std::size_t length = std::strlen(kFaultyCalls[i].name);
      if (plan + length + 1 == number && std::strncmp(plan, kFaultyCalls[i].name, length) == 0) {
        call_ = i;
      }
    }
    number_ = static_cast<std::uint32_t>(std::strtoul(number, nullptr, 10));
    fault_ = kind[0] == 's' ? Fault::Short : kind[0] == 'i' ? Fault::Interrupted : Fault::Error;
  }

  /// Raw calls: the library's own are those that this plan watches.
  void openUses() {
    const char* path = std::getenv("VESSANT_FAULT_USES");
    if (path == nullptr) return;
    file_ = static_cast<int>(__real_syscall(SYS_open, path, O_RDWR | O_CLOEXEC));
    if (file_ < 0 || __real_syscall(SYS_ftruncate, file_, kBytes) != 0) std::abort();
  }

  Counter* uses_ = nullptr;
  int file_ = -1;
  std::size_t call_ = kFaultyCallCount;
  std::uint32_t number_ = 0;
  Fault fault_ = Fault::None;
};

}  // namespace

Fault useOf(FaultyCall call) {
  static FaultPlan plan;
  return plan.use(call);
}

}  // namespace vessant::test
