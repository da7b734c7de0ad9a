#include "app/LibraryNames.h"

#include <algorithm>

#include "qsstrutils.h"

std::string CleanName(std::string_view sText, size_t nMaxBytes)
{
    std::string sName(QSTrim(sText.substr(0, sText.find('\0'))));
    std::replace(sName.begin(), sName.end(), '"', '\'');
    return CutAtCharacter(sName, nMaxBytes);
}
