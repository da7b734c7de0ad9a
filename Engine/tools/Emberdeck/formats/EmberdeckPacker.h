#pragma once

#include <string>

#include "model/EffectModule.h"
#include "model/SpellMgr.h"

class IPrompts;

// Writes the binary file that the game reads, for the target "PC" or "Xenon" (byte order). It takes the old one's
// place when it is whole, and not before (see CReplacingFile).
// False: no name, no plug-in, a file that can't be made, or a write that failed on the way; the old file stands.
// What the file is going to hold is put together first: a library that has no place in one fails before any file
// is touched, and pError, if given, then tells of the curve or the size that is too much; else it is empty.
// Values are validated before they are written, so the model may change by that.
bool PackEffectLibrary(const char* pszFilename, CSpellMgr& spellMgr, const CEffectModule& module,
                       IPrompts* pPrompts = nullptr, const char* pszTarget = "PC",
                       std::string* pError = nullptr);
