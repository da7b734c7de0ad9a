#pragma once

#include <string>
#include <string_view>

#include <QString>

// Text in the model is bytes. On the screen they are UTF-8 where they are valid UTF-8, else Windows-1252;
// what a user types goes back in the form that the library already uses.
namespace QtText
{
QString ToQt(std::string_view sBytes);
std::string FromQt(const QString& sText);

// True while the open library has texts that aren't UTF-8: typed text is then written as Windows-1252.
void SetLegacyForm(bool bLegacy);
bool IsUtf8(std::string_view sBytes);

// File names are the machine's bytes.
QString PathToQt(const std::string& sPath);
std::string PathFromQt(const QString& sPath);

// Plain text where a toolkit would take "&" for the mark of a shortcut letter.
QString Plain(const QString& sText);
// A text as a window's title, where a toolkit would take "[*]" for the place of the mark of a changed document.
QString Title(const QString& sText);
} // namespace QtText
