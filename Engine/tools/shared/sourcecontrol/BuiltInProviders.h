#pragma once

#include "shared/sourcecontrol/ProviderRegistry.h"
#include "shared/sourcecontrol/SourceControlFront.h"

// The providers that come with the program: Git and Subversion.
void RegisterBuiltInProviders(CProviderRegistry& registry, const CProviderHost& host);
bool IsBuiltInProvider(const CClassId& id);
// The one of them in whose work copy a file lies or would lie, unless it is ignored there. All zero: none.
// The prompts, which may be null, show that somebody waits.
CClassId FindBuiltInProvider(const std::string& sFile, IPrompts* pPrompts);
// The work copy that has a file under version control, as "the Git work copy /game/". Empty: none.
std::string FindWorkCopyThatKeeps(const std::string& sFile, IPrompts* pPrompts);
