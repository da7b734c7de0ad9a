#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// The compressed container in its simplest form: one bit at a time out and in, a ring of bytes, and a binary
// search tree of window positions. Shares no code with the library, so that each can be checked, and timed,
// against the other.

// The whole compressed file for nSize bytes of data.
std::vector<uint8_t> PlainCompress(const uint8_t* pData, size_t nSize);

// The data of a compressed file. False when the file doesn't open: one of its first 32 bits is set. A file
// that is cut short gives what can be decoded of it.
bool PlainDecompress(const uint8_t* pFile, size_t nSize, std::vector<uint8_t>& data);
