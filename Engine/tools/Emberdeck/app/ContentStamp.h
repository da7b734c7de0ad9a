#pragma once

#include <cstdint>
#include <string>

#include "platform/Files.h"

// What a file held when it was loaded or saved, told without its bytes: is it still that?
class CContentStamp
{
public:
    enum class EState
    {
        eSame,
        eOther,   // somebody has written something else
        eGone,    // or nothing is there
        eUnknown, // nothing was noted, or it is too large to be looked at
    };

    CContentStamp() = default; // of no file
    // Of what the file holds now. The hash waits until it is asked for: a load or save costs no second reading.
    explicit CContentStamp(const std::string& sPath) : m_sPath(sPath), m_Version(FileVersion(sPath)) {}
    // As it was noted elsewhere.
    CContentStamp(std::string sPath, uint64_t nSize, std::string sHash);

    const std::string& GetPath() const { return m_sPath; }
    uint64_t GetSize() const { return m_Version.m_nSize; }
    // As of app/StoreNames.h. Empty: there was no file, it was too large, or it has changed since.
    const std::string& GetHash();

    // Looks at time and size first, and reads the file only when they leave it open.
    EState Look();

private:
    static constexpr uint64_t c_nMaxFile = uint64_t(512) << 20;

    std::string m_sPath;
    CFileVersion m_Version; // with a time only while that is known to be of these bytes
    std::string m_sHash;
};
