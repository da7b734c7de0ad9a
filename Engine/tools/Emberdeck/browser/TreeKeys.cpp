#include <algorithm>

#include "browser/MultiSelectTreeCtrl.h"
#include "model/NameIndex.h"

// The keyboard of the tree control.

namespace
{
constexpr uint32_t c_nSelectAndFocus = eState_Selected | eState_Focused;
constexpr uint64_t c_nTypingPause = 1000; // milliseconds until a letter begins a new word
constexpr size_t c_nMaxTyped = 255;
} // namespace

bool CMultiSelectTreeCtrl::OnKey(const CTreeKey& key)
{
    m_hEditWanted = {};
    if (IsBusy())
    {
        if (key.m_eKey != ETreeKey::eEscape)
            return true;
        if (m_eMouse == EMouse::eBand)
            m_Band.Escape();
        OnMouseLost();
        return true;
    }
    if (key.m_eKey == ETreeKey::eF && key.m_Modifiers.m_bCtrl && !key.m_bAlt)
    {
        OpenFindDialog();
        return true;
    }
    if (m_Parent.OnKeyDown(key))
        return true;
    if (key.m_bAlt)
        return false;
    switch (key.m_eKey)
    {
    case ETreeKey::eUp:
    case ETreeKey::eDown:
        OnArrow(key.m_eKey == ETreeKey::eDown, key.m_Modifiers);
        return true;
    case ETreeKey::eF2:
        if (m_hCaret && m_nSelected == 1)
            EditLabel(m_hCaret);
        return true;
    case ETreeKey::eF3:
        FindAgain();
        return true;
    default:
        // With Ctrl these scroll, which is the view's own.
        return !key.m_Modifiers.m_bCtrl && OnTravelKey(key.m_eKey);
    }
}

// Plain: the next item alone. Shift: the range from the anchor, and what it has left is deselected. Ctrl: the
// caret alone moves. At an end it stays.
void CMultiSelectTreeCtrl::OnArrow(bool bDown, CModifiers modifiers)
{
    const HLibraryItem hOld = m_hCaret;
    if (!hOld)
    {
        if (modifiers.None())
            GoTo(m_Items.GetRootItem());
        else
            SetItemStateEx(m_Items.GetRootItem(), c_nSelectAndFocus, c_nSelectAndFocus);
        return;
    }
    const HLibraryItem hNew = MovedBy(hOld, bDown, 1);
    if (modifiers.None())
    {
        GoTo(hNew);
        return;
    }
    if (!m_Items.IsAlive(m_hAnchor))
        m_hAnchor = hOld;
    SetItemStateEx(hNew, eState_Focused, eState_Focused);
    if (modifiers.m_bShift)
    {
        const HLibraryItem hAnchor = VisibleAncestor(m_hAnchor);
        SelectRange(hAnchor, hNew, true);
        if (bDown ? !Reaches(hAnchor, hOld) : !Reaches(hOld, hAnchor))
            SelectItem(hOld, false);
    }
}

// hTo comes behind hFrom in the visible order, or is the same.
bool CMultiSelectTreeCtrl::Reaches(HLibraryItem hFrom, HLibraryItem hTo) const
{
    while (hFrom && hFrom != hTo)
        hFrom = NextVisible(hFrom);
    return bool(hFrom);
}

// As far as there are items.
HLibraryItem CMultiSelectTreeCtrl::MovedBy(HLibraryItem hItem, bool bDown, int32_t nRows) const
{
    for (; nRows > 0; --nRows)
    {
        const HLibraryItem hNext = bDown ? NextVisible(hItem) : PrevVisible(hItem);
        if (!hNext)
            break;
        hItem = hNext;
    }
    return hItem;
}

void CMultiSelectTreeCtrl::GoTo(HLibraryItem hItem)
{
    if (!m_Items.IsAlive(hItem))
        return;
    m_hAnchor = {};
    SelectAllItems(false, hItem);
    SetItemStateEx(hItem, c_nSelectAndFocus, c_nSelectAndFocus);
    EnsureVisible(hItem);
}

bool CMultiSelectTreeCtrl::OnTravelKey(ETreeKey eKey)
{
    const HLibraryItem hRoot = m_Items.GetRootItem();
    const HLibraryItem hFrom = m_hCaret ? m_hCaret : hRoot;
    const int32_t nPage = std::max(m_View.GetRows().m_nPage, 1);
    switch (eKey)
    {
    case ETreeKey::eHome:
        GoTo(hRoot);
        return true;
    case ETreeKey::eEnd:
        GoTo(LastVisible());
        return true;
    case ETreeKey::ePageUp:
    case ETreeKey::ePageDown:
        GoTo(MovedBy(hFrom, eKey == ETreeKey::ePageDown, nPage));
        return true;
    case ETreeKey::eLeft:
        if (IsExpanded(hFrom))
            OnUserExpand(hFrom, false, false);
        else
            GoTo(m_Items.GetParentItem(hFrom));
        return true;
    case ETreeKey::eRight:
        if (IsExpanded(hFrom))
            GoTo(m_Items.GetChildItem(hFrom));
        else
            OnUserExpand(hFrom, true, false);
        return true;
    case ETreeKey::eBackspace:
        GoTo(m_Items.GetParentItem(hFrom));
        return true;
    case ETreeKey::ePlus:
    case ETreeKey::eMinus:
        OnUserExpand(hFrom, eKey == ETreeKey::ePlus, false);
        return true;
    case ETreeKey::eMultiply:
        Expand(hFrom, true);
        ExpandChildren(hFrom, true, true);
        return true;
    default:
        return false;
    }
}

bool CMultiSelectTreeCtrl::OnCharacter(std::string_view sCharacter, uint64_t nTime)
{
    const bool bNew = m_sTyped.empty() || nTime - m_nTypedTime > c_nTypingPause;
    const bool bControl =
        sCharacter.empty() || static_cast<uint8_t>(sCharacter[0]) < ' ' || sCharacter[0] == '\x7F';
    if (bControl || (bNew && sCharacter == " ") || IsBusy() || IsEditing())
        return false;
    if (bNew)
        m_sTyped.clear();
    m_nTypedTime = nTime;
    if (m_sTyped.size() + sCharacter.size() <= c_nMaxTyped)
        m_sTyped += sCharacter;

    // One letter again and again goes through all that begin with it; a word stays where it still fits.
    bool bSame = true;
    for (size_t i = 0; i < m_sTyped.size() && bSame; i += sCharacter.size())
        bSame = IsSameName(std::string_view(m_sTyped).substr(i, sCharacter.size()), sCharacter);
    HLibraryItem hFrom = m_hCaret;
    if (hFrom && bSame)
        hFrom = NextVisible(hFrom);
    const HLibraryItem hFound =
        FindTyped(hFrom ? hFrom : m_Items.GetRootItem(), bSame ? sCharacter : std::string_view(m_sTyped));
    GoTo(hFound);
    return true;
}

// The first visible item from hFrom on, once round, whose text begins so; null.
HLibraryItem CMultiSelectTreeCtrl::FindTyped(HLibraryItem hFrom, std::string_view sText) const
{
    HLibraryItem h = hFrom;
    while (h)
    {
        const std::string_view sItem = m_Items.GetItemText(h);
        if (sItem.size() >= sText.size() && IsSameName(sItem.substr(0, sText.size()), sText))
            return h;
        h = NextVisible(h);
        if (!h)
            h = m_Items.GetRootItem();
        if (h == hFrom)
            break;
    }
    return {};
}
