#include "formats/LoadFindings.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <unordered_set>

#include "formats/NodeFields.h"
#include "formats/SharedValidation.h"
#include "platform/Paths.h"
#include "qsamgr/qsanodereader.h"
#include "qsamgr/qsareader.h"
#include "qsamgr/qsautil.h"
#include "qsnumber.h"

namespace
{

// Only digits, and within what 32 bits tell, signed or not.
bool IsWholeNumber(const char* pszText)
{
    int64_t nValue = 0;
    return QSParseInt(pszText, nValue) && nValue >= INT32_MIN && nValue <= int64_t(UINT32_MAX);
}

bool IsDecimalNumber(const char* pszText)
{
    float fValue = 0.0f;
    return QSParseFloat(pszText, fValue);
}

std::string PropTitle(const CEffectProperty& prop)
{
    return prop.GetDesc() ? DescName(*prop.GetDesc()) : std::string();
}

std::string CountText(uint32_t nCount)
{
    return QSFormat(nCount == 1 ? "%u value" : "%u values", nCount);
}

// What SettleStructure did, told by what is left.
std::string StructureText(const CEffectProperty& before, const CEffectProperty& after)
{
    const std::string sName = PropTitle(after);
    if (before.GetNumKeys() == after.GetNumKeys())
        return QSFormat("The times of property %s were set right.", sName.c_str());
    return QSFormat("Property %s had %s, and has %s now.", sName.c_str(),
                    CountText(before.GetNumKeys()).c_str(), CountText(after.GetNumKeys()).c_str());
}

} // namespace

std::string KeyTitle(const CKey& key)
{
    return QSFormat("%s, id %u", key.GetDisplayName().c_str(), key.m_nKeyID);
}

void CLoadFindings::EnterObject(const char* pszName)
{
    m_sObject = pszName ? pszName : "";
    m_sKey.clear();
}

void CLoadFindings::EnterKey(const CKey* pKey)
{
    m_sKey = pKey ? KeyTitle(*pKey) : std::string();
}

void CLoadFindings::Tell(const std::string& sText, EFinding eKind)
{
    if (m_pObserver)
        m_pObserver->OnFinding(CLoadFinding{m_sObject, m_sKey, sText, eKind});
}

void CLoadFindings::TellDamage(const CTextDamage& damage)
{
    m_bAll = m_bAll || (m_pObserver && damage.IsDamaged());
    if (damage.IsConflict())
        Tell(QSFormat(
                 "A merge has left a conflict in the file, marked from line %s on. Only one side of it, or "
                 "neither, was read.",
                 std::to_string(damage.m_nConflictLine).c_str()),
             EFinding::eConflict);
    if (damage.m_bOpenString)
        Tell("The file ends within a quoted text. What stood behind is missing.", EFinding::eCut);
    if (damage.m_nOpenLists > 0)
        Tell(QSFormat("The file ends within a list, %u deep. What stood behind is missing.",
                      damage.m_nOpenLists),
             EFinding::eCut);
}

void CLoadFindings::TellMissingType(const char* pszType, const char* pszObject, const std::string& sKey)
{
    if (m_pObserver)
        m_pObserver->OnFinding(CLoadFinding{
            pszObject, sKey, QSFormat("The plug-in has no type \"%s\".", pszType), EFinding::eMissingType});
}

void CLoadFindings::TellSkipped(const CQSANode& node)
{
    const char* pszName = ListName(node);
    if (pszName)
        Tell(QSFormat("A list \"%s\" is unknown here, or stands here twice; it was skipped.", pszName));
    else if (node.IsAtom())
        Tell(QSFormat("\"%s\" stands outside of a list; it was skipped.", node.GetValue()));
    else
        Tell("A list without a name was skipped.");
}

void CLoadFindings::TellText(const char* pszFilename)
{
    CQSAReader reader;
    if (!reader.Open(NativePath(pszFilename).c_str(), CQSAUtil::IsFileCompressed(pszFilename)))
        return;
    char aText[CQSANodeReader::c_nMaxAtomLen + 2]; // holds one byte too many
    uint32_t nOpen = 0;
    uint32_t nStray = 0;
    for (EQSAToken eToken; (eToken = reader.NextToken(aText, sizeof(aText))) != TOKEN_END;)
    {
        if (eToken == TOKEN_OPEN)
            ++nOpen;
        else if (eToken == TOKEN_CLOSE && nOpen == 0)
            ++nStray;
        else if (eToken == TOKEN_CLOSE)
            --nOpen;
        else if (std::strlen(aText) > CQSANodeReader::c_nMaxAtomLen)
            Tell(QSFormat("A text that begins with \"%.40s\" was cut to %u bytes.", aText,
                          CQSANodeReader::c_nMaxAtomLen));
    }
    if (nStray > 0)
        Tell(QSFormat("The file has %u closing parentheses that close no list.", nStray));
}

void CLoadFindings::TellWholeNumber(const char* pszText, const char* pszField)
{
    if (!IsWholeNumber(pszText))
        Tell(QSFormat("\"%s\" in %s is no whole number; %d was taken.", pszText, pszField,
                      QSTextToInt(pszText)));
}

void CLoadFindings::TellDecimalNumber(const char* pszText, const char* pszField)
{
    if (IsDecimalNumber(pszText))
        return;
    const float fTaken = QSTextToFloat(pszText);
    if (std::fabs(fTaken) == std::numeric_limits<float>::max())
        Tell(QSFormat("\"%s\" in %s is too large; %g, the largest number, was taken.", pszText, pszField,
                      double(fTaken)));
    else
        Tell(QSFormat("\"%s\" in %s is no number; %s was taken.", pszText, pszField,
                      QSFixedText(fTaken, 6).c_str()));
}

void CLoadFindings::TellValue(const CQSANode& data, uint32_t eType, const std::string& sProp)
{
    const std::string sField = "property " + sProp;
    const auto text = [&](uint32_t n) { return data.GetElement(n)->GetValue(); };
    switch (eType)
    {
    case ePropType_Int:
        TellWholeNumber(text(1), sField.c_str());
        break;
    case ePropType_Float:
        TellDecimalNumber(text(1), sField.c_str());
        break;
    case ePropType_Vector:
        for (uint32_t i = 1; i <= 3; ++i)
            TellDecimalNumber(text(i), sField.c_str());
        break;
    case ePropType_Color:
        for (uint32_t i = 1; i <= 4; ++i)
        {
            TellWholeNumber(text(i), sField.c_str());
            const int32_t nChannel = QSTextToInt(text(i));
            if (nChannel < 0 || nChannel > 255)
                Tell(QSFormat("The channel %d of colour %s was cut to %d.", nChannel, sProp.c_str(),
                              nChannel & 0xFF));
        }
        break;
    default:
        if (std::strlen(text(1)) > CPropData::c_nMaxText)
            Tell(QSFormat("The text of property %s was cut to 255 bytes.", sProp.c_str()));
        break;
    }
}

void CLoadFindings::ValidateAndTell(CEffectProperty* pProp)
{
    if (!pProp)
        return;
    CEffectProperty before(*pProp);
    SettleStructure(pProp);
    if (!IsSameContent(before, *pProp))
        Tell(StructureText(before, *pProp));
    before = *pProp;
    ClampToRange(pProp);
    if (!IsSameContent(before, *pProp))
        Tell(QSFormat("Property %s was brought into its range.", PropTitle(*pProp).c_str()));
    before = *pProp;
    ValidateEnum(pProp);
    if (!IsSameContent(before, *pProp))
        Tell(QSFormat("Property %s had a value that isn't in its list; it took the default.",
                      PropTitle(*pProp).c_str()));
}

void CLoadFindings::TellLinks(const CSpell& spell)
{
    std::unordered_set<uint32_t> ids;
    for (const auto& pTrack : spell.m_Tracks.Tracks())
    {
        for (const auto& pKey : pTrack->Keys())
        {
            EnterKey(pKey.get());
            if (!ids.insert(pKey->m_nKeyID).second)
                Tell("Another key of the effect has this id; links go to the first one.");
        }
    }
    for (const auto& pTrack : spell.m_Tracks.Tracks())
    {
        for (const auto& pKey : pTrack->Keys())
        {
            if (!pKey->m_bMotionLinked)
                continue;
            EnterKey(pKey.get());
            if (ids.count(pKey->m_nMotionLinkID) == 0)
                Tell(QSFormat("The key is linked to key %u, which isn't there.", pKey->m_nMotionLinkID));
            else if (pKey->m_nMotionLinkID == pKey->m_nKeyID)
                Tell("The key is linked to itself.");
        }
    }
    EnterKey(nullptr);
}
