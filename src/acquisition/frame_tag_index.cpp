#include "acquisition/frame_tag_index.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "catalogue/text_rules.h"

namespace brizalog {

namespace {

constexpr std::size_t kNotIndexed = std::numeric_limits<std::size_t>::max();

bool Indexable(std::string_view tag) {
    if (tag.size() < 2 || tag.front() != '<' || tag.back() != '>') {
        return false;
    }
    return tag.substr(1, tag.size() - 2).find('>') == std::string_view::npos;
}

}  // namespace

// Tags are a few characters long: eight bytes at a time, gathered in parallel, one multiply each.
inline std::uint32_t FrameTagIndex::Hash(std::string_view text) {
    std::uint64_t hash = text.size();
    for (std::size_t at = 0; at < text.size(); at += 8) {
        std::uint64_t word = 0;
        const std::size_t count = std::min<std::size_t>(8, text.size() - at);
        for (std::size_t i = 0; i < count; ++i) {
            word |= static_cast<std::uint64_t>(static_cast<unsigned char>(text[at + i])) << (8 * i);
        }
        hash = (hash ^ word) * 0x9E3779B97F4A7C15ULL;
    }
    return static_cast<std::uint32_t>(hash >> 32);
}

namespace {

// The same text; tags are too short for a call of memcmp to pay.
bool SameText(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) {
        return false;
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (a[i] != b[i]) {
            return false;
        }
    }
    return true;
}

}  // namespace

void FrameTagIndex::SetTags(const std::vector<std::string>& tags) {
    m_tags = tags;
    std::size_t size = 16;
    while (size < tags.size() * 2) {
        size *= 2;
    }
    m_slots.assign(size, Slot{});
    m_distinctOf.assign(tags.size(), kNotIndexed);
    m_longest = 0;
    std::size_t distinct = 0;
    const std::size_t mask = size - 1;
    for (std::size_t id = 0; id < m_tags.size(); ++id) {
        const std::string_view tag = m_tags[id];
        if (!Indexable(tag)) {
            continue;
        }
        m_longest = std::max(m_longest, tag.size());
        for (std::size_t i = Hash(tag) & mask;; i = (i + 1) & mask) {
            Slot& slot = m_slots[i];
            if (slot.tag.empty()) {
                slot = {tag, distinct++};
                m_distinctOf[id] = slot.distinct;
                break;
            }
            if (slot.tag == tag) {
                m_distinctOf[id] = slot.distinct;
                break;
            }
        }
    }
    m_first.assign(distinct, 0);
}

void FrameTagIndex::Build(std::string_view frame) {
    m_frame = frame;
    std::fill(m_first.begin(), m_first.end(), 0);
    if (m_first.empty()) {
        return;
    }
    // Each ">" closes the "<" that stand before it, back to the previous ">" and no further
    // than the longest tag. The ">" are taken in the order of the frame, so the first
    // occurrence of a tag is found first.
    const std::size_t mask = m_slots.size() - 1;
    const char* const begin = frame.data();
    const char* const end = begin + frame.size();
    const char* previousClose = begin - 1;
    for (const char* close = begin;
         (close = static_cast<const char*>(
              std::memchr(close, '>', static_cast<std::size_t>(end - close)))) != nullptr;
         ++close) {
        const auto reach =
            std::min<std::ptrdiff_t>(close - begin, static_cast<std::ptrdiff_t>(m_longest) - 1);
        const char* limit = std::max(close - reach, previousClose + 1);
        for (const char* open = close - 1; open >= limit; --open) {
            if (*open != '<') {
                continue;
            }
            const std::string_view tag(open, static_cast<std::size_t>(close - open) + 1);
            for (std::size_t i = Hash(tag) & mask;; i = (i + 1) & mask) {
                const Slot& slot = m_slots[i];
                if (slot.tag.empty()) {
                    break;
                }
                if (SameText(slot.tag, tag)) {
                    long& first = m_first[slot.distinct];
                    if (first == 0) {
                        first = static_cast<long>(open - begin) + 1;
                    }
                    break;
                }
            }
        }
        previousClose = close;
    }
}

long FrameTagIndex::Position(std::size_t id) const {
    const std::size_t distinct = m_distinctOf[id];
    if (distinct == kNotIndexed) {
        return InStr(m_frame, m_tags[id]);
    }
    return m_first[distinct];
}

}  // namespace brizalog
