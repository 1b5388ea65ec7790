#include "acquisition/brizalog.h"
#include "catalogue/failure.h"
#include "catalogue/system_types.h"

namespace brizalog {

bool Brizalog::MarkerSearch::FoundIn(std::string_view buffer) {
    if (buffer.size() < m_scanned) {
        m_scanned = 0;
    }
    // A marker may straddle the old end of the buffer and the text just appended.
    const std::size_t overlap = m_marker.size() - 1;
    const std::size_t from = m_scanned > overlap ? m_scanned - overlap : 0;
    if (buffer.find(m_marker, from) != std::string_view::npos) {
        return true;
    }
    m_scanned = buffer.size();
    return false;
}

void Brizalog::ResetReceiveBuffer(std::string_view text) {
    // Emptied, then filled: an assignment from the text makes GCC 12 warn of an overlap that
    // cannot be.
    m_receiveBuffer.clear();
    m_receiveBuffer.append(text);
    m_frameEnd.Reset();
    m_meterStart.Reset();
    m_meterEnd.Reset();
}

// Every event of the port runs the whole intake, whatever kind of event it was.
void Brizalog::MSComm1_OnComm() {
    const std::string received = m_services.serial.ReadAll();
    m_services.serial.ClearReceiveCount();
    const long frames = m_state.GoodDataCount;
    SerialIntake(received);
    // Every calculated frame adds to the count; a tick never runs inside this event.
    if (m_observer != nullptr && m_state.GoodDataCount != frames) {
        m_observer->AfterFrame();
    }
}

// Whatever has arrived when the end marker is found is the frame, text behind the marker
// included; that text is gone from the stream. Nothing tests the start of a frame, its length
// or a checksum, and a frame is never rejected as a whole.
void Brizalog::SerialIntake(std::string_view received) {
    m_receiveBuffer.append(received);
    Control& dataOK = m_model.DataOK;
    // Both meter decoders take the whole buffer as the frame once it is cut.
    const auto takeMeterFrame = [&] {
        m_timer2.Enable();
        m_meterFrame = m_receiveBuffer;
        m_state.LastFrame = m_receiveBuffer;
        ResetReceiveBuffer("");
        dataOK.colour = kGreen;
        dataOK.visible = true;
        m_timer3.Enable();
        DecodeMeterFrame();
        CalculateChannels();
    };

    switch (DecoderOf(m_state.settings.SystemType)) {
        case DecoderKind::LoggerFixedTags:
        case DecoderKind::LoggerTableTags:
            if (!m_frameEnd.FoundIn(m_receiveBuffer)) {
                return;
            }
            m_loggerFrame = m_receiveBuffer;
            // The next frame begins with this "[" whatever the board sends first.
            ResetReceiveBuffer("[");
            m_model.Label2.text = m_loggerFrame;
            m_timer2.Enable();
            dataOK.colour = kGreen;
            dataOK.visible = true;
            m_state.LastFrame = m_loggerFrame;
            m_timer3.Enable();
            // A failure in decoding or calculating ends the intake silently; the next frame
            // starts afresh.
            try {
                DecodeLoggerFrame();
                CalculateChannels();
            } catch (const Failure&) {
            }
            return;

        case DecoderKind::MeterClassic:
            try {
                if (!m_meterEnd.FoundIn(m_receiveBuffer)) {
                    return;
                }
                takeMeterFrame();
            } catch (const Failure&) {
            }
            return;

        case DecoderKind::Meter128:
            // No trap here: a failure in this branch leaves the handler and ends the process.
            // The text of an opening "<msg>" cuts a frame too, so one message that arrives in
            // two reads is decoded twice, each piece for what it holds.
            if (!m_meterStart.FoundIn(m_receiveBuffer) && !m_meterEnd.FoundIn(m_receiveBuffer)) {
                return;
            }
            takeMeterFrame();
            return;

        case DecoderKind::None:
            // A system type outside 0..8 decodes nothing and has no trap.
            CalculateChannels();
            return;
    }
}

}  // namespace brizalog
