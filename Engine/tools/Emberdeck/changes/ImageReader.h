#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "changes/LibraryImage.h"

// The bytes of an effect file. An empty one stands for a library that isn't there.
struct CImageSource
{
    std::string m_sName; // for messages
    std::string m_sContent;
    bool m_bCompressed = false;
};

// Pictures of what the files say, without a plug-in: types have the properties that the files have, in their order,
// the same in all pictures. So what the writer makes of a picture is the file that it came from, if a program of ours
// wrote that.
// Strict, since what isn't in a picture is in no file that is made of it: false, with the reason, for a file that is
// cut, in conflict, or has anything that an effect file doesn't have.
bool ReadLibraryImages(const std::vector<CImageSource>& sources,
                       std::vector<std::shared_ptr<const CLibraryImage>>& images, std::string& sError);
