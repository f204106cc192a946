#include <QHBoxLayout>
#include <QIcon>
#include <QImage>
#include <QPainter>
#include <QTest>
#include <cstdlib>
#include <functional>
#include <memory>

#include "rows.h"
#include "widgets/drawnbutton.h"
#include "widgets/face.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

constexpr QSize buttonSize(84, 72);
const QColor orange(0xFF, 0xC0, 0x80);
const QColor deepBlue(0x2A, 0x0A, 0x93);

using Maker = std::function<DrawnButton*()>;

enum class State { rest, pressed, checked, disabled, focused, disabledChecked };

template <class Button>
DrawnButton* make() {
    return new Button;
}

/// The control alone, on nothing.
QImage picture(QWidget& control) {
    QImage image(control.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    control.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

bool near(const QColor& one, const QColor& other, int tolerance) {
    return std::abs(one.red() - other.red()) <= tolerance &&
           std::abs(one.green() - other.green()) <= tolerance &&
           std::abs(one.blue() - other.blue()) <= tolerance;
}

QFont smallFont() {
    QFont font;
    font.setPixelSize(14);
    return font;
}

/// How far a colour lies from every mixture of two others.
double distanceFromMixture(const QColor& pixel, const QColor& face, const QColor& ink) {
    double least = 1000;
    for (int i = 0; i <= 64; ++i) {
        const QColor between = mixed(face, ink, i / 64.0);
        least = std::min(least, static_cast<double>(std::abs(pixel.red() - between.red()) +
                                                    std::abs(pixel.green() - between.green()) +
                                                    std::abs(pixel.blue() - between.blue())));
    }
    return least;
}

/// The pixels of a part of the face that are neither face, nor ink, nor glyph edges between the two: an
/// outline.
int outlinePixels(const QImage& image, const QRect& part, const DrawnButton& button) {
    int count = 0;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        const QColor face = mixed(button.backcolor1(), button.backcolor2(), (y + 0.5) / image.height());
        for (int x = part.left(); x <= part.right(); ++x)
            count += distanceFromMixture(image.pixelColor(x, y), face, button.forecolor()) > 20 ? 1 : 0;
    }
    return count;
}

QIcon squareIcon() {
    QPixmap pixmap(24, 24);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.fillRect(QRect(4, 4, 16, 16), Qt::black);
    return QIcon(pixmap);
}

}  // namespace

Q_DECLARE_METATYPE(Maker)
Q_DECLARE_METATYPE(State)

class TestButtonFaces : public QObject {
    Q_OBJECT

    struct FaceFollowsItsColoursRow {
        Maker maker;
        State state;
        QColor top, bottom;
    };
    struct AChangedColourShowsAtOnceRow {
        QByteArray property;
        bool down;
        int y;
    };
    struct CaptionIsOutlinedWhereItNeedsItRow {
        QColor top, bottom, ink;
        int pixels;
        bool outlined;
        Qt::Alignment place;
    };
    struct IconHasNoOutlineRow {
        QColor face, ink;
    };
    struct CaptionsOfARowHaveOneSizeRow {
        QStringList captions;
        bool allFit;
    };
    struct KeyHintStandsOutRow {
        QColor face, ink;
    };
    struct PlainButtonsCaptionReadsRow {
        QColor face, wanted, painted;
    };

private Q_SLOTS:
    void faceFollowsItsColours_data() {
        QTest::addColumn<FaceFollowsItsColoursRow>("row");
        const QColor top(0xF0, 0xE0, 0x10);
        const QColor bottom(0x10, 0x90, 0x20);
        const QColor pushedTop(0x20, 0x30, 0xE0);
        const QColor pushedBottom(0xE0, 0x40, 0xC0);
        const auto both = [](const char* state, State value, const QColor& from, const QColor& to) {
            QTest::addRow("command, %s", state)
                << FaceFollowsItsColoursRow{Maker(make<vkCommand>), value, from, to};
            QTest::addRow("toggle, %s", state)
                << FaceFollowsItsColoursRow{Maker(make<vkToggleButton>), value, from, to};
        };
        both("at rest", State::rest, top, bottom);
        both("pressed", State::pressed, pushedTop, pushedBottom);
        both("checked", State::checked, pushedTop, pushedBottom);
        both("focused", State::focused, top, bottom);
        both("disabled", State::disabled, mutedFace(top), mutedFace(bottom));
        both("disabled and checked", State::disabledChecked, mutedFace(pushedTop), mutedFace(pushedBottom));
        const auto plain = [](const char* state, State value, const QColor& from, const QColor& to) {
            QTest::addRow("plain, %s", state)
                << FaceFollowsItsColoursRow{Maker(make<CommandButton>), value, from, to};
        };
        const auto darker = [](const QColor& color, double share) { return mixed(color, Qt::black, share); };
        plain("at rest", State::rest, top, darker(top, 0.06));
        plain("pressed", State::pressed, darker(top, 0.16), darker(top, 0.1));
        plain("focused", State::focused, top, darker(top, 0.06));
        plain("disabled", State::disabled, mutedFace(top), mutedFace(darker(top, 0.06)));
    }
    void faceFollowsItsColours() {
        QFETCH(const FaceFollowsItsColoursRow, row);
        QWidget window;
        auto* layout = new QHBoxLayout(&window);
        DrawnButton* button = row.maker();
        layout->addWidget(button);
        button->setFixedSize(buttonSize);
        button->setFont(smallFont());
        button->setCaption(u"I"_s);
        button->setBackcolor1(QColor(0xF0, 0xE0, 0x10));
        button->setBackcolor2(QColor(0x10, 0x90, 0x20));
        button->setBackcolorpushed1(QColor(0x20, 0x30, 0xE0));
        button->setBackcolorpushed2(QColor(0xE0, 0x40, 0xC0));
        button->setCheckable(true);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        button->clearFocus();
        button->setDown(row.state == State::pressed);
        button->setChecked(row.state == State::checked || row.state == State::disabledChecked);
        button->setEnabled(row.state != State::disabled && row.state != State::disabledChecked);
        if (row.state == State::focused)
            button->setFocus();
        QCOMPARE(button->hasFocus(), row.state == State::focused);

        const QImage image = picture(*button);
        // Beside the caption, below the light along the upper edge, inside the ring of a focused one.
        for (const int y : {8, 24, 36, 48, 64}) {
            const QColor wanted = mixed(row.top, row.bottom, (y + 0.5) / image.height());
            for (const int x : {12, 72}) {
                const QColor painted = image.pixelColor(x, y);
                QVERIFY2(near(painted, wanted, 6),
                         qPrintable(u"%1 at %2: %3"_s.arg(painted.name()).arg(y).arg(wanted.name())));
            }
        }
        for (int y = 3; y < image.height() - 3; ++y) {
            for (int x = 3; x < image.width() - 3; ++x)
                QVERIFY2(image.pixelColor(x, y).alpha() == 255, qPrintable(u"%1,%2"_s.arg(x).arg(y)));
        }
        // Rounded: the corner itself is nobody's.
        QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
    }

    void aChangedColourShowsAtOnce_data() {
        addRows<AChangedColourShowsAtOnceRow>(
            {{"backcolor1", {QByteArray("backcolor1"), false, 6}},
             {"backcolor2", {QByteArray("backcolor2"), false, 66}},
             {"backcolorpushed1", {QByteArray("backcolorpushed1"), true, 6}},
             {"backcolorpushed2", {QByteArray("backcolorpushed2"), true, 66}}});
    }
    void aChangedColourShowsAtOnce() {
        QFETCH(const AChangedColourShowsAtOnceRow, row);
        vkCommand button;
        button.resize(buttonSize);
        button.setDown(row.down);
        QVERIFY(!near(picture(button).pixelColor(42, row.y), Qt::magenta, 60));
        button.setProperty(row.property.constData(), QColor(Qt::magenta));
        QVERIFY2(near(picture(button).pixelColor(42, row.y), Qt::magenta, 60),
                 qPrintable(picture(button).pixelColor(42, row.y).name()));
    }

    void captionIsOutlinedWhereItNeedsIt_data() {
        const QColor white(Qt::white);
        const QColor black(Qt::black);
        const Qt::Alignment middle = Qt::AlignCenter;
        const Qt::Alignment low = Qt::AlignHCenter | Qt::AlignBottom;
        addRows<CaptionIsOutlinedWhereItNeedsItRow>(
            {{"white, orange to blue", {orange, deepBlue, white, 14, true, middle}},
             {"black, white to blue", {white, deepBlue, black, 14, true, low}},
             {"white, black to green", {black, QColor(Qt::green), white, 14, true, middle}},
             {"black, orange to dark red", {orange, QColor(0xC0, 0, 0), black, 14, true, low}},
             {"white on white", {white, white, white, 14, true, middle}},
             {"black, white to green", {white, QColor(Qt::green), black, 14, false, middle}},
             {"white, black to blue", {black, QColor(0, 0, 0xC0), white, 14, false, middle}},
             {"white on navy",
              {QColor(0x3E, 0x56, 0x75), QColor(0x2C, 0x40, 0x5B), white, 14, false, middle}},
             {"white, grey keys, large",
              {QColor(0x80, 0x80, 0x80), QColor(0x40, 0x40, 0x40), white, 24, false, middle}},
             {"red on white, large", {white, white, QColor(Qt::red), 24, false, middle}},
             {"red on white, small", {white, white, QColor(Qt::red), 14, true, middle}},
             {"teal on white, large", {white, white, QColor(0, 0xC0, 0xC0), 24, true, middle}}});
    }
    void captionIsOutlinedWhereItNeedsIt() {
        QFETCH(const CaptionIsOutlinedWhereItNeedsItRow, row);
        vkCommand button;
        button.resize(buttonSize);
        QFont font = smallFont();
        font.setPixelSize(row.pixels);
        button.setFont(font);
        button.setBackcolor1(row.top);
        button.setBackcolor2(row.bottom);
        button.setForecolor(row.ink);
        button.setCaption(u"GOR"_s);
        button.setCaptionAlignment(row.place);
        const int found = outlinePixels(picture(button), QRect(8, 20, 68, 48), button);
        QVERIFY2(row.outlined ? found > 20 : found == 0, qPrintable(QString::number(found)));
        // What was set is what stands there.
        QCOMPARE(button.forecolor(), row.ink);
        QCOMPARE(button.backcolor1(), row.top);
        QCOMPARE(button.backcolor2(), row.bottom);
    }

    // A caption that stands on the good part of a steep face needs nothing.
    void onlyThePartBehindTheCaptionCounts() {
        vkCommand button;
        button.resize(buttonSize);
        button.setFont(smallFont());
        button.setBackcolor1(orange);
        button.setBackcolor2(deepBlue);
        button.setForecolor(Qt::white);
        button.setCaption(u"GOR"_s);
        button.setCaptionAlignment(Qt::AlignHCenter | Qt::AlignBottom);
        QCOMPARE(outlinePixels(picture(button), QRect(8, 44, 68, 24), button), 0);
        button.setCaptionAlignment(Qt::AlignHCenter | Qt::AlignTop);
        QVERIFY(outlinePixels(picture(button), QRect(8, 4, 68, 20), button) > 20);
    }

    void pressedFaceIsJudgedByItself() {
        vkCommand button;
        button.resize(buttonSize);
        button.setFont(smallFont());
        button.setBackcolor1(Qt::black);
        button.setBackcolor2(Qt::black);
        button.setBackcolorpushed1(Qt::white);
        button.setBackcolorpushed2(Qt::white);
        button.setForecolor(Qt::white);
        button.setCaption(u"GOR"_s);
        QCOMPARE(outlinePixels(picture(button), QRect(8, 20, 68, 32), button), 0);
        button.setDown(true);
        const QImage image = picture(button);
        int dark = 0;
        for (int y = 20; y < 52; ++y) {
            for (int x = 8; x < 76; ++x)
                dark += qGray(image.pixel(x, y)) < 160 ? 1 : 0;
        }
        QVERIFY2(dark > 20, qPrintable(QString::number(dark)));
    }

    void iconHasNoOutline_data() {
        addRows<IconHasNoOutlineRow>({{"white on orange", {orange, QColor(Qt::white)}},
                                      {"black on deep blue", {deepBlue, QColor(Qt::black)}},
                                      {"black on orange", {orange, QColor(Qt::black)}}});
    }
    void iconHasNoOutline() {
        QFETCH(const IconHasNoOutlineRow, row);
        vkCommand button;
        button.resize(buttonSize);
        button.setIcon(squareIcon());
        button.setIconSize(QSize(24, 24));
        button.setBackcolor1(row.face);
        button.setBackcolor2(row.face);
        button.setForecolor(row.ink);
        const QImage image = picture(button);
        QCOMPARE(outlinePixels(image, QRect(20, 16, 44, 40), button), 0);
        QVERIFY(near(image.pixelColor(42, 36), row.ink, 4));
    }

    void captionsOfARowHaveOneSize_data() {
        addRows<CaptionsOfARowHaveOneSizeRow>({{"all fit", {{u"AB"_s, u"CD"_s}, true}},
                                               {"one is long", {{u"AB"_s, u"MMMMMMMM"_s, u"CD"_s}, false}}});
    }
    void captionsOfARowHaveOneSize() {
        QFETCH(const CaptionsOfARowHaveOneSizeRow, row);
        std::vector<std::unique_ptr<vkCommand>> buttons;
        std::vector<DrawnButton*> all;
        for (const QString& caption : row.captions) {
            buttons.push_back(std::make_unique<vkCommand>());
            buttons.back()->resize(buttonSize);
            buttons.back()->setFont(smallFont());
            buttons.back()->setCaption(caption);
            all.push_back(buttons.back().get());
        }
        // Twice: the second time each is limited already.
        for (int round = 0; round < 2; ++round) {
            equalizeCaptions(all);
            int smallest = smallFont().pixelSize();
            for (DrawnButton* button : all)
                smallest = std::min(smallest, button->fittingCaptionSize());
            QCOMPARE(smallest == smallFont().pixelSize(), row.allFit);
            for (DrawnButton* button : all)
                QCOMPARE(button->captionSize(), smallest);
        }
    }

    void keyHintStandsOut_data() {
        addRows<KeyHintStandsOutRow>({{"white on orange", {orange, QColor(Qt::white)}},
                                      {"black on deep blue", {deepBlue, QColor(Qt::black)}},
                                      {"white on navy", {QColor(0x2C, 0x40, 0x5B), QColor(Qt::white)}},
                                      {"black on white", {QColor(Qt::white), QColor(Qt::black)}}});
    }
    void keyHintStandsOut() {
        QFETCH(const KeyHintStandsOutRow, row);
        vkCommand button;
        button.resize(buttonSize);
        button.setFont(smallFont());
        button.setBackcolor1(row.face);
        button.setBackcolor2(row.face);
        button.setForecolor(row.ink);
        button.setKeyHint(u"F4"_s);
        const QImage image = picture(button);
        // The pill's ground, left of its glyphs, against the strongest of its glyphs' pixels.
        const QColor ground = image.pixelColor(7, 12);
        double best = 1;
        for (int y = 6; y < 20; ++y) {
            for (int x = 8; x < 30; ++x)
                best = std::max(best, contrast(image.pixelColor(x, y), ground));
        }
        QVERIFY2(best >= 4.2, qPrintable(u"%1 on %2"_s.arg(best).arg(ground.name())));
    }

    void plainButtonsCaptionReads_data() {
        const QColor white(Qt::white);
        const QColor ink(0x12, 0x1A, 0x22);
        addRows<PlainButtonsCaptionReadsRow>({{"ink on white", {white, ink, ink}},
                                              {"ink on grey", {QColor(0xC0, 0xC0, 0xC0), ink, ink}},
                                              {"white on red", {QColor(Qt::red), white, QColor(Qt::black)}},
                                              {"white on dark red", {QColor(0xC0, 0, 0), white, white}},
                                              {"ink on dark red", {QColor(0xC0, 0, 0), ink, white}},
                                              {"ink on black", {QColor(Qt::black), ink, white}},
                                              {"white on white", {white, white, QColor(Qt::black)}}});
    }
    void plainButtonsCaptionReads() {
        QFETCH(const PlainButtonsCaptionReadsRow, row);
        CommandButton button;
        button.resize(buttonSize);
        QFont font = smallFont();
        font.setPixelSize(30);
        button.setFont(font);
        button.setBackcolor1(row.face);
        button.setForecolor(row.wanted);
        button.setCaption(QString(2, QChar(0x2588)));
        for (const bool down : {false, true}) {
            button.setDown(down);
            const QColor glyph = picture(button).pixelColor(42, 36);
            QVERIFY2(near(glyph, row.painted, 4), qPrintable(glyph.name()));
        }
        QCOMPARE(button.forecolor(), row.wanted);
    }

    // Its icon is written in the same ink.
    void plainButtonsIconReads() {
        CommandButton button;
        button.resize(buttonSize);
        button.setBackcolor1(Qt::black);
        button.setIcon(squareIcon());
        button.setIconSize(QSize(24, 24));
        QVERIFY(near(picture(button).pixelColor(42, 36), Qt::white, 4));
    }

    void openSlotIsSeenOnEveryGround_data() {
        QTest::addColumn<QColor>("ground");
        QTest::newRow("white") << QColor(Qt::white);
        QTest::newRow("page") << QColor(0xF1, 0xF4, 0xF8);
        QTest::newRow("dark") << QColor(0x40, 0x40, 0x40);
        QTest::newRow("black") << QColor(Qt::black);
    }
    void openSlotIsSeenOnEveryGround() {
        QFETCH(QColor, ground);
        const auto dashes = [&ground](bool enabled) {
            CommandButton slot;
            slot.resize(buttonSize);
            slot.setEnabled(enabled);
            QImage image(buttonSize, QImage::Format_RGB32);
            image.fill(ground);
            slot.render(&image, {}, {}, QWidget::DrawChildren);
            double best = 1;
            for (int x = 12; x < 72; ++x)
                best = std::max(best, contrast(image.pixelColor(x, 1), ground));
            return best;
        };
        // Seen, but no louder than a button; one that can be filled more than one that can't.
        QVERIFY2(dashes(true) > 1.5 && dashes(true) < 3.5, qPrintable(QString::number(dashes(true))));
        QVERIFY2(dashes(false) > 1.2, qPrintable(QString::number(dashes(false))));
        QVERIFY(dashes(true) > dashes(false) + 0.15);
    }
};

QTEST_MAIN(TestButtonFaces)
#include "test_buttonfaces.moc"
