#include <algorithm>
#include <cstdint>

#include "acquisition/brizalog.h"
#include "catalogue/channels.h"
#include "catalogue/text_rules.h"

namespace brizalog {

// Readings are found by plain text search for their tags, first occurrence of each (through the
// frame's tag index). A missing element keeps its channel's last reading; an end tag before its
// start tag is a negative length, a failure that the intake's trap catches (or, in system 4,
// does not).
void Brizalog::DecodeElement(std::string_view frame, const FrameTagIndex& tags,
                             std::size_t startTag, int index) {
    const long s = tags.Position(startTag);
    const long e = tags.Position(startTag + 1);
    if (s == 0 || e == 0) {
        return;
    }
    const auto tagLength = static_cast<long>(tags.tags()[startTag].size());
    m_elementValue = Mid(frame, s + tagLength, e - s - tagLength);
    // A board sends whole numbers: up to 15 digits they read exactly, without the number rule.
    const std::string& text = m_elementValue;
    if (!text.empty() && text.size() <= 15 &&
        std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; })) {
        std::int64_t number = 0;
        for (char c : text) {
            number = number * 10 + (c - '0');
        }
        m_state.RawValue[index] = static_cast<double>(number);
        return;
    }
    if (IsNumeric(m_elementValue)) {
        m_state.RawValue[index] = ParseNumber(m_elementValue);
        return;
    }
    // A bad number rejects neither the frame nor the other readings. Nothing turns LogOK green
    // again while the program runs: every later logging flash is red.
    m_model.LogOK.colour = kRed;
    m_model.LogOK.visible = true;
    m_timer2.Enable();
}

void Brizalog::DecodeLoggerFrame() {
    const std::string_view frame = m_loggerFrame;
    if (m_state.settings.SystemType == 0) {
        if (m_fixedTags.tags().empty()) {
            m_fixedTags.SetTags({"<V>", "</V>", "<I>", "</I>", "<S>", "</S>", "<R>", "</R>"});
        }
        m_fixedTags.Build(frame);
        DecodeElement(frame, m_fixedTags, 0, 9);
        DecodeElement(frame, m_fixedTags, 2, 1);
        DecodeElement(frame, m_fixedTags, 4, 12);
        DecodeElement(frame, m_fixedTags, 6, 13);
        return;
    }
    // The user's channel table decides which element feeds which channel. Every tag is searched
    // for, whether the channel is enabled or not.
    const auto& names = m_state.channels.XMLhardware;
    bool changed = !m_tableTagsSet;
    for (int n = 1; n <= kChannelCount; ++n) {
        changed = changed || names[n] != m_tagNames[n];
    }
    if (changed) {
        std::vector<std::string> tags;
        for (int n = 1; n <= kChannelCount; ++n) {
            m_tagNames[n] = names[n];
            tags.push_back("<" + names[n] + ">");
            tags.push_back("</" + names[n] + ">");
        }
        m_tableTags.SetTags(tags);
        m_tableTagsSet = true;
    }
    m_tableTags.Build(frame);
    for (int n = 1; n <= kChannelCount; ++n) {
        DecodeElement(frame, m_tableTags, static_cast<std::size_t>(2 * n - 2), n);
    }
}

void Brizalog::DecodeMeterFrame() {
    const std::string_view frame = m_meterFrame;
    // The channel tags are single literals: "<ch1>" and "<watts>" must stand side by side.
    if (m_meterTags.tags().empty()) {
        m_meterTags.SetTags({"<tmpr>", "</tmpr>", "<ch1><watts>", "</watts></ch1>", "<ch2><watts>",
                             "</watts></ch2>", "<ch3><watts>", "</watts></ch3>"});
    }
    m_meterTags.Build(frame);
    // The temperature and three channels of one sensor into four consecutive RawValue indexes.
    auto sensor = [&](int first) {
        for (int i = 0; i < 4; ++i) {
            DecodeElement(frame, m_meterTags, static_cast<std::size_t>(2 * i), first + i);
        }
    };
    if (m_state.settings.SystemType == 3) {
        sensor(17);
        return;
    }
    // The 128 meter tells sensors 9 and 0 apart; the two tests are independent, so a cut that
    // holds both messages gives both blocks the values of the first.
    if (frame.find("<sensor>9") != std::string_view::npos) {
        sensor(17);
    }
    if (frame.find("<sensor>0") != std::string_view::npos) {
        sensor(21);
    }
}

}  // namespace brizalog
