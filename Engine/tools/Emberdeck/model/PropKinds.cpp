#include "model/PropKinds.h"

#include <iterator>

namespace
{

constexpr CPropKind c_PropKinds[] = {
    {ePropType_None, "None", EPropForm::eNone, false, false, 0, 0, 0},
    {ePropType_String, "String", EPropForm::eText, true, true, 1, 4, 0},
    {ePropType_Filename, "Filename", EPropForm::eText, false, true, 1, 4, 0},
    {ePropType_Enum, "Enum", EPropForm::eText, false, true, 1, 4, 0},
    {ePropType_Int, "Int", EPropForm::eInt, false, true, 1, 4, 1},
    {ePropType_Float, "Float", EPropForm::eFloat, false, true, 1, 4, 1},
    {ePropType_Color, "Color", EPropForm::eColor, false, true, 4, 16, 4},
    {ePropType_Vector, "Vector", EPropForm::eVector, false, true, 3, 12, 3},
    {ePropType_UI, "UI", EPropForm::eNone, false, false, 0, 0, 0},
    {ePropType_Animation, "Animation", EPropForm::eText, true, true, 1, 4, 0},
    {ePropType_FireglassRef, "FireglassRef", EPropForm::eText, true, true, 1, 4, 0},
};
constexpr CPropKind c_Unknown = {ePropType_None, "Unknown", EPropForm::eNone, false, true, 0, 0, 0};

// Each row stands at the place of its number.
constexpr bool IsInOrder()
{
    for (uint32_t i = 0; i < std::size(c_PropKinds); ++i)
    {
        if (c_PropKinds[i].m_eType != i)
            return false;
    }
    return true;
}
static_assert(IsInOrder());

} // namespace

const CPropKind& PropKind(uint32_t eType)
{
    return eType < std::size(c_PropKinds) ? c_PropKinds[eType] : c_Unknown;
}
