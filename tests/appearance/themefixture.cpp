#include "themefixture.h"

#include <QFile>

#include "app/ayarmodul.h"
#include "data/baglanmamodulu.h"
#include "desktop/focus.h"
#include "widgets/controlcolor.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

/// The colour that a value names, blue byte first.
QString colourName(const QString& value) {
    const QPalette toolkit = QApplication::palette();
    if (value == u"8000000F")
        return toolkit.color(QPalette::Button).name();
    if (value == u"80000012")
        return toolkit.color(QPalette::ButtonText).name();
    if (value == u"80000005")
        return toolkit.color(QPalette::Base).name();
    if (value == u"80000008")
        return toolkit.color(QPalette::Text).name();
    if (value.size() != 6)
        qFatal("no colour: %s", qUtf8Printable(value));
    return QString(u'#' + value.mid(4, 2) + value.mid(2, 2) + value.mid(0, 2)).toLower();
}

bool isBeyondTheQuickKeys(const QString& control) {
    return control.startsWith(u"kisayol_") && control.section(u'_', 1).toInt() > 7;
}

}  // namespace

QList<PaletteLine> paletteLines() {
    QFile file(QStringLiteral(PALETTE_TABLE));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("no table");
    QList<PaletteLine> lines;
    for (const QString& text : QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)) {
        const QStringList fields = text.simplified().split(u' ');
        PaletteLine line{fields[0], fields[1], {}};
        for (int i = 2; i < 6; ++i)
            line.last.append(fields[i].section(u'>', -1));
        lines.append(line);
    }
    return lines;
}

QString liveColour(const QWidget& control, const QString& property) {
    if (property == u"BackColor")
        return backColor(control).name();
    if (property == u"ForeColor")
        return foreColor(control).name();
    const QVariant value = control.property(property.toLatin1().constData());
    return value.isValid() ? value.value<QColor>().name() : u"no such property"_s;
}

QStringList paletteDifferences(const QWidget& screen, int number) {
    QStringList found;
    for (const PaletteLine& line : paletteLines()) {
        const QString& value = line.last[number - 1];
        if (value == u"-" || isBeyondTheQuickKeys(line.control))
            continue;
        const auto* control = screen.findChild<QWidget*>(line.control);
        const QString shown = control ? liveColour(*control, line.property) : u"no such control"_s;
        if (shown != colourName(value))
            found.append(line.control + u'.' + line.property + u": " + shown + u" instead of " +
                         colourName(value));
    }
    return found;
}

ThemeFixture::ThemeFixture(const QByteArray& keys) {
    if (!keys.isEmpty())
        writeConfig("[ayar]\n" + keys);
    setThemeBeep([this] { ++beeps; });
    reload();
}

ThemeFixture::~ThemeFixture() {
    setThemeBeep({});
}

void ThemeFixture::reload() {
    unload<tema>();
    showInFront(themes());
    // The toolkit's own wait takes the owner's activity for this window's.
    if (!QTest::qWaitFor([this] { return QApplication::activeWindow() == &themes(); }))
        qFatal("the screen doesn't become active");
}

Miniature& ThemeFixture::picture(int number) const {
    return *themes().findChild<Miniature*>(u"resim%1"_s.arg(number));
}

void ThemeFixture::pressPicture(int number) const {
    QTest::mouseClick(&picture(number), Qt::LeftButton);
}

void ThemeFixture::expectQuestion(int answer) {
    boxes.expect(u"Silme onayı"_s, u"TEMA AYARLANSIN MI?"_s, answer);
}

QString ThemeFixture::key(const QString& name) const {
    return ayaroku(u"ayar"_s, name, ayardosyasi());
}

QString ThemeFixture::colour(const QString& control, const QString& property) const {
    return liveColour(*sales().findChild<QWidget*>(control), property);
}

}  // namespace kovanix
