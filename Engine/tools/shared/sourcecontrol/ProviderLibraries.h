#pragma once

#include <string>
#include <vector>

#include "shared/sourcecontrol/ProviderRegistry.h"

// Providers of a team's own live in shared libraries that a small text file names, one a line:
//
//     # name      class id                                library
//     Depot       {0F5B7C1E-4D2A-4E63-9B18-7A6C5D4E3F21}  /opt/depot/libdepot.so
//
// The library's name may hold blanks; a relative one counts from the folder of the file. Empty lines and
// those that begin with "#" or ";" say nothing. A library is loaded when its provider is first connected to,
// and stays. It is built with the compiler and the headers of this program, and exports
//
//     extern "C" uint32_t SourceControlProviderVersion();     // c_nProviderLibraryVersion
//     extern "C" ISourceControlProvider* MakeSourceControlProvider(const char* szClassId);
//
// The object is new for each call, made with new, and the caller deletes it; null: none for this class.
// Neither function nor any method of it throws.
constexpr uint32_t c_nProviderLibraryVersion = 1;

// Registers what the file names. A file that isn't there names nothing. Each line that can't be used is
// told in a sentence; the others count.
std::vector<std::string> RegisterProviderLibraries(CProviderRegistry& registry, const std::string& sListFile);
// Where the programs look for that file: in the user's configuration directory.
std::string GetProviderListFile();
