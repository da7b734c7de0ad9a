#include "formats/LibraryLines.h"

#include <memory>

#include "model/EffectProperty.h"
#include "model/PropKinds.h"
#include "platform/Paths.h"
#include "qsamgr/qsafile.h"
#include "qsamgr/qsanodebuilder.h"
#include "qsamgr/qsautil.h"
#include "qsassert.h"
#include "qsnumber.h"

namespace
{

constexpr int32_t c_nFormatVersion = 1;

// Deepest nesting within an effect: effect, key-list, key, properties, property, value-list, value, data.
constexpr uint32_t c_nLeafDepth = 8;

} // namespace

void CLibraryLines::Header()
{
    m_Out.Line(0, "( header");
    m_Out.ValueLine(1, "version", c_nFormatVersion);
    m_Out.Line(0, ")");
}

void CLibraryLines::OpenTree(bool bPrefabs)
{
    if (bPrefabs)
        m_Out.Line(0, "( prefab-tree");
    else
        m_Out.Line(0, "( effect-tree");
}

void CLibraryLines::CloseTree()
{
    m_Out.Line(0, ")");
}

void CLibraryLines::OpenGroup(uint32_t nDepth, std::string_view sName)
{
    m_Out.Line(nDepth, "( container");
    m_Out.TextLine(nDepth + 1, "name", sName);
    m_Out.Line(nDepth + 1, "( children");
}

void CLibraryLines::OpenPrefab(uint32_t nDepth, std::string_view sName, std::string_view sType)
{
    m_Out.Line(nDepth, "( prefab");
    m_Out.TextLine(nDepth + 1, "name", sName);
    m_Out.TextLine(nDepth + 1, "type", sType);
    m_Out.Line(nDepth + 1, "( properties");
}

void CLibraryLines::OpenEffect(uint32_t nDepth, std::string_view sName, int32_t nLength)
{
    m_Out.Line(nDepth, "( effect");
    m_Out.TextLine(nDepth + 1, "name", sName);
    m_Out.ValueLine(nDepth + 1, "length", nLength);
    m_Out.Line(nDepth + 1, "( key-list");
}

void CLibraryLines::OpenKey(uint32_t nDepth, const CKeyLines& key)
{
    m_Out.Line(nDepth, "( key");
    m_Out.TextLine(nDepth + 1, "name", key.m_sName);
    m_Out.TextLine(nDepth + 1, "type", key.m_sType);
    // Unsigned numbers go out as signed ones and come back the same.
    m_Out.ValueLine(nDepth + 1, "id", static_cast<int32_t>(key.m_nKeyID));
    m_Out.ValueLine(nDepth + 1, "start-time", key.m_nStartTime);
    m_Out.ValueLine(nDepth + 1, "end-time", key.m_nEndTime);
    m_Out.ValueLine(nDepth + 1, "track", static_cast<int32_t>(key.m_nTrack));
    if (key.m_pParent)
        m_Out.TextLine(nDepth + 1, "parent", *key.m_pParent);
    if (key.m_bMotionLinked)
    {
        m_Out.Line(nDepth + 1, "( motion-link");
        m_Out.ValueLine(nDepth + 2, "id", static_cast<int32_t>(key.m_nMotionLinkID));
        m_Out.Line(nDepth + 1, ")");
    }
    m_Out.Line(nDepth + 1, "( properties");
}

void CLibraryLines::OpenProperty(uint32_t nDepth, std::string_view sName, uint32_t eType)
{
    m_Out.Line(nDepth, "( property");
    m_Out.TextLine(nDepth + 1, "name", sName);
    m_Out.TextLine(nDepth + 1, "type", GetPropTypeName(eType));
    m_Out.Line(nDepth + 1, "( value-list");
}

void CLibraryLines::Close(uint32_t nDepth)
{
    m_Out.Line(nDepth + 1, ")");
    m_Out.Line(nDepth, ")");
}

void CLibraryLines::Value(uint32_t nDepth, uint32_t eType, float fTime, const CPropData& data)
{
    m_Out.Line(nDepth, "( value");
    m_Out.ValueLine(nDepth + 1, "time", QSNearestFloat(fTime));
    Data(nDepth + 1, eType, data);
    m_Out.Line(nDepth, ")");
}

// What isn't finite goes out as the nearest number: "inf" and "nan" would be read as none.
void CLibraryLines::Data(uint32_t nDepth, uint32_t eType, const CPropData& data)
{
    switch (PropKind(eType).m_eForm)
    {
    case EPropForm::eText:
        m_Out.TextLine(nDepth, "data", data.GetText());
        break;
    case EPropForm::eInt:
        m_Out.ValueLine(nDepth, "data", data.GetInt());
        break;
    case EPropForm::eFloat:
        m_Out.ValueLine(nDepth, "data", QSNearestFloat(data.GetFloat()));
        break;
    case EPropForm::eVector:
    {
        const CVector3 v = data.GetVector();
        m_Out.ValueLine(nDepth, "data", QSNearestFloat(v.x), QSNearestFloat(v.y), QSNearestFloat(v.z));
        break;
    }
    case EPropForm::eColor:
    {
        const uint32_t nColor = data.GetColor();
        const auto Channel = [](uint32_t nChannel) { return static_cast<int32_t>(nChannel); };
        m_Out.ValueLine(nDepth, "data", Channel(PropColorRed(nColor)), Channel(PropColorGreen(nColor)),
                        Channel(PropColorBlue(nColor)), Channel(PropColorAlpha(nColor)));
        break;
    }
    case EPropForm::eNone:
        QS_ASSERT_FORCED("Error: Unexpected property value");
        break;
    }
}

namespace
{

// Whether the reader will take lists that nest as deep. Only groups within some five hundred others come near its
// limit; what lies in them is then measured to the line.
bool CanLoadAgain(uint32_t nGroupDepth, const std::function<void(CLineWriter&)>& writeTrees)
{
    constexpr uint32_t c_nMax = CQSANodeBuilder::c_nMaxOpen;
    if (nGroupDepth + CLibraryLines::c_nInner + c_nLeafDepth <= c_nMax)
        return true;
    if (nGroupDepth + CLibraryLines::c_nInner > c_nMax)
        return false; // the group's own name is too deep
    CLineWriter measure(nullptr);
    writeTrees(measure);
    return measure.GetMaxOpenLists() <= c_nMax;
}

} // namespace

bool WriteLibraryFile(const char* pszFilename, uint32_t nGroupDepth,
                      const std::function<void(CQSAFile&)>& writeResources,
                      const std::function<void(CLineWriter&)>& writeTrees)
{
    // A file that can't be read back would take the place of one that can.
    if (!CanLoadAgain(nGroupDepth, writeTrees))
        return false;

    const auto pFile = std::make_unique<CQSAFile>();
    if (!pFile->Open(NativePath(pszFilename).c_str(), false, CQSAUtil::IsFileCompressed(pszFilename), false))
        return false;
    writeResources(*pFile);
    {
        CLineWriter out(pFile.get());
        writeTrees(out);
    }
    return pFile->Close();
}
