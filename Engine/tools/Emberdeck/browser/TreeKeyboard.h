#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "browser/LabelEdit.h"
#include "browser/TreeSearch.h"

// The keyboard of a tree: travels and extends the selection, and finds items by the letters they begin with.
class CTreeKeyboard
{
public:
    // All borrowed.
    CTreeKeyboard(CTreeSelection& selection, CLabelEdit& labelEdit, CTreeSearch& search,
                  const ITreeView& view);

    // True: the key ends here.
    bool OnKey(const CTreeKey& key);
    // A character that is no command, at a time in milliseconds: goes to the next item that begins with what
    // was typed in short order. A space begins nothing.
    bool OnCharacter(std::string_view sCharacter, uint64_t nTime);

private:
    void OnArrow(bool bDown, CModifiers modifiers);
    bool OnTravelKey(ETreeKey eKey);
    void GoTo(HLibraryItem hItem);
    HLibraryItem FindTyped(HLibraryItem hFrom, std::string_view sText) const;

    CTreeSelection& m_Selection;
    CLabelEdit& m_LabelEdit;
    CTreeSearch& m_Search;
    const ITreeView& m_View;
    std::string m_sTyped;
    uint64_t m_nTypedTime = 0;
};
