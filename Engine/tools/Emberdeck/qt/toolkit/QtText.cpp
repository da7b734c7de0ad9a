#include "qt/toolkit/QtText.h"

#include <QFile>
#include <QStringDecoder>

namespace
{
bool s_bLegacy = false;

constexpr char16_t c_aWindows1252[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                         0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                         0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                         0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

// 0 for a character that the code page doesn't have.
unsigned char ToWindows1252(char16_t c)
{
    if (c < 0x80 || (c >= 0xA0 && c < 0x100))
        return static_cast<unsigned char>(c);
    for (int i = 0; i < 32; ++i)
        if (c_aWindows1252[i] == c)
            return static_cast<unsigned char>(0x80 + i);
    return 0;
}
} // namespace

bool QtText::IsUtf8(std::string_view sBytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString sText = decoder(QByteArrayView(sBytes.data(), static_cast<qsizetype>(sBytes.size())));
    return !decoder.hasError() &&
           sText.toUtf8() == QByteArrayView(sBytes.data(), static_cast<qsizetype>(sBytes.size()));
}

QString QtText::ToQt(std::string_view sBytes)
{
    if (IsUtf8(sBytes))
        return QString::fromUtf8(sBytes.data(), static_cast<qsizetype>(sBytes.size()));
    QString sText;
    for (char c : sBytes)
    {
        const unsigned char n = static_cast<unsigned char>(c);
        sText += QChar(n >= 0x80 && n < 0xA0 ? c_aWindows1252[n - 0x80] : char16_t(n));
    }
    return sText;
}

std::string QtText::FromQt(const QString& sText)
{
    if (!s_bLegacy)
        return sText.toStdString();
    std::string sBytes;
    for (QChar c : sText)
    {
        const unsigned char n = ToWindows1252(c.unicode());
        sBytes += n || c.isNull() ? static_cast<char>(n) : '?';
    }
    return sBytes;
}

void QtText::SetLegacyForm(bool bLegacy)
{
    s_bLegacy = bLegacy;
}

QString QtText::PathToQt(const std::string& sPath)
{
    return QFile::decodeName(QByteArray::fromStdString(sPath));
}

std::string QtText::PathFromQt(const QString& sPath)
{
    return QFile::encodeName(sPath).toStdString();
}

QString QtText::Title(const QString& sText)
{
    return QString(sText).replace(QLatin1String("[*]"), QLatin1String("[*][*]"));
}

QString QtText::Plain(const QString& sText)
{
    return QString(sText).replace(QLatin1Char('&'), QLatin1String("&&"));
}
