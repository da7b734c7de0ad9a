#pragma once

#include <cstddef>
#include <iterator>
#include <memory>
#include <vector>

#include "model/Track.h"

// The keys of all tracks as one range: from the top track down, each track's in its order. Good until a key or a
// track comes, goes or changes its place; the keys' own data may change meanwhile.
class CKeyView
{
    using CTracks = std::vector<std::unique_ptr<CTrack>>;

public:
    class CIterator
    {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = CKey;
        using difference_type = std::ptrdiff_t;
        using pointer = CKey*;
        using reference = CKey&;

        CIterator() = default;
        CIterator(CTracks::const_iterator itTrack, CTracks::const_iterator itEnd)
            : m_itTrack(itTrack),
              m_itEnd(itEnd)
        {
            PassEmptyTracks();
        }
        CKey& operator*() const { return *(*m_itTrack)->Keys()[m_nKey]; }
        CKey* operator->() const { return &**this; }
        CIterator& operator++()
        {
            ++m_nKey;
            PassEmptyTracks();
            return *this;
        }
        CIterator operator++(int)
        {
            const CIterator before = *this;
            ++*this;
            return before;
        }
        bool operator==(const CIterator& other) const
        {
            return m_itTrack == other.m_itTrack && m_nKey == other.m_nKey;
        }

    private:
        void PassEmptyTracks()
        {
            while (m_itTrack != m_itEnd && m_nKey >= (*m_itTrack)->Keys().size())
            {
                ++m_itTrack;
                m_nKey = 0;
            }
        }

        CTracks::const_iterator m_itTrack;
        CTracks::const_iterator m_itEnd;
        size_t m_nKey = 0;
    };

    // Borrowed; outlives the view.
    explicit CKeyView(const CTracks& tracks) : m_Tracks(tracks) {}
    CIterator begin() const { return CIterator(m_Tracks.begin(), m_Tracks.end()); }
    CIterator end() const { return CIterator(m_Tracks.end(), m_Tracks.end()); }

private:
    const CTracks& m_Tracks;
};
