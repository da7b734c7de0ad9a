#include "browser/TreeKeyboard.h"

#include "model/NameIndex.h"

namespace
{
constexpr uint32_t c_nSelectAndFocus = eState_Selected | eState_Focused;
constexpr uint64_t c_nTypingPause = 1000; // milliseconds until a letter begins a new word
constexpr size_t c_nMaxTyped = 255;
} // namespace

CTreeKeyboard::CTreeKeyboard(CTreeSelection& selection, CLabelEdit& labelEdit, CTreeSearch& search,
                             const ITreeView& view)
    : m_Selection(selection),
      m_LabelEdit(labelEdit),
      m_Search(search),
      m_View(view)
{
}

bool CTreeKeyboard::OnKey(const CTreeKey& key)
{
    if (key.m_bAlt)
        return false;
    switch (key.m_eKey)
    {
    case ETreeKey::eUp:
    case ETreeKey::eDown:
        OnArrow(key.m_eKey == ETreeKey::eDown, key.m_Modifiers);
        return true;
    case ETreeKey::eF2:
        if (m_Selection.GetCaret() && m_Selection.GetSelectedCount() == 1)
            m_LabelEdit.Begin(m_Selection.GetCaret());
        return true;
    case ETreeKey::eF3:
        m_Search.FindAgain();
        return true;
    default:
        // With Ctrl these scroll, which is the view's own.
        return !key.m_Modifiers.m_bCtrl && OnTravelKey(key.m_eKey);
    }
}

// Plain: the next item alone. Shift: the range from the anchor, and what it has left is deselected. Ctrl: the
// caret alone moves. At an end it stays.
void CTreeKeyboard::OnArrow(bool bDown, CModifiers modifiers)
{
    const HLibraryItem hOld = m_Selection.GetCaret();
    if (!hOld)
    {
        const HLibraryItem hRoot = m_Selection.Tree().GetRootItem();
        if (modifiers.None())
            GoTo(hRoot);
        else
            m_Selection.SetItemStateEx(hRoot, c_nSelectAndFocus, c_nSelectAndFocus);
        return;
    }
    const CTreeStates& states = m_Selection.States();
    const HLibraryItem hNew = states.MovedBy(hOld, bDown, 1);
    if (modifiers.None())
    {
        GoTo(hNew);
        return;
    }
    const HLibraryItem hAnchor = m_Selection.AnchorOr(hOld);
    m_Selection.SetCaret(hNew);
    if (modifiers.m_bShift)
    {
        m_Selection.SelectRange(hAnchor, hNew, true);
        if (bDown ? !states.Reaches(hAnchor, hOld) : !states.Reaches(hOld, hAnchor))
            m_Selection.SelectItem(hOld, false);
    }
}

void CTreeKeyboard::GoTo(HLibraryItem hItem)
{
    if (!m_Selection.Tree().IsAlive(hItem))
        return;
    m_Selection.ForgetAnchor();
    m_Selection.SelectAlone(hItem);
    m_Selection.EnsureVisible(hItem);
}

bool CTreeKeyboard::OnTravelKey(ETreeKey eKey)
{
    const CLibraryTree& tree = m_Selection.Tree();
    const CTreeStates& states = m_Selection.States();
    const HLibraryItem hRoot = tree.GetRootItem();
    const HLibraryItem hFrom = m_Selection.GetCaret() ? m_Selection.GetCaret() : hRoot;
    switch (eKey)
    {
    case ETreeKey::eHome:
        GoTo(hRoot);
        return true;
    case ETreeKey::eEnd:
        GoTo(states.LastVisible());
        return true;
    case ETreeKey::ePageUp:
    case ETreeKey::ePageDown:
        GoTo(states.MovedBy(hFrom, eKey == ETreeKey::ePageDown, m_View.GetRows().m_nPage));
        return true;
    case ETreeKey::eLeft:
        if (states.IsExpanded(hFrom))
            m_Selection.ExpandByHand(hFrom, false, false);
        else
            GoTo(tree.GetParentItem(hFrom));
        return true;
    case ETreeKey::eRight:
        if (states.IsExpanded(hFrom))
            GoTo(tree.GetChildItem(hFrom));
        else
            m_Selection.ExpandByHand(hFrom, true, false);
        return true;
    case ETreeKey::eBackspace:
        GoTo(tree.GetParentItem(hFrom));
        return true;
    case ETreeKey::ePlus:
    case ETreeKey::eMinus:
        m_Selection.ExpandByHand(hFrom, eKey == ETreeKey::ePlus, false);
        return true;
    case ETreeKey::eMultiply:
        m_Selection.ExpandChildren(hFrom, true, true);
        return true;
    default:
        return false;
    }
}

bool CTreeKeyboard::OnCharacter(std::string_view sCharacter, uint64_t nTime)
{
    const bool bNew = m_sTyped.empty() || nTime - m_nTypedTime > c_nTypingPause;
    const bool bControl =
        sCharacter.empty() || static_cast<uint8_t>(sCharacter[0]) < ' ' || sCharacter[0] == '\x7F';
    if (bControl || (bNew && sCharacter == " "))
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
    HLibraryItem hFrom = m_Selection.GetCaret();
    if (hFrom && bSame)
        hFrom = m_Selection.States().NextVisible(hFrom);
    GoTo(FindTyped(hFrom ? hFrom : m_Selection.Tree().GetRootItem(),
                   bSame ? sCharacter : std::string_view(m_sTyped)));
    return true;
}

// The first visible item from hFrom on, once round, whose text begins so; null.
HLibraryItem CTreeKeyboard::FindTyped(HLibraryItem hFrom, std::string_view sText) const
{
    HLibraryItem h = hFrom;
    while (h)
    {
        const std::string_view sItem = m_Selection.Tree().GetItemText(h);
        if (IsSameName(sItem.substr(0, sText.size()), sText))
            return h;
        h = m_Selection.States().NextVisible(h);
        if (!h)
            h = m_Selection.Tree().GetRootItem();
        if (h == hFrom)
            break;
    }
    return {};
}
