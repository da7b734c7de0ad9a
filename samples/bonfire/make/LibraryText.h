// SPDX-License-Identifier: 0BSD
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "effecttypes.h"

// An effect library on its way into a text file: just enough to write one by hand.

// The atoms of a value, as the file has them.
std::string Text(std::string_view s);
std::string Number(int32_t n);
std::string Number(double f);
std::string Vector(double x, double y, double z);
std::string Color(int r, int g, int b, int a = 255);

struct CTimed
{
    double m_fTime; // 0 to 1
    std::string m_sAtoms;
};
using CTimedList = std::vector<CTimed>;

// A prefab, or what a key has for itself. A property that isn't set and has no prefab to come from takes the
// plug-in's default.
struct CSet
{
    std::string m_sName;
    const CEffectTypeDesc* m_pType = nullptr;
    std::map<uint32_t, CTimedList> m_Values; // by slot

    // Ends the program when the type has no such property, or the values don't suit its form.
    CSet& Set(std::string_view sProperty, CTimedList values);
    CSet& Set(std::string_view sProperty, std::string sAtoms); // from start to end
    CSet& Named(std::string_view sName);
    void SetSlot(uint32_t nSlot, CTimedList values);
    void FillWithDefaults();
};

struct CKeyText : CSet
{
    int32_t m_nID = 0;
    int32_t m_nStart = 0, m_nEnd = 0; // milliseconds
    int32_t m_nTrack = 0;
    const CSet* m_pPrefab = nullptr;
    std::optional<int32_t> m_nLink;

    // Whether the editor takes this one as the target of a motion link from the other, with the room at either
    // end that it keeps from then on.
    bool Holds(const CKeyText& other) const;
    // Ends the program when the target doesn't hold this key.
    CKeyText& LinkTo(const CKeyText& target);
    // The values in force at a slot: its own or its prefab's. Null for none.
    const CTimedList* InForce(uint32_t nSlot) const;
};

struct CEffectText
{
    std::string m_sName;
    int32_t m_nLength = 0;
    std::vector<std::unique_ptr<CKeyText>> m_Keys;

    CKeyText& Key(const CEffectTypeDesc& type, int32_t nTrack, int32_t nStart, int32_t nEnd);
    CKeyText& Key(const CSet& prefab, int32_t nTrack, int32_t nStart, int32_t nEnd);
    // By track, then by start. Ends the program when two keys of a track overlap.
    std::vector<const CKeyText*> InFileOrder() const;
};

// A group holds groups and leaves in one order; a leaf is an effect or a prefab.
template <class TLeaf>
struct CGroup
{
    struct CItem
    {
        std::unique_ptr<CGroup> m_pGroup;
        std::unique_ptr<TLeaf> m_pLeaf;
    };
    std::string m_sName;
    std::vector<CItem> m_Items;

    CGroup& Group(std::string_view sName)
    {
        m_Items.push_back({std::make_unique<CGroup>(), nullptr});
        m_Items.back().m_pGroup->m_sName = sName;
        return *m_Items.back().m_pGroup;
    }
    TLeaf& Leaf(std::string_view sName)
    {
        m_Items.push_back({nullptr, std::make_unique<TLeaf>()});
        m_Items.back().m_pLeaf->m_sName = sName;
        return *m_Items.back().m_pLeaf;
    }
};

struct CLibrary
{
    explicit CLibrary(const CEffectTypeTable& types) : m_Types(types) {}

    const CEffectTypeTable& m_Types;
    CGroup<CSet> m_Prefabs{"[Prefabs]", {}};
    CGroup<CEffectText> m_Effects{"[Effects]", {}};

    // Ends the program when there is no such type.
    const CEffectTypeDesc& Type(std::string_view sName) const;
    CSet& Prefab(CGroup<CSet>& group, std::string_view sName, std::string_view sType);
    CEffectText& Effect(CGroup<CEffectText>& group, std::string_view sName, int32_t nLength);

    // Fills what isn't set, and gives the file.
    std::string Write();
};

// The two libraries of the sample.
CLibrary MakeBonfire(const CEffectTypeTable& types);
CLibrary MakeInferno(const CEffectTypeTable& types);
