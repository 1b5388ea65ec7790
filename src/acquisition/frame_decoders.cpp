#include <algorithm>

#include "acquisition/brizalog.h"
#include "catalogue/channels.h"
#include "catalogue/text_rules.h"

namespace brizalog {

// Readings are found by plain text search for their tags, first occurrence of each, through
// the frame's tag index. A missing element keeps its channel's last reading; an end tag before
// its start tag is a negative length, a failure that the intake's trap catches (or, in system
// 4, does not).
void Brizalog::DecodeElement(std::string_view frame, std::string_view startTag,
                             std::string_view endTag, int index) {
    const long s = m_tagIndex.Find(startTag);
    const long e = m_tagIndex.Find(endTag);
    if (s == 0 || e == 0) {
        return;
    }
    const long tagLength = static_cast<long>(startTag.size());
    m_elementValue = Mid(frame, s + tagLength, e - s - tagLength);
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
        m_tagIndex.Build(frame, 4);
        DecodeElement(frame, "<V>", "</V>", 9);
        DecodeElement(frame, "<I>", "</I>", 1);
        DecodeElement(frame, "<S>", "</S>", 12);
        DecodeElement(frame, "<R>", "</R>", 13);
        return;
    }
    // The user's channel table decides which element feeds which channel. Every tag is searched
    // for, whether the channel is enabled or not.
    const auto& names = m_state.channels.XMLhardware;
    for (int n = 1; n <= kChannelCount; ++n) {
        if (names[n] != m_tagNames[n]) {
            m_tagNames[n] = names[n];
            m_startTags[n].assign("<").append(names[n]).append(">");
            m_endTags[n].assign("</").append(names[n]).append(">");
            m_longestTag = 0;
        }
    }
    if (m_longestTag == 0) {
        for (int n = 1; n <= kChannelCount; ++n) {
            m_longestTag = std::max(m_longestTag, m_endTags[n].size());
        }
    }
    m_tagIndex.Build(frame, m_longestTag);
    for (int n = 1; n <= kChannelCount; ++n) {
        DecodeElement(frame, m_startTags[n], m_endTags[n], n);
    }
}

void Brizalog::DecodeMeterFrame() {
    const std::string_view frame = m_meterFrame;
    m_tagIndex.Build(frame, 7);
    // The temperature and three channels of one sensor into four consecutive RawValue indexes.
    // The channel tags are single literals: "<ch1>" and "<watts>" must stand side by side.
    auto sensor = [&](int first) {
        DecodeElement(frame, "<tmpr>", "</tmpr>", first);
        DecodeElement(frame, "<ch1><watts>", "</watts></ch1>", first + 1);
        DecodeElement(frame, "<ch2><watts>", "</watts></ch2>", first + 2);
        DecodeElement(frame, "<ch3><watts>", "</watts></ch3>", first + 3);
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
