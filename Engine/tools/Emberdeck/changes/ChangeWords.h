#pragma once

#include <string>

#include "changes/LibraryChange.h"

// The parts of what Tell says.

// What a difference is about: "Campfire: key 12, start". Of what comes or goes only what it is.
std::string TellAbout(const CDifference& difference);
// A value of its field as a person reads it. Of a whole object: "none" or "there".
std::string TellValue(const CDifference& difference, const CChangeValue& value);
