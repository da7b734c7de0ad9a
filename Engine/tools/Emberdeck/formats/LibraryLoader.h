#pragma once

#include <string>

#include "formats/LeafLoaders.h"

// Turns the node tree of an effect file into the model: the lists at its top, and the groups of both trees. One
// object for each load; what it notes on the way belongs to that load.
class CLibraryLoader
{
public:
    // The trees may be null. Messages are added to sError, innermost first, one a line. goOn may be empty.
    CLibraryLoader(CSpellMgr& spellMgr, const CEffectModule& module, CEffectTree* pEffectTree,
                   CPrefabTree* pPrefabTree, std::string& sError, ILoadObserver* pObserver,
                   const CLoadGoOn& goOn = {});

    // Before LoadRoot: what is wrong with the text that the nodes come from. pszFilename is where it can be read once
    // more; null: nowhere.
    void TellText(const CQSATextOutcome& outcome, const char* pszFilename);
    bool LoadRoot(const CQSANode& root);
    void AppendError(const char* pszMessage) { m_Load.AppendError(pszMessage); }

private:
    void TellRoot(const CQSANode& root);
    void TellHeader(const CQSANode& header);
    bool LoadTree(const CQSANode& list, ILeafLoader& leaves);
    bool LoadTreeNode(const CQSANode& node, HLibraryItem hParent, ILeafLoader& leaves);
    bool LoadContainer(const CQSANode& node, HLibraryItem hParent, ILeafLoader& leaves);

    CLoadState m_Load;
    CPropertyLoader m_Properties;
    CPrefabLoader m_Prefabs;
    CEffectLoader m_Effects;
    const CLoadGoOn m_GoOn;
};
