#include "acquisition/frame_tag_index.h"

#include <algorithm>
#include <cstring>

#include "catalogue/text_rules.h"

namespace brizalog {

std::uint32_t FrameTagIndex::Hash(std::string_view text) {
    std::uint32_t hash = 2166136261u;
    for (char c : text) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619u;
    }
    return hash;
}

void FrameTagIndex::Build(std::string_view frame, std::size_t longestTag) {
    m_frame = frame;
    m_longest = longestTag;
    m_found.clear();
    if (longestTag < 2) {
        return;
    }
    // Each ">" closes the "<" that stand before it, back to the previous ">" and no further
    // than the longest tag. The "<" of one ">" give texts of different lengths, so their order
    // does not matter; the ">" are taken in the order of the frame, so the first occurrence of
    // a tag is found first.
    const char* const begin = frame.data();
    const char* const end = begin + frame.size();
    const char* previousClose = begin - 1;
    for (const char* close = begin;
         (close = static_cast<const char*>(
              std::memchr(close, '>', static_cast<std::size_t>(end - close)))) != nullptr;
         ++close) {
        const char* limit = close - std::min<std::ptrdiff_t>(close - begin, longestTag - 1);
        if (limit <= previousClose) {
            limit = previousClose + 1;
        }
        for (const char* open = close - 1; open >= limit; --open) {
            if (*open == '<') {
                m_found.emplace_back(open, static_cast<std::size_t>(close - open) + 1);
            }
        }
        previousClose = close;
    }

    // Room for every tag at most half full; frames of a board need 256 slots.
    std::size_t size = 256;
    while (size < m_found.size() * 2) {
        size *= 2;
    }
    if (m_slots.size() < size || ++m_generation == 0) {
        m_slots.assign(size, Slot{});
        m_generation = 1;
    }
    const std::size_t mask = m_slots.size() - 1;
    for (const std::string_view tag : m_found) {
        for (std::size_t i = Hash(tag) & mask;; i = (i + 1) & mask) {
            Slot& slot = m_slots[i];
            if (slot.generation != m_generation) {
                slot = {tag, static_cast<long>(tag.data() - begin) + 1, m_generation};
                break;
            }
            if (slot.tag == tag) {
                break;  // the first occurrence stays
            }
        }
    }
}

long FrameTagIndex::Find(std::string_view tag) const {
    bool indexed =
        tag.size() >= 2 && tag.size() <= m_longest && tag.front() == '<' && tag.back() == '>';
    for (std::size_t i = 1; indexed && i + 1 < tag.size(); ++i) {
        indexed = tag[i] != '>';
    }
    if (!indexed) {
        return InStr(m_frame, tag);
    }
    const std::size_t mask = m_slots.size() - 1;
    for (std::size_t i = Hash(tag) & mask;; i = (i + 1) & mask) {
        const Slot& slot = m_slots[i];
        if (slot.generation != m_generation) {
            return 0;
        }
        if (slot.tag == tag) {
            return slot.position;
        }
    }
}

}  // namespace brizalog
