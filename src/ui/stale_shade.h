#pragma once

#include <QString>
#include <QWidget>

namespace brizalog {

// Live readings that no frame has refreshed for a while look stale: every StaleShade dims the
// figures of the widget it lies over and shows a small note ("no data since 14:05:09") in its
// corner. The widget underneath keeps its own texts and colours, so what the rules put there is
// unchanged; the shade only lies on top, lets every click through, and costs nothing while
// readings are fresh (it is hidden).

// The note every shade shows now; an empty note lifts them all. The main window sets it once a
// second and at the first frame after a silence.
void SetStaleNote(const QString& note);
const QString& StaleNote();

class StaleShade : public QWidget {
public:
    // Lies over `target`, following its size, for as long as the target lives. One call:
    //     new StaleShade(tile);
    explicit StaleShade(QWidget* target);
    ~StaleShade() override;

    // Shows `note` over the target, or lifts the shade for an empty note.
    void ShowNote(const QString& note);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QWidget* m_target;
    QString m_note;
};

}  // namespace brizalog
