#pragma once

#include <QDialog>
#include <QImage>
#include <QTextBrowser>
#include <QUrl>
#include <map>
#include <string>

#include "help/manual.h"

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QWidget;

namespace brizalog {

// The text of the manual, with its screenshots no wider than the text column, so that a page
// never needs a sideways scroll; the full image stays for a screen of high density.
class ManualBrowser : public QTextBrowser {
    Q_OBJECT

public:
    using QTextBrowser::QTextBrowser;
    // Makes every image as wide as the text column at most, keeping its proportions.
    void FitImages();

protected:
    QVariant loadResource(int type, const QUrl& name) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    int ImageWidth() const;
    QImage Fitted(const QImage& picture, int width) const;

    std::map<QUrl, QImage> m_pictures;  // each image as read, by its name in the text
    int m_fittedWidth = 0;
};

// "Brizalog manual": the user guide with its contents beside it, a find bar (Ctrl+F; Enter and
// F3 find the next, Shift+Enter the previous; Escape hides it) and links between its sections.
// It is not modal, so the guide can stay open beside the window it describes.
class ManualWindow : public QDialog {
    Q_OBJECT

public:
    ManualWindow(std::vector<std::filesystem::path> folders, QWidget* parent = nullptr);

    ManualViewer& viewer() { return m_viewer; }
    ManualBrowser* browser() const { return m_browser; }
    QLineEdit* findBox() const { return m_findBox; }
    void Load();
    void Render();
    // Finds the find bar's text after the current selection (before it when `backward`), from
    // the other end once the end is reached; true when it is there.
    bool FindNext(bool backward = false);
    // Scrolls so that the heading with anchor `anchor` stands at the top; false when none has it.
    bool ShowSection(const std::string& anchor);

public slots:
    void reject() override;

private:
    void OpenLink(const QUrl& url);
    void IndexHeadings();

    ManualViewer m_viewer;
    ManualBrowser* m_browser;
    QListWidget* m_contents;
    QWidget* m_findBar;
    QLineEdit* m_findBox;
    QLabel* m_findStatus;
    std::map<std::string, int> m_headings;  // anchor -> position of the heading's block
};

}  // namespace brizalog
