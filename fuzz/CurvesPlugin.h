#pragma once

#include "support/TestPlugin.h"

// A table whose one type has a curve of each kind that has a value, and one of a kind that has none.
inline CTestPlugin& DescribeCurves(CTestPlugin& plugin)
{
    plugin.version(43).type("All");
    plugin.prop(ePropType_String, "Words").def("a").linear();
    plugin.prop(ePropType_Enum, "Long").data("x, y, z").def("z").step();
    plugin.prop(ePropType_None, "Spare").linear();
    plugin.prop(ePropType_Enum, "Short").data("p, q").def("q").linear();
    plugin.prop(ePropType_Int, "Count").range("0;9").def(3).linear();
    plugin.prop(ePropType_Float, "Size").def(1.5).step();
    plugin.prop(ePropType_Vector, "Place").def(CVector3{1, 2, 3}).linear();
    plugin.prop(ePropType_Color, "Tint").def(CTestColor{9, 8, 7, 6}).linear();
    plugin.prop(ePropType_Filename, "File").def("a.Texture00a").step();
    plugin.prop(ePropType_Animation, "Clip").def("b").linear();
    plugin.prop(ePropType_FireglassRef, "Child").def("E").linear();
    return plugin;
}
