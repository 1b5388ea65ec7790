#pragma once

#include <QString>
#include <QStringList>

class QAction;
class QMenuBar;
class QWidget;

namespace brizalog {

// The keyboard on the desktop: Alt+letter on every menu entry, Enter on a focused button.

// `caption` with a "&" before the first letter or digit that is not in `taken`, preferring the
// first letters of words; a "&" of the caption itself is kept as a character ("&&"). The words
// shown are the caption's own. The chosen letter, in lower case, is added to `taken`; a caption
// that has no free letter gets no mark.
QString WithMnemonic(const QString& caption, QStringList& taken);
// The caption a user reads on an entry whose text is `text` (marks removed, "&&" as "&").
QString ShownCaption(const QString& text);

// Gives every entry of `bar` and of its menus, at every depth, a letter of its own among its
// neighbours, now and whenever a menu opens, so entries that are added later (by any window or
// module) get one too. An entry whose text already carries a mark keeps it. One call per bar.
void KeepMnemonics(QMenuBar* bar);
// The same for one bar, once; for a render that has just changed captions.
void AssignMnemonics(QWidget* barOrMenu);

// Shows `caption` on a menu entry, keeping or finding again its letter: the entry's text is
// set only when the words differ, so a render many times a second costs nothing.
void ShowMenuCaption(QAction* action, const QString& caption);

// For the whole application, once: Enter (and Return) on a focused push button clicks it, as
// Space does; a check box or an option keeps its own keys.
void InstallKeyboardConventions();

}  // namespace brizalog
