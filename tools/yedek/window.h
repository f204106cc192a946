#pragma once

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QString>

#include "kit/backgroundwork.h"
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

    /// Takes a copy, and asks about sticks first that aren't marked yet.
    void takeNow();

protected:
    void changeEvent(QEvent* event) override;
    void workEnded() override { refresh(); }

private:
    enum class Soundness { unknown, sound, harmed };
    /// A copy and where it lies, in words.
    struct Listed {
        Copy copy;
        QString place;
        Soundness soundness = Soundness::unknown;
    };
    /// What a file was like when it was read.
    struct Read {
        qint64 bytes = 0;
        QDateTime changed;
        Soundness soundness = Soundness::unknown;
    };

    void refresh();
    void tellLastCopy();
    void listCopies();
    void read(const QString& path);
    void keepRead(Soundness soundness);
    Soundness known(const QString& path) const;
    void tellPlaces();
    void restoreChosen();
    void chooseFolder();
    void switchSchedule();
    void offerSticks();
    QString folder() const;

    QString m_folder;
    Shop m_shop;
    QList<Listed> m_copies;  ///< newest first
    QHash<QString, Read> m_read;
    QString m_reading;  ///< the path of the copy that is being read
    BackgroundWork m_reader;
    bool m_scheduled = false;
    LastCopyCard* m_last;
    QLabel* m_places;
    CopyList* m_list;
    DrawnButton* m_schedule;
};

}  // namespace kovanix::yedek
