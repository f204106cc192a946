#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>

#include "appearance/tema.h"
#include "salesfixture.h"

namespace kovanix {

/// One line of the palettes as the file beside this one states them: a control, a property, and for each
/// palette the value that stays; "-" where it leaves the property alone.
struct PaletteLine {
    QString control;
    QString property;
    QStringList last;
};

QList<PaletteLine> paletteLines();

/// A colour property of a live control as "#rrggbb".
QString liveColour(const QWidget& control, const QString& property);

/// What differs on a live screen from a palette's column, 1 to 4: a line for each property. Of the quick keys
/// only those that exist are looked at; every other control must stand.
QStringList paletteDifferences(const QWidget& screen, int number);

/// An open sales screen with the screen of themes in front of it, and a count of the beeps.
class ThemeFixture : public SalesFixture {
public:
    /// @param keys  lines of the configuration's section
    explicit ThemeFixture(const QByteArray& keys = {});
    ~ThemeFixture();

    /// Loads the screen anew from what is on file.
    void reload();

    tema& themes() const { return screen<tema>(); }
    Miniature& picture(int number) const;
    void pressPicture(int number) const;
    /// Queues an answer to the question.
    void expectQuestion(int answer);

    /// A key as it stands on file.
    QString key(const QString& name) const;
    QString colour(const QString& control, const QString& property) const;
    QString differences(int number) const { return paletteDifferences(sales(), number).join(u'\n'); }

    int beeps = 0;
};

}  // namespace kovanix
