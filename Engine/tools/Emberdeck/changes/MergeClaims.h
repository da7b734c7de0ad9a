#pragma once

#include <algorithm>
#include <deque>
#include <vector>

#include "changes/Merge.h"

// What a thing claims that only one may have: a key its time on a track, an effect its name.
enum class EClaim : uint8_t
{
    eMerged, // what comes of both sides
    eMine,   // what mine has; nothing where mine hasn't the thing
    eTheirs
};

// Gives each of nCount things its claim, so that none has what another one has. Those of one side never rule each other
// out. Where two of different sides do, settle(loser, winner) is asked which side stands; on it goes with what falls
// back. Each thing falls back twice at the most: merged, mine, theirs.
//
// TBoard knows who has what: Has(n, eClaim), Put(n, eClaim), Lift(n), and Rivals(n, eClaim), those that stand in the
// way, of which the first is enough for what is merged.
template <class TBoard, class TSettle>
std::vector<EClaim> SettleClaims(std::vector<EClaim> claims, TBoard& board, const TSettle& settle)
{
    std::vector<bool> placed(claims.size());
    std::deque<size_t> open;
    const auto put = [&](size_t n)
    {
        placed[n] = board.Has(n, claims[n]);
        if (placed[n])
            board.Put(n, claims[n]);
    };
    const auto fallBack = [&](size_t n, EClaim eClaim)
    {
        if (placed[n])
            board.Lift(n);
        placed[n] = false;
        claims[n] = eClaim;
        open.push_back(n);
    };
    const auto ask = [&](size_t n, size_t nRival)
    { return settle(n, nRival) == EMergeSide::eMine ? EClaim::eMine : EClaim::eTheirs; };
    const auto isTheirs = [&](size_t n) { return claims[n] == EClaim::eTheirs; };

    for (size_t n = 0; n < claims.size(); ++n)
    {
        if (claims[n] == EClaim::eMine)
            put(n);
        else
            open.push_back(n);
    }
    while (!open.empty())
    {
        const size_t n = open.front();
        open.pop_front();
        if (placed[n] || !board.Has(n, claims[n]))
            continue;
        const std::vector<size_t> rivals = board.Rivals(n, claims[n]);
        const bool bMerged = claims[n] == EClaim::eMerged;
        if (!rivals.empty() && bMerged)
            fallBack(n, ask(n, rivals.front()));
        else if (!isTheirs(n) && std::any_of(rivals.begin(), rivals.end(), isTheirs))
            fallBack(n, EClaim::eTheirs);
        else
        {
            for (const size_t nRival : rivals)
                fallBack(nRival, isTheirs(n) ? EClaim::eTheirs : ask(nRival, n));
            put(n);
        }
    }
    return claims;
}
