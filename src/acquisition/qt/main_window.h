#pragma once

#include <QMainWindow>

namespace brizalog {

// The main window of the desktop program: a view of the main form's model.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit MainWindow(QWidget* parent = nullptr);
};

}  // namespace brizalog
