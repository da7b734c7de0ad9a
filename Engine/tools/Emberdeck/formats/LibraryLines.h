#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "formats/LineWriter.h"
#include "model/PropData.h"

class CAssetLibrarySource;
class CQSAFile;

// The lists of an effect file's text, for whoever writes them from the model or from a picture of it. nDepth is that
// of the list's own line.

// The fields of a key as its lines have them.
struct CKeyLines
{
    std::string_view m_sName;
    std::string_view m_sType;
    uint32_t m_nKeyID = 0;
    int32_t m_nStartTime = 0;
    int32_t m_nEndTime = 0;
    uint32_t m_nTrack = 0;
    const std::string* m_pParent = nullptr; // the prefab's name; null: none
    bool m_bMotionLinked = false;
    uint32_t m_nMotionLinkID = 0;
};

class CLibraryLines
{
public:
    explicit CLibraryLines(CLineWriter& out) : m_Out(out) {}

    // The depth of what lies in a list is the list's own and this: a group's children, an effect's keys, a set's
    // properties.
    static constexpr uint32_t c_nInner = 2;

    void Header();
    void OpenTree(bool bPrefabs);
    void CloseTree();
    void OpenGroup(uint32_t nDepth, std::string_view sName);
    void OpenPrefab(uint32_t nDepth, std::string_view sName, std::string_view sType);
    void OpenEffect(uint32_t nDepth, std::string_view sName, int32_t nLength);
    void OpenKey(uint32_t nDepth, const CKeyLines& key);
    // Of a property with a value; eType has a name in the text format.
    void OpenProperty(uint32_t nDepth, std::string_view sName, uint32_t eType);
    // What isn't finite goes out as the nearest number: "inf" and "nan" would be read as none.
    void Value(uint32_t nDepth, uint32_t eType, float fTime, const CPropData& data);
    void Close(uint32_t nDepth); // any of those that have opened

private:
    void Data(uint32_t nDepth, uint32_t eType, const CPropData& data);

    CLineWriter& m_Out;
};

// Writes a library's file, in the form that its name tells, by both functions in this order. False, the file untouched,
// when writeTrees needs lists that nest deeper than the reader takes; it may be called twice. nGroupDepth is the depth
// of the deepest group.
bool WriteLibraryFile(const char* pszFilename, uint32_t nGroupDepth,
                      const std::function<void(CQSAFile&)>& writeResources,
                      const std::function<void(CLineWriter&)>& writeTrees);
