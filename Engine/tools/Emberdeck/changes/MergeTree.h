#pragma once

#include <array>
#include <map>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "changes/MergeParts.h"

// One side's tree in one state. Items have numbers that mean the same in all states: a leaf goes by what it stands
// for, since it may be in another group, anything else by its handle, or that of its like.
struct CTreeState
{
    static constexpr uint64_t c_nLeaf = uint64_t(1) << 63;
    struct CNode
    {
        uint64_t m_nParent = 0; // 0: a root
        CItemImage m_Item;
    };

    std::unordered_map<uint64_t, CNode> m_Nodes;
    std::unordered_map<uint64_t, std::vector<uint64_t>> m_Children;
    std::vector<uint64_t> m_Order; // parents before their children

    const CNode* Find(uint64_t n) const
    {
        const auto found = m_Nodes.find(n);
        return found != m_Nodes.end() ? &found->second : nullptr;
    }
};

// Merges one of the trees.
class CTreeMerge
{
public:
    CTreeMerge(ETreeSide eSide, const CThree<CLibraryImage>& images);

    // Whether the object is in another group in that state than in the base.
    bool IsMoved(uint64_t nObject, size_t nState) const;
    // What is in the merged library: its name, and of what both sides made under one name whose it is.
    struct CObject
    {
        std::string m_sName;
        std::optional<EMergeSide> m_Whose;
    };
    using CObjects = std::unordered_map<uint64_t, CObject>;
    CTreeImage Run(const CObjects& objects, CMergeNotes& notes);

private:
    using CNode = CTreeState::CNode;
    struct CMergedNode
    {
        uint64_t m_nParent = 0;
        CItemImage m_Item;
        size_t m_nFrom = eState_Mine; // the state that says where it is
        bool m_bNewThere = false;     // and it put it there
    };

    void Fill(size_t nState);
    uint64_t NumberOf(size_t nState, uint64_t nParent, bool bFirst, const CItemImage& item);
    uint64_t LikeInMine(uint64_t nParent, const CItemImage& item);
    uint64_t FirstRoot(size_t nState) const;

    void MergeLeaf(uint64_t n, const CObject& object, CMergeNotes& notes);
    void MergeGroup(uint64_t n, CMergeNotes& notes);
    void AskForGroup(uint64_t n, CMergeNotes& notes);
    void Revive(uint64_t n);
    void FindHomes();
    CTreeImage Build();
    std::vector<uint64_t> MergeChildren(uint64_t nGroup, std::vector<uint64_t> children) const;
    CDifference About(uint64_t n) const;
    CChangeRef RefOf(uint64_t n) const;
    std::string TextOf(uint64_t n) const;

    const ETreeSide m_eSide;
    const CThree<CLibraryImage>& m_Images;
    std::array<CTreeState, c_nNumStates> m_States;
    std::unordered_map<uint32_t, uint64_t> m_BaseNumbers; // of the base's items
    // Mine's new ones of a parent, by image and name, as yet nobody's like.
    std::unordered_map<uint64_t, std::map<std::pair<int, std::string>, std::vector<uint64_t>>> m_Likes;
    std::unordered_set<uint64_t> m_Used;
    uint32_t m_nFree = 1;
    std::unordered_map<uint64_t, CMergedNode> m_Merged;
    std::vector<uint64_t> m_MergedOrder;
    std::unordered_set<uint64_t> m_Refused; // gone groups that have been asked for
};
