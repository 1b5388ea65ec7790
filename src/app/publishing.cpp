#include "app/publishing.h"

namespace brizalog {

Publishing::Publishing(Brizalog& form) : m_publisher(form, m_link) {
    m_publisher.Start();
    if (OptionsReadableByOthers(form.programFolder())) {
        TellNotice("options",
                   "options.cfg holds a password and other users of this machine can "
                   "read it; make it readable by its owner only (chmod 600)");
    }
}

Publishing::~Publishing() {
    const bool enabled = m_publisher.publisher().settings().enabled;
    m_link.Stop();
    if (enabled) {
        const MqttLink::Counts counts = m_link.counts();
        TellNotice("mqtt", "stopped: " + std::to_string(counts.delivered) +
                               " messages delivered, " + std::to_string(counts.dropped) +
                               " dropped from the full queue, " + std::to_string(counts.waiting) +
                               " not sent");
    }
}

}  // namespace brizalog
