#pragma once

#include "acquisition/brizalog.h"
#include "publish/publisher.h"

namespace brizalog {

// The publisher on the main form: it reads the form's state after each logging tick and frame
// and hands the messages to the link. Whatever goes wrong in building them (memory) is dropped
// with that build: a record or a frame never waits or fails for the broker.
class FormPublisher : public FormObserver {
public:
    // Observes `form` from now on; the link is configured by Start.
    FormPublisher(Brizalog& form, PublishLink& link);
    ~FormPublisher() override;
    FormPublisher(const FormPublisher&) = delete;
    FormPublisher& operator=(const FormPublisher&) = delete;

    // Configures the link from the form's options, which its start-up has read: once, after
    // the start-up.
    void Start();
    // Takes the options in memory again; each tick does so as well.
    void Reconfigure();

    void AfterTick() override;
    void AfterFrame() override;
    void AfterOptions() override;

    const Publisher& publisher() const { return m_publisher; }

private:
    Brizalog& m_form;
    Publisher m_publisher;
};

}  // namespace brizalog
