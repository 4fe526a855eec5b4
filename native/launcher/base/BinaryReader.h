// Big-endian numbers and raw bytes from a binary stream.
#pragma once

#include <cstdint>
#include <cstdio>

#include "launcher/base/SString.h"

namespace vessant {

/// Reads up to `count` bytes into `buffer` and returns how many it stored.
///
/// The end of the file is noticed one byte late: the read that first meets it still stores a byte,
/// 255, and counts it. Installers in the field rely on what this makes of a cut file. A read error
/// is treated as the end of the file.
int readBytes(std::FILE* stream, unsigned char* buffer, int count);

/// An unsigned 32-bit number, most significant byte first.
/// Throws LauncherException(`message`) when fewer than 4 bytes could be read.
std::uint32_t readInt32(std::FILE* stream, const char* message);

/// A signed 16-bit number, most significant byte first; fails as readInt32 does.
std::int16_t readInt16(std::FILE* stream, const char* message);

}  // namespace vessant
