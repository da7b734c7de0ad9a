#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "effecttypes.h"
#include "model/PropData.h"

// One timed value. m_fTime is normalised to the key's length, 0 to 1.
struct CPropKey
{
    float m_fTime = 0.0f;
    bool m_bSelected = false; // in the curve dialog; in no file
    CPropData m_Data;         // 256 bytes, all zero at first
};

// The keys of one property. Nearly all have one value only, which then needs no memory of its own. Indexes are below
// Size; nothing checks them. A pointer or reference to a key is good until the next change of the list. What adds
// may throw std::bad_alloc, and the list is then as it was.
class CPropKeyList
{
public:
    CPropKeyList() = default;
    CPropKeyList(const CPropKeyList& other); // may throw std::bad_alloc, as Add and the assignment do
    CPropKeyList& operator=(const CPropKeyList& other);
    CPropKeyList(CPropKeyList&& other) noexcept; // leaves other empty
    CPropKeyList& operator=(CPropKeyList&& other) noexcept;

    uint32_t Size() const { return m_nCount; }
    CPropKey* begin() { return m_pMany ? m_pMany.get() : &m_One; }
    CPropKey* end() { return begin() + m_nCount; }
    CPropKey& operator[](uint32_t nIndex) { return begin()[nIndex]; }

    void Reserve(uint32_t nCount);
    void Add(const CPropKey& key); // behind the last one
    void Add(CPropKey&& key);
    void Remove(uint32_t nIndex);
    void Shorten(uint32_t nCount); // to the first nCount
    void Clear();                  // gives the memory back

private:
    CPropKey& Append();

    std::unique_ptr<CPropKey[]> m_pMany; // all keys, once there has been more than one
    uint32_t m_nCount = 0;
    uint32_t m_nCapacity = 1;
    CPropKey m_One;
};

// The range in an Int's, Float's or Vector's text: a minimum, a semicolon, a maximum, either of which may be
// missing. A side of blanks only isn't missing, it is 0. Without a semicolon, and for null, there is no range.
struct CPropRange
{
    bool m_bHasMin = false;
    float m_fMin = 0.0f;
    bool m_bHasMax = false;
    float m_fMax = 0.0f;
};
CPropRange ParseRange(const char* pszData);

// A descriptor with its values, sorted by time. A plain value is a list of one, a function curve a
// list of its control points. The descriptor belongs to the plug-in and is never looked at by the
// destructor, so a property may outlive it.
//
// Pointers to a property that a set owns die when the slot is filled anew, so rows and dialogs keep the set and an
// index. Nothing here throws but the copies.
class CEffectProperty
{
public:
    explicit CEffectProperty(
        const CEffectPropertyDesc* pDesc); // null is reported; the property has no kind then
    CEffectProperty(const CEffectProperty&) = default;
    CEffectProperty& operator=(const CEffectProperty&) = default; // takes the descriptor too

    const CEffectPropertyDesc* GetDesc() const { return m_pDesc; }

    uint32_t GetNumKeys() const { return m_Keys.Size(); }
    // Null at and beyond GetNumKeys. The pointer dies with the next change of the list. A time that is
    // changed through it puts nothing in order until SortKeys, AddKey or a validation runs.
    CPropKey* GetKey(uint32_t nIndex);
    const CPropKey* GetKey(uint32_t nIndex) const;
    // A copy, placed by time behind those of equal time. Costs no search when the key comes last, as it
    // does in a saved file. Without memory it isn't added.
    void AddKey(const CPropKey& key);
    void AddKey(CPropKey&& key);       // the same; the payload moves
    void ReserveKeys(uint32_t nCount); // room for so many in all, to save time; nothing without memory
    void AddDefaultKey(float fTime);   // with the descriptor's default; all zero without a descriptor
    void RemoveKey(uint32_t nIndex);   // out of range: nothing
    void ClearKeys();
    // The list as a whole, as it stands, in order of time or not.
    CPropKeyList TakeKeys();
    void SetKeys(CPropKeyList keys);
    void SortKeys(); // stable, by time; a time that is no number goes last

private:
    // What is known of the order of m_Keys. A key that AddKey put behind a later one is only brought to
    // its place when somebody looks, so that a long list in any order costs one sort.
    enum EOrder : uint8_t
    {
        eOrder_Unknown, // a pointer was given out, times may have changed
        eOrder_Sorted,
        eOrder_Pending,
    };
    void SortPending() const
    {
        if (m_eOrder == eOrder_Pending)
            SortNow();
    }
    void SortNow() const;

    void NoteAdded();

    friend void ValidateStructure(CEffectProperty* pProp);
    friend void SettleStructure(CEffectProperty* pProp);
    friend void ClampToRange(CEffectProperty* pProp, const CPropRange& range);
    friend bool IsSettled(const CEffectProperty& prop, const CPropRange& range);

    const CEffectPropertyDesc* m_pDesc;
    mutable CPropKeyList m_Keys;
    mutable EOrder m_eOrder = eOrder_Sorted;
};

bool HasValue(const CEffectProperty* pProp); // null, None and UI have none

// Three passes that bring stored values back in line with their descriptor; Validate runs all
// three in this order. A null property is left alone, and so is one without a descriptor. They change values in
// place and never fail.
//   ValidateStructure  the number of keys that the kind and the curve ask for, times from 0 to 1
//   ClampToRange       each value within the range of the descriptor's text
//   ValidateEnum       an Enum's text one of its enumerators, else the default
void ValidateStructure(CEffectProperty* pProp);
void ClampToRange(CEffectProperty* pProp);
void ValidateEnum(CEffectProperty* pProp);
void Validate(CEffectProperty* pProp);
// ValidateStructure as often as it changes something, which it does once for each key beyond the curve's ends:
// the key that is pinned on an end lets the next one come outermost. Times are finite first, the nearest one.
void SettleStructure(CEffectProperty* pProp);

// The same for whoever goes through many properties, and has read the range of each descriptor once.
CPropRange DescRange(const CEffectPropertyDesc& desc); // no range for kinds that have none
void ClampToRange(CEffectProperty* pProp, const CPropRange& range);
void Validate(CEffectProperty* pProp, const CPropRange& range);
// Whether that would surely change nothing, found out without a copy. Values that still wait to be put in order by
// time may be in line without it.
bool IsSettled(const CEffectProperty& prop, const CPropRange& range);

// Index of a value in a comma-separated list, both trimmed, without regard to case; -1 when absent. Nothing
// between two commas is an item, nothing behind the last one isn't. Null counts as empty.
int FindEnumIndex(const char* pszList, const char* pszValue);
// The items of such a list as a list box shows them: untrimmed.
std::vector<std::string> SplitEnumList(const char* pszList);

// As values of the kind Int are made from floats:
int32_t RoundToInt(float fValue); // halves away from zero; the nearest end beyond 32 bits, 0 for NaN

const char* GetPropTypeName(uint32_t eType); // the text format's name; "Unknown", reported, for others
// The kind of such a name, without regard to case; false, eType left alone, for others and null.
bool ParsePropTypeName(const char* pszName, EEffectPropertyType& eType);
bool IsTextKind(uint32_t eType); // String, Filename, Enum, Animation, FireglassRef

// Same value by the rule of a kind: texts exactly, numbers by ==, colours as whole words.
// A kind without a form is reported and never equal.
bool IsSameValue(uint32_t eType, const CPropData& left, const CPropData& right);

// Bounded reads of a descriptor's fixed-size texts: at most 127 or 255 bytes, NUL or not.
std::string DescName(const CEffectPropertyDesc& desc);
std::string DescData(const CEffectPropertyDesc& desc);
std::string DescHelp(const CEffectPropertyDesc& desc);
std::string TypeName(const CEffectTypeDesc& desc);
