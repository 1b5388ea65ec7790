#pragma once

#include <QDialog>

#include "setup/small_input.h"

class QLineEdit;
class QPushButton;

namespace brizalog {

// TextInput and XMLcodeINPUT: one line of text, Enter saves and Escape cancels. ColourCHART: the
// sixteen swatches painted in their colours with their captions; a click (or Enter on the focused
// swatch) chooses, Escape cancels.
class SmallInputWindow : public QDialog {
    Q_OBJECT

public:
    SmallInputWindow(std::string_view window, SharedState& state, QWidget* parent = nullptr);

    SmallInput& form() { return m_form; }
    void Load();
    void Render();

public slots:
    void reject() override;

private:
    QPushButton* LabelButton(int index);

    SmallInput m_form;
    QLineEdit* m_text = nullptr;
    QPushButton* m_labels[18] = {};
};

}  // namespace brizalog
