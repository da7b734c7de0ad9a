#pragma once

#include <map>
#include <string>
#include <vector>

// The store of a user's settings: texts by section and key, names without regard to case.
class IProfile
{
public:
    virtual ~IProfile() = default;
    virtual std::string GetString(const std::string& sSection, const std::string& sKey,
                                  const std::string& sDefault = std::string()) const = 0;
    // False when the store can't be written; the value then holds for this run only.
    virtual bool WriteString(const std::string& sSection, const std::string& sKey,
                             const std::string& sValue) = 0;
    // All of them in one write, section, key, value.
    struct CEntry
    {
        std::string m_sSection, m_sKey, m_sValue;
    };
    virtual bool WriteStrings(const std::vector<CEntry>& entries) = 0;
};
