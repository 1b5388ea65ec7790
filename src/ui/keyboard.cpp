#include "ui/keyboard.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>

namespace brizalog {

namespace {

// The letter already marked in `text` ("Se&tup" → "t"), or an empty string.
QString MarkedLetter(const QString& text) {
    for (qsizetype i = 0; i + 1 < text.size(); ++i) {
        if (text[i] == QLatin1Char('&')) {
            if (text[i + 1] == QLatin1Char('&')) {
                ++i;
                continue;
            }
            return text[i + 1].toLower();
        }
    }
    return {};
}

// Enter on a focused push button clicks it.
class EnterClicks : public QObject {
protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::KeyPress) {
            const int key = static_cast<QKeyEvent*>(event)->key();
            auto* button = qobject_cast<QPushButton*>(watched);
            if ((key == Qt::Key_Return || key == Qt::Key_Enter) && button != nullptr &&
                button->isEnabled() && !button->isDefault() && !button->autoDefault()) {
                button->click();
                return true;
            }
        }
        return QObject::eventFilter(watched, event);
    }
};

}  // namespace

QString ShownCaption(const QString& text) {
    QString shown;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == QLatin1Char('&') && i + 1 < text.size()) {
            ++i;
        }
        shown += text[i];
    }
    return shown;
}

QString WithMnemonic(const QString& caption, QStringList& taken) {
    QString escaped = caption;
    escaped.replace(QLatin1Char('&'), QStringLiteral("&&"));
    // Positions in `caption`: first the starts of words, then every other letter or digit.
    QList<qsizetype> order;
    for (int pass = 0; pass < 2; ++pass) {
        for (qsizetype i = 0; i < caption.size(); ++i) {
            const bool wordStart = i == 0 || !caption[i - 1].isLetterOrNumber();
            if (caption[i].isLetterOrNumber() && caption[i].unicode() < 128 &&
                wordStart == (pass == 0)) {
                order << i;
            }
        }
    }
    for (const qsizetype i : order) {
        const QString letter = caption[i].toLower();
        if (taken.contains(letter)) {
            continue;
        }
        taken << letter;
        // The same position in the escaped text: every "&" before it was doubled.
        const qsizetype at = i + caption.left(i).count(QLatin1Char('&'));
        return escaped.insert(at, QLatin1Char('&'));
    }
    return escaped;
}

void AssignMnemonics(QWidget* barOrMenu) {
    const QList<QAction*> actions = barOrMenu->actions();
    QStringList taken;
    for (QAction* action : actions) {
        const QString marked = MarkedLetter(action->text());
        if (!marked.isEmpty()) {
            taken << marked;
        }
    }
    for (QAction* action : actions) {
        if (action->isSeparator() || action->text().isEmpty()) {
            continue;
        }
        if (MarkedLetter(action->text()).isEmpty()) {
            // The text is the caption with its own "&" doubled: what the user reads stays.
            const QString marked = WithMnemonic(ShownCaption(action->text()), taken);
            if (marked != action->text()) {
                action->setText(marked);
            }
        }
        if (QMenu* menu = action->menu()) {
            AssignMnemonics(menu);
        }
    }
}

void KeepMnemonics(QMenuBar* bar) {
    AssignMnemonics(bar);
    for (QMenu* menu : bar->findChildren<QMenu*>()) {
        QObject::connect(menu, &QMenu::aboutToShow, menu, [menu] { AssignMnemonics(menu); });
    }
}

void ShowMenuCaption(QAction* action, const QString& caption) {
    if (ShownCaption(action->text()) == caption) {
        return;
    }
    QString text = caption;
    action->setText(text.replace(QLatin1Char('&'), QStringLiteral("&&")));
    for (QObject* holder : action->associatedObjects()) {
        if (auto* widget = qobject_cast<QWidget*>(holder)) {
            AssignMnemonics(widget);
        }
    }
}

void InstallKeyboardConventions() {
    static EnterClicks* enter = nullptr;
    if (enter == nullptr) {
        enter = new EnterClicks;
        qApp->installEventFilter(enter);
    }
}

}  // namespace brizalog
