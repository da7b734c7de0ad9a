#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "model/EffectModule.h"
#include "model/LibraryTree.h"
#include "model/SpellMgr.h"

class IPrompts;

// The effect file that artists keep: text, or the same text in the compressed container; the last
// letter of the name decides, for reading as for writing.

enum class EFinding
{
    eRepair,
    eCut,         // the file ends within a list, a quoted text or its compressed text
    eConflict,    // a merge has left its marks in the file
    eMissingType, // the load fails, since the plug-in lacks a type of effect
    eMissingFile, // a resource that a key names isn't there; not found by loading
};

// What the loader repaired or left out in silence. Texts are for people.
struct CLoadFinding
{
    std::string m_sEffect; // effect or prefab; empty for the file as a whole
    std::string m_sKey;    // the key's display name and id; empty for a prefab or effect
    std::string m_sText;   // what was found and what was done
    EFinding m_eKind = EFinding::eRepair;
};
class ILoadObserver
{
public:
    virtual ~ILoadObserver() = default;
    // False: repairs are of interest only in a file that is cut or in conflict.
    virtual bool WantsAll() const { return true; }
    virtual void OnFinding(const CLoadFinding& finding) = 0;
};

// Writes in place: an existing file is truncated first, and a failure part way leaves it cut.
bool SaveEffectLibrary(const char* pszFilename, const CEffectTree& effectTree, const CPrefabTree& prefabTree,
                       IPrompts* pPrompts = nullptr);

// Asked again and again while a file is loaded. False: the load stops, as a failed one.
using CLoadGoOn = std::function<bool()>;

// Adds what the file holds to the model and, where given, to the trees (both may be null). False:
// sError has grown by the reasons, innermost first, one a line; the model holds what was read so far,
// and the caller clears it. pObserver, when given, hears of each silent repair; it changes no result.
bool LoadEffectLibrary(const char* pszFilename, CSpellMgr& spellMgr, const CEffectModule& module,
                       CEffectTree* pEffectTree, CPrefabTree* pPrefabTree, std::string& sError,
                       IPrompts* pPrompts = nullptr, ILoadObserver* pObserver = nullptr,
                       const CLoadGoOn& goOn = {});

// The same for the text of such a file, as it is behind the compression.
bool LoadEffectText(std::string_view sText, CSpellMgr& spellMgr, const CEffectModule& module,
                    CEffectTree* pEffectTree, CPrefabTree* pPrefabTree, std::string& sError,
                    ILoadObserver* pObserver = nullptr);

// Whether the bytes of an effect file are whole, as far as that can be seen without a plug-in: the lists of a
// library are there and end, and nothing is left of a merge. The name tells the form. None for a file that is too
// large to be looked at.
std::optional<bool> IsWholeEffectFile(const std::string& sName, std::string_view sContent);
