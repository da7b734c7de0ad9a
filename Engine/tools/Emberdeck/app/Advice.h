#pragma once

#include <string>

#include "formats/LoadReport.h"
#include "model/EffectModule.h"
#include "shared/engine/ProjectLocator.h"

// What stands below the workflow's messages, whose words are fixed: the cause, as far as it can be seen, and
// what to do about it. Sentences for the user; empty when the message says it all.

// sUnusable: the locator that was found but can't be used; empty: none was found.
std::string AdviseOnMissingProject(const std::string& sFile, const std::string& sUnusable = std::string());
std::string AdviseOnPlugin(const CProjectInfo& project);
// After a start that the plug-in has ended.
std::string AdviseOnPluginThatEnded();
// Where a list of effect types is empty.
std::string AdviseOnNoTypes(const CProjectInfo& project, const CEffectModule& module);
// bKept: copies of what the file held before earlier saves are there.
std::string AdviseOnLoading(const std::string& sFile, const CProjectInfo& project, bool bKept,
                            const CLoadReport& report);
// A file that was loaded, but isn't whole: what was found in it, and how to bring back what is missing.
std::string AdviseOnDamage(const CLoadReport& report, bool bKept);
// What isn't whole about it, as the end of a sentence.
std::string DamageText(const CLoadReport& report);
std::string AdviseOnPackingOver(const std::string& sLibrary); // onto the library's own file
std::string AdviseOnPacking(const std::string& sPackName, const CEffectModule& module);
