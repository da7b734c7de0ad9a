// SPDX-License-Identifier: 0BSD
#pragma once

#include <map>
#include <string>
#include <vector>

struct CEffectText;

// The list at the head of a library: which effects it provides, and which files, animations and other
// effects these need.
class CResourceList
{
public:
    void AddEffect(const CEffectText& effect);
    std::string Write() const;

private:
    struct CNeed
    {
        std::string m_sSource, m_sResource, m_sResourceType;
        uint32_t m_nCount = 1;
    };
    void Add(const std::string& sSource, const std::string& sResource, const std::string& sResourceType);

    std::vector<std::string> m_Effects;
    std::vector<CNeed> m_Needs;
    std::map<std::string, size_t> m_Index; // by source, resource and type in small letters
};
