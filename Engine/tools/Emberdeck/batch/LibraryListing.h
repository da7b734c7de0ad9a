#pragma once

#include <string>

#include "changes/LibraryImage.h"

// A library as lines that can be compared one by one: each tells one thing, and where it belongs.
std::string ListLibrary(const CLibraryImage& image);
