#include "changes/ChangeWords.h"

#include "model/EffectProperty.h"
#include "qsnumber.h"

namespace
{

std::string Quoted(const std::string& sText)
{
    return "\"" + sText + "\"";
}

std::string TellPoint(const CPointImage& point, uint32_t eType)
{
    const CPropData& data = point.m_Data;
    if (IsTextKind(eType))
        return Quoted(std::string(data.GetText()));
    switch (eType)
    {
    case ePropType_Int:
        return std::to_string(data.GetInt());
    case ePropType_Float:
        return QSFixedText(data.GetFloat(), 6);
    case ePropType_Vector:
    {
        const CVector3 v = data.GetVector();
        return QSFixedText(v.x, 6) + ", " + QSFixedText(v.y, 6) + ", " + QSFixedText(v.z, 6);
    }
    case ePropType_Color:
    {
        const uint32_t n = data.GetColor();
        return QSFormat("%u, %u, %u, %u", PropColorRed(n), PropColorGreen(n), PropColorBlue(n),
                        PropColorAlpha(n));
    }
    default:
        return "a value";
    }
}

std::string TellPoints(const CChangePoints& points, uint32_t eType)
{
    if (points.m_Points.size() == 1 && points.m_nFirst == 0 && points.m_Points[0].m_fTime == 0.0f)
        return TellPoint(points.m_Points[0], eType);
    std::string sText;
    for (const CPointImage& point : points.m_Points)
        sText +=
            (sText.empty() ? "" : "; ") + TellPoint(point, eType) + " at " + QSFixedText(point.m_fTime, 6);
    return sText.empty() ? "no value" : sText;
}

std::string TellObject(const CDifference& difference)
{
    switch (difference.m_eKind)
    {
    case EDifference::eEffect:
    case EDifference::eEffectName:
    case EDifference::eEffectLength:
        return "effect " + Quoted(difference.m_Object.m_sName);
    case EDifference::ePrefab:
        return "prefab " + Quoted(difference.m_Object.m_sName);
    case EDifference::eTrack:
        return "track " + difference.m_Object.m_sName;
    case EDifference::eItem:
    case EDifference::eItemText:
        return "item " + Quoted(difference.m_Object.m_sName);
    case EDifference::eEffectOrder:
    case EDifference::ePrefabOrder:
    case EDifference::eTrackOrder:
        return {};
    case EDifference::eKeyOrder:
        return "track " + difference.m_Place.m_List.m_sName;
    case EDifference::eItemOrder:
        return "group " + Quoted(difference.m_Place.m_List.m_sName);
    default:
        return difference.m_Effect.m_nSerial ? "key " + difference.m_Object.m_sName
                                             : "prefab " + Quoted(difference.m_Object.m_sName);
    }
}

// What a difference is about, beside the object; null: the object itself comes or goes.
const char* FieldName(EDifference eKind)
{
    switch (eKind)
    {
    case EDifference::eEffectName:
    case EDifference::eSetName:
    case EDifference::eItemText:
        return "name";
    case EDifference::eEffectLength:
        return "length";
    case EDifference::eEffectOrder:
        return "order of the effects";
    case EDifference::ePrefabOrder:
        return "order of the prefabs";
    case EDifference::eTrackOrder:
        return "order of the tracks";
    case EDifference::eKeyOrder:
    case EDifference::eItemOrder:
        return "order";
    case EDifference::eKeyTrack:
        return "track";
    case EDifference::eKeyID:
        return "id";
    case EDifference::eKeyStart:
        return "start";
    case EDifference::eKeyEnd:
        return "end";
    case EDifference::eKeyLink:
        return "motion link to";
    case EDifference::eSetParent:
        return "prefab";
    default:
        return nullptr;
    }
}

} // namespace

std::string TellValue(const CDifference& difference, const CChangeValue& value)
{
    if (const auto* pNumber = std::get_if<int64_t>(&value))
    {
        const bool bTime = difference.m_eKind == EDifference::eEffectLength ||
                           difference.m_eKind == EDifference::eKeyStart ||
                           difference.m_eKind == EDifference::eKeyEnd;
        return std::to_string(*pNumber) + (bTime ? " ms" : "");
    }
    if (const auto* pText = std::get_if<std::string>(&value))
        return Quoted(*pText);
    if (const auto* pRef = std::get_if<CChangeRef>(&value))
        return Quoted(pRef->m_sName);
    if (const auto* pPlace = std::get_if<CChangePlace>(&value))
        return pPlace->m_List.m_sName;
    if (const auto* pPoints = std::get_if<CChangePoints>(&value))
        return TellPoints(*pPoints, difference.m_eType);
    if (!std::holds_alternative<std::monostate>(value))
        return "there";
    return difference.m_eKind == EDifference::eSetValue ? "inherited" : "none";
}

std::string TellAbout(const CDifference& difference)
{
    std::string sText = difference.m_Effect.m_nSerial ? difference.m_Effect.m_sName + ": " : std::string();
    sText += TellObject(difference);
    const char* pszField = FieldName(difference.m_eKind);
    if (difference.m_eKind != EDifference::eSetValue && !pszField)
        return sText;
    return sText + (sText.empty() || sText.back() == ' ' ? "" : ", ") +
           (pszField ? pszField : difference.m_sProperty);
}

std::string Tell(const CDifference& difference)
{
    const std::string sText = TellAbout(difference);
    if (difference.m_eKind != EDifference::eSetValue && !FieldName(difference.m_eKind))
        return sText + (std::holds_alternative<std::monostate>(difference.m_Before) ? " is new" : " is gone");
    if (std::holds_alternative<std::vector<CChangeRef>>(difference.m_Before))
        return sText + " changed";
    return sText + ": " + TellValue(difference, difference.m_Before) + " -> " +
           TellValue(difference, difference.m_After);
}
