#include "formats/EmberdeckPacker.h"

#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "formats/StringTable.h"
#include "iqsoutconverter.h"
#include "model/FunctionCurve.h"
#include "model/MakeOrNull.h"
#include "model/NameIndex.h"
#include "model/PropKinds.h"
#include "platform/IPrompts.h"
#include "platform/ReplacingFile.h"
#include "qsassert.h"
#include "qsnumber.h"
#include "shared/engine/ProjectLocator.h"

namespace
{

constexpr uint32_t c_nMagic = 0x58465351; // "QSFX" in the little-endian form
constexpr uint32_t c_nFileVersion = 2;
constexpr uint32_t c_nNoOffset = UINT32_MAX;
constexpr uint32_t c_nMaxPath = 260;
constexpr float c_fSecondsPerMillisecond = 0.001f; // 0x3A83126F
constexpr uint32_t c_nHeaderSize = 40;
constexpr uint32_t c_nEffectHeadSize = 12; // name, phase length, number of keys
constexpr uint32_t c_nKeyHeadSize = 24;    // type, times, id, link, number of properties
constexpr uint32_t c_nRecordHeadSize = 8;  // name and end position

struct CHeader
{
    uint32_t m_nMagic = c_nMagic;
    uint32_t m_nFileVersion = c_nFileVersion;
    uint32_t m_nTypeTableVersion = 0;
    uint32_t m_nStringTableSize = 0;
    uint32_t m_nCurveTableSize = 0;
    uint32_t m_nNumKeys = 0;
    uint32_t m_nNumEffects = 0;
    uint32_t m_nNumTypes = 0;
    uint32_t m_nStringTableOffset = 0;
    uint32_t m_nEffectNamesOffset = 0;
};

std::string PackedName(std::string_view sText)
{
    char szPacked[c_nMaxPath];
    ConvertToPackedName(std::string(sText).c_str(), szPacked, sizeof(szPacked));
    return szPacked;
}

// The index that the game counts by; the default's for a text that isn't in the list, else 0.
uint32_t EnumIndex(const CEffectPropertyDesc& desc, const CPropData& data)
{
    const std::string sList = DescData(desc);
    int nIndex = FindEnumIndex(sList.c_str(), std::string(data.GetText()).c_str());
    if (nIndex < 0)
    {
        CPropData defaultData;
        defaultData.Assign(desc.m_Default);
        nIndex = FindEnumIndex(sList.c_str(), std::string(defaultData.GetText()).c_str());
    }
    return nIndex < 0 ? 0 : static_cast<uint32_t>(nIndex);
}

// Bytes of a property's record.
uint32_t RecordSize(const CEffectPropertyDesc& desc)
{
    return c_nRecordHeadSize + (desc.m_bFunctionCurve ? 4 : PropKind(desc.m_eType).m_nPackedBytes);
}

// One pack. Memory that runs out throws.
class CPacker
{
public:
    CPacker(CSpellMgr& spellMgr, const CEffectModule& module, std::string& sError)
        : m_SpellMgr(spellMgr),
          m_Module(module),
          m_sError(sError)
    {
    }

    // All that the file is going to hold, and whether it fits; m_sError tells what doesn't. Touches no file.
    bool Plan();
    bool Write(const std::string& sPath, const char* pszTarget); // what was planned

private:
    bool HaveKeysTypes();
    bool HasRoom();
    void WriteHeader();
    void Collect();
    void CollectKey(const CKey& key);
    void CollectProperty(const CEffectProperty& prop);
    void CollectCurve(const CEffectProperty& prop);
    void AddName(const CEffectPropertyDesc& desc);
    void WriteName(const CEffectPropertyDesc& desc);
    void WriteStringTable();
    void WriteCurveTable();
    void WriteEffect(const CSpell& spell);
    void WriteKey(const CKey& key);
    void WriteProperty(const CEffectProperty* pProperty);
    uint32_t CurveOffset(const CEffectProperty* pProperty);
    void WriteValue(const CEffectPropertyDesc& desc, const CPropKey& key);
    void WriteString(std::string_view sText);

    CSpellMgr& m_SpellMgr;
    const CEffectModule& m_Module;
    COutConverterPtr m_pOut;
    CHeader m_Header;
    std::vector<uint32_t> m_KeyCounts; // by type
    CStringTable m_Strings;
    std::unordered_map<const CEffectPropertyDesc*, uint32_t> m_NameOffsets;
    CFunctionCurveData m_Curves;

    // A prefab's values are met once for each key that inherits them, and cost their whole length only once.
    std::unordered_set<const CEffectProperty*> m_Collected;
    std::unordered_map<const CEffectProperty*, uint32_t> m_CurveIndices; // into m_Curves
    uint64_t m_nRecordBytes = 0;                                         // of effects and keys
    std::string& m_sError;
};

bool CPacker::Write(const std::string& sPath, const char* pszTarget)
{
    COutStreamPtr pStream = OpenFileOutStream(sPath.c_str());
    if (!pStream)
        return false;
    m_pOut = CreateOutConverter(pszTarget, pStream);
    if (!m_pOut)
        return false;

    m_Header.m_nTypeTableVersion = m_Module.GetVersion();
    m_Header.m_nNumTypes = m_Module.GetNumTypes();
    WriteHeader(); // reserves its room
    for (const uint32_t nCount : m_KeyCounts)
        m_pOut->WriteUint32(nCount);
    WriteStringTable();
    WriteCurveTable();
    for (const auto& pSpell : m_SpellMgr.Spells())
        WriteEffect(*pSpell);

    const uint64_t nEffectNames = m_pOut->Tell();
    m_Header.m_nEffectNamesOffset = static_cast<uint32_t>(nEffectNames);
    for (const auto& pSpell : m_SpellMgr.Spells())
        WriteString(pSpell->m_szName);
    m_pOut->Seek(0, 0);
    WriteHeader();
    return m_pOut->Close();
}

bool CPacker::Plan()
{
    m_KeyCounts.resize(m_Module.GetNumTypes());
    if (!HaveKeysTypes())
        return false;
    Collect();
    if (m_sError.empty() && !HasRoom())
        m_sError = "The packed file would be larger than its positions can tell, 4 GB.";
    return m_sError.empty();
}

// Positions have 32 bits in this format.
bool CPacker::HasRoom()
{
    uint64_t nBytes =
        c_nHeaderSize + uint64_t(4) * m_KeyCounts.size() + m_Strings.Bytes().size() + m_nRecordBytes;
    for (const CFunctionCurveData::CEntry& entry : m_Curves.Entries())
    {
        const CEffectProperty& prop = *entry.m_pProp;
        nBytes += 4 + uint64_t(prop.GetNumKeys()) * (4 + PropKind(prop.GetDesc()->m_eType).m_nPackedBytes);
    }
    return m_Strings.IsSound() && nBytes <= UINT32_MAX;
}

// A type's number indexes the table of counts here and in the game; a plug-in that numbers its types wildly
// gets no file.
bool CPacker::HaveKeysTypes()
{
    bool bSound = true;
    for (const auto& pSpell : m_SpellMgr.Spells())
    {
        for (const CKey& key : pSpell->m_Tracks.AllKeys())
        {
            if (!key.m_pTypeDesc || key.m_pTypeDesc->m_nTypeID >= m_Module.GetNumTypes())
                bSound = false;
        }
    }
    return bSound;
}

void CPacker::WriteHeader()
{
    (*m_pOut)
        .WriteUint32(m_Header.m_nMagic)
        .WriteUint32(m_Header.m_nFileVersion)
        .WriteUint32(m_Header.m_nTypeTableVersion)
        .WriteUint32(m_Header.m_nStringTableSize)
        .WriteUint32(m_Header.m_nCurveTableSize)
        .WriteUint32(m_Header.m_nNumKeys)
        .WriteUint32(m_Header.m_nNumEffects)
        .WriteUint32(m_Header.m_nNumTypes)
        .WriteUint32(m_Header.m_nStringTableOffset)
        .WriteUint32(m_Header.m_nEffectNamesOffset);
}

// The first pass: what the tables at the head of the file need to know of all keys.
void CPacker::Collect()
{
    for (const auto& pSpell : m_SpellMgr.Spells())
    {
        m_Strings.Add(pSpell->m_szName);
        m_nRecordBytes += c_nEffectHeadSize + 4; // and its name at the end
        for (const CKey& key : pSpell->m_Tracks.AllKeys())
            CollectKey(key);
        ++m_Header.m_nNumEffects;
    }
}

void CPacker::CollectKey(const CKey& key)
{
    ++m_KeyCounts[key.m_pTypeDesc->m_nTypeID];
    m_nRecordBytes += c_nKeyHeadSize;
    for (uint32_t i = 0; i < key.GetNumProps(); ++i)
    {
        CEffectProperty* pProp = key.GetProperty(i);
        if (HasValue(pProp))
            m_nRecordBytes += RecordSize(*pProp->GetDesc());
        if (pProp && pProp != key.GetPropertyDirect(i) && !m_Collected.insert(pProp).second)
            continue; // all that it has is in the tables
        // The names of slots without a record are in the table, too.
        AddName(key.m_pTypeDesc->m_pProps[i]);
        if (pProp)
        {
            // Before its texts and its curve are noted: a value that validation changed later would have no
            // place in the file.
            Validate(pProp);
            CollectProperty(*pProp);
        }
    }
    ++m_Header.m_nNumKeys;
}

// Each key brings the same few names, so they are known by their descriptors.
void CPacker::AddName(const CEffectPropertyDesc& desc)
{
    if (m_NameOffsets.find(&desc) == m_NameOffsets.end())
        m_NameOffsets.emplace(&desc, m_Strings.Add(BoundedText(desc.m_szName)));
}

void CPacker::WriteName(const CEffectPropertyDesc& desc)
{
    const auto found = m_NameOffsets.find(&desc);
    if (found != m_NameOffsets.end())
        m_pOut->WriteUint32(found->second);
    else
        WriteString(BoundedText(desc.m_szName));
}

void CPacker::CollectProperty(const CEffectProperty& prop)
{
    const uint32_t eType = prop.GetDesc()->m_eType;
    if (PropKind(eType).m_bTyped || eType == ePropType_Filename)
    {
        for (uint32_t i = 0; i < prop.GetNumKeys(); ++i)
        {
            const std::string_view sText = prop.GetKey(i)->m_Data.GetText();
            m_Strings.Add(sText);
            if (eType == ePropType_Filename)
                m_Strings.Add(PackedName(sText));
        }
    }
    if (prop.GetDesc()->m_bFunctionCurve)
        CollectCurve(prop);
}

void CPacker::CollectCurve(const CEffectProperty& prop)
{
    int nIndex = m_Curves.FindProperty(&prop);
    if (nIndex < 0)
        nIndex = m_Curves.Add(&prop);
    QS_ASSERT_TEXT(nIndex >= 0, "nCurveIndex != (uint32)-1",
                   "Error: Unable to find property curve index when packing!");
    if (nIndex >= 0)
        m_CurveIndices.emplace(&prop, static_cast<uint32_t>(nIndex));
    else
        m_sError = QSFormat("The curve of a property %s would be lost.", DescName(*prop.GetDesc()).c_str());
}

void CPacker::WriteStringTable()
{
    const std::string& sBytes = m_Strings.Bytes();
    m_Header.m_nStringTableOffset = static_cast<uint32_t>(m_pOut->Tell());
    m_Header.m_nStringTableSize = static_cast<uint32_t>(sBytes.size());
    if (m_Strings.IsSound())
        m_pOut->WriteData(sBytes.data(), m_Header.m_nStringTableSize);
}

void CPacker::WriteCurveTable()
{
    const uint64_t nStart = m_pOut->Tell();
    for (CFunctionCurveData::CEntry& entry : m_Curves.Entries())
    {
        const CEffectProperty& prop = *entry.m_pProp;
        entry.m_nOffset = static_cast<uint32_t>(m_pOut->Tell() - nStart);
        m_pOut->WriteUint32(prop.GetNumKeys());
        for (uint32_t i = 0; i < prop.GetNumKeys(); ++i)
        {
            m_pOut->WriteFloat(prop.GetKey(i)->m_fTime);
            WriteValue(*prop.GetDesc(), *prop.GetKey(i));
        }
    }
    m_Header.m_nCurveTableSize = static_cast<uint32_t>(m_pOut->Tell() - nStart);
}

void CPacker::WriteEffect(const CSpell& spell)
{
    WriteString(spell.m_szName);
    m_pOut->WriteUint32(static_cast<uint32_t>(spell.m_Tracks.m_nPhaseLength));
    m_pOut->WriteUint32(spell.m_Tracks.GetNumKeys());
    for (const CKey& key : spell.m_Tracks.AllKeys())
        WriteKey(key);
}

void CPacker::WriteKey(const CKey& key)
{
    m_pOut->WriteUint32(key.m_pTypeDesc->m_nTypeID);
    m_pOut->WriteFloat(static_cast<float>(key.m_nStartTime) * c_fSecondsPerMillisecond);
    m_pOut->WriteFloat(static_cast<float>(key.m_nEndTime) * c_fSecondsPerMillisecond);
    m_pOut->WriteUint32(key.m_nKeyID);
    m_pOut->WriteUint32(key.m_bMotionLinked ? key.m_nMotionLinkID : key.m_nKeyID);

    uint32_t nCount = 0;
    for (uint32_t i = 0; i < key.GetNumProps(); ++i)
        nCount += HasValue(key.GetProperty(i)) ? 1 : 0;
    m_pOut->WriteUint32(nCount);
    for (uint32_t i = 0; i < key.GetNumProps(); ++i)
    {
        const CEffectProperty* pProp = key.GetProperty(i);
        if (HasValue(pProp))
            WriteProperty(pProp);
    }
}

void CPacker::WriteProperty(const CEffectProperty* pProperty)
{
    QS_ASSERT_MSG(pProperty && pProperty->GetDesc(), "Error: Invalid property passed to WritePropertyData");
    if (!pProperty || !pProperty->GetDesc())
        return;
    const CEffectPropertyDesc& desc = *pProperty->GetDesc();
    // A record's size follows from its kind, so its end is known before it is written.
    const uint64_t nStart = m_pOut->Tell();
    WriteName(desc);
    m_pOut->WriteUint32(static_cast<uint32_t>(nStart) + RecordSize(desc));
    if (desc.m_bFunctionCurve)
    {
        m_pOut->WriteUint32(CurveOffset(pProperty));
        return;
    }
    const CPropKey* pFirst = pProperty->GetKey(0);
    WriteValue(desc, pFirst ? *pFirst : CPropKey());
}

uint32_t CPacker::CurveOffset(const CEffectProperty* pProperty)
{
    const auto found = m_CurveIndices.find(pProperty);
    return found == m_CurveIndices.end() ? c_nNoOffset : m_Curves.Entries()[found->second].m_nOffset;
}

void CPacker::WriteValue(const CEffectPropertyDesc& desc, const CPropKey& key)
{
    const CPropKind& kind = PropKind(desc.m_eType);
    switch (kind.m_eForm)
    {
    case EPropForm::eText:
        if (desc.m_eType == ePropType_Enum)
            m_pOut->WriteUint32(EnumIndex(desc, key.m_Data));
        else if (kind.m_bTyped)
            WriteString(key.m_Data.GetText());
        else
            WriteString(PackedName(key.m_Data.GetText()));
        break;
    case EPropForm::eInt:
        m_pOut->WriteInt32(key.m_Data.GetInt());
        break;
    case EPropForm::eFloat:
        m_pOut->WriteFloat(key.m_Data.GetFloat());
        break;
    case EPropForm::eVector:
        m_pOut->WriteVector3(key.m_Data.GetVector());
        break;
    case EPropForm::eColor:
    {
        const uint32_t nColor = key.m_Data.GetColor();
        m_pOut->WriteFloat(static_cast<float>(PropColorRed(nColor)) * c_fOneOver255);
        m_pOut->WriteFloat(static_cast<float>(PropColorGreen(nColor)) * c_fOneOver255);
        m_pOut->WriteFloat(static_cast<float>(PropColorBlue(nColor)) * c_fOneOver255);
        m_pOut->WriteFloat(static_cast<float>(PropColorAlpha(nColor)) * c_fOneOver255);
        break;
    }
    case EPropForm::eNone:
        QS_ASSERT_FORCED("Error: Unexpected property type");
        break;
    }
}

void CPacker::WriteString(std::string_view sText)
{
    uint32_t nOffset = c_nNoOffset;
    const bool bFound = m_Strings.LookUp(sText, nOffset);
    QS_ASSERT_MSG(bFound, "Error: Unable to find a string when packing!");
    m_pOut->WriteUint32(nOffset);
}

} // namespace

bool PackEffectLibrary(const char* pszFilename, CSpellMgr& spellMgr, const CEffectModule& module,
                       IPrompts* pPrompts, const char* pszTarget, std::string* pError)
{
    const CWaitScope wait(pPrompts);
    if (pError)
        pError->clear();
    if (!pszFilename || !module.IsLoaded())
        return false;
    std::optional<CReplacingFile> file;
    bool bWritten = false;
    const bool bWhole = AllocateAll(
        [&]
        {
            std::string sError;
            CPacker packer(spellMgr, module, pError ? *pError : sError);
            if (!packer.Plan())
                return;
            file.emplace(pszFilename);
            bWritten = file->IsOpen() && packer.Write(file->GetPath(), pszTarget ? pszTarget : "");
        });
    // Only what is whole takes the place of what was there: a value may be missing without a word until here.
    bool bPacked = false;
    return bWhole && bWritten && TryAllocating([&] { bPacked = file->Commit(); }) && bPacked;
}
