// Writes the program's icon into a folder of icons: make-icons FOLDER. The shapes are those that the program
// draws itself, so that the icon of the menu and the one of the window are the same.

#include <charconv>
#include <cstdio>
#include <string>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include "app/resources/ProgramArt.h"

namespace
{
constexpr int c_Sizes[] = {16, 22, 24, 32, 48, 64, 96, 128, 256, 512};

struct CRgb
{
    int r, g, b;
};
CRgb Split(CColorRef n)
{
    return {int(n & 0xFF), int(n >> 8 & 0xFF), int(n >> 16 & 0xFF)};
}

std::string Number(float f)
{
    char buffer[32];
    return std::string(buffer, std::to_chars(buffer, buffer + sizeof(buffer), f).ptr);
}

std::string PathData(const CVectorShape& shape)
{
    std::string s;
    for (int32_t i = 0; i < shape.m_nSteps; ++i)
    {
        const CPathStep& step = shape.m_pSteps[i];
        s += step.m_cKind;
        if (step.m_cKind == 'C')
            s +=
                Number(step.x1) + " " + Number(step.y1) + " " + Number(step.x2) + " " + Number(step.y2) + " ";
        if (step.m_cKind != 'Z')
            s += Number(step.x) + " " + Number(step.y);
    }
    return s;
}

std::string Svg()
{
    const std::string sSize = Number(c_fProgramArtSize);
    std::string s =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" +
        sSize + "\" height=\"" + sSize + "\" viewBox=\"0 0 " + sSize + " " + sSize + "\">\n";
    for (const CVectorShape& shape : c_ProgramIcon)
    {
        const CRgb rgb = Split(shape.m_nColor);
        char szColor[8];
        std::snprintf(szColor, sizeof(szColor), "#%02x%02x%02x", rgb.r & 255, rgb.g & 255, rgb.b & 255);
        s += "  <path fill=\"" + std::string(szColor) + "\" d=\"" + PathData(shape) + "\"/>\n";
    }
    return s + "</svg>\n";
}

QPainterPath Path(const CVectorShape& shape)
{
    QPainterPath path;
    for (int32_t i = 0; i < shape.m_nSteps; ++i)
    {
        const CPathStep& step = shape.m_pSteps[i];
        if (step.m_cKind == 'M')
            path.moveTo(step.x, step.y);
        else if (step.m_cKind == 'L')
            path.lineTo(step.x, step.y);
        else if (step.m_cKind == 'C')
            path.cubicTo(step.x1, step.y1, step.x2, step.y2, step.x, step.y);
        else
            path.closeSubpath();
    }
    return path;
}

QImage Picture(int nSize)
{
    QImage image(nSize, nSize, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.scale(nSize / c_fProgramArtSize, nSize / c_fProgramArtSize);
    for (const CVectorShape& shape : c_ProgramIcon)
    {
        const CRgb rgb = Split(shape.m_nColor);
        painter.setBrush(QColor(rgb.r, rgb.g, rgb.b));
        painter.drawPath(Path(shape));
    }
    return image;
}

bool Write(const QString& sPath, const std::string& sText)
{
    QFile file(sPath);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
           file.write(sText.data(), qint64(sText.size())) == qint64(sText.size()) && file.flush();
}
} // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
    {
        std::fputs("usage: make-icons FOLDER\n", stderr);
        return 2;
    }
    const QDir folder(QFile::decodeName(argv[1]));
    bool bWritten = folder.mkpath(QStringLiteral("scalable/apps")) &&
                    Write(folder.filePath(QStringLiteral("scalable/apps/emberdeck.svg")), Svg());
    for (const int nSize : c_Sizes)
    {
        const QString sFolder = QStringLiteral("%1x%1/apps").arg(nSize);
        bWritten = bWritten && folder.mkpath(sFolder) &&
                   Picture(nSize).save(folder.filePath(sFolder + QStringLiteral("/emberdeck.png")));
    }
    if (!bWritten)
        std::fprintf(stderr, "make-icons: cannot write into %s\n", argv[1]);
    return bWritten ? 0 : 1;
}
