#pragma once

#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "effecttypes.h"
#include "model/EffectModule.h"
#include "qsvector.h"

struct CTestColor
{
    int r = 0, g = 0, b = 0, a = 255;
};

// Builds a plug-in's table in memory:
//
//     CTestPlugin plugin;
//     plugin.version(3).type("Spark").prop(ePropType_Float, "Size").range("0;10").def(1.5).linear();
//
// prop() adds to the type that was added last, and what follows it shapes that property. Building ends with
// table(): no type or property is added afterwards, since their addresses are the contract.
class CTestPlugin
{
public:
    CTestPlugin() = default;
    CTestPlugin(const CTestPlugin&) = delete;
    CTestPlugin& operator=(const CTestPlugin&) = delete;

    CTestPlugin& version(uint32_t nVersion)
    {
        m_Table.m_nVersion = nVersion;
        return *this;
    }
    // The type's number is its index, unless one is given.
    CTestPlugin& type(const char* pszName, int nTypeID = -1)
    {
        CEffectTypeDesc desc = {};
        std::snprintf(desc.m_szName, sizeof(desc.m_szName), "%s", pszName);
        desc.m_nTypeID = nTypeID < 0 ? uint32_t(m_Types.size()) : uint32_t(nTypeID);
        m_Types.push_back(desc);
        m_Props.emplace_back();
        return *this;
    }
    CTestPlugin& prop(uint32_t eType, const char* pszName)
    {
        CEffectPropertyDesc desc = {};
        std::snprintf(desc.m_szName, sizeof(desc.m_szName), "%s", pszName);
        desc.m_eType = eType;
        m_Props.back().push_back(desc);
        return *this;
    }

    // Range, enumerators, filter or line of text, by kind.
    CTestPlugin& data(const char* pszData)
    {
        std::snprintf(last().m_szData, sizeof(last().m_szData), "%s", pszData);
        return *this;
    }
    CTestPlugin& range(const char* pszRange) { return data(pszRange); }
    CTestPlugin& help(const char* pszHelp)
    {
        std::snprintf(last().m_szHelp, sizeof(last().m_szHelp), "%s", pszHelp);
        return *this;
    }
    CTestPlugin& linear()
    {
        last().m_bFunctionCurve = last().m_bInterpolate = 1;
        return *this;
    }
    CTestPlugin& step()
    {
        last().m_bFunctionCurve = 1;
        last().m_bInterpolate = 0;
        return *this;
    }
    CTestPlugin& constant()
    {
        last().m_bFunctionCurve = last().m_bInterpolate = 0;
        return *this;
    }

    CTestPlugin& def(const char* pszText)
    {
        std::snprintf(reinterpret_cast<char*>(last().m_Default), sizeof(last().m_Default), "%s", pszText);
        return *this;
    }
    CTestPlugin& def(int nValue) { return raw(int32_t(nValue)); }
    CTestPlugin& def(double fValue) { return raw(float(fValue)); }
    CTestPlugin& def(const CVector3& vValue) { return raw(vValue); }
    CTestPlugin& def(const CTestColor& c)
    {
        return raw(uint32_t(c.b) | uint32_t(c.g) << 8 | uint32_t(c.r) << 16 | uint32_t(c.a) << 24);
    }

    // The property that was added last, for what has no word of its own here.
    CEffectPropertyDesc& last() { return m_Props.back().back(); }

    CEffectTypeTable* table()
    {
        for (size_t i = 0; i < m_Types.size(); ++i)
        {
            m_Types[i].m_nNumProps = uint32_t(m_Props[i].size());
            m_Types[i].m_pProps = m_Props[i].empty() ? nullptr : m_Props[i].data();
        }
        m_Table.m_nNumTypes = uint32_t(m_Types.size());
        m_Table.m_pTypes = m_Types.empty() ? nullptr : m_Types.data();
        return &m_Table;
    }

private:
    template <class T>
    CTestPlugin& raw(const T& value)
    {
        std::memset(last().m_Default, 0, sizeof(last().m_Default));
        std::memcpy(last().m_Default, &value, sizeof(value));
        return *this;
    }

    CEffectTypeTable m_Table = {1, 0, nullptr};
    std::vector<CEffectTypeDesc> m_Types;
    std::vector<std::vector<CEffectPropertyDesc>> m_Props;
};

// Three types. "Sprite" has a property of each of the ten kinds and None, constants, steps and lines;
// "Light" shares names and kinds with it; "Marker" has no property at all.
inline CTestPlugin& DescribeStandardTypes(CTestPlugin& plugin)
{
    plugin.version(42);
    plugin.type("Sprite");
    plugin.prop(ePropType_Filename, "Texture")
        .data("Textures (*.dds)|*.dds||")
        .def("Textures\\Smoke.Texture00a");
    plugin.help("What the sprite shows");
    plugin.prop(ePropType_Enum, "Blend").data("Add, Alpha,Multiply").def("Alpha");
    plugin.prop(ePropType_UI, "UIType_TextLine").data("Look");
    plugin.prop(ePropType_Color, "Color").def(CTestColor{255, 255, 255, 255}).linear();
    plugin.prop(ePropType_Float, "Size").range("0;100").def(1.5).linear();
    plugin.prop(ePropType_Int, "Count").range("1;1000").def(10);
    plugin.prop(ePropType_Int, "Frame").range("0;15").def(0).step();
    plugin.prop(ePropType_Vector, "Velocity").range("-10;10").def(CVector3{0, 1, 0});
    plugin.prop(ePropType_String, "Label").def("");
    plugin.prop(ePropType_Animation, "Clip").def("idle");
    plugin.prop(ePropType_FireglassRef, "Child").def("");
    plugin.prop(ePropType_None, "Spare");
    plugin.type("Light");
    plugin.prop(ePropType_Color, "Color").def(CTestColor{255, 200, 100, 255}).linear();
    plugin.prop(ePropType_Float, "Radius").range("0.5;").def(5.0);
    plugin.prop(ePropType_Float, "Flicker").def(0.25).linear();
    plugin.type("Marker");
    return plugin;
}

// A plug-in that is adopted by a module of its own. With no argument the standard types.
struct CTestModule
{
    CTestModule()
    {
        DescribeStandardTypes(m_Plugin);
        m_Module.Adopt(m_Plugin.table());
    }
    explicit CTestModule(const std::function<void(CTestPlugin&)>& describe)
    {
        describe(m_Plugin);
        m_Module.Adopt(m_Plugin.table());
    }

    CTestPlugin m_Plugin; // outlives the module
    CEffectModule m_Module;
};
