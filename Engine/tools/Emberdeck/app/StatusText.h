#pragma once

#include <cstdint>
#include <string>

// Lines for IEditorHost::ShowStatus, labels of steps, and names in menus.

// "1 effect", "12,345 effects": the word takes an s. The same whatever the locale.
std::string TellCount(uint64_t nCount, const char* pszWord);
// "Delete Key", "Delete 3 Keys": the label of a step.
std::string TellThings(const char* pszVerb, uint64_t nCount, const char* pszThing);
// "fire.Fx00a" of a path with separators of either kind.
std::string TellName(const std::string& sPath);
// "Saved fire.Fx00a: 44 effects, 12,345 bytes", as the file lies there now.
std::string TellFile(const char* pszDone, const std::string& sPath, uint64_t nEffects);
// Names are plain text: what a menu or a group box would take for the mark of a shortcut is doubled.
std::string DoubleAmpersands(const std::string& sText);
