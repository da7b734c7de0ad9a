// Text of sections and keys: what is parsed comes out again, and what is set can be got, at once and from the
// text. The first three lines of the input are a section, a key and a value, the rest is the text.

#include <algorithm>

#include "FuzzTools.h"
#include "platform/Profile.h"

namespace
{
void CheckValue(const CProfileText& text, const std::string& sSection, const std::string& sKey,
                const std::string& sExpected)
{
    std::string sValue;
    Require(text.Get(sSection, sKey, sValue, std::string::npos), "a key that was set is gone");
    Require(sValue == sExpected, "a value comes back changed");
    Require(text.Get(sSection, sKey, sValue, 3) && sValue == sExpected.substr(0, 3), "a value isn't cut");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    CatchAsserts();
    CFuzzInput input(pData, nSize);
    const std::string sSection = input.Line(), sKey = input.Line();
    std::string sValue = input.Line();
    CProfileText text, again;
    text.Parse(std::string(input.Rest()));
    const std::string sBefore = text.Format();
    again.Parse(sBefore);
    Require(again.Format() == sBefore, "the written text reads differently");
    std::string sOld, sOldAgain;
    const bool bThere = text.Get(sSection, sKey, sOld, std::string::npos);
    Require(again.Get(sSection, sKey, sOldAgain, std::string::npos) == bThere && sOldAgain == sOld,
            "the written text holds other values");

    text.Set(sSection, sKey, sValue);
    const std::string sAfter = text.Format();
    if (sAfter == sBefore)
        return 0; // a name that no line can hold, or the value that stood there
    std::replace(sValue.begin(), sValue.end(), '\r', ' ');
    CheckValue(text, sSection, sKey, sValue);
    again.Parse(sAfter);
    CheckValue(again, sSection, sKey, sValue);
    again.Set(sSection, sKey, sValue);
    Require(again.Format() == sAfter, "setting the same value changes the text");
    again.SetPadded(sSection, sKey, sValue);
    Require(again.Format().size() <= sAfter.size(), "a padded value takes more room");
    return 0;
}
