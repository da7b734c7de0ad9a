#pragma once

#include <cstdint>

// Finding the optional libraries of the program by the names that the contracts give. Works without
// allocating through the program's entry points, since the memory manager is found this way.

constexpr uint32_t c_nMaxLibraryPath = 4096;

// Path of the running executable, terminated. False when it is not known or longer than the buffer.
bool GetExecutablePath(char* pszPath, uint32_t nSize);

// Loads a library such as "QSMemory.dll": the name as it stands, then NAME.so and libNAME.so, each beside the
// executable first and then where the system looks. Null when there is none; else the handle, and pszPath
// holds the name under which it was loaded. The buffer has c_nMaxLibraryPath bytes.
void* LoadNamedLibrary(const char* pszName, char* pszPath);

// Whether a library loaded under this name is still there.
bool IsLibraryLoaded(const char* pszPath);

void* FindLibrarySymbol(void* pLibrary, const char* pszName);
void UnloadLibrary(void* pLibrary);
