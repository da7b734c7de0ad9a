#pragma once

#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "changes/ImageNodes.h"

class CQSANode;

// Finds out from effect files which types of keys and prefabs there are, and which properties they have, in which
// order. A key on a prefab has but some of them, so that the order is put together from all.
class CTypeCollector
{
public:
    // Of the property that a list tells: its values, null for none. False: it is none.
    static bool ReadProperty(const CQSANode& node, CTypeImage::CProp& prop, const CQSANode*& pValues);

    void Collect(const CQSANode& root);
    void Finish();

    // Of a type that was collected; null: there is none.
    std::shared_ptr<const CTypeImage> Find(const std::string& sType) const;
    uint32_t SlotOf(const std::string& sType, const CTypeImage::CProp& prop) const;

private:
    using CPropName = std::pair<std::string, uint32_t>;
    struct CType
    {
        std::vector<CPropName> m_Order;
        std::map<CPropName, uint32_t> m_Slots;
        std::shared_ptr<CTypeImage> m_pImage;
    };
    void CollectSet(const CQSANode& node);
    void AddProperties(CType& type, const std::vector<CPropName>& props);

    std::unordered_map<std::string, CType> m_Types;
};
