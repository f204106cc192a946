#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <set>

#include "appearance/miniature.h"
#include "appearance/palette.h"
#include "palettecontrast.h"
#include "rows.h"
#include "runtests.h"
#include "widgets/controlcolor.h"
#include "widgets/drawnbutton.h"
#include "widgets/drawnframe.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

/// Records every ground that it is given.
class Recorder : public QWidget {
public:
    using QWidget::QWidget;
    QStringList grounds;

protected:
    void changeEvent(QEvent* event) override {
        QWidget::changeEvent(event);
        if (event->type() == QEvent::PaletteChange)
            grounds.append(palette().color(QPalette::Window).name());
    }
};

QStringList linesOf(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("no %s", qUtf8Printable(path));
    return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
}

QString cellText(const PaletteCell& cell) {
    QStringList values;
    for (std::size_t i = 0; i < cell.count; ++i) {
        const int digits = cell.values[i] > 0xFFFFFF ? 8 : 6;
        values.append(u"%1"_s.arg(cell.values[i], digits, 16, QChar(u'0')).toUpper());
    }
    return values.isEmpty() ? u"-"_s : values.join(u'>');
}

QString faceColors(const QString& control, Palette palette) {
    QStringList colors;
    for (const auto property : {ColorProperty::backcolor1, ColorProperty::backcolor2,
                                ColorProperty::backcolorpushed1, ColorProperty::backcolorpushed2})
        colors.append(colorOf(paletteColor(control, property, palette)).name());
    return colors.join(u' ');
}

template <class Control>
Control& add(QWidget& screen, const QString& name) {
    auto* control = new Control(&screen);
    control->setObjectName(name);
    return *control;
}

}  // namespace

class TestPalette : public QObject {
    Q_OBJECT

    struct LooksUpOneColourRow {
        QString control;
        Palette palette;
        QString colors;
    };
    struct SetsBothValuesOfACellRow {
        Palette palette;
        QStringList grounds;
    };
    struct MiniatureShowsTheTableRow {
        Palette palette;
        QPoint point;
        QString color;
    };

private Q_SLOTS:
    // Each line of the file: a control, a property, its value in the four palettes; "A>B" is A and then B,
    // "-" nothing.
    void holdsTheTable() {
        QStringList expected;
        for (const QString& line : linesOf(QStringLiteral(PALETTE_TABLE)))
            expected.append(line.simplified());
        QStringList held;
        for (const PaletteRow& row : paletteRows()) {
            for (const char* control : row.controls) {
                QStringList line{QLatin1StringView(control), QLatin1StringView(propertyName(row.property))};
                for (const Palette palette : allPalettes)
                    line.append(cellText(row.cell(palette)));
                held.append(line.join(u' '));
            }
        }
        QCOMPARE(expected.size(), 373);
        for (qsizetype i = 0; i < std::min(held.size(), expected.size()); ++i)
            QCOMPARE(held[i], expected[i]);
        QCOMPARE(held.size(), expected.size());
    }

    void totalComesFirst() {
        const auto rows = paletteRows();
        for (std::size_t i = 0; i < rows.size(); ++i)
            QCOMPARE(QByteArray(rows[i].controls.front()) == "toplam", i < 5);
    }

    void looksUpOneColour_data() {
        const QString face = QApplication::palette().color(QPalette::Button).name();
        addRows<LooksUpOneColourRow>(
            {{"subtract button, resim1",
              {u"vkCommand5"_s, Palette::resim1, face + u" #00ffff " + face + u" #008080"}},
             {"subtract button, resim2",
              {u"vkCommand5"_s, Palette::resim2, face + u" #00ffff " + face + u" #008080"}},
             {"subtract button, resim3",
              {u"vkCommand5"_s, Palette::resim3, u"#f0f0f0 #004040 #f0f0f0 #004040"_s}},
             {"subtract button, resim4",
              {u"vkCommand5"_s, Palette::resim4, u"#ffffff #00ffff #ffffff #00ffff"_s}},
             {"blue byte first", {u"fiyatgor"_s, Palette::resim1, u"#ffc080 #2a0a93 #ffc080 #2a0a93"_s}},
             {"member of an array",
              {u"duzenlemetusu_23"_s, Palette::resim1, u"#fbfbfb #dcdcdc #c8c8c8 #ebebeb"_s}}});
    }
    void looksUpOneColour() {
        QFETCH(const LooksUpOneColourRow, row);
        QCOMPARE(faceColors(row.control, row.palette), row.colors);
    }

    void colourOfWhatIsLeftAloneIsNone() {
        QCOMPARE(paletteColor(u"Label4_8"_s, ColorProperty::ForeColor, Palette::resim1), 0U);
        QCOMPARE(paletteColor(u"Label4_8"_s, ColorProperty::ForeColor, Palette::resim3), 0xFFFFFFU);
        QCOMPARE(paletteColor(u"yok"_s, ColorProperty::ForeColor, Palette::resim3), 0U);
        QCOMPARE(paletteColor(u"Frame2"_s, ColorProperty::BackColor, Palette::resim1), 0x8000000FU);
    }

    void propertiesOfDrawnControls() {
        vkCommand button;
        vkFrame frame;
        using enum ColorProperty;
        const std::array buttonProperties{backcolor1, backcolor2, backcolorpushed1, backcolorpushed2,
                                          forecolor};
        const std::array frameProperties{backcolor1, backcolor2,  bordercolor,
                                         forecolor,  titlecolor1, titlecolor2};
        int shade = 0;
        for (const ColorProperty property : buttonProperties)
            QVERIFY(setColorProperty(button, property, QColor(shade++, 2, 3)));
        for (const ColorProperty property : frameProperties)
            QVERIFY(setColorProperty(frame, property, QColor(shade++, 2, 3)));
        shade = 0;
        for (const ColorProperty property : buttonProperties) {
            QCOMPARE(button.property(propertyName(property)).value<QColor>(), QColor(shade, 2, 3));
            QCOMPARE(colorProperty(button, property), QColor(shade++, 2, 3));
        }
        for (const ColorProperty property : frameProperties) {
            QCOMPARE(frame.property(propertyName(property)).value<QColor>(), QColor(shade, 2, 3));
            QCOMPARE(colorProperty(frame, property), QColor(shade++, 2, 3));
        }
    }

    void propertiesOfPlainControls() {
        QLineEdit field;
        QVERIFY(setColorProperty(field, ColorProperty::BackColor, Qt::red));
        QVERIFY(setColorProperty(field, ColorProperty::ForeColor, Qt::yellow));
        QCOMPARE(field.palette().color(QPalette::Base), QColor(Qt::red));
        QCOMPARE(field.palette().color(QPalette::Text), QColor(Qt::yellow));
        QCOMPARE(colorProperty(field, ColorProperty::BackColor), QColor(Qt::red));
        QCOMPARE(colorProperty(field, ColorProperty::ForeColor), QColor(Qt::yellow));
    }

    void lackingProperties() {
        QLineEdit field;
        vkCommand button;
        QVERIFY(!setColorProperty(field, ColorProperty::backcolor1, Qt::red));
        QVERIFY(!setColorProperty(button, ColorProperty::titlecolor1, Qt::red));
        QVERIFY(field.dynamicPropertyNames().isEmpty());
        QVERIFY(button.dynamicPropertyNames().isEmpty());
        QVERIFY(!colorProperty(field, ColorProperty::backcolor1).isValid());
        QVERIFY(!colorProperty(button, ColorProperty::bordercolor).isValid());
    }

    void paintsTotalApart() {
        QWidget screen;
        auto& total = add<vkToggleButton>(screen, u"toplam"_s);
        auto& given = add<vkToggleButton>(screen, u"verilen"_s);
        total.setForecolor(Qt::gray);
        given.setForecolor(Qt::gray);
        paintPalette(screen, Palette::resim3);
        QCOMPARE(total.forecolor(), QColor(Qt::gray));
        QCOMPARE(given.forecolor(), QColor(0xFF, 0, 0));
        given.setForecolor(Qt::gray);
        paintTotal(screen, Palette::resim3);
        QCOMPARE(total.forecolor(), QColor(0, 0xFF, 0));
        QCOMPARE(total.backcolorpushed2(), QColor(Qt::black));
        QCOMPARE(given.forecolor(), QColor(Qt::gray));
    }

    void passesOverMissingControls() {
        QWidget screen;
        paintTotal(screen, Palette::resim2);
        paintPalette(screen, Palette::resim2);
        // The first and the last of what stands in the table.
        auto& first = add<vkCommand>(screen, u"kaydet"_s);
        auto& last = add<QLabel>(*new QWidget(&screen), u"Label4_8"_s);
        paintPalette(screen, Palette::resim3);
        QCOMPARE(first.forecolor(), QColor(Qt::white));
        QCOMPARE(foreColor(last), QColor(Qt::white));
    }

    void setsBothValuesOfACell_data() {
        const QString face = QApplication::palette().color(QPalette::Button).name();
        addRows<SetsBothValuesOfACellRow>(
            {{"resim1 passes through black", {Palette::resim1, QStringList{u"#000000"_s, face}}},
             {"resim2 passes through black", {Palette::resim2, QStringList{u"#000000"_s, face}}},
             {"resim3 sets one value", {Palette::resim3, QStringList{u"#404040"_s}}},
             {"resim4 sets one value", {Palette::resim4, QStringList{u"#ffffff"_s}}}});
    }
    void setsBothValuesOfACell() {
        QFETCH(const SetsBothValuesOfACellRow, row);
        for (const QString& name : {u"Frame2"_s, u"hizliurunadi"_s, u"Label8"_s}) {
            QWidget screen;
            auto& control = add<Recorder>(screen, name);
            paintPalette(screen, row.palette);
            // The text's colours come behind the ground's and don't change it.
            QStringList seen = control.grounds;
            seen.removeDuplicates();
            QCOMPARE(seen, row.grounds);
        }
    }

    void firstOfTwoNamesakesIsPainted() {
        QWidget screen;
        auto& first = add<vkCommand>(screen, u"kaydet"_s);
        auto& second = add<vkCommand>(screen, u"kaydet"_s);
        second.setForecolor(Qt::gray);
        paintPalette(screen, Palette::resim3);
        QCOMPARE(first.forecolor(), QColor(Qt::white));
        QCOMPARE(second.forecolor(), QColor(Qt::gray));
    }

    void miniatureShowsTheTable_data() {
        const QString face = QApplication::palette().color(QPalette::Button).name();
        const QPoint barcode(300, 30);
        const QPoint total(620, 60);
        const QPoint totalGround(587, 72);
        const QPoint quickKey(600, 612);
        const QPoint category(600, 552);
        const QPoint cash(676, 228);
        addRows<MiniatureShowsTheTableRow>(
            {{"resim1: barcode", {Palette::resim1, barcode, u"#ff0000"_s}},
             {"resim3: barcode", {Palette::resim3, barcode, u"#404040"_s}},
             {"resim4: barcode", {Palette::resim4, barcode, u"#ffffff"_s}},
             {"resim2: total", {Palette::resim2, total, u"#ffffff"_s}},
             {"resim3: total", {Palette::resim3, total, u"#000000"_s}},
             {"resim2: behind the total", {Palette::resim2, totalGround, u"#000000"_s}},
             {"resim3: behind the total", {Palette::resim3, totalGround, u"#ff0000"_s}},
             {"resim1: quick key", {Palette::resim1, quickKey, face}},
             {"resim3: quick key", {Palette::resim3, quickKey, u"#c0c0c0"_s}},
             {"resim3: category", {Palette::resim3, category, u"#c00000"_s}},
             {"resim1: cash typed", {Palette::resim1, cash, u"#00ffff"_s}},
             {"resim4: page", {Palette::resim4, QPoint(3, 400), u"#ffffff"_s}},
             {"resim3: page", {Palette::resim3, QPoint(3, 400), u"#404040"_s}}});
    }
    void miniatureShowsTheTable() {
        QFETCH(const MiniatureShowsTheTableRow, row);
        QImage image(1024, 768, QImage::Format_RGB32);
        image.fill(Qt::magenta);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        paintMiniature(painter, QRectF(image.rect()), row.palette);
        painter.end();
        QCOMPARE(image.pixelColor(row.point).name(), row.color);
    }

    void contrastsCoverEveryText() {
        std::set<QString> inTable;
        for (const PaletteRow& row : paletteRows()) {
            if (row.property != ColorProperty::forecolor && row.property != ColorProperty::ForeColor)
                continue;
            for (const char* control : row.controls)
                inTable.insert(QLatin1StringView(control));
        }
        std::set<QString> covered;
        for (const TextContrast& text : textContrasts())
            covered.insert(text.controls.cbegin(), text.controls.cend());
        std::set<QString> missing;
        std::ranges::set_difference(inTable, covered, std::inserter(missing, missing.end()));
        // Two labels stand on the page, one frame has no title.
        QCOMPARE(missing, (std::set{u"Label4_3"_s, u"Label4_6"_s, u"urunbulunamadiframesi"_s}));
    }

    void contrastsOfKnownFaces() {
        const auto of = [](const QString& control, Palette palette) {
            for (const TextContrast& text : textContrasts()) {
                if (text.palette == palette && text.controls.contains(control))
                    return std::pair{QString::number(text.middle, 'f', 2),
                                     QString::number(text.worst, 'f', 2)};
            }
            return std::pair{QString(), QString()};
        };
        using Ratios = std::pair<QString, QString>;
        // Worked out by hand from the relative luminances: white 1, black 0, red 0.2126, green 0.7152.
        QCOMPARE(of(u"verilen"_s, Palette::resim1), (Ratios{u"4.00"_s, u"4.00"_s}));
        QCOMPARE(of(u"verilen"_s, Palette::resim3), (Ratios{u"5.25"_s, u"5.25"_s}));
        QCOMPARE(of(u"toplam"_s, Palette::resim3), (Ratios{u"15.30"_s, u"15.30"_s}));
        QCOMPARE(of(u"kaydet"_s, Palette::resim3).second, u"1.37"_s);
        QCOMPARE(of(u"Label4_8"_s, Palette::resim1), (Ratios{}));
    }

    void weakTextsAreDocumented() {
        QStringList documented;
        bool inside = false;
        for (const QString& line : linesOf(QStringLiteral(PALETTE_DOCUMENT))) {
            if (line.startsWith(u"| Control | Palette |"))
                inside = true;
            else if (!line.startsWith(u'|'))
                inside = false;
            else if (inside && !line.startsWith(u"|---"))
                documented.append(line);
        }
        const QStringList computed = weakTextLines(4.5);
        if (documented != computed)
            qWarning("docs/palettes.md should list:\n%s", qUtf8Printable(computed.join(u'\n')));
        QVERIFY(!computed.isEmpty());
        QCOMPARE(documented, computed);
    }
};

int main(int argc, char** argv) {
    return runTests<TestPalette>(argc, argv);
}
#include "test_palette.moc"
