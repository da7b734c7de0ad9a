#include "changes/ChangeText.h"

#include <charconv>

#include "changes/ChangeTextNames.h"
#include "formats/LineWriter.h"
#include "model/EffectProperty.h"
#include "qsnumber.h"

namespace
{

const char* KindName(uint32_t eType)
{
    return eType == ePropType_None ? c_szKindNone
           : eType == ePropType_UI ? c_szKindUI
                                   : GetPropTypeName(eType);
}

// Puts lists and atoms behind one another, with blanks between them.
class CTextOut
{
public:
    explicit CTextOut(std::string& sText) : m_sText(sText) {}

    void Open(const char* pszName)
    {
        m_sText += "( ";
        m_sText += pszName;
        m_sText += ' ';
    }
    void Close() { m_sText += ") "; }
    void EndLine()
    {
        while (!m_sText.empty() && m_sText.back() == ' ')
            m_sText.pop_back();
        m_sText += "\r\n";
    }
    void Number(int64_t n) { m_sText += std::to_string(n) + " "; }
    void Number(uint64_t n) { m_sText += std::to_string(n) + " "; }
    void Float(float f)
    {
        char szNumber[32];
        const auto end = std::to_chars(szNumber, szNumber + sizeof(szNumber), QSNearestFloat(f)).ptr;
        m_sText.append(szNumber, end);
        m_sText += ' ';
    }
    void Text(std::string_view sText)
    {
        m_sText += '"';
        for (const char c : sText.substr(0, std::min(sText.find('\0'), CLineWriter::c_nMaxText)))
            m_sText += c == '"' ? '\'' : c;
        m_sText += "\" ";
    }
    void Ref(const char* pszName, const CChangeRef& ref)
    {
        if (ref == CChangeRef())
            return;
        Open(pszName);
        Text(ref.m_sName);
        Number(ref.m_nSerial);
        Close();
    }

    void Point(const CPointImage& point, uint32_t eType)
    {
        m_sText += "( ";
        Float(point.m_fTime);
        const CPropData& data = point.m_Data;
        if (IsTextKind(eType))
            Text(data.GetText());
        else if (eType == ePropType_Int)
            Number(int64_t(data.GetInt()));
        else if (eType == ePropType_Float)
            Float(data.GetFloat());
        else if (eType == ePropType_Vector)
        {
            Float(data.GetVector().x);
            Float(data.GetVector().y);
            Float(data.GetVector().z);
        }
        else if (eType == ePropType_Color)
        {
            for (const uint32_t n : {PropColorRed(data.GetColor()), PropColorGreen(data.GetColor()),
                                     PropColorBlue(data.GetColor()), PropColorAlpha(data.GetColor())})
                Number(uint64_t(n));
        }
        Close();
    }

    void Set(const CSetImage& set)
    {
        Number(set.m_nSerial);
        Text(set.m_sName);
        Text(set.m_pType ? set.m_pType->m_sName : std::string());
        Ref("parent", {set.m_nParent, set.m_sParent});
        for (const CSetImage::CSlot& slot : set.m_Slots)
        {
            const CTypeImage::CProp& prop = set.m_pType->m_Props[slot.m_nSlot];
            Open("slot");
            Number(uint64_t(slot.m_nSlot));
            Text(prop.m_sName);
            Text(KindName(prop.m_eType));
            for (uint32_t i = 0; i < slot.m_nCount; ++i)
                Point(set.m_Points[slot.m_nFirst + i], prop.m_eType);
            Close();
        }
    }
    void Key(const CKeyImage& key)
    {
        Open("key");
        Number(uint64_t(key.m_nKeyID));
        Number(int64_t(key.m_nStartTime));
        Number(int64_t(key.m_nEndTime));
        if (key.m_bMotionLinked || key.m_nMotionLinkID != 0)
        {
            Open(key.m_bMotionLinked ? "link" : "unlinked");
            Number(uint64_t(key.m_nMotionLinkID));
            Close();
        }
        Set(key);
        Close();
    }
    void Track(const CTrackImage& track)
    {
        Open("track");
        Number(track.m_nSerial);
        for (const auto& pKey : track.m_Keys)
            Key(*pKey);
        Close();
    }
    void Spell(const CSpellImage& spell)
    {
        Open("effect");
        Number(spell.m_nSerial);
        Text(spell.m_sName);
        Number(int64_t(spell.m_nPhaseLength));
        for (const auto& pTrack : spell.m_Tracks)
            Track(*pTrack);
        Close();
    }

private:
    std::string& m_sText;
};

// A difference's value as a list.
struct CValueOut
{
    CTextOut& m_Out;
    uint32_t m_eType;

    void operator()(std::monostate) const {}
    void operator()(int64_t n) const
    {
        m_Out.Open("number");
        m_Out.Number(n);
        m_Out.Close();
    }
    void operator()(const std::string& sText) const
    {
        m_Out.Open("text");
        m_Out.Text(sText);
        m_Out.Close();
    }
    void operator()(const CChangeRef& ref) const { m_Out.Ref("ref", ref); }
    void operator()(const CChangePlace& place) const
    {
        m_Out.Open("place");
        m_Out.Number(uint64_t(place.m_nPlace));
        m_Out.Ref("list", place.m_List);
        m_Out.Close();
    }
    void operator()(const std::vector<CChangeRef>& refs) const
    {
        m_Out.Open("order");
        for (const CChangeRef& ref : refs)
            m_Out.Ref("ref", ref);
        m_Out.Close();
    }
    void operator()(const CChangePoints& points) const
    {
        m_Out.Open("points");
        m_Out.Number(uint64_t(points.m_nFirst));
        for (const CPointImage& point : points.m_Points)
            m_Out.Point(point, m_eType);
        m_Out.Close();
    }
    void operator()(const CItemImage& item) const
    {
        m_Out.Open("item");
        m_Out.Number(uint64_t(item.m_nItem));
        m_Out.Text(item.m_sText);
        m_Out.Number(int64_t(item.m_nImage));
        m_Out.Number(int64_t(item.m_nSelectedImage));
        m_Out.Number(item.m_nObject);
        m_Out.Close();
    }
    void operator()(const std::shared_ptr<const CSpellImage>& p) const { m_Out.Spell(*p); }
    void operator()(const std::shared_ptr<const CTrackImage>& p) const { m_Out.Track(*p); }
    void operator()(const std::shared_ptr<const CKeyImage>& p) const { m_Out.Key(*p); }
    void operator()(const std::shared_ptr<const CSetImage>& p) const
    {
        m_Out.Open("prefab");
        m_Out.Set(*p);
        m_Out.Close();
    }
};

} // namespace

std::string WriteChangeText(const CLibraryChange& change)
{
    std::string sText;
    CTextOut out(sText);
    for (const CDifference& d : change.m_Differences)
    {
        out.Open(c_DifferenceNames[static_cast<size_t>(d.m_eKind)]);
        if (d.m_eSide == ETreeSide::ePrefabs)
        {
            out.Open("prefabs");
            out.Close();
        }
        out.Ref("effect", d.m_Effect);
        out.Ref("object", d.m_Object);
        out.Ref("list", d.m_Place.m_List);
        if (d.m_Place.m_nPlace != 0)
        {
            out.Open("place");
            out.Number(uint64_t(d.m_Place.m_nPlace));
            out.Close();
        }
        if (d.m_eKind == EDifference::eSetValue)
        {
            out.Open("property");
            out.Text(d.m_sProperty);
            out.Text(KindName(d.m_eType));
            out.Number(uint64_t(d.m_nSlot));
            out.Close();
        }
        for (const auto& [pszName, pValue] :
             {std::pair("before", &d.m_Before), std::pair("after", &d.m_After)})
        {
            if (std::holds_alternative<std::monostate>(*pValue))
                continue;
            out.Open(pszName);
            std::visit(CValueOut{out, d.m_eType}, *pValue);
            out.Close();
        }
        out.Close();
        out.EndLine();
    }
    return sText;
}
