#pragma once

#include <cstdint>
#include <functional>
#include <vector>

// Merges two orders of a list that had a third one before. The result has what bWanted says of mine and theirs, each
// once. What one side moved or put in stands behind what it stood behind there; with both sides turned round the result
// is the same, as long as comesFirst, asked for what isn't in the base, tells any two apart.
std::vector<uint64_t> MergeOrder(const std::vector<uint64_t>& base, const std::vector<uint64_t>& mine,
                                 const std::vector<uint64_t>& theirs,
                                 const std::function<bool(uint64_t)>& isWanted,
                                 const std::function<bool(uint64_t, uint64_t)>& comesFirst);
