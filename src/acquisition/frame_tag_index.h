#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brizalog {

// The first position in one frame of each tag that a decoder asks for, found in one pass over
// the frame instead of one search of the whole frame per tag.
//
// A tag "<" NAME ">" whose NAME holds no ">" starts at a "<" and ends at the first ">" behind
// it, so the first "<" whose text up to the next ">" equals the tag is exactly its first
// occurrence, as a plain text search finds it. Tags of another shape are searched for in the
// frame as they stand.
class FrameTagIndex {
public:
    // The tags to look for, numbered by their place in `tags`. The same text may stand twice.
    void SetTags(const std::vector<std::string>& tags);
    const std::vector<std::string>& tags() const { return m_tags; }
    // Finds the first occurrence of every tag in `frame`, which must outlive the look-ups.
    void Build(std::string_view frame);
    // 1-based position of the first occurrence of tag `id` in the frame, 0 when absent.
    long Position(std::size_t id) const;

private:
    struct Slot {
        std::string_view tag;  // empty: free
        std::size_t distinct = 0;
    };
    static std::uint32_t Hash(std::string_view text);

    std::vector<std::string> m_tags;
    std::vector<std::size_t> m_distinctOf;  // per tag: its distinct text, or kNotIndexed
    std::vector<Slot> m_slots;              // distinct texts, open addressing, a power of two
    std::vector<long> m_first;              // per distinct text: its first position, 0 if none
    std::size_t m_longest = 0;
    std::string_view m_frame;
};

}  // namespace brizalog
