#pragma once

#include <QFile>
#include <array>

#include "appearance/modTema.h"
#include "appearance/temakayitmodulu.h"
#include "appearance/toplamtema.h"
#include "desktop/focus.h"
#include "salesfixture.h"
#include "widgets/colordialog.h"
#include "widgets/colorvalue.h"
#include "widgets/controlcolor.h"

namespace kovanix {

/// Five colour values in the order of their keys: forecolor, backcolor1, backcolor2, backcolorpushed1,
/// backcolorpushed2.
struct Five : std::array<ColorValue, 5> {};

inline char* toString(const Five& five) {
    QStringList texts;
    for (const ColorValue value : five)
        texts.append(QString::number(value));
    return QTest::toString(texts.join(u", "));
}

inline Five colorsOf(const DrawnButton& button) {
    return {colorValue(button.forecolor()), colorValue(button.backcolor1()), colorValue(button.backcolor2()),
            colorValue(button.backcolorpushed1()), colorValue(button.backcolorpushed2())};
}

inline void dress(DrawnButton& button, const Five& five) {
    button.setForecolor(colorOf(five[0]));
    button.setBackcolor1(colorOf(five[1]));
    button.setBackcolor2(colorOf(five[2]));
    button.setBackcolorpushed1(colorOf(five[3]));
    button.setBackcolorpushed2(colorOf(five[4]));
}

/// Lines for five keys: the name and a number that counts up from `first`.
inline QByteArray keyLines(const QByteArray& name, int first, const Five& five) {
    QByteArray lines;
    for (size_t i = 0; i < five.size(); ++i)
        lines +=
            name + QByteArray::number(first + static_cast<int>(i)) + '=' + QByteArray::number(five[i]) + '\n';
    return lines;
}

// All fifteen differ from one another and from what the sales screen starts with.
inline constexpr Five live{101, 102, 103, 104, 105};
inline constexpr Five set1{0x110000, 0x120000, 0x130000, 0x140000, 0x150000};
inline constexpr Five set2{0x2100, 0x2200, 0x2300, 0x2400, 0x2500};
inline constexpr Five shown{0x0A0001, 0x0B0002, 0x0C0003, 0x0D0004, 0x0E0005};  ///< by the palette, say
inline constexpr Five black{0, 0, 0, 0, 0};

/// The file with all fifteen colour keys, and what else is wanted.
inline QByteArray configuration(const QByteArray& more = {}) {
    return "[ayar]\n" + keyLines("toplamtema", 1, live) + keyLines("toplamtemakyt", 1, set1) +
           keyLines("toplamtemakyt", 6, set2) + more;
}

/// The same lines with another value for one key, which must be there.
inline QByteArray replaced(QByteArray config, const QByteArray& key, const QByteArray& value) {
    const qsizetype begin = config.indexOf(QByteArray('\n' + key + '='));
    if (begin < 0)
        qFatal("no key %s", key.constData());
    const qsizetype from = begin + key.size() + 2;
    return config.replace(from, config.indexOf('\n', from) - from, value);
}

/// An open sales screen whose total shows `shown`, and the screen of its colours above it.
class TotalFixture : public SalesFixture {
public:
    explicit TotalFixture(const QByteArray& config = {}) {
        writeConfig(config);
        temadegiskenlerioku();
        dress(real(), shown);
    }

    void open() const {
        showInFront(total());
        // The toolkit counts a window as active already when the one that it stands above is.
        QTRY_COMPARE(QApplication::activeWindow(), &total());
    }
    /// What a start does to the total: the palette's colours, then its own.
    void restart() const {
        unload<toplamtema>();
        sonrenk = kayitgetir1 = kaydedilenigetir = toplamtemadegisken = 0;
        temakaydetme1.clear();
        dress(real(), shown);
        temadegiskenlerioku();
        toplamtemauygula();
    }

    toplamtema& total() const { return screen<toplamtema>(); }
    Ui::toplamtema& controls() const { return total().ui; }
    DrawnButton& real() const { return *ui().toplam; }
    DrawnButton& preview() const { return *controls().toplam; }
    Five swatches() const {
        Five five{};
        for (size_t i = 0; i < five.size(); ++i)
            five[i] = colorValue(backColor(*control(u"Frame" + QString::number(i + 1))));
        return five;
    }
    QWidget* control(const QString& name) const {
        auto* found = total().findChild<QWidget*>(name);
        if (!found)
            qFatal("no control %s", qUtf8Printable(name));
        return found;
    }
    void click(const QString& name) const { QTest::mouseClick(control(name), Qt::LeftButton); }

    /// The value of a key as the bytes of the file have it; null when the file lacks the key.
    QByteArray onFile(const QByteArray& key) const {
        for (const QByteArray& line : config().split('\n')) {
            if (line.startsWith(key) && line.mid(key.size(), 1) == "=")
                return line.mid(key.size() + 1).trimmed();
        }
        return {};
    }
    QList<QByteArray> fiveOnFile(const QByteArray& name, int first) const {
        QList<QByteArray> texts;
        for (int i = 0; i < 5; ++i)
            texts.append(onFile(name + QByteArray::number(first + i)));
        return texts;
    }
    /// Puts something in the file's place that can be neither read nor written.
    void blockFile() const {
        QFile::remove(file(QStringLiteral("Kovanix.config")));
        QDir(folder()).mkdir(QStringLiteral("Kovanix.config"));
    }

    /// The colour dialog that stands open, if any.
    static ColorDialog* dialog() {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            auto* found = qobject_cast<ColorDialog*>(window);
            if (found && found->isVisible())
                return found;
        }
        return nullptr;
    }
    /// Presses a colour's button, chooses in the dialog and takes it.
    void choose(const QString& button, ColorValue value) const {
        click(button);
        QTRY_VERIFY(dialog());
        dialog()->setCurrentColor(colorOf(value));
        dialog()->accept();
        QTRY_VERIFY(!dialog());
    }
    /// Presses a colour's button and goes back. @return the colour that the dialog opened with
    ColorValue cancel(const QString& button, ColorValue looked) const {
        click(button);
        if (!QTest::qWaitFor([] { return dialog() != nullptr; }))
            qFatal("no dialog");
        const ColorValue opened = colorValue(dialog()->currentColor());
        dialog()->setCurrentColor(colorOf(looked));
        dialog()->reject();
        if (!QTest::qWaitFor([] { return dialog() == nullptr; }))
            qFatal("the dialog stays");
        return opened;
    }
};

inline QList<QByteArray> texts(const Five& five) {
    QList<QByteArray> list;
    for (const ColorValue value : five)
        list.append(QByteArray::number(value));
    return list;
}

/// With one of the five replaced.
inline Five with(Five five, int index, ColorValue value) {
    five.at(static_cast<size_t>(index)) = value;
    return five;
}

/// What a case compares as one: both totals and the swatches. The first that differs speaks.
inline bool showsEverywhere(const TotalFixture& shop, const Five& five) {
    const bool equal =
        colorsOf(shop.real()) == five && colorsOf(shop.preview()) == five && shop.swatches() == five;
    if (!equal)
        qWarning("wanted %s\nreal %s\npreview %s\nswatches %s", toString(five),
                 toString(colorsOf(shop.real())), toString(colorsOf(shop.preview())),
                 toString(shop.swatches()));
    return equal;
}

}  // namespace kovanix
