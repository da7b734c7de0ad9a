#pragma once

#include <map>
#include <string>
#include <vector>

// The store of a user's settings: texts by section and key, names without regard to case. The section with the empty
// name holds the keys that stand in none. Values are bytes; a line end in one becomes a blank. A value that was
// written is what is read from then on, also when the store could not be written.
//
// Of one thread. Other programs may write the same store meanwhile: what they wrote is seen at the next call.
class IProfile
{
public:
    virtual ~IProfile() = default;
    // sDefault where there is no such key; a key with an empty value has that.
    virtual std::string GetString(const std::string& sSection, const std::string& sKey,
                                  const std::string& sDefault = std::string()) const = 0;
    // False when the store can't be written; the value then holds for this run only.
    virtual bool WriteString(const std::string& sSection, const std::string& sKey,
                             const std::string& sValue) = 0;
    // All of them in one write, section, key, value. Throws nothing, also when memory is out.
    struct CEntry
    {
        std::string m_sSection, m_sKey, m_sValue;
    };
    // All of them in one write: other programs see all or none. The result is that of WriteString.
    virtual bool WriteStrings(const std::vector<CEntry>& entries) = 0;
};
