#include "acquisition/frame_tag_index.h"

#include <algorithm>

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
    // Room for every "<" of the frame at most half full; frames of a board need 256 slots.
    const auto opens = static_cast<std::size_t>(std::count(frame.begin(), frame.end(), '<'));
    std::size_t size = 256;
    while (size < opens * 2) {
        size *= 2;
    }
    if (m_slots.size() < size || ++m_generation == 0) {
        m_slots.assign(size, Slot{});
        m_generation = 1;
    }
    const std::size_t mask = m_slots.size() - 1;

    // One pass: each ">" closes every "<" that stands open before it.
    m_pending.clear();
    const char* const begin = frame.data();
    const char* const end = begin + frame.size();
    for (const char* p = begin; p != end; ++p) {
        if (*p == '<') {
            m_pending.push_back(p);
            continue;
        }
        if (*p != '>' || m_pending.empty()) {
            continue;
        }
        // The opens of one ">" give texts of different lengths, so their order does not matter;
        // from the nearest on, the first one too long ends the batch.
        for (auto it = m_pending.rbegin(); it != m_pending.rend(); ++it) {
            const char* open = *it;
            const auto length = static_cast<std::size_t>(p - open) + 1;
            if (length > longestTag) {
                break;
            }
            const std::string_view tag(open, length);
            for (std::size_t i = Hash(tag) & mask;; i = (i + 1) & mask) {
                Slot& slot = m_slots[i];
                if (slot.generation != m_generation) {
                    slot = {tag, static_cast<long>(open - begin) + 1, m_generation};
                    break;
                }
                if (slot.tag == tag) {
                    break;  // the first occurrence stays
                }
            }
        }
        m_pending.clear();
    }
}

long FrameTagIndex::Find(std::string_view tag) const {
    const bool indexed = tag.size() >= 2 && tag.size() <= m_longest && tag.front() == '<' &&
                         tag.find('>') == tag.size() - 1;
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
