#include "formats/LoadFindings.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <unordered_set>

#include "formats/NodeFields.h"
#include "formats/SharedValidation.h"
#include "model/PropKinds.h"
#include "platform/Paths.h"
#include "qsamgr/qsanodereader.h"
#include "qsamgr/qsareader.h"
#include "qsamgr/qsautil.h"
#include "qsnumber.h"

namespace
{

constexpr int c_nSavedDecimals = 6;

// Only digits, and within the bounds.
bool IsWholeNumber(const char* pszText, int64_t nMax)
{
    int64_t nValue = 0;
    return QSParseInt(pszText, nValue) && nValue >= INT32_MIN && nValue <= nMax;
}

// Most numbers of a library are such: they surely are read as they stand, which is seen without reading them.
bool IsPlainWholeNumber(const char* pszText)
{
    constexpr int c_nMaxDigits = 9; // 32 bits hold them all
    pszText += *pszText == '-';
    int nDigits = 0;
    while (static_cast<unsigned char>(pszText[nDigits] - '0') <= 9 && nDigits < c_nMaxDigits)
        ++nDigits;
    return nDigits != 0 && pszText[nDigits] == 0;
}

// Likewise saved as they stand: a float that is read from six decimals is written with the same six.
bool IsPlainDecimalNumber(const char* pszText)
{
    constexpr int c_nMaxChars = 30; // far below what a float holds
    pszText += *pszText == '-';
    int nDigits = 0;
    int nPoint = c_nMaxChars;
    int n = 0;
    for (; pszText[n] != 0 && n < c_nMaxChars; ++n)
    {
        const bool bDigit = static_cast<unsigned char>(pszText[n] - '0') <= 9;
        nDigits += bDigit;
        if (bDigit)
            continue;
        if (pszText[n] != '.' || nPoint != c_nMaxChars)
            return false;
        nPoint = n;
    }
    return nDigits != 0 && n - nPoint - 1 <= c_nSavedDecimals && pszText[n] == 0;
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

void CLoadFindings::Tell(const std::string& sText, EFinding eKind)
{
    if (m_pObserver)
        m_pObserver->OnFinding(CLoadFinding{m_pszObject ? m_pszObject : "",
                                            m_pKey ? KeyTitle(*m_pKey) : std::string(), sText, eKind});
}

void CLoadFindings::TellDamage(const CQSATextOutcome& outcome)
{
    m_bAll = m_bAll || (m_pObserver && (outcome.IsCut() || outcome.IsConflict()));
    if (outcome.IsConflict())
        Tell(QSFormat(
                 "A merge has left a conflict in the file, marked from line %s on. Only one side of it, or "
                 "neither, was read.",
                 std::to_string(outcome.m_nConflictLine).c_str()),
             EFinding::eConflict);
    if (outcome.m_bOpenString)
        Tell("The file ends within a quoted text. What stood behind is missing.", EFinding::eCut);
    if (outcome.m_nOpenLists > 0)
        Tell(QSFormat("The file ends within a list, %u deep. What stood behind is missing.",
                      outcome.m_nOpenLists),
             EFinding::eCut);
    if (outcome.m_bOpenStream)
        Tell("The compressed file ends before its text does. What stood behind is missing.", EFinding::eCut);
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

void CLoadFindings::TellCount(const CQSANode& list, uint32_t nAtoms)
{
    const uint32_t nCount = list.GetNumElements();
    if (nCount > nAtoms + 1)
        Tell(QSFormat("There is more in a list \"%s\" than belongs there; it was skipped.", ListName(list)));
    else if (nCount < nAtoms + 1 || !list.GetElement(nAtoms)->IsAtom())
        Tell(QSFormat("A list \"%s\" has no value; it was skipped.", ListName(list)));
}

void CLoadFindings::TellText(const CQSATextOutcome& outcome, const char* pszFilename)
{
    if (outcome.m_nStrayCloses > 0)
        Tell(QSFormat("The file has %u closing parentheses that close no list.", outcome.m_nStrayCloses));
    if (outcome.m_bNul)
        Tell("The file holds bytes that are 0; a text ends at one, and what stood behind was skipped.");
    if (outcome.m_nLongAtoms > 0 && pszFilename)
        TellLongTexts(pszFilename);
    else if (outcome.m_nLongAtoms > 0)
        Tell(QSFormat("%u texts were cut to %u bytes.", outcome.m_nLongAtoms, CQSANodeReader::c_nMaxAtomLen));
}

void CLoadFindings::TellLongTexts(const char* pszFilename)
{
    CQSAReader reader;
    if (!reader.Open(NativePath(pszFilename).c_str(), CQSAUtil::IsFileCompressed(pszFilename)))
        return;
    char aText[CQSANodeReader::c_nMaxAtomLen + 2]; // holds one byte too many
    for (EQSAToken eToken; (eToken = reader.NextToken(aText, sizeof(aText))) != TOKEN_END;)
    {
        const bool bAtom = eToken == TOKEN_VALUE || eToken == TOKEN_STRING;
        if (bAtom && std::strlen(aText) > CQSANodeReader::c_nMaxAtomLen)
            Tell(QSFormat("A text that begins with \"%.40s\" was cut to %u bytes.", aText,
                          CQSANodeReader::c_nMaxAtomLen));
    }
}

void CLoadFindings::TellWholeNumber(const char* pszText, const char* pszField)
{
    TellWholeNumber(pszText, pszField, INT32_MAX);
}

void CLoadFindings::TellID(const char* pszText, const char* pszField)
{
    TellWholeNumber(pszText, pszField, UINT32_MAX);
}

void CLoadFindings::TellWholeNumber(const char* pszText, const char* pszField, int64_t nMax)
{
    if (!IsPlainWholeNumber(pszText) && !IsWholeNumber(pszText, nMax))
        Tell(QSFormat("\"%s\" in %s is no whole number; %d was taken.", pszText, pszField,
                      QSTextToInt(pszText)));
}

void CLoadFindings::TellDecimalNumber(const char* pszText, const char* pszField)
{
    if (IsPlainDecimalNumber(pszText))
        return;
    const float fTaken = QSTextToFloat(pszText);
    const std::string sSaved = QSFixedText(fTaken, c_nSavedDecimals);
    float fValue = 0.0f;
    if (QSParseFloat(pszText, fValue))
    {
        if (QSTextToFloat(sSaved.c_str()) != fTaken || (fTaken == 0.0f && QSTextToDouble(pszText) != 0.0))
            Tell(QSFormat("\"%s\" in %s has more decimals than are saved, which gives %s.", pszText, pszField,
                          sSaved.c_str()));
        return;
    }
    if (std::fabs(fTaken) == std::numeric_limits<float>::max())
        Tell(QSFormat("\"%s\" in %s is too large; %g, the largest number, was taken.", pszText, pszField,
                      double(fTaken)));
    else
        Tell(QSFormat("\"%s\" in %s is no number; %s was taken.", pszText, pszField, sSaved.c_str()));
}

void CLoadFindings::TellValue(const CQSANode& data, uint32_t eType, uint32_t nAtoms,
                              const CEffectPropertyDesc& desc)
{
    if (data.GetNumElements() != nAtoms + 1)
        TellCount(data, nAtoms);
    const auto text = [&](uint32_t n) { return data.GetElement(n)->GetValue(); };
    const auto field = [&] { return "property " + DescName(desc); };
    switch (PropKind(eType).m_eForm)
    {
    case EPropForm::eInt:
        if (!IsPlainWholeNumber(text(1)))
            TellWholeNumber(text(1), field().c_str());
        break;
    case EPropForm::eFloat:
    case EPropForm::eVector:
        for (uint32_t i = 1; i <= nAtoms; ++i)
        {
            if (!IsPlainDecimalNumber(text(i)))
                TellDecimalNumber(text(i), field().c_str());
        }
        break;
    case EPropForm::eColor:
        for (uint32_t i = 1; i <= nAtoms; ++i)
        {
            const char* pszText = text(i);
            const int32_t nChannel = QSTextToInt(pszText);
            if (!IsPlainWholeNumber(pszText))
                TellWholeNumber(pszText, field().c_str());
            if (nChannel < 0 || nChannel > 255)
                Tell(QSFormat("The channel %d of colour %s was cut to %d.", nChannel, DescName(desc).c_str(),
                              nChannel & 0xFF));
        }
        break;
    default:
        if (strnlen(text(1), CPropData::c_nMaxText + 1) > CPropData::c_nMaxText)
            Tell(QSFormat("The text of property %s was cut to 255 bytes.", DescName(desc).c_str()));
        break;
    }
}

void CLoadFindings::ValidateAndTell(CEffectProperty* pProp, const CPropRange& range)
{
    if (!pProp || IsSettled(*pProp, range))
        return;
    CEffectProperty before(*pProp);
    SettleStructure(pProp);
    if (!IsSameContent(before, *pProp))
        Tell(StructureText(before, *pProp));
    before = *pProp;
    ClampToRange(pProp, range);
    if (!IsSameContent(before, *pProp))
        Tell(QSFormat("Property %s was brought into its range.", PropTitle(*pProp).c_str()));
    before = *pProp;
    ValidateEnum(pProp);
    if (!IsSameContent(before, *pProp))
        Tell(QSFormat("Property %s had a value that isn't in its list; it took the default.",
                      PropTitle(*pProp).c_str()));
}

void CLoadFindings::NoteIds(const CSpell& spell)
{
    m_Ids.clear();
    for (const CKey& key : spell.m_Tracks.AllKeys())
        m_Ids.push_back(key.m_nKeyID);
    if (!std::is_sorted(m_Ids.begin(), m_Ids.end()))
        std::sort(m_Ids.begin(), m_Ids.end());
}

void CLoadFindings::TellEqualIds(const CSpell& spell)
{
    std::unordered_set<uint32_t> ids;
    for (const CKey& key : spell.m_Tracks.AllKeys())
    {
        EnterKey(&key);
        if (!ids.insert(key.m_nKeyID).second)
            Tell("Another key of the effect has this id; links go to the first one.");
    }
}

void CLoadFindings::TellLinks(const CSpell& spell)
{
    NoteIds(spell);
    if (std::adjacent_find(m_Ids.begin(), m_Ids.end()) != m_Ids.end())
        TellEqualIds(spell);
    for (const CKey& key : spell.m_Tracks.AllKeys())
    {
        if (!key.m_bMotionLinked)
            continue;
        EnterKey(&key);
        if (!std::binary_search(m_Ids.begin(), m_Ids.end(), key.m_nMotionLinkID))
            Tell(QSFormat("The key is linked to key %u, which isn't there.", key.m_nMotionLinkID));
        else if (key.m_nMotionLinkID == key.m_nKeyID)
            Tell("The key is linked to itself.");
    }
    EnterKey(nullptr);
}
