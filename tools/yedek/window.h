#pragma once

#include <QList>
#include <QString>

#include "kit/toolwindow.h"
#include "yedek/copies.h"
#include "yedek/shop.h"

class QLabel;

namespace kovanix::yedek {

class CopyList;
class LastCopyCard;

/// The shop's copies: when the last one was taken, where they lie, to take one and to go back to one.
class Window : public ToolWindow {
    Q_OBJECT

public:
    /// @param folder  of the copies, for as long as the window is open; empty: the shop's own choice
    explicit Window(const QString& folder = {});

protected:
    void changeEvent(QEvent* event) override;
    void workEnded() override { refresh(); }

private:
    /// A copy and where it lies, in words.
    struct Listed {
        Copy copy;
        QString place;
    };

    void refresh();
    void tellLastCopy();
    void tellPlaces();
    void takeNow();
    void restoreChosen();
    void chooseFolder();
    void switchSchedule();
    void offerSticks();
    QString folder() const;

    QString m_folder;
    Shop m_shop;
    QList<Listed> m_copies;  ///< newest first
    bool m_scheduled = false;
    LastCopyCard* m_last;
    QLabel* m_places;
    CopyList* m_list;
    DrawnButton* m_schedule;
};

}  // namespace kovanix::yedek
