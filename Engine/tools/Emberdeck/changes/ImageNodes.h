#pragma once

#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "model/PropData.h"

// The nodes of a picture of a library. None changes once it is made, so that pictures and changes share them; none
// points into the model or the plug-in, so that they outlive both.
//
// Numbers of effects, prefabs, tracks and keys are their serials (model/Serial.h), those of tree items their handles.
// 0 stands for none.

enum class ETreeSide : uint8_t
{
    eEffects,
    ePrefabs
};
constexpr ETreeSide c_TreeSides[] = {ETreeSide::eEffects, ETreeSide::ePrefabs};
constexpr size_t c_nNumSides = std::size(c_TreeSides);

// A type of keys and prefabs, by names.
struct CTypeImage
{
    struct CProp
    {
        std::string m_sName;
        uint32_t m_eType = 0; // EEffectPropertyType
        friend bool operator==(const CProp&, const CProp&) = default;
    };
    std::string m_sName;
    std::vector<CProp> m_Props; // by slot
    friend bool operator==(const CTypeImage&, const CTypeImage&) = default;
};

// One timed value. All bytes of the payload are kept, so that what is put back packs as it did.
struct CPointImage
{
    float m_fTime = 0.0f;
    CPropData m_Data;
};

// What a key or prefab has for itself.
struct CSetImage
{
    struct CSlot // a slot that isn't empty
    {
        uint32_t m_nSlot;
        uint32_t m_nFirst; // of m_Points
        uint32_t m_nCount;
    };

    uint64_t m_nSerial = 0;
    std::shared_ptr<const CTypeImage> m_pType; // null: it has none
    std::string m_sName;
    uint64_t m_nParent = 0;     // the prefab that it stands on
    std::string m_sParent;      // what that was called when the node was made; says nothing else
    std::vector<CSlot> m_Slots; // by slot, ascending
    std::vector<CPointImage> m_Points;

    const CSlot* FindSlot(uint32_t nSlot) const; // null: empty
};

struct CKeyImage : CSetImage
{
    uint32_t m_nKeyID = 0;
    int32_t m_nStartTime = 0;
    int32_t m_nEndTime = 0;
    bool m_bMotionLinked = false;
    uint32_t m_nMotionLinkID = 0;
};

struct CTrackImage
{
    uint64_t m_nSerial = 0;
    std::vector<std::shared_ptr<const CKeyImage>> m_Keys;
};

struct CSpellImage
{
    uint64_t m_nSerial = 0;
    std::string m_sName;
    int32_t m_nPhaseLength = 0;
    std::vector<std::shared_ptr<const CTrackImage>> m_Tracks;
};

// A tree item, as its parent's list has it.
struct CItemImage
{
    uint32_t m_nItem = 0; // the handle
    std::string m_sText;
    int m_nImage = 0;
    int m_nSelectedImage = 0;
    uint64_t m_nObject = 0; // serial of the effect or prefab that it stands for
    friend bool operator==(const CItemImage&, const CItemImage&) = default;
};

// The children of an item, or the roots.
struct CGroupImage
{
    uint32_t m_nItem = 0; // 0: the roots
    std::vector<CItemImage> m_Children;
};

// One side's tree: each item that has children, and the roots, by handle ascending. Flat, however deep the tree.
using CTreeImage = std::vector<std::shared_ptr<const CGroupImage>>;
const CGroupImage* FindGroup(const CTreeImage& tree, uint32_t nItem); // null: it has no children

// The same to the bit, serials and types aside; two sets of one object at two times.
bool IsSamePoint(const CPointImage& left, const CPointImage& right);
bool IsSameSet(const CSetImage& left, const CSetImage& right);
bool IsSameKey(const CKeyImage& left, const CKeyImage& right);
