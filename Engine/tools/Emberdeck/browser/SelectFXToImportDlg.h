#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "app/EditContext.h"

// The dialog "Select FX To Import" without its window: the effects of a file, of which some are chosen. They
// stay in its own library until they are taken out of it; the rest goes with the dialog.
class CSelectFXToImportDlg
{
public:
    CSelectFXToImportDlg(CEditContext& context, const std::string& sPath);

    // Loads the file. A failure shows its message and leaves the list empty; the dialog stays. False: the
    // user has stopped the load, and there is nothing to show.
    bool OnInitDialog();
    const std::vector<std::string>& GetRows() const { return m_Rows; } // names, sorted without regard to case
    // The rows that are selected, by number; others are ignored.
    void OnOK(const std::vector<uint32_t>& rows);

    const std::vector<CSpell*>& GetChosen() const { return m_Chosen; } // in the order of the rows
    CSpellMgr& GetLibrary() { return m_SpellMgr; }

private:
    CEditContext& m_Context;
    const std::string m_sPath;
    CSpellMgr m_SpellMgr;
    std::vector<CSpell*> m_Spells; // of the rows
    std::vector<std::string> m_Rows;
    std::vector<CSpell*> m_Chosen;
};

// Shows the dialog: a list with any number of rows selected, none at first, OK and Cancel.
class IImportView
{
public:
    virtual ~IImportView() = default;
    // True: OK, and the selected rows are those.
    virtual bool ChooseRows(const std::vector<std::string>& rows, std::vector<uint32_t>& selected) = 0;
};
