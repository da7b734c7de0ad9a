// SPDX-License-Identifier: 0BSD
#include "game/Emitter.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr size_t c_nParts = 600; // of a key's length, for summing its curves up
constexpr size_t c_nMostKeys = 512;
constexpr double c_fLongest = 1e6; // seconds; counts stay far below what a double counts one by one
constexpr double c_fTurn = 6.283185307179586;

struct CLaw // what all particles of a key obey
{
    const CKey& m_Key;
    const CBirths& m_Births;
    CPoint m_Gravity;
    double m_fSpread;     // radians
    bool m_bFalls;        // comes out of the sky rather than from the origin
    double m_fTurbulence; // of the moment

    CLaw(const CKey& key, const CBirths& births, double fSeconds) : m_Key(key), m_Births(births)
    {
        const CKeyValues start(key, 0), now(key, ShareOf(key, fSeconds));
        m_Gravity = start.Point("Gravity", {});
        m_fSpread = start.Number("Spread", 0, 0, 180) * c_fTurn / 360;
        const CPoint velocity = start.Point("Velocity", {});
        m_bFalls = velocity.y < -1;
        m_fTurbulence = now.Number("Turbulence", 0, 0, 10);
    }

    double LifeOf(uint64_t nParticle) const
    {
        return m_Births.Lifetime() * (0.65 + 0.35 * Chance(nParticle, 1));
    }

    CParticle At(uint64_t nParticle, double fBorn, double fAge) const;
};

// Two directions across the given one.
void Across(const CPoint& along, CPoint& one, CPoint& other)
{
    one = std::abs(along.y) < 0.9 ? CPoint{along.z, 0, -along.x} : CPoint{0, -along.z, along.y};
    const double fLength = std::sqrt(one.x * one.x + one.y * one.y + one.z * one.z);
    one = one * (1 / fLength);
    other = {along.y * one.z - along.z * one.y, along.z * one.x - along.x * one.z,
             along.x * one.y - along.y * one.x};
}

// A velocity turned by at most the spread, with a speed of its own.
CPoint Spread(const CPoint& velocity, double fSpread, uint64_t nParticle)
{
    const double fSpeed =
        std::sqrt(velocity.x * velocity.x + velocity.y * velocity.y + velocity.z * velocity.z);
    if (!(fSpeed > 1e-6))
        return velocity;
    const CPoint along = velocity * (1 / fSpeed);
    CPoint one, other;
    Across(along, one, other);
    const double fAway = fSpread * std::sqrt(Chance(nParticle, 2));
    const double fRound = c_fTurn * Chance(nParticle, 3);
    const CPoint direction =
        along * std::cos(fAway) + (one * std::cos(fRound) + other * std::sin(fRound)) * std::sin(fAway);
    return direction * (fSpeed * (0.7 + 0.5 * Chance(nParticle, 4)));
}

CParticle CLaw::At(uint64_t nParticle, double fBorn, double fAge) const
{
    const CKeyValues birth(m_Key, ShareOf(m_Key, fBorn));
    CParticle particle;
    particle.m_fAge = fAge / LifeOf(nParticle);
    particle.m_fChance = Chance(nParticle, 5);
    const CPoint start = Spread(birth.Point("Velocity", {}), m_fSpread, nParticle);
    particle.m_Velocity = start + m_Gravity * fAge;
    particle.m_At = start * fAge + m_Gravity * (fAge * fAge / 2);
    if (m_bFalls) // from high enough to reach the ground at the end of its life
    {
        const double fLife = LifeOf(nParticle);
        particle.m_At.x += (Chance(nParticle, 6) - 0.5) * 24;
        particle.m_At.z += (Chance(nParticle, 7) - 0.5) * 6;
        particle.m_At.y += std::min(30.0, -(start.y * fLife + m_Gravity.y * fLife * fLife / 2));
    }
    else // not from a point: a fire has a bed
    {
        const double fBed = 0.5 * birth.Number("Size", 0.1, 0, 4) * Chance(nParticle, 6);
        particle.m_At.x += fBed * std::cos(c_fTurn * Chance(nParticle, 7));
        particle.m_At.z += fBed * std::sin(c_fTurn * Chance(nParticle, 7));
    }
    const double fWhirl = m_fTurbulence * 0.12 * fAge;
    particle.m_At.x += fWhirl * std::sin(3.1 * fAge + c_fTurn * Chance(nParticle, 8));
    particle.m_At.y += fWhirl * 0.6 * std::sin(2.3 * fAge + c_fTurn * Chance(nParticle, 9));
    return particle;
}
} // namespace

double Chance(uint64_t nSeed, uint64_t nWhich)
{
    uint64_t n = nSeed * 0x9E3779B97F4A7C15u + nWhich * 0xD1B54A32D192ED03u + 0x2545F4914F6CDD1Du;
    n = (n ^ (n >> 30)) * 0xBF58476D1CE4E5B9u;
    n = (n ^ (n >> 27)) * 0x94D049BB133111EBu;
    return double((n ^ (n >> 31)) >> 11) * 0x1p-53;
}

CBirths::CBirths(const CKey& key)
{
    const CKeyValues start(key, 0);
    m_fLength = std::min(double(key.m_fEnd) - double(key.m_fStart), c_fLongest);
    m_fLifetime = start.Number("Lifetime", 1, 0.02, 60);
    m_fMost = start.Number("Max Particles", 200, 1, c_fMost);
    if (!(m_fLength > 0))
        return;
    // A burst comes where its curve rises, from nothing at the start: as many as it rises by.
    double fBurst = start.Number("Burst", 0, 0, m_fMost);
    double fCount = m_fAtOnce = fBurst;
    const double fPart = m_fLength / c_nParts;
    m_Counts.reserve(c_nParts + 1);
    m_Counts.push_back(fCount);
    for (size_t i = 1; i <= c_nParts; ++i)
    {
        const CKeyValues middle(key, (double(i) - 0.5) / c_nParts), end(key, double(i) / c_nParts);
        const double fRate = middle.Number("Rate", 0, 0, 1e6);
        const double fNext = end.Number("Burst", 0, 0, m_fMost);
        const double fLiving = fCount - CountAt(double(i) * fPart - m_fLifetime);
        const double fRoom = m_fMost * std::max(1.0, fPart / m_fLifetime) - fLiving;
        fCount += std::clamp(fRate * fPart + std::max(0.0, fNext - fBurst), 0.0, std::max(0.0, fRoom));
        fBurst = fNext;
        m_Counts.push_back(fCount);
    }
}

double CBirths::CountAt(double fSeconds) const
{
    if (m_Counts.empty() || fSeconds < 0)
        return 0;
    const double fPlace = fSeconds / m_fLength * c_nParts;
    if (fPlace >= c_nParts)
        return m_Counts.back();
    const auto nPart = size_t(fPlace);
    if (nPart + 1 >= m_Counts.size()) // still being summed up
        return m_Counts.back();
    return m_Counts[nPart] + (m_Counts[nPart + 1] - m_Counts[nPart]) * (fPlace - double(nPart));
}

double CBirths::TimeOf(double fParticle) const
{
    if (m_Counts.empty() || fParticle < m_fAtOnce)
        return 0;
    const auto it = std::upper_bound(m_Counts.begin(), m_Counts.end(), fParticle);
    if (it == m_Counts.end())
        return m_fLength;
    const auto nPart = size_t(it - m_Counts.begin()) - 1; // the first count isn't above: it came at once
    return (double(nPart) + (fParticle - m_Counts[nPart]) / (*it - m_Counts[nPart])) * m_fLength / c_nParts;
}

const CBirths& BirthsOf(const CKey& key, CBirthsOfKeys& births)
{
    const auto it = births.find(&key);
    if (it != births.end())
        return it->second;
    if (births.size() >= c_nMostKeys)
        births.clear();
    return births.emplace(&key, CBirths(key)).first->second;
}

std::vector<CParticle> ListParticles(const CKey& key, const CBirths& births, double fSeconds, size_t nLimit)
{
    std::vector<CParticle> particles;
    const double fUntil = births.CountAt(fSeconds);
    // Of those that came in the moment fSeconds - Lifetime() itself nothing is left.
    double fParticle = std::ceil(births.CountAt(fSeconds - births.Lifetime()));
    const CLaw law(key, births, fSeconds);
    nLimit = std::min(nLimit, size_t(births.Most()));
    const uint64_t nSeed = uint64_t(key.m_nID) << 40;
    for (; fParticle < fUntil && particles.size() < nLimit; ++fParticle)
    {
        const uint64_t nParticle = nSeed + uint64_t(fParticle);
        const double fBorn = births.TimeOf(fParticle);
        const double fAge = fSeconds - fBorn;
        if (fAge >= 0 && fAge < law.LifeOf(nParticle))
            particles.push_back(law.At(nParticle, fBorn, fAge));
    }
    return particles;
}

std::vector<CParticleEnd> ListEnds(const CKey& key, const CBirths& births, double fSeconds, size_t nCount)
{
    std::vector<CParticleEnd> ends;
    const CLaw law(key, births, fSeconds);
    const uint64_t nSeed = uint64_t(key.m_nID) << 40;
    for (double fParticle = 0; ends.size() < nCount && fParticle < births.CountAt(fSeconds); ++fParticle)
    {
        const uint64_t nParticle = nSeed + uint64_t(fParticle);
        const double fBorn = births.TimeOf(fParticle);
        const double fLife = law.LifeOf(nParticle);
        if (fBorn + fLife > fSeconds)
            break; // they come in order, give or take what a life varies
        ends.push_back({law.At(nParticle, fBorn, fLife).m_At, fBorn + fLife});
    }
    return ends;
}
