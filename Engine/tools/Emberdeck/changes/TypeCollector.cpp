#include "changes/TypeCollector.h"

#include <algorithm>

#include "formats/NodeFields.h"
#include "model/EffectProperty.h"
#include "model/PropKinds.h"

bool CTypeCollector::ReadProperty(const CQSANode& node, CTypeImage::CProp& prop, const CQSANode*& pValues)
{
    static constexpr CFieldName c_Property = "property";
    static constexpr std::array<CFieldName, 3> c_aNames = {"name", "type", "value-list"};
    if (!IsListNamed(node, c_Property))
        return false;
    bool bWhole = true;
    const CNodeFields<3> fields(node, c_aNames, [&](const CQSANode&) { bWhole = false; });
    const char* pszName = fields.FindValue(0);
    EEffectPropertyType eType = ePropType_None;
    if (!bWhole || !pszName || !ParsePropTypeName(fields.FindValue(1), eType) || !PropKind(eType).m_bValue)
        return false;
    prop = {pszName, static_cast<uint32_t>(eType)};
    pValues = fields.FindList(2);
    return true;
}

// Prefabs and keys, wherever they are.
void CTypeCollector::Collect(const CQSANode& root)
{
    static constexpr CFieldName c_Key = "key", c_Prefab = "prefab";
    std::vector<const CQSANode*> open = {&root};
    while (!open.empty())
    {
        const CQSANode& node = *open.back();
        open.pop_back();
        if (node.IsAtom())
            continue;
        if (IsListNamed(node, c_Key) || IsListNamed(node, c_Prefab))
        {
            CollectSet(node);
            continue;
        }
        for (uint32_t i = node.GetNumElements(); i-- > 0;)
            open.push_back(node.GetElement(i));
    }
}

void CTypeCollector::CollectSet(const CQSANode& node)
{
    static constexpr std::array<CFieldName, 2> c_aNames = {"type", "properties"};
    const CNodeFields<2> fields(node, c_aNames, [](const CQSANode&) {});
    const char* pszType = fields.FindValue(0);
    if (!pszType)
        return;
    CType& type = m_Types[pszType];
    const CQSANode* pProperties = fields.FindList(1);
    std::vector<CPropName> props;
    bool bNew = false;
    for (uint32_t i = 1; pProperties && i < pProperties->GetNumElements(); ++i)
    {
        CTypeImage::CProp prop;
        const CQSANode* pValues = nullptr;
        if (!ReadProperty(*pProperties->GetElement(i), prop, pValues))
            continue;
        props.emplace_back(prop.m_sName, prop.m_eType);
        bNew = type.m_Slots.try_emplace(props.back(), 0).second || bNew;
    }
    if (bNew)
        AddProperties(type, props);
}

// What is new stands before the next one of the set that was known, or at the end.
void CTypeCollector::AddProperties(CType& type, const std::vector<CPropName>& props)
{
    std::vector<CPropName>& order = type.m_Order;
    auto next = order.end();
    for (size_t i = props.size(); i-- > 0;)
    {
        const auto known = std::find(order.begin(), order.end(), props[i]);
        next = known != order.end() ? known : order.insert(next, props[i]);
    }
}

void CTypeCollector::Finish()
{
    for (auto& [sName, type] : m_Types)
    {
        type.m_pImage = std::make_shared<CTypeImage>();
        type.m_pImage->m_sName = sName;
        for (size_t i = 0; i < type.m_Order.size(); ++i)
        {
            type.m_Slots[type.m_Order[i]] = static_cast<uint32_t>(i);
            type.m_pImage->m_Props.push_back({type.m_Order[i].first, type.m_Order[i].second});
        }
    }
}

std::shared_ptr<const CTypeImage> CTypeCollector::Find(const std::string& sType) const
{
    const auto found = m_Types.find(sType);
    return found != m_Types.end() ? found->second.m_pImage : nullptr;
}

uint32_t CTypeCollector::SlotOf(const std::string& sType, const CTypeImage::CProp& prop) const
{
    return m_Types.at(sType).m_Slots.at({prop.m_sName, prop.m_eType});
}
