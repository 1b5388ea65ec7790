#include "catalogue/qt/splash_window.h"

#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "catalogue/provisioning.h"
#include "catalogue/version.h"
#include "ui/qt_text.h"

namespace brizalog {

namespace {

// Clicks on the labels of the splash reach the window itself.
QLabel* PassiveLabel(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setAttribute(Qt::WA_TransparentForMouseEvents);
    label->setAlignment(Qt::AlignCenter);
    return label;
}

}  // namespace

SplashWindow::SplashWindow(std::filesystem::path folder, Dialogs& dialogs, QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      m_folder(std::move(folder)),
      m_dialogs(dialogs) {
    setObjectName(QStringLiteral("frmSplash"));
    setWindowTitle(ToQt(ProductTitle()));
    setModal(true);
    setFocusPolicy(Qt::StrongFocus);
    setStyleSheet(QStringLiteral(
        "#frmSplash { background: #16324f; }"
        "#frmSplash QLabel { color: #eef3f8; }"
        "#Frame1 { border: 2px solid #7fb3e0; border-radius: 8px; background: #1d4266; }"
        "#lblProductName { font-size: 30pt; font-weight: bold; color: #ffffff; }"
        "#frmSplash #Label6 { font-size: 14pt; font-weight: bold; color: #9be08a; }"
        "#ABORTBUTTON { padding: 6px 18px; }"));

    auto* frame = new QFrame(this);
    frame->setObjectName(QStringLiteral("Frame1"));
    frame->setAttribute(Qt::WA_TransparentForMouseEvents);
    auto* inner = new QVBoxLayout(frame);
    inner->setContentsMargins(36, 24, 36, 24);
    inner->setSpacing(10);

    auto* product = PassiveLabel(ToQt(ProductTitle()), frame);
    product->setObjectName(QStringLiteral("lblProductName"));
    auto* company = PassiveLabel(
        QStringLiteral("Data logger for wind turbines, solar, batteries and energy meters"), frame);
    company->setObjectName(QStringLiteral("lblCompanyProduct"));
    auto* version = PassiveLabel(ToQt(VersionText()), frame);
    version->setObjectName(QStringLiteral("lblVersion"));
    auto* platform = PassiveLabel(QStringLiteral("for Linux desktops"), frame);
    platform->setObjectName(QStringLiteral("lblPlatform"));
    auto* run = PassiveLabel(QStringLiteral("Click to RUN"), frame);
    run->setObjectName(QStringLiteral("Label6"));

    inner->addWidget(product);
    inner->addWidget(company);
    inner->addWidget(version);
    inner->addWidget(platform);
    inner->addSpacing(12);
    inner->addWidget(run);

    auto* abort = new QPushButton(QStringLiteral("Click to ABORT"), this);
    abort->setObjectName(QStringLiteral("ABORTBUTTON"));
    abort->setAutoDefault(false);
    // Keys belong to the window, which any key dismisses; the button answers only to a click.
    abort->setFocusPolicy(Qt::NoFocus);
    connect(abort, &QPushButton::clicked, this, &SplashWindow::Abort);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(18, 18, 18, 18);
    layout->addWidget(frame);
    layout->addWidget(abort, 0, Qt::AlignHCenter);

    // Whatever is missing is made before any reader needs it; an existing file is never touched.
    ProvisionProgramFolder(m_folder);
}

void SplashWindow::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    // A key anywhere lets the start go on, so the splash takes the keyboard when it comes up.
    activateWindow();
    setFocus();
}

void SplashWindow::mousePressEvent(QMouseEvent* event) {
    QDialog::mousePressEvent(event);
    accept();
}

void SplashWindow::keyPressEvent(QKeyEvent* event) {
    // Any key lets the start go on; Escape too, rather than rejecting the window.
    event->accept();
    accept();
}

void SplashWindow::Abort() {
    m_abortFlag = 1;
    m_dialogs.ShowMessage(AbortMessage(m_folder.string()));
    accept();
}

}  // namespace brizalog
