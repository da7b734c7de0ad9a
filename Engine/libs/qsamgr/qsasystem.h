#pragma once

#include <cstddef>
#include <cstdint>

// What this library asks of the machine beyond the standard library.

// Makes an empty file that only this user may read, under a fresh name in the machine's temporary directory,
// and writes its path into pszPath. False when there is no such directory, the file can't be made, or the
// path doesn't fit into nSize bytes; the path is empty then.
bool QSACreateTempFile(char* pszPath, uint32_t nSize);

// Deletes a file; a missing one or an empty name does no harm.
void QSARemoveFile(const char* pszPath);

// Asks for large pages under memory that is about to be filled from its ends: the first touch of a page is
// what a cold load spends most of its time on. Only advice, and only for memory that begins at a multiple of
// c_nQSALargePage: a large page that is touched counts whole.
constexpr size_t c_nQSALargePage = 2u << 20;
void QSAAdviseLargePages(void* pMemory, size_t nSize);
