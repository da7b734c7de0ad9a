#include <algorithm>
#include <utility>

#include "formats/PropertyLoader.h"
#include "model/MakeOrNull.h"
#include "model/NameIndex.h"
#include "model/PropKinds.h"
#include "qsassert.h"

namespace
{

constexpr CFieldName c_PropertyName = "property";
constexpr CFieldName c_ValueName = "value";

// Whether the list has nCount atoms behind its name.
bool HasAtoms(const CQSANode& list, uint32_t nCount)
{
    if (list.IsAtom() || list.GetNumElements() < nCount + 1)
        return false;
    for (uint32_t i = 1; i <= nCount; ++i)
    {
        if (!list.GetElement(i)->IsAtom())
            return false;
    }
    return true;
}

uint32_t ReadChannel(const CQSANode& data, uint32_t nElement)
{
    return static_cast<uint32_t>(QSTextToInt(data.GetElement(nElement)->GetValue())) & 0xFF;
}

float ReadComponent(const CQSANode& data, uint32_t nElement)
{
    return QSTextToFloat(data.GetElement(nElement)->GetValue());
}

} // namespace

bool LoadPropertyValue(const CQSANode* pData, EEffectPropertyType eType, CPropKey& key)
{
    QS_ASSERT_MSG(pData, "Error: Invalid parameters passed into LoadPropertyValue");
    if (!pData)
        return false;
    const uint32_t nAtoms = PropKind(eType).m_nAtoms;
    if (nAtoms == 0)
    {
        QS_ASSERT_FORCED("Error: Unexpected property value");
        return true;
    }
    if (!HasAtoms(*pData, nAtoms))
        return false;

    const CQSANode& data = *pData;
    switch (PropKind(eType).m_eForm)
    {
    case EPropForm::eInt:
        key.m_Data.SetInt(QSTextToInt(data.GetElement(1)->GetValue()));
        break;
    case EPropForm::eFloat:
        key.m_Data.SetFloat(ReadComponent(data, 1));
        break;
    case EPropForm::eVector:
        key.m_Data.SetVector({ReadComponent(data, 1), ReadComponent(data, 2), ReadComponent(data, 3)});
        break;
    case EPropForm::eColor:
        key.m_Data.SetColor(MakePropColor(ReadChannel(data, 1), ReadChannel(data, 2), ReadChannel(data, 3),
                                          ReadChannel(data, 4)));
        break;
    default:
        key.m_Data.SetText(data.GetElement(1)->GetValue());
        break;
    }
    return true;
}

bool CPropertyLoader::LoadProperties(const CQSANode* pProperties, CEffectPropertySet& set)
{
    CTypeInfo& type = TypeInfo(set.m_pTypeDesc);
    type.m_nNext = 0;
    for (uint32_t i = 1; pProperties && i < pProperties->GetNumElements(); ++i)
    {
        const CQSANode& node = *pProperties->GetElement(i);
        if (!IsListNamed(node, c_PropertyName))
        {
            if (m_Findings)
                m_Findings.TellSkipped(node);
            continue;
        }
        std::unique_ptr<CEffectProperty> pProp;
        if (!LoadProperty(node, type, pProp))
            return false;
        if (m_Findings && pProp)
        {
            const auto nSlot = static_cast<uint32_t>(pProp->GetDesc() - set.m_pTypeDesc->m_pProps);
            if (set.GetPropertyDirect(nSlot))
                m_Findings.Tell(QSFormat("Property %s stands here twice; the last one counts.",
                                         DescName(*pProp->GetDesc()).c_str()));
        }
        if (pProp)
            set.AddProperty(pProp); // one that is refused goes with pProp
    }
    return true;
}

CPropertyLoader::CTypeInfo& CPropertyLoader::TypeInfo(const CEffectTypeDesc* pTypeDesc)
{
    if (m_pLastType && m_pLastType->m_pTypeDesc == pTypeDesc)
        return *m_pLastType;
    CTypeInfo& type = m_Types[pTypeDesc];
    m_pLastType = &type;
    if (type.m_pTypeDesc || !pTypeDesc)
        return type;
    type.m_Props.reserve(pTypeDesc->m_nNumProps);
    for (uint32_t i = 0; i < pTypeDesc->m_nNumProps; ++i)
    {
        const CEffectPropertyDesc& desc = pTypeDesc->m_pProps[i];
        const std::string_view sName = BoundedText(desc.m_szName);
        const bool bFindable = m_Module.FindPropertyIndex(pTypeDesc, sName) == static_cast<int>(i);
        type.m_Props.push_back({sName, bFindable, DescRange(desc)});
    }
    type.m_pTypeDesc = pTypeDesc;
    return type;
}

// A saved file has the properties in the order of their descriptors.
int CPropertyLoader::FindProperty(CTypeInfo& type, const char* pszName) const
{
    const std::string_view sName = pszName;
    int nIndex = -1;
    if (type.m_nNext < type.m_Props.size() && type.m_Props[type.m_nNext].m_bFindable &&
        type.m_Props[type.m_nNext].m_sName == sName)
        nIndex = static_cast<int>(type.m_nNext);
    else
        nIndex = m_Module.FindPropertyIndex(type.m_pTypeDesc, sName);
    type.m_nNext = static_cast<uint32_t>(nIndex + 1);
    return nIndex;
}

bool CPropertyLoader::LoadProperty(const CQSANode& node, CTypeInfo& type,
                                   std::unique_ptr<CEffectProperty>& pProp)
{
    static constexpr std::array<CFieldName, 3> c_aNames = {"name", "type", "value-list"};
    const CNodeFields<3> fields(node, c_aNames, TellingSkipped());
    const char* pszName = FindValue(fields, 0);
    const char* pszType = FindValue(fields, 1);
    if (!pszName || !pszType)
    {
        AppendError("Error loading name or type for property");
        return false;
    }
    EEffectPropertyType eType = ePropType_None;
    if (!ParsePropTypeName(pszType, eType))
    {
        if (m_Findings)
            m_Findings.Tell(
                QSFormat("Property %s has the unknown kind %s; it was dropped.", pszName, pszType));
        return true;
    }
    const int nIndex = FindProperty(type, pszName);
    if (nIndex < 0)
    {
        if (m_Findings)
            m_Findings.Tell(QSFormat("The type has no property %s; it was dropped.", pszName));
        return true;
    }
    const CEffectPropertyDesc& desc = type.m_pTypeDesc->m_pProps[nIndex];
    pProp = MakeOrNull<CEffectProperty>(&desc);
    if (!pProp)
    {
        AppendError("Unable to allocate memory for property %s", pszName);
        return false;
    }
    if (m_Findings && desc.m_eType != static_cast<uint32_t>(eType))
    {
        m_Findings.Tell(
            QSFormat("Property %s is stored as %s, which is no longer its kind; its bytes were kept.",
                     pszName, pszType));
    }
    if (const CQSANode* pValueList = fields.FindList(2))
        LoadValues(*pValueList, eType, *pProp);
    return true;
}

void CPropertyLoader::LoadValues(const CQSANode& valueList, EEffectPropertyType eType, CEffectProperty& prop)
{
    // What isn't a value takes no room, so a list of much else isn't believed to the end.
    constexpr uint32_t c_nMaxReserved = 64;
    prop.ReserveKeys(std::min(valueList.GetNumElements() - 1, c_nMaxReserved));
    for (uint32_t i = 1; i < valueList.GetNumElements(); ++i)
    {
        const CQSANode& node = *valueList.GetElement(i);
        if (!IsListNamed(node, c_ValueName))
        {
            if (m_Findings)
                m_Findings.TellSkipped(node);
            continue;
        }
        CPropKey key;
        if (LoadValue(node, eType, prop, key))
            prop.AddKey(std::move(key));
        else if (m_Findings)
            m_Findings.Tell(QSFormat("A value of property %s is incomplete; it was dropped.",
                                     DescName(*prop.GetDesc()).c_str()));
    }
}

bool CPropertyLoader::LoadValue(const CQSANode& node, EEffectPropertyType eType, const CEffectProperty& prop,
                                CPropKey& key)
{
    static constexpr std::array<CFieldName, 2> c_aNames = {"time", "data"};
    const CNodeFields<2> fields(node, c_aNames, TellingSkipped());
    const char* pszTime = FindValue(fields, 0);
    const CQSANode* pData = fields.FindList(1);
    if (!pszTime || !pData)
        return false;
    key.m_fTime = ReadFloat(pszTime, "time");
    if (!LoadPropertyValue(pData, eType, key))
        return false;
    if (m_Findings)
        m_Findings.TellValue(*pData, eType, PropKind(eType).m_nAtoms, *prop.GetDesc());
    return true;
}

// EnsureComplete, then ValidateSet; the latter in two parts, since what is inherited is validated again with
// each key, and need not be.
void CPropertyLoader::Finish(CEffectPropertySet& set)
{
    if (m_Findings)
        TellMissing(set);
    EnsureComplete(&set);
    const CTypeInfo& type = TypeInfo(set.m_pTypeDesc);
    for (uint32_t i = 0; i < type.m_Props.size(); ++i)
    {
        CEffectProperty* pOwn = set.m_Props[i].get();
        if (m_Findings)
            m_Findings.ValidateAndTell(pOwn, type.m_Props[i].m_Range);
        else
            Validate(pOwn, type.m_Props[i].m_Range);
    }
    m_Validation.RunInherited(set);
}

// What EnsureComplete is going to fill. On a prefab it fills nothing that a file could have held.
void CPropertyLoader::TellMissing(const CEffectPropertySet& set)
{
    if (set.GetParent())
        return;
    for (uint32_t i = 0; i < set.GetNumProps(); ++i)
    {
        const CEffectPropertyDesc& desc = set.m_pTypeDesc->m_pProps[i];
        if (!set.GetPropertyDirect(i) && PropKind(desc.m_eType).m_bValue)
            m_Findings.Tell(
                QSFormat("There is no property %s; it took the default.", DescName(desc).c_str()));
    }
}

int32_t CLoadPart::ReadInt(const char* pszText, const char* pszField)
{
    if (m_Findings)
        m_Findings.TellWholeNumber(pszText, pszField);
    return QSTextToInt(pszText);
}

uint32_t CLoadPart::ReadID(const char* pszText, const char* pszField)
{
    if (m_Findings)
        m_Findings.TellID(pszText, pszField);
    return static_cast<uint32_t>(QSTextToInt(pszText));
}

float CLoadPart::ReadFloat(const char* pszText, const char* pszField)
{
    if (m_Findings)
        m_Findings.TellDecimalNumber(pszText, pszField);
    return QSTextToFloat(pszText);
}
