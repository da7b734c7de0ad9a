#include "shell/AboutDialog.h"

#include "app/resources/DialogIds.h"
#include "app/resources/Strings.h"
#include "qsnumber.h"

namespace
{

// No build stamp: two builds of one source are the same program.
constexpr const char* c_szUnknownBuild = "[unknown]";
constexpr const char* c_szEdition = "ANSI Edition";

} // namespace

std::vector<CAboutText> CAboutSharedDlg::OnInitDialog() const
{
    std::string sProduct;
    std::string sVersion;
    std::string sLegal;
    ExtractVersionInformation(m_sModule, &sProduct, &sVersion, &sLegal, m_Reader);
    return {
        {eAbout_Title, sProduct},
        {eAbout_Version, QSFormat(FindString(c_nStrVersionLine).data(), sVersion.c_str(), c_szUnknownBuild)},
        {eAbout_Info, c_szEdition},
        {eAbout_Copyright, sLegal},
        {eAbout_Warning, std::string(FindString(c_nStrLegalNotice))},
    };
}
