#pragma once

#include <cstdint>
#include <string>

// Lines for IEditorHost::ShowStatus.

// "1 effect", "12,345 effects": the word takes an s. The same whatever the locale.
std::string TellCount(uint64_t nCount, const char* pszWord);
// "fire.Fx00a" of a path with separators of either kind.
std::string TellName(const std::string& sPath);
// "Saved fire.Fx00a: 44 effects, 12,345 bytes", as the file lies there now.
std::string TellFile(const char* pszDone, const std::string& sPath, uint64_t nEffects);
