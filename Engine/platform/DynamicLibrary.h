#pragma once

#include <string>

// Loads a library by a path of any form (NativeLibraryPath); null, and the system's words in
// pError when given, on failure.
void* LoadDynamicLibrary(const std::string& sPath, std::string* pError = nullptr);
void* GetLibrarySymbol(void* hModule, const char* pszName); // null when it isn't there
void FreeDynamicLibrary(void* hModule);                     // null: nothing
