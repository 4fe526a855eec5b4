// Makes every call of free leave an error number of its own, as the C library may: code that reads
// errno only after a destructor ran then reads that. A test program that uses this is linked with
// -Wl,--wrap=free, so that every call in it passes through here; otherwise nothing changes.
#pragma once

namespace vessant::test {

/// In effect while it lives.
class SpoiledErrno {
 public:
  SpoiledErrno();
  SpoiledErrno(const SpoiledErrno&) = delete;
  SpoiledErrno& operator=(const SpoiledErrno&) = delete;
  ~SpoiledErrno();
};

}  // namespace vessant::test
