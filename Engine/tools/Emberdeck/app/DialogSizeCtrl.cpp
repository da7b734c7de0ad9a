#include "app/DialogSizeCtrl.h"

#include <algorithm>

#include "qsassert.h"

namespace
{

// One axis of a rectangle; 64 bits, so that no size of a window overflows.
struct CSpan
{
    int64_t m_nLow;
    int64_t m_nHigh;
};

int32_t ToPixel(int64_t nValue)
{
    return static_cast<int32_t>(std::clamp<int64_t>(nValue, INT32_MIN, INT32_MAX));
}

int64_t HalfGrowth(CSpan initial, CSpan now)
{
    return (initial.m_nLow - initial.m_nHigh - now.m_nLow + now.m_nHigh) / 2;
}

int32_t PlaceLow(int64_t nEdge, int8_t nAnchor, CSpan initial, CSpan now)
{
    switch (nAnchor)
    {
    case 1:
        return ToPixel(nEdge - initial.m_nHigh + now.m_nHigh);
    case 2:
        return ToPixel(nEdge + HalfGrowth(initial, now));
    default:
        return ToPixel(nEdge - initial.m_nLow);
    }
}

int32_t PlaceHigh(int64_t nEdge, int8_t nAnchor, CSpan initial, CSpan now)
{
    switch (nAnchor)
    {
    case 1:
        return ToPixel(nEdge - initial.m_nLow);
    case 2:
        return ToPixel(nEdge + HalfGrowth(initial, now));
    default:
        return ToPixel(nEdge - initial.m_nHigh + now.m_nHigh);
    }
}

} // namespace

bool DialogSizeCtrl::Initialize(IDialogControls* pParent)
{
    QS_ASSERT(pParent);
    m_pParent = pParent;
    if (pParent)
        m_rcInitial = pParent->GetClientRect();
    return true;
}

bool DialogSizeCtrl::AddControl(uint32_t nID, int8_t nLeft, int8_t nTop, int8_t nRight, int8_t nBottom)
{
    CRect rc;
    if (!m_pParent || !m_pParent->GetControlRect(nID, rc))
        return false;
    m_Items.push_back({nID, nLeft, nTop, nRight, nBottom, rc});
    return true;
}

void DialogSizeCtrl::OnParentSize()
{
    if (!m_pParent)
        return;
    const CRect rcNow = m_pParent->GetClientRect();
    const CSpan x0 = {m_rcInitial.left, m_rcInitial.right};
    const CSpan y0 = {m_rcInitial.top, m_rcInitial.bottom};
    const CSpan x1 = {rcNow.left, rcNow.right};
    const CSpan y1 = {rcNow.top, rcNow.bottom};
    for (const CItem& item : m_Items)
    {
        CRect rc;
        if (!m_pParent->GetControlRect(item.m_nID, rc))
            continue;
        rc.left = PlaceLow(item.m_rcInitial.left, item.m_nLeft, x0, x1);
        rc.top = PlaceLow(item.m_rcInitial.top, item.m_nTop, y0, y1);
        rc.right = PlaceHigh(item.m_rcInitial.right, item.m_nRight, x0, x1);
        rc.bottom = PlaceHigh(item.m_rcInitial.bottom, item.m_nBottom, y0, y1);
        m_pParent->MoveControl(item.m_nID, rc);
    }
}
