#pragma once

#include "publish/form_publisher.h"
#include "publish/qt/mqtt_link.h"

namespace brizalog {

// Publishing to MQTT in the desktop program and the logger: the broker link and the publisher
// on the main form, made after the form's start-up so that PersonalString is known. With
// MqttEnabled off it sends nothing and opens no connection. Its end publishes "offline" and
// leaves the broker, waiting two seconds at most.
class Publishing {
public:
    explicit Publishing(Brizalog& form);
    ~Publishing();
    Publishing(const Publishing&) = delete;
    Publishing& operator=(const Publishing&) = delete;

    const MqttLink& link() const { return m_link; }

private:
    MqttLink m_link;
    FormPublisher m_publisher;
};

}  // namespace brizalog
