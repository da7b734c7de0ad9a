#include "batch/LibraryFiles.h"

#include "changes/ImageReader.h"
#include "platform/FileProblem.h"
#include "platform/Files.h"
#include "platform/Paths.h"
#include "qsamgr/qsautil.h"

namespace
{
constexpr uint64_t c_nMaxFile = uint64_t(256) << 20;
} // namespace

bool ReadLibraryFiles(const std::vector<CLibraryFile>& files,
                      std::vector<std::shared_ptr<const CLibraryImage>>& images, std::string& sError)
{
    std::vector<CImageSource> sources;
    for (const CLibraryFile& file : files)
    {
        CImageSource source{file.Name(), {}, CQSAUtil::IsFileCompressed(file.Name().c_str())};
        const bool bNone = file.m_sPath == "/dev/null" || (file.m_bMayBeMissing && !PathExists(file.m_sPath));
        if (!bNone && !ReadOrdinaryFile(file.m_sPath, source.m_sContent, c_nMaxFile))
        {
            sError = "cannot read " + file.m_sPath + ". " + ReadProblem(file.m_sPath);
            return false;
        }
        sources.push_back(std::move(source));
    }
    return ReadLibraryImages(sources, images, sError);
}

bool WriteLibraryImage(const CLibraryImage& image, const std::string& sPath, const std::string& sName)
{
    const std::string sMark = MakeTemporaryFile("emberdeck-merge");
    if (sMark.empty())
        return false;
    // The last letter decides.
    const std::string sTemporary = sMark + (CQSAUtil::IsFileCompressed(sName.c_str()) ? ".Fx00c" : ".Fx00a");
    std::string sContent;
    const bool bWritten = SaveLibraryImage(sTemporary.c_str(), image) &&
                          ReadOrdinaryFile(sTemporary, sContent) && WriteFileSafely(sPath, sContent);
    RemoveFile(sTemporary);
    RemoveFile(sMark);
    return bWritten;
}
