#include "publish/form_publisher.h"

#include <exception>

namespace brizalog {

namespace {

template <typename Body>
void Contained(Body&& body) {
    try {
        body();
    } catch (const std::exception&) {
    }
}

}  // namespace

FormPublisher::FormPublisher(Brizalog& form, PublishLink& link) : m_form(form), m_publisher(link) {
    m_form.SetObserver(this);
}

FormPublisher::~FormPublisher() {
    m_form.SetObserver(nullptr);
}

void FormPublisher::Start() {
    Contained([&] { m_publisher.Configure(m_form.state()); });
}

void FormPublisher::Reconfigure() {
    Contained([&] { m_publisher.Configure(m_form.state()); });
}

void FormPublisher::AfterTick() {
    Contained([&] {
        m_publisher.Configure(m_form.state());
        m_publisher.AfterTick(m_form.state(), m_form.model().caption);
    });
}

void FormPublisher::AfterOptions() {
    Reconfigure();
}

void FormPublisher::AfterFrame() {
    Contained([&] {
        m_publisher.AfterFrame(m_form.state(), m_form.model().caption, m_form.clock().Now());
    });
}

}  // namespace brizalog
