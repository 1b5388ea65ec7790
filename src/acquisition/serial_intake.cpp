#include "acquisition/brizalog.h"
#include "catalogue/failure.h"
#include "catalogue/local_time.h"
#include "catalogue/options.h"
#include "catalogue/system_types.h"

namespace brizalog {

namespace {

// A string that held a frame larger than this gives its memory back when it takes the next one:
// a single huge frame must not keep its size for the life of the process.
constexpr std::size_t kKeptCapacity = 16 * 1024;

// Text without a frame end that an unattended logger keeps at most, and what it keeps of its
// newest text when it drops the rest: a device on the wrong line speed sends noise that never
// closes a frame, and a frame in progress is far shorter than what stays.
constexpr std::size_t kLongestUnendedText = 1024 * 1024;
constexpr std::size_t kKeptUnendedText = 64 * 1024;

void TakeText(std::string& to, std::string_view from) {
    if (to.capacity() > kKeptCapacity && from.size() <= kKeptCapacity) {
        std::string(from).swap(to);
    } else {
        to.assign(from);
    }
}

}  // namespace

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
    if (m_receiveBuffer.capacity() > kKeptCapacity) {
        m_receiveBuffer.shrink_to_fit();
    }
    m_receiveBuffer.append(text);
    m_dropTold = false;
    m_frameEnd.Reset();
    m_meterStart.Reset();
    m_meterEnd.Reset();
}

// The desktop keeps all text until a frame end comes, however long that takes. An unattended
// logger cannot: past the bound the oldest text goes, and the journal is told once until the
// next frame.
void Brizalog::BoundReceiveBuffer() {
    if (m_receiveBuffer.size() <= kLongestUnendedText || !KeepLoggingArmed()) {
        return;
    }
    const std::size_t dropped = m_receiveBuffer.size() - kKeptUnendedText;
    m_receiveBuffer.erase(0, dropped);
    m_receiveBuffer.shrink_to_fit();
    m_frameEnd.Reset();
    m_meterStart.Reset();
    m_meterEnd.Reset();
    if (!m_dropTold) {
        m_dropTold = true;
        TellNotice("intake", "no frame end in " + std::to_string(dropped + kKeptUnendedText) +
                                 " bytes from the port: the oldest " + std::to_string(dropped) +
                                 " were dropped (is the line speed right?)");
    }
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
        TakeText(m_meterFrame, m_receiveBuffer);
        TakeText(m_state.LastFrame, m_receiveBuffer);
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
                BoundReceiveBuffer();
                return;
            }
            TakeText(m_loggerFrame, m_receiveBuffer);
            // The next frame begins with this "[" whatever the board sends first.
            ResetReceiveBuffer("[");
            TakeText(m_model.Label2.text, m_loggerFrame);
            m_timer2.Enable();
            dataOK.colour = kGreen;
            dataOK.visible = true;
            TakeText(m_state.LastFrame, m_loggerFrame);
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
                    BoundReceiveBuffer();
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
                BoundReceiveBuffer();
                return;
            }
            if (!m_state.options.Flag("ContainMeterFailures")) {
                takeMeterFrame();
                return;
            }
            // The user's choice: a cut that holds the end of one message and the start of the
            // next is skipped as the Classic branch skips it, and said so, so that a real CC128
            // behind a USB adapter cannot end the program.
            try {
                takeMeterFrame();
            } catch (const Failure& failure) {
                ContainMeterFailure(failure);
            }
            return;

        case DecoderKind::None:
            // A system type outside 0..8 decodes nothing and has no trap.
            BoundReceiveBuffer();
            CalculateChannels();
            return;
    }
}

std::string Brizalog::EndingMessage(const std::string& platformText) const {
    if (DecoderOf(m_state.settings.SystemType) != DecoderKind::Meter128 ||
        m_state.options.Flag("ContainMeterFailures")) {
        return platformText;
    }
    return platformText +
           "\r\n\r\nA CC128 meter message may have been cut badly by the serial line. Brizalog "
           "can skip such messages and keep logging: Setup > Options..., \"" +
           std::string(FindOptionRow("ContainMeterFailures")->caption) + "\".";
}

void Brizalog::ContainMeterFailure(const Failure& failure) {
    ++m_meterFailuresContained;
    Control& logOK = m_model.LogOK;
    logOK.colour = kRed;
    logOK.visible = true;
    m_timer2.Enable();
    TellNotice("meter", "a message cut badly was skipped at " + LongTime(m_services.clock.Now()) +
                            " (" + failure.what() + "; " +
                            std::to_string(m_meterFailuresContained) + " since the start)");
}

}  // namespace brizalog
