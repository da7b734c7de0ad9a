// SPDX-License-Identifier: 0BSD
#include "make/Resources.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>

namespace
{
constexpr int c_nTextureSize = 32;
constexpr int c_nSampleRate = 8000;

void PutU32(std::string& s, uint32_t n)
{
    for (int i = 0; i < 4; ++i)
        s += char(n >> 8 * i & 255);
}
void PutU16(std::string& s, uint32_t n)
{
    s += char(n & 255);
    s += char(n >> 8 & 255);
}

char Channel(double f)
{
    return char(int(std::clamp(f, 0.0, 1.0) * 255));
}

struct CTexel
{
    double r, g, b, a; // 0 to 1
};

// An uncompressed 32-bit texture. The shape gets x and y from -1 to 1.
std::string Texture(const std::function<CTexel(double x, double y)>& shape)
{
    std::string s = "DDS ";
    PutU32(s, 124);
    PutU32(s, 0x100F); // caps, height, width, pitch, pixel format
    PutU32(s, c_nTextureSize);
    PutU32(s, c_nTextureSize);
    PutU32(s, c_nTextureSize * 4);
    s.append(13 * 4, '\0'); // depth, mip maps, reserved
    PutU32(s, 32);
    PutU32(s, 0x41); // RGB with alpha
    PutU32(s, 0);
    PutU32(s, 32);
    PutU32(s, 0x00FF0000);
    PutU32(s, 0x0000FF00);
    PutU32(s, 0x000000FF);
    PutU32(s, 0xFF000000);
    PutU32(s, 0x1000); // a texture
    s.append(4 * 4, '\0');
    for (int y = 0; y < c_nTextureSize; ++y)
        for (int x = 0; x < c_nTextureSize; ++x)
        {
            const CTexel t = shape((2 * x + 1.0) / c_nTextureSize - 1, (2 * y + 1.0) / c_nTextureSize - 1);
            s += Channel(t.b);
            s += Channel(t.g);
            s += Channel(t.r);
            s += Channel(t.a);
        }
    return s;
}

// Eight-bit mono. The wave gets seconds and gives -1 to 1.
std::string Sound(double fSeconds, const std::function<double(double)>& wave)
{
    const auto nSamples = uint32_t(fSeconds * c_nSampleRate) / 2 * 2;
    std::string s = "RIFF";
    PutU32(s, 36 + nSamples);
    s += "WAVEfmt ";
    PutU32(s, 16);
    PutU16(s, 1);
    PutU16(s, 1);
    PutU32(s, c_nSampleRate);
    PutU32(s, c_nSampleRate);
    PutU16(s, 1);
    PutU16(s, 8);
    s += "data";
    PutU32(s, nSamples);
    for (uint32_t i = 0; i < nSamples; ++i)
        s += char(int(128 + 127 * std::clamp(wave(double(i) / c_nSampleRate), -1.0, 1.0)));
    return s;
}

// The same noise on every machine.
class CNoise
{
public:
    double operator()()
    {
        m_n = m_n * 1664525u + 1013904223u;
        return double(m_n >> 8) / 0x800000 - 1;
    }

private:
    uint32_t m_n = 1;
};

double Glow(double x, double y, double fPower)
{
    return std::pow(std::max(0.0, 1 - std::hypot(x, y)), fPower);
}
} // namespace

std::vector<CResource> MakeResources()
{
    const std::string smoke = Texture(
        [](double x, double y)
        {
            const double f = Glow(x, y, 1.2) * (0.8 + 0.2 * std::sin(9 * x) * std::cos(7 * y));
            return CTexel{1, 1, 1, f};
        });
    const std::string scorch = Texture(
        [](double x, double y)
        {
            const double fEdge = 0.75 + 0.2 * std::sin(7 * std::atan2(y, x));
            return CTexel{0.1, 0.08, 0.06, std::max(0.0, 1 - std::hypot(x, y) / fEdge)};
        });
    CNoise noise;
    return {
        {"textures\\flame.dds", Texture(
                                    [](double x, double y)
                                    {
                                        const double f = Glow(x * (1.6 - 0.6 * y), y, 0.9);
                                        return CTexel{1, 0.4 + 0.6 * f, f * f, f};
                                    })},
        {"textures\\glow.dds", Texture(
                                   [](double x, double y) {
                                       return CTexel{1, 1, 1, Glow(x, y, 2)};
                                   })},
        {"textures\\spark.dds", Texture(
                                    [](double x, double y)
                                    {
                                        const double f = std::max(Glow(6 * x, y, 1), Glow(x, 6 * y, 1));
                                        return CTexel{1, 1, 0.8, f};
                                    })},
        {"textures\\drop.dds", Texture(
                                   [](double x, double y) {
                                       return CTexel{0.8, 0.9, 1, Glow(5 * x, y, 0.7)};
                                   })},
        {"textures\\smoke.dds", smoke},
        {"textures\\smoke.Texture00a",
         "( texture\r\n\t( source \"smoke.dds\" )\r\n\t( wrap \"clamp\" )\r\n)\r\n"},
        {"textures\\scorch.dds", scorch},
        {"textures\\scorch.Texture00a",
         "( texture\r\n\t( source \"scorch.dds\" )\r\n\t( wrap \"clamp\" )\r\n)\r\n"},
        {"sounds\\crackle.wav", Sound(0.25,
                                      [&](double)
                                      {
                                          const double f = noise();
                                          return f > 0.96 || f < -0.96 ? f * 0.9 : f * 0.05;
                                      })},
        {"sounds\\boom.wav",
         Sound(0.5,
               [&](double t) { return (std::sin(330 * t * (1 - t)) + noise() * 0.4) * std::exp(-6 * t); })},
        {"sounds\\hiss.wav", Sound(0.25, [&](double t) { return noise() * 0.5 * std::sin(12.566 * t); })},
        {"models\\log.Model00a",
         "( model\r\n\t( box 1.200000 0.250000 0.250000 )\r\n\t( clips \"idle\" \"glow\" \"fall "
         "apart\" )\r\n)\r\n"},
        {"models\\stone.Model00a",
         "( model\r\n\t( sphere 0.400000 )\r\n\t( clips \"idle\" \"roll\" )\r\n)\r\n"},
    };
}

std::vector<std::string> ResourceNames(std::string_view sFolder)
{
    static const std::vector<CResource> c_Resources = MakeResources();
    std::vector<std::string> names;
    for (const CResource& resource : c_Resources)
        if (std::string_view(resource.m_sName).substr(0, sFolder.size()) == sFolder)
            names.push_back(resource.m_sName);
    return names;
}
