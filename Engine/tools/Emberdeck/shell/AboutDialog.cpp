#include "shell/AboutDialog.h"

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
        {1016, sProduct},
        {1017, QSFormat(FindString(c_nStrVersionLine).data(), sVersion.c_str(), c_szUnknownBuild)},
        {1018, c_szEdition},
        {1019, sLegal},
        {1265, std::string(FindString(c_nStrLegalNotice))},
    };
}
