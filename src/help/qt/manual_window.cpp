#include "help/qt/manual_window.h"

#include <QAbstractTextDocumentLayout>
#include <QDesktopServices>
#include <QHBoxLayout>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QSplitter>
#include <QTextBlock>
#include <QTextDocument>
#include <QVBoxLayout>
#include <algorithm>
#include <vector>

#include "ui/qt_text.h"
#include "ui/window_fit.h"

namespace brizalog {

namespace {

// The widest a screenshot is shown, in logical pixels: about the width of a page of text. In a
// narrower window it shrinks with the text column, down to a size that still shows something.
constexpr int kImageWidth = 760;
constexpr int kSmallestImageWidth = 160;

// Enter and Shift+Enter in the find box step through the matches; Escape is left to the window.
class FindBox : public QLineEdit {
public:
    using QLineEdit::QLineEdit;
    std::function<void(bool backward)> onStep;

protected:
    void keyPressEvent(QKeyEvent* event) override {
        if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && onStep) {
            onStep(event->modifiers().testFlag(Qt::ShiftModifier));
            return;
        }
        QLineEdit::keyPressEvent(event);
    }
};

}  // namespace

void ManualBrowser::resizeEvent(QResizeEvent* event) {
    QTextBrowser::resizeEvent(event);
    FitImages();
}

int ManualBrowser::ImageWidth() const {
    // The text column: the viewport less the document's margins on both sides.
    const int column = viewport()->width() - 2 * static_cast<int>(document()->documentMargin()) - 4;
    return std::max(kSmallestImageWidth, std::min(column, kImageWidth));
}

// A screenshot wider than the column is shown at the column's width, drawn from as many of its
// own pixels as the screen has for that width.
QImage ManualBrowser::Fitted(const QImage& picture, int width) const {
    if (picture.width() <= width) {
        return picture;
    }
    const qreal ratio = devicePixelRatioF();
    QImage fitted = picture.scaledToWidth(std::min(picture.width(), qRound(width * ratio)),
                                          Qt::SmoothTransformation);
    fitted.setDevicePixelRatio(static_cast<qreal>(fitted.width()) / width);
    return fitted;
}

QVariant ManualBrowser::loadResource(int type, const QUrl& name) {
    const QVariant loaded = QTextBrowser::loadResource(type, name);
    if (type != QTextDocument::ImageResource) {
        return loaded;
    }
    QImage picture = loaded.value<QImage>();
    if (picture.isNull()) {
        picture = QImage::fromData(loaded.toByteArray());
    }
    if (picture.isNull()) {
        return loaded;
    }
    m_pictures[name] = picture;
    m_fittedWidth = ImageWidth();
    return Fitted(picture, m_fittedWidth);
}

void ManualBrowser::FitImages() {
    const int width = ImageWidth();
    if (width == m_fittedWidth || m_pictures.empty()) {
        return;
    }
    m_fittedWidth = width;
    QTextDocument* doc = document();
    for (const auto& [name, picture] : m_pictures) {
        doc->addResource(QTextDocument::ImageResource, name, Fitted(picture, width));
    }
    doc->markContentsDirty(0, doc->characterCount());
}

ManualWindow::ManualWindow(std::vector<std::filesystem::path> folders, QWidget* parent)
    : QDialog(parent), m_viewer(std::move(folders)) {
    setObjectName(QString::fromUtf8(ManualViewer::kWindow.data(),
                                    static_cast<int>(ManualViewer::kWindow.size())));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    setSizeGripEnabled(true);

    m_contents = new QListWidget(this);
    m_contents->setObjectName(QStringLiteral("contents"));
    m_contents->setAccessibleName(QStringLiteral("Contents"));
    m_contents->setTextElideMode(Qt::ElideRight);
    m_contents->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_browser = new ManualBrowser(this);
    m_browser->setObjectName(QStringLiteral("guide"));
    m_browser->setAccessibleName(QStringLiteral("Manual"));
    m_browser->setOpenLinks(false);
    m_browser->setOpenExternalLinks(false);
    // Text, code and screenshots all fit the column: what is left to scroll sideways is a
    // pixel of rounding in a table's width, whose bar would only take room.
    m_browser->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // A match stays marked while the find box has the focus.
    QPalette marks = m_browser->palette();
    for (const QPalette::ColorRole role : {QPalette::Highlight, QPalette::HighlightedText}) {
        marks.setColor(QPalette::Inactive, role, marks.color(QPalette::Active, role));
    }
    m_browser->setPalette(marks);

    auto* splitter = new QSplitter(this);
    splitter->addWidget(m_contents);
    splitter->addWidget(m_browser);
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);
    splitter->setChildrenCollapsible(false);
    const int em = fontMetrics().horizontalAdvance(QStringLiteral("M"));
    splitter->setSizes({em * 17, em * 70});

    // The find bar, hidden until Ctrl+F.
    m_findBar = new QWidget(this);
    auto* findBox = new FindBox(m_findBar);
    m_findBox = findBox;
    m_findBox->setObjectName(QStringLiteral("findText"));
    m_findBox->setPlaceholderText(QStringLiteral("Find in the manual"));
    m_findBox->setClearButtonEnabled(true);
    auto* findLabel = new QLabel(QStringLiteral("&Find:"), m_findBar);
    findLabel->setBuddy(m_findBox);
    auto* previous = new QPushButton(QStringLiteral("&Previous"), m_findBar);
    auto* next = new QPushButton(QStringLiteral("&Next"), m_findBar);
    for (QPushButton* button : {previous, next}) {
        button->setAutoDefault(false);
    }
    m_findStatus = new QLabel(m_findBar);
    m_findStatus->setObjectName(QStringLiteral("findStatus"));
    auto* hide = new QPushButton(QStringLiteral("Hide"), m_findBar);
    hide->setAutoDefault(false);
    auto* findRow = new QHBoxLayout(m_findBar);
    findRow->setContentsMargins(0, 0, 0, 0);
    findRow->addWidget(findLabel);
    findRow->addWidget(m_findBox, 1);
    findRow->addWidget(previous);
    findRow->addWidget(next);
    findRow->addWidget(m_findStatus);
    findRow->addWidget(hide);

    auto* close = new QPushButton(QStringLiteral("&Close"), this);
    close->setObjectName(QStringLiteral("close"));
    close->setAutoDefault(false);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(m_findBar, 1);
    bottom->addStretch();
    bottom->addWidget(close);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(splitter, 1);
    layout->addLayout(bottom);

    // The manual's handlers touch nothing of the shared state, so they run here without the
    // event gate that would render every window of the program for each key typed.
    auto* find = new QShortcut(QKeySequence::Find, this);
    connect(find, &QShortcut::activated, this, [this] {
        m_viewer.Find_Shortcut();
        Render();
        m_findBox->setFocus(Qt::ShortcutFocusReason);
        m_findBox->selectAll();
    });
    auto* findAgain = new QShortcut(QKeySequence::FindNext, this);
    connect(findAgain, &QShortcut::activated, this, [this] { FindNext(false); });
    auto* findBack = new QShortcut(QKeySequence::FindPrevious, this);
    connect(findBack, &QShortcut::activated, this, [this] { FindNext(true); });
    findBox->onStep = [this](bool backward) { FindNext(backward); };
    connect(m_findBox, &QLineEdit::textChanged, this, [this](const QString& text) {
        m_viewer.FindText_Change(FromQt(text));
        // Typing searches from where the last match began, so the match grows with the word.
        QTextCursor cursor = m_browser->textCursor();
        cursor.setPosition(cursor.selectionStart());
        m_browser->setTextCursor(cursor);
        FindNext(false);
    });
    connect(next, &QPushButton::clicked, this, [this] { FindNext(false); });
    connect(previous, &QPushButton::clicked, this, [this] { FindNext(true); });
    connect(hide, &QPushButton::clicked, this, [this] {
        m_viewer.Find_Close();
        Render();
        m_browser->setFocus();
    });
    connect(close, &QPushButton::clicked, this, &QDialog::close);
    connect(m_browser, &QTextBrowser::anchorClicked, this, &ManualWindow::OpenLink);
    connect(m_contents, &QListWidget::itemActivated, this, [this](QListWidgetItem* item) {
        ShowSection(FromQt(item->data(Qt::UserRole).toString()));
    });
    connect(m_contents, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) {
        ShowSection(FromQt(item->data(Qt::UserRole).toString()));
    });

    // A page of text and its contents, within what the screen offers.
    QSize size(em * 92, em * 62);
    if (const QScreen* screen = parent != nullptr ? parent->screen() : this->screen()) {
        size = size.boundedTo(screen->availableGeometry().size() * 9 / 10);
    }
    resize(size);
    FitToScreen(this);
}

void ManualWindow::Load() {
    m_viewer.Form_Load();
    const ManualModel& m = m_viewer.model();
    const QString folder = ToQt(m.folder.generic_string());
    if (!folder.isEmpty()) {
        m_browser->setSearchPaths({folder});
        m_browser->document()->setMetaInformation(
            QTextDocument::DocumentUrl,
            QUrl::fromLocalFile(folder + QStringLiteral("/")).toString());
    }
    m_browser->setMarkdown(ToQt(m.markdown));
    // A long line of code wraps rather than make the whole page scroll sideways.
    QTextCursor cursor(m_browser->document());
    for (QTextBlock block = m_browser->document()->begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().nonBreakableLines()) {
            QTextBlockFormat format = block.blockFormat();
            format.setNonBreakableLines(false);
            cursor.setPosition(block.position());
            cursor.setBlockFormat(format);
        }
    }
    IndexHeadings();
    m_contents->clear();
    for (const ManualSection& section : m.sections) {
        auto* item = new QListWidgetItem(ToQt(section.title), m_contents);
        item->setToolTip(ToQt(section.title));
        item->setData(Qt::UserRole, ToQt(section.anchor));
    }
    m_contents->setVisible(!m.sections.empty());
    Render();
}

void ManualWindow::Render() {
    const ManualModel& m = m_viewer.model();
    setWindowTitle(ToQt(m.caption));
    m_findBar->setVisible(m.findBarVisible);
    m_findStatus->setText(m.findFailed ? QStringLiteral("Not found") : QString());
}

void ManualWindow::reject() {
    if (m_viewer.model().findBarVisible) {
        m_viewer.Find_Close();
        Render();
        m_browser->setFocus();
        return;
    }
    QDialog::reject();
}

bool ManualWindow::FindNext(bool backward) {
    const QString text = m_findBox->text();
    bool found = true;
    if (!text.isEmpty()) {
        const QTextDocument::FindFlags flags =
            backward ? QTextDocument::FindBackward : QTextDocument::FindFlags();
        const QTextCursor before = m_browser->textCursor();
        const int scrolled = m_browser->verticalScrollBar()->value();
        found = m_browser->find(text, flags);
        if (!found) {
            // From the other end, once; a text that is nowhere leaves the page where it was.
            QTextCursor cursor = before;
            cursor.movePosition(backward ? QTextCursor::End : QTextCursor::Start);
            m_browser->setTextCursor(cursor);
            found = m_browser->find(text, flags);
            if (!found) {
                m_browser->setTextCursor(before);
                m_browser->verticalScrollBar()->setValue(scrolled);
            }
        }
    }
    m_viewer.FindResult(found);
    Render();
    return found;
}

void ManualWindow::IndexHeadings() {
    m_headings.clear();
    for (QTextBlock block = m_browser->document()->begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() > 0) {
            m_headings.emplace(HeadingAnchor(FromQt(block.text())), block.position());
        }
    }
}

bool ManualWindow::ShowSection(const std::string& anchor) {
    const auto it = m_headings.find(anchor);
    if (it == m_headings.end()) {
        return false;
    }
    QTextDocument* doc = m_browser->document();
    const QTextBlock block = doc->findBlock(it->second);
    QTextCursor cursor(block);
    m_browser->setTextCursor(cursor);
    const QRectF place = doc->documentLayout()->blockBoundingRect(block);
    m_browser->verticalScrollBar()->setValue(static_cast<int>(place.top()));
    return true;
}

// A link to a section of the guide scrolls there, one to the web opens the browser, and any other
// (a file of the sources) does nothing.
void ManualWindow::OpenLink(const QUrl& url) {
    const QString scheme = url.scheme();
    const bool local = scheme.isEmpty() || scheme == QStringLiteral("file");
    if (local && url.hasFragment()) {
        const std::string link = "#" + FromQt(url.fragment());
        if (const ManualSection* section = m_viewer.SectionOfLink(link)) {
            ShowSection(section->anchor);
        }
        return;
    }
    if (scheme == QStringLiteral("http") || scheme == QStringLiteral("https") ||
        scheme == QStringLiteral("mailto")) {
        QDesktopServices::openUrl(url);
    }
}

}  // namespace brizalog
