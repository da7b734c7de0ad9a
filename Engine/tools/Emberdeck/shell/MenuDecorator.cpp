#include "shell/MenuDecorator.h"

#include <algorithm>
#include <utility>

bool CKRMenuDecorator::AddToolbar(const CKRToolbar* pToolbar)
{
    if (pToolbar && std::find(m_Toolbars.begin(), m_Toolbars.end(), pToolbar) == m_Toolbars.end())
        m_Toolbars.push_back(pToolbar);
    return true;
}

bool CKRMenuDecorator::AddAccelerators(const CAccelerator* pTable, size_t nCount)
{
    if (!pTable || nCount == 0)
        return false;
    m_Accelerators.insert(m_Accelerators.end(), pTable, pTable + nCount);
    std::stable_sort(m_Accelerators.begin(), m_Accelerators.end(),
                     [](const CAccelerator& a, const CAccelerator& b) { return a.m_nID < b.m_nID; });
    m_Accelerators.erase(std::unique(m_Accelerators.begin(), m_Accelerators.end(),
                                     [](const CAccelerator& a, const CAccelerator& b)
                                     { return a.m_nID == b.m_nID; }),
                         m_Accelerators.end());
    return true;
}

std::string CKRMenuDecorator::GetCommandKey(int32_t nCommand) const
{
    std::string sText;
    const auto it = std::lower_bound(m_Accelerators.begin(), m_Accelerators.end(), nCommand,
                                     [](const CAccelerator& a, int32_t nID) { return a.m_nID < nID; });
    if (nCommand != 0 && it != m_Accelerators.end() && it->m_nID == nCommand)
        GetAcceleratorText(*it, sText);
    return sText;
}

bool CKRMenuDecorator::DecoratePopup(HMenu hMenu, const std::vector<CPopupItem>& items, const IMenuFont& font)
{
    if (!hMenu)
        return false;

    CDecoratedPopup popup;
    int32_t nWidest = 0;
    for (const CPopupItem& item : items)
    {
        const uint32_t nState = (item.m_bSeparator ? eMenuSeparator : 0u) |
                                (item.m_bSubmenu ? eMenuSubmenu : 0u) | (item.m_bDefault ? eMenuDefault : 0u);
        const std::string sText = item.m_sText.substr(0, item.m_sText.find_first_of("\t\n"));
        std::string sKey = GetCommandKey(item.m_nID);
        if (sKey.empty())
            sKey = item.m_sKey;
        popup.m_Items.push_back(std::make_unique<CKRMenuItem>(item.m_nID, nState, sText, std::move(sKey)));
        if (!item.m_bSeparator)
            nWidest = std::max(nWidest, font.Measure(sText, item.m_bDefault).m_nWidth);
    }
    popup.m_nTextColumn = nWidest + c_nMenuTextColumn;
    for (const std::unique_ptr<CKRMenuItem>& pItem : popup.m_Items)
    {
        pItem->MeasureItem(font, popup.m_nTextColumn);
        popup.m_nWidth = std::max(popup.m_nWidth, pItem->GetWidth());
        popup.m_nHeight = std::max(popup.m_nHeight, pItem->GetHeight());
    }
    m_Popups.insert_or_assign(hMenu, std::move(popup));
    return true;
}

const CDecoratedPopup* CKRMenuDecorator::FindPopup(HMenu hMenu) const
{
    const auto it = m_Popups.find(hMenu);
    return it == m_Popups.end() ? nullptr : &it->second;
}

void CKRMenuDecorator::ForgetPopup(HMenu hMenu)
{
    m_Popups.erase(hMenu);
}

bool CKRMenuDecorator::DrawItem(HMenu hMenu, size_t nItem, IShellSurface& surface, const CRect& rc,
                                const CMenuItemState& state, const CShellColors& colors) const
{
    const CDecoratedPopup* pPopup = FindPopup(hMenu);
    if (!pPopup || nItem >= pPopup->m_Items.size())
        return false;
    const CKRMenuItem& item = *pPopup->m_Items[nItem];
    const CMenuItemIcons icons{FindIcon(item.GetID(), EImageKind::eNormal, nullptr, surface.IconGrid()),
                               FindIcon(item.GetID(), EImageKind::eHot, nullptr, surface.IconGrid()),
                               FindIcon(item.GetID(), EImageKind::eDisabled, nullptr, surface.IconGrid())};
    item.DrawItem(surface, rc, state, icons, colors);
    return true;
}

const CPixelImage* CKRMenuDecorator::FindIcon(int32_t nCommand, EImageKind eKind, int32_t* pSize,
                                              int32_t nGrid) const
{
    for (const CKRToolbar* pToolbar : m_Toolbars)
    {
        if (const CPixelImage* pImage = pToolbar->FindImage(nCommand, eKind, nGrid))
        {
            if (pSize)
                *pSize = pImage->m_nSize;
            return pImage;
        }
    }
    return nullptr;
}
