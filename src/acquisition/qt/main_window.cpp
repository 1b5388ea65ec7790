#include "acquisition/qt/main_window.h"

namespace brizalog {

MainWindow::MainWindow(QWidget* parent) : QMainWindow(parent) {
    setWindowTitle(QStringLiteral("Waiting for Data"));
    resize(640, 360);
}

}  // namespace brizalog
