#pragma once

#include <memory>
#include <string>
#include <vector>

#include "changes/LibraryImage.h"

// A library on the command line. Git hands over files of other names: the form goes by the name in the work copy then.
struct CLibraryFile
{
    std::string m_sPath;
    std::string m_sName; // empty: the path
    bool m_bMayBeMissing = false;

    const std::string& Name() const { return m_sName.empty() ? m_sPath : m_sName; }
};

// Pictures of what the files say; no project and no plug-in is asked. An empty file, /dev/null, and one that may be
// missing, are a library without anything. False: the reason is in sError.
bool ReadLibraryFiles(const std::vector<CLibraryFile>& files,
                      std::vector<std::shared_ptr<const CLibraryImage>>& images, std::string& sError);

// Writes a picture whole or not at all, in the form that sName tells.
bool WriteLibraryImage(const CLibraryImage& image, const std::string& sPath, const std::string& sName);
