#pragma once

#include <QDialog>

#include "acquisition/port_discovery.h"

class QComboBox;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace brizalog {

// The window of FindComms: renders its model and forwards its clicks.
class FindCommsWindow : public QDialog {
    Q_OBJECT

public:
    FindCommsWindow(Settings& settings, PortProbe& probe, QWidget* parent = nullptr);

    FindComms& form() { return m_form; }
    void Render();

private:
    FindComms m_form;
    QPushButton* m_findPorts;
    QPushButton* m_exit;
    QComboBox* m_cbocomm;
    QLineEdit* m_selectedPort;
    QPlainTextEdit* m_availablePorts;
};

}  // namespace brizalog
