#pragma once

#include "model/EffectModule.h"
#include "model/SpellMgr.h"

class IPrompts;

// Writes the binary file that the game reads, in place, for the target "PC" or "Xenon" (byte order).
// False: no name, no plug-in, a file that can't be made, or a write that failed on the way.
// Values are validated as they are written, so the model may change by that.
bool PackEffectLibrary(const char* pszFilename, CSpellMgr& spellMgr, const CEffectModule& module,
                       IPrompts* pPrompts = nullptr, const char* pszTarget = "PC");
