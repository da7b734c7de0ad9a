#include "changes/LibraryChange.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace
{

size_t MemoryOf(const std::string& sText)
{
    constexpr size_t c_nInline = 15;
    return sText.size() > c_nInline ? sText.size() + 1 : 0;
}

size_t MemoryOf(const std::vector<CPointImage>& points)
{
    size_t nBytes = points.capacity() * sizeof(CPointImage);
    for (const CPointImage& point : points)
        nBytes += point.m_Data.GetMemory();
    return nBytes;
}

size_t MemoryOf(const CSetImage& set)
{
    return MemoryOf(set.m_sName) + MemoryOf(set.m_sParent) + MemoryOf(set.m_Points) +
           set.m_Slots.capacity() * sizeof(CSetImage::CSlot);
}

// Bytes beyond the value itself.
struct CMemoryOf
{
    // Of a node, with what stands before it in memory.
    static constexpr size_t c_nNode = 32;

    template <class T>
    size_t operator()(const T&) const
    {
        return 0;
    }
    size_t operator()(const std::string& sText) const { return MemoryOf(sText); }
    size_t operator()(const CChangeRef& ref) const { return MemoryOf(ref.m_sName); }
    size_t operator()(const CChangePlace& place) const { return MemoryOf(place.m_List.m_sName); }
    size_t operator()(const std::vector<CChangeRef>& refs) const
    {
        size_t nBytes = refs.capacity() * sizeof(CChangeRef);
        for (const CChangeRef& ref : refs)
            nBytes += MemoryOf(ref.m_sName);
        return nBytes;
    }
    size_t operator()(const CChangePoints& points) const { return MemoryOf(points.m_Points); }
    size_t operator()(const CItemImage& item) const { return MemoryOf(item.m_sText); }
    size_t operator()(const std::shared_ptr<const CSetImage>& p) const
    {
        return p ? c_nNode + sizeof(*p) + MemoryOf(*p) : 0;
    }
    size_t operator()(const std::shared_ptr<const CKeyImage>& p) const
    {
        return p ? c_nNode + sizeof(*p) + MemoryOf(*p) : 0;
    }
    size_t operator()(const std::shared_ptr<const CTrackImage>& p) const
    {
        size_t nBytes = p ? c_nNode + sizeof(*p) : 0;
        for (size_t i = 0; p && i < p->m_Keys.size(); ++i)
            nBytes += sizeof(p->m_Keys[i]) + (*this)(p->m_Keys[i]);
        return nBytes;
    }
    size_t operator()(const std::shared_ptr<const CSpellImage>& p) const
    {
        size_t nBytes = p ? c_nNode + sizeof(*p) + MemoryOf(p->m_sName) : 0;
        for (size_t i = 0; p && i < p->m_Tracks.size(); ++i)
            nBytes += sizeof(p->m_Tracks[i]) + (*this)(p->m_Tracks[i]);
        return nBytes;
    }
};

// An object's own field: nothing else changes with it.
bool IsField(EDifference eKind)
{
    switch (eKind)
    {
    case EDifference::eEffectName:
    case EDifference::eEffectLength:
    case EDifference::eKeyID:
    case EDifference::eKeyStart:
    case EDifference::eKeyEnd:
    case EDifference::eKeyLink:
    case EDifference::eSetName:
    case EDifference::eSetParent:
    case EDifference::eSetValue:
    case EDifference::eItemText:
        return true;
    default:
        return false;
    }
}

bool IsSamePoints(const CChangePoints& left, const CChangePoints& right)
{
    return left.m_nFirst == right.m_nFirst &&
           std::equal(left.m_Points.begin(), left.m_Points.end(), right.m_Points.begin(),
                      right.m_Points.end(), IsSamePoint);
}

// Of two values of a field.
bool IsSameValue(const CChangeValue& left, const CChangeValue& right)
{
    if (left.index() != right.index())
        return false;
    if (const auto* p = std::get_if<int64_t>(&left))
        return *p == std::get<int64_t>(right);
    if (const auto* p = std::get_if<std::string>(&left))
        return *p == std::get<std::string>(right);
    if (const auto* p = std::get_if<CChangeRef>(&left))
        return p->m_nSerial == std::get<CChangeRef>(right).m_nSerial;
    if (const auto* p = std::get_if<CChangePoints>(&left))
        return IsSamePoints(*p, std::get<CChangePoints>(right));
    return std::holds_alternative<std::monostate>(left);
}

using CFieldOf = std::tuple<EDifference, ETreeSide, uint64_t, uint32_t>;

CFieldOf FieldOf(const CDifference& d)
{
    return {d.m_eKind, d.m_eSide, d.m_Object.m_nSerial, d.m_nSlot};
}

} // namespace

size_t CDifference::GetMemory() const
{
    return sizeof(*this) + MemoryOf(m_Effect.m_sName) + MemoryOf(m_Object.m_sName) + MemoryOf(m_sProperty) +
           MemoryOf(m_Place.m_List.m_sName) + std::visit(CMemoryOf(), m_Before) +
           std::visit(CMemoryOf(), m_After);
}

size_t CLibraryChange::GetMemory() const
{
    size_t nBytes = sizeof(*this);
    for (const CDifference& difference : m_Differences)
        nBytes += difference.GetMemory();
    return nBytes;
}

CLibraryChange CLibraryChange::TurnedRound() const
{
    CLibraryChange turned;
    turned.m_Differences.assign(m_Differences.rbegin(), m_Differences.rend());
    for (CDifference& difference : turned.m_Differences)
        std::swap(difference.m_Before, difference.m_After);
    return turned;
}

CLibraryChange CLibraryChange::Joined(const CLibraryChange& next) const
{
    const auto isField = [](const CDifference& difference) { return IsField(difference.m_eKind); };
    const bool bFields = std::all_of(m_Differences.begin(), m_Differences.end(), isField) &&
                         std::all_of(next.m_Differences.begin(), next.m_Differences.end(), isField);
    CLibraryChange joined = *this;
    std::map<CFieldOf, size_t> last; // the last difference of each field
    for (size_t i = 0; bFields && i < joined.m_Differences.size(); ++i)
        last[FieldOf(joined.m_Differences[i])] = i;
    for (const CDifference& difference : next.m_Differences)
    {
        const auto same = last.find(FieldOf(difference));
        CDifference* pSame = same != last.end() ? &joined.m_Differences[same->second] : nullptr;
        // Of values only the same run: of others nobody knows what lies between.
        if (pSame && IsSameValue(pSame->m_After, difference.m_Before))
        {
            pSame->m_After = difference.m_After;
            continue;
        }
        if (bFields)
            last[FieldOf(difference)] = joined.m_Differences.size();
        joined.m_Differences.push_back(difference);
    }
    std::erase_if(joined.m_Differences, [&](const CDifference& difference)
                  { return isField(difference) && IsSameValue(difference.m_Before, difference.m_After); });
    return joined;
}
