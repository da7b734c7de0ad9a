#include "changes/SameContent.h"

#include <algorithm>

#include "changes/Apply.h"
#include "qsnumber.h"

bool IsSameWritten(const CPointImage& left, const CPointImage& right, uint32_t eType)
{
    if (IsSamePoint(left, right))
        return true;
    const auto same = [](float a, float b)
    { return QSFixedText(QSNearestFloat(a), 6) == QSFixedText(QSNearestFloat(b), 6); };
    if (!same(left.m_fTime, right.m_fTime))
        return false;
    const CPropData& a = left.m_Data;
    const CPropData& b = right.m_Data;
    if (IsTextKind(eType))
        return a.GetText() == b.GetText();
    if (eType == ePropType_Float)
        return same(a.GetFloat(), b.GetFloat());
    if (eType == ePropType_Vector)
        return same(a.GetVector().x, b.GetVector().x) && same(a.GetVector().y, b.GetVector().y) &&
               same(a.GetVector().z, b.GetVector().z);
    return a.GetInt() == b.GetInt(); // of a colour the word; None and UI have no other form
}
namespace
{

// The slot of the same property; null: empty. Another plug-in may have it at another place.
const CSetImage::CSlot* FindLike(const CSetImage& set, const CTypeImage::CProp& prop, uint32_t nSlot)
{
    const auto isIt = [&](const CSetImage::CSlot& slot)
    { return set.m_pType->m_Props[slot.m_nSlot] == prop; };
    const CSetImage::CSlot* pSlot = set.FindSlot(nSlot);
    if (pSlot && isIt(*pSlot))
        return pSlot;
    const auto found = std::find_if(set.m_Slots.begin(), set.m_Slots.end(), isIt);
    return found != set.m_Slots.end() ? &*found : nullptr;
}

} // namespace

bool IsSameContent(const CSetImage& left, const CSetImage& right)
{
    if (left.m_sName != right.m_sName || left.m_nParent != right.m_nParent ||
        left.m_Slots.size() != right.m_Slots.size() || !left.m_pType || !right.m_pType ||
        left.m_pType->m_sName != right.m_pType->m_sName)
        return false;
    for (const CSetImage::CSlot& a : left.m_Slots)
    {
        const CTypeImage::CProp& prop = left.m_pType->m_Props[a.m_nSlot];
        const CSetImage::CSlot* pB = FindLike(right, prop, a.m_nSlot);
        if (!pB || a.m_nCount != pB->m_nCount)
            return false;
        for (uint32_t k = 0; k < a.m_nCount; ++k)
        {
            if (!IsSameWritten(left.m_Points[a.m_nFirst + k], right.m_Points[pB->m_nFirst + k], prop.m_eType))
                return false;
        }
    }
    return true;
}

bool IsSameContent(const CKeyImage& left, const CKeyImage& right)
{
    return left.m_nKeyID == right.m_nKeyID && left.m_nStartTime == right.m_nStartTime &&
           left.m_nEndTime == right.m_nEndTime && left.m_bMotionLinked == right.m_bMotionLinked &&
           left.m_nMotionLinkID == right.m_nMotionLinkID &&
           IsSameContent(static_cast<const CSetImage&>(left), static_cast<const CSetImage&>(right));
}

bool IsSameContent(const CTrackImage& left, const CTrackImage& right)
{
    return std::equal(left.m_Keys.begin(), left.m_Keys.end(), right.m_Keys.begin(), right.m_Keys.end(),
                      [](const auto& a, const auto& b)
                      { return a->m_nSerial == b->m_nSerial && IsSameContent(*a, *b); });
}

bool IsSameContent(const CSpellImage& left, const CSpellImage& right)
{
    return left.m_sName == right.m_sName && left.m_nPhaseLength == right.m_nPhaseLength &&
           std::equal(left.m_Tracks.begin(), left.m_Tracks.end(), right.m_Tracks.begin(),
                      right.m_Tracks.end(),
                      [](const auto& a, const auto& b)
                      { return a->m_nSerial == b->m_nSerial && IsSameContent(*a, *b); });
}
