#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace brizalog {

// The first position of every tag of one frame, so that each of the decoder's 48 tag searches
// is one look-up instead of a scan of the whole frame.
//
// A tag "<" NAME ">" whose NAME holds no ">" starts at a "<" and ends at the first ">" behind
// it, so the first "<" whose text up to the next ">" equals the tag is exactly its first
// occurrence, as a plain text search finds it. Tags of another shape are searched in the frame.
class FrameTagIndex {
public:
    // Indexes `frame`, which must outlive the look-ups. Only tags of up to `longestTag`
    // characters are indexed: a longer text between "<" and ">" is no tag the decoder asks for.
    void Build(std::string_view frame, std::size_t longestTag);
    // 1-based position of the first occurrence of `tag` in the frame, 0 when absent.
    long Find(std::string_view tag) const;

private:
    struct Slot {
        std::string_view tag;
        long position = 0;
        std::uint32_t generation = 0;  // the slot is free unless it holds this frame's number
    };
    static std::uint32_t Hash(std::string_view text);

    std::string_view m_frame;
    std::size_t m_longest = 0;
    std::vector<Slot> m_slots;  // open addressing, a power of two in size
    std::uint32_t m_generation = 0;
    std::vector<std::string_view> m_found;  // this frame's tags, in the order of their ">"
};

}  // namespace brizalog
