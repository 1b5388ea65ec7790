#include <QApplication>

#include "acquisition/qt/main_window.h"

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    brizalog::MainWindow window;
    window.show();
    return QApplication::exec();
}
