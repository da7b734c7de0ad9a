// SPDX-License-Identifier: 0BSD
#pragma once

#include <map>
#include <vector>

#include "game/KeyValues.h"

// The particles of an emitter, worked out for any moment from nothing but the key: no state is carried from
// frame to frame, so that pausing, starting again and reloading give the same picture for the same time.

struct CParticle
{
    CPoint m_At;
    CPoint m_Velocity;
    double m_fAge = 0;    // share of its life, 0 to below 1
    double m_fChance = 0; // 0 to below 1, its own for its whole life
};

// Where and when a particle ended, in seconds from the start of the key.
struct CParticleEnd
{
    CPoint m_At;
    double m_fTime = 0;
};

// When the particles of one key come into being. Made once for each key, since the curves have to be summed up.
class CBirths
{
public:
    static constexpr double c_fMost = 10000; // particles at once, whatever the key says

    CBirths(const CKey& key);

    double Lifetime() const { return m_fLifetime; } // seconds that a particle lives at most
    double Most() const { return m_fMost; }         // particles at once
    // How many have come until then, in seconds from the start of the key. Never more between two moments a
    // lifetime apart than Most(), give or take one.
    double CountAt(double fSeconds) const;
    // The moment at which the count passes nParticle.
    double TimeOf(double fParticle) const;

private:
    double m_fLength = 0;
    double m_fLifetime = 0;
    double m_fMost = 0;
    double m_fAtOnce = 0;         // in the moment of the start
    std::vector<double> m_Counts; // after each of so many equal parts of the length; the first is the start
};

// Belongs to a file: to be emptied with it.
using CBirthsOfKeys = std::map<const CKey*, CBirths>;
const CBirths& BirthsOf(const CKey& key, CBirthsOfKeys& births);

// Those that live fSeconds after the start of the key, the oldest first and at most nLimit of them. The key's own
// place is the origin.
std::vector<CParticle> ListParticles(const CKey& key, const CBirths& births, double fSeconds, size_t nLimit);

// The first nCount particles that have ended by then.
std::vector<CParticleEnd> ListEnds(const CKey& key, const CBirths& births, double fSeconds, size_t nCount);

// A value from 0 to below 1 that looks like chance and is the same each time.
double Chance(uint64_t nSeed, uint64_t nWhich);
