#include "help/qt/about_window.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <QVBoxLayout>
#include <QWidget>

#include "catalogue/version.h"
#include "ui/qt_text.h"
#include "ui/window_fit.h"

namespace brizalog {

AboutWindow::AboutWindow(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("About ") + ToQt(ProductTitle()));

    auto* title = new QLabel(ToQt(ProductTitle()), this);
    title->setObjectName(QStringLiteral("lblTitle"));
    title->setStyleSheet(QStringLiteral("font-size: 20pt; font-weight: bold;"));
    auto* version = new QLabel(ToQt(VersionText()), this);
    version->setObjectName(QStringLiteral("lblVersion"));
    auto* description = new QLabel(
        QStringLiteral("Logs and shows the readings of a small renewable-energy installation:\n"
                       "wind turbines, battery bank, solar, loads, or a Current Cost meter."),
        this);
    description->setObjectName(QStringLiteral("lblDescription"));

    auto* ok = new QPushButton(QStringLiteral("OK"), this);
    ok->setObjectName(QStringLiteral("cmdOK"));
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    auto* info = new QPushButton(QStringLiteral("System Info"), this);
    info->setObjectName(QStringLiteral("cmdSysInfo"));
    connect(info, &QPushButton::clicked, this, &AboutWindow::StartSystemInfo);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(info);
    buttons->addWidget(ok);

    // The texts scroll on a screen too small for them; the buttons stay in view.
    auto* body = new QWidget;
    auto* texts = new QVBoxLayout(body);
    texts->setContentsMargins(12, 8, 12, 0);
    texts->addWidget(title);
    texts->addWidget(version);
    texts->addSpacing(8);
    texts->addWidget(description);
    texts->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->addWidget(new ScrollingArea(body, this), 1);
    layout->addSpacing(12);
    layout->addLayout(buttons);
    FitToScreen(this);
}

QStringList AboutWindow::KnownTools() {
    return {QStringLiteral("kinfocenter"), QStringLiteral("hardinfo2"), QStringLiteral("hardinfo"),
            QStringLiteral("cpu-x"), QStringLiteral("lshw-gtk")};
}

QString AboutWindow::InstalledTool() {
    for (const QString& tool : KnownTools()) {
        const QString path = QStandardPaths::findExecutable(tool);
        if (!path.isEmpty()) {
            return path;
        }
    }
    return {};
}

void AboutWindow::StartSystemInfo() {
    const QString tool = InstalledTool();
    if (!tool.isEmpty() && QProcess::startDetached(tool, {})) {
        return;
    }
    QMessageBox::information(
        this, windowTitle(),
        QStringLiteral("No system information tool was found on this computer.\n"
                       "Looked for: ") +
            KnownTools().join(QStringLiteral(", ")) + QStringLiteral("."));
}

}  // namespace brizalog
