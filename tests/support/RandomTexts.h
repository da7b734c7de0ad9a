#pragma once

#include <iterator>
#include <random>
#include <string>

#include "model/EffectProperty.h"
#include "support/TestPlugin.h"

// Effect files and tables of types, at random.
class CRandomTexts
{
public:
    explicit CRandomTexts(uint32_t nSeed) : m_Random(nSeed) {}

    uint32_t Below(uint32_t n) { return m_Random() % n; }
    const char* Range()
    {
        static const char* const c_Ranges[] = {"",    "0;1",   "-5;",        ";3.3333333",
                                               "4;2", "1e39;", "0.0000004;", "-1e40;1e40"};
        return c_Ranges[Below(std::size(c_Ranges))];
    }
    const char* Number()
    {
        static const char* const c_Numbers[] = {
            "0",    "1",      "0.5",         "0.0000004",  "-0.0000001", "2", "-3.25",
            "1e39", "-1e400", "99999999999", "2139095040", "2143289344", "x", "0.3333333"};
        return c_Numbers[Below(std::size(c_Numbers))];
    }
    void Table(CTestPlugin& plugin)
    {
        for (uint32_t t = 0; t < 2; ++t)
        {
            plugin.type(t == 0 ? "A" : "B");
            for (uint32_t p = 0; p < 5; ++p)
            {
                plugin.prop(c_Kinds[Below(9)], ("P" + std::to_string(p)).c_str());
                plugin.data(plugin.last().m_eType == ePropType_Enum ? "Add, Alpha,Multiply" : Range());
                if (Below(2))
                    plugin.def(Below(2) ? 1e38 : 0.25);
                plugin.last().m_bFunctionCurve = Below(3) != 0;
                plugin.last().m_bInterpolate = Below(2) != 0;
            }
        }
    }
    // Values of any kind, whatever the table says.
    std::string Properties()
    {
        std::string s = "(properties";
        for (uint32_t p = 0; p < 5; ++p)
        {
            if (Below(3) == 0)
                continue;
            const uint32_t nKind = Below(9);
            s += " (property (name P" + std::to_string(p) + ") (type " + GetPropTypeName(c_Kinds[nKind]) +
                 ") (value-list";
            for (uint32_t n = Below(6); n > 0; --n)
            {
                s += std::string(" (value (time ") + Number() + ") (data";
                for (uint32_t i = 0; i < 4; ++i)
                    s += Below(8) ? std::string(" ") + Number() : " alpha";
                s += "))";
            }
            s += "))";
        }
        return s + ")";
    }
    std::string NextText()
    {
        std::string s =
            "(header (version 1)) (prefab-tree (container (name R) (children (prefab (name P) (type A) " +
            Properties() +
            ")))) (effect-tree (container (name R) (children (effect (name E) (length 5000) (key-list";
        for (uint32_t k = 0; k < 4; ++k)
            s += " (key (name K) (type " + std::string(Below(3) ? "A" : "B") + ") (id " + std::to_string(k) +
                 ") (start-time " + Number() + ") (end-time 4000) (track " + std::to_string(Below(3)) + ")" +
                 (Below(2) ? " (parent P) " : " ") + Properties() + ")";
        return s + ")))))";
    }

private:
    static constexpr uint32_t c_Kinds[] = {ePropType_String, ePropType_Filename,  ePropType_Enum,
                                           ePropType_Int,    ePropType_Float,     ePropType_Color,
                                           ePropType_Vector, ePropType_Animation, ePropType_FireglassRef};
    std::mt19937 m_Random;
};
