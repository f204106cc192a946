#include <QLabel>
#include <QLineEdit>
#include <QtTest>

#include "widgets/activeresize.h"
#include "widgets/drawnbutton.h"
#include "widgets/drawnframe.h"
#include "widgets/face.h"
#include "widgets/look.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

QList<std::pair<const char*, FaceRole>> allFaces() {
    return {{"navy", FaceRole::navy},     {"accent", FaceRole::accent}, {"green", FaceRole::store},
            {"danger", FaceRole::danger}, {"slate", FaceRole::slate},   {"light", FaceRole::light},
            {"key2", FaceRole::key2},     {"toggle", FaceRole::toggle}};
}

/// A text and the ground that it stands on.
struct Written {
    ColorRole ink;
    ColorRole ground;
    Tone tone;
};

/// Whether two colours are the same but for the rounding of a painted edge.
bool same(const QColor& one, const QColor& other) {
    return std::abs(one.red() - other.red()) <= 1 && std::abs(one.green() - other.green()) <= 1 &&
           std::abs(one.blue() - other.blue()) <= 1;
}

struct Sized {
    QString role;
    int pixels;
    QFont::Weight weight;
};

}  // namespace

Q_DECLARE_METATYPE(FaceRole)
Q_DECLARE_METATYPE(Written)
Q_DECLARE_METATYPE(Sized)

class LookTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void inkReadsOnItsFace_data() {
        QTest::addColumn<FaceRole>("row");
        for (const auto& [name, role] : allFaces())
            QTest::newRow(name) << role;
    }
    void inkReadsOnItsFace() {
        QFETCH(const FaceRole, row);
        for (const Tone tone : {Tone::light, Tone::dark}) {
            const FaceColors face = faceColors(row, tone);
            QVERIFY(contrastOver(face.ink, face.top, face.bottom) >= legible);
            QVERIFY(contrastOver(face.ink, face.pressedTop, face.pressedBottom) >= legible);
            QVERIFY2(face.top != face.pressedTop, "a press is seen");
        }
    }

    void wordsReadOnTheirGround_data() {
        QTest::addColumn<Written>("row");
        for (const auto& [name, tone] : {std::pair{"light", Tone::light}, {"dark", Tone::dark}}) {
            const auto add = [&](const char* what, ColorRole ink, ColorRole ground) {
                QTest::addRow("%s: %s", name, what) << Written{ink, ground, tone};
            };
            add("text on the ground", ColorRole::ink, ColorRole::ground);
            add("text on a card", ColorRole::ink, ColorRole::card);
            add("text in a field", ColorRole::ink, ColorRole::field);
            add("text on every second row", ColorRole::ink, ColorRole::zebra);
            add("text on the current row", ColorRole::ink, ColorRole::selection);
            add("text on the edited row", ColorRole::ink, ColorRole::editedRow);
            add("muted text on the ground", ColorRole::mutedInk, ColorRole::ground);
            add("muted text on a card", ColorRole::mutedInk, ColorRole::card);
            add("title at the left", ColorRole::stripInk, ColorRole::stripLeft);
            add("title at the right", ColorRole::stripInk, ColorRole::stripRight);
            add("note in the strip", ColorRole::stripNote, ColorRole::stripLeft);
            add("heading", ColorRole::headingInk, ColorRole::heading);
            add("sorted heading", ColorRole::headingInk, ColorRole::sortedHeading);
            add("filter", ColorRole::filterInk, ColorRole::filterCell);
            add("filter in force", ColorRole::filterInk, ColorRole::filterInForce);
            add("hint of a filter", ColorRole::filterHint, ColorRole::filterCell);
            add("refused filter", ColorRole::refusedInk, ColorRole::filterInForce);
            add("red words on the ground", ColorRole::redWords, ColorRole::ground);
            add("total in the footers", ColorRole::footerTotal, ColorRole::footer);
            add("profit", ColorRole::success, ColorRole::card);
            add("amount owed", ColorRole::danger, ColorRole::card);
            add("mark of an amount that is owed", ColorRole::stripInk, ColorRole::owed);
            add("text in a field that can't be typed in", ColorRole::ink, ColorRole::quietField);
            add("entry row of the ticket", ColorRole::disabledInk, ColorRole::card);
            add("every second entry row of the ticket", ColorRole::disabledInk, ColorRole::zebra);
        }
    }
    void wordsReadOnTheirGround() {
        QFETCH(const Written, row);
        const double reached = contrast(roleColor(row.ink, row.tone), roleColor(row.ground, row.tone));
        QVERIFY2(reached >= legible, qPrintable(QString::number(reached)));
    }

    // What is out of use is paler, and can still be read.
    void outOfUse() {
        for (const Tone tone : {Tone::light, Tone::dark})
            QVERIFY(contrastOver(roleColor(ColorRole::disabledInk, tone),
                                 roleColor(ColorRole::disabledTop, tone),
                                 roleColor(ColorRole::disabledBottom, tone)) >= 3.0);
    }

    void aRoleGivesAButtonItsColours_data() { inkReadsOnItsFace_data(); }
    void aRoleGivesAButtonItsColours() {
        QFETCH(const FaceRole, row);
        vkCommand button;
        button.setLook(row);
        const FaceColors face = faceColors(row);
        QCOMPARE(button.look(), row);
        QCOMPARE(button.backcolor1(), face.top);
        QCOMPARE(button.backcolor2(), face.bottom);
        QCOMPARE(button.backcolorpushed1(), face.pressedTop);
        QCOMPARE(button.backcolorpushed2(), face.pressedBottom);
        QCOMPARE(button.forecolor(), face.ink);
        button.resize(100, 50);
        QVERIFY(same(button.grab().toImage().pixelColor(50, 0), face.rim));
        button.setDown(true);
        QVERIFY(same(button.grab().toImage().pixelColor(50, 49), face.rim));
    }

    void theRimFollowsThePage() {
        vkFrame page;
        page.setLook(FrameRole::backdrop);
        vkCommand button(&page);
        button.setLook(FaceRole::navy);
        button.resize(100, 50);
        QCOMPARE(button.grab().toImage().pixelColor(50, 0), faceColors(FaceRole::navy, Tone::dark).rim);
        QVERIFY(faceColors(FaceRole::navy, Tone::dark).rim != faceColors(FaceRole::navy).rim);
    }

    void aPlainButtonTakesTheWholeFace() {
        CommandButton button;
        button.setLook(FaceRole::navy);
        button.setCaption(u"x"_s);
        button.resize(100, 50);
        const QImage painted = button.grab().toImage();
        QVERIFY(painted.pixelColor(15, 6).lightness() > painted.pixelColor(15, 44).lightness() + 10);
    }

    // A palette or a saved set paints over a role.
    void aColourOfItsOwnEndsTheRole_data() {
        QTest::addColumn<QByteArray>("row");
        for (const char* property :
             {"backcolor1", "backcolor2", "backcolorpushed1", "backcolorpushed2", "forecolor"})
            QTest::newRow(property) << QByteArray(property);
    }
    void aColourOfItsOwnEndsTheRole() {
        QFETCH(const QByteArray, row);
        vkCommand button;
        button.setLook(FaceRole::navy);
        button.setProperty(row.constData(), QColor(Qt::yellow));
        QCOMPARE(button.look(), FaceRole::none);
        QCOMPARE(button.property(row.constData()).value<QColor>(), QColor(Qt::yellow));
        button.resize(100, 50);
        QVERIFY(button.grab().toImage().pixelColor(50, 0) != faceColors(FaceRole::navy).rim);
        button.setLook(FaceRole::navy);
        QCOMPARE(button.grab().toImage().pixelColor(50, 0), faceColors(FaceRole::navy).rim);
    }

    void outOfUseEveryRoleLooksTheSame() {
        QImage first;
        for (const auto& [name, role] : allFaces()) {
            vkCommand button;
            button.setLook(role);
            button.setCaption(u"KAPAT"_s);
            button.setEnabled(false);
            button.resize(100, 50);
            const QImage painted = button.grab().toImage();
            if (first.isNull())
                first = painted;
            QVERIFY2(painted == first, name);
        }
        vkCommand own;
        own.setCaption(u"KAPAT"_s);
        own.setEnabled(false);
        own.resize(100, 50);
        QVERIFY(own.grab().toImage() != first);
    }

    void aCard() {
        vkFrame frame;
        frame.setLook(FrameRole::card);
        frame.resize(200, 100);
        QCOMPARE(frame.grab().toImage().pixelColor(100, 50), roleColor(ColorRole::card));
        QCOMPARE(frame.grab().toImage().pixelColor(100, 0), roleColor(ColorRole::edge));
        frame.setLook(FrameRole::alert);
        QCOMPARE(frame.grab().toImage().pixelColor(100, 0), roleColor(ColorRole::danger));
    }

    void textRoles_data() {
        QTest::addColumn<Sized>("row");
        QTest::newRow("title") << Sized{u"title"_s, 20, QFont::Medium};
        QTest::newRow("label") << Sized{u"label"_s, 15, QFont::Medium};
        QTest::newRow("field") << Sized{u"field"_s, 20, QFont::Medium};
        QTest::newRow("command of a bottom row") << Sized{u"command"_s, 14, QFont::Medium};
        QTest::newRow("key") << Sized{u"key"_s, 30, QFont::Medium};
        QTest::newRow("figure") << Sized{u"figure"_s, 64, QFont::Bold};
    }
    void textRoles() {
        QFETCH(const Sized, row);
        QWidget screen;
        QWidget between(&screen);
        QLabel label(&between);
        QLabel other(&between);
        label.setProperty("textRole", row.role);
        applyTextRoles(screen);
        QCOMPARE(label.font().pixelSize(), row.pixels);
        QCOMPARE(label.font().weight(), row.weight);
        QCOMPARE(other.font(), QApplication::font());
    }

    void aFieldKeepsItsTextOffTheLine() {
        QWidget screen;
        QLineEdit field(&screen);
        field.setProperty("textRole", u"field"_s);
        applyTextRoles(screen);
        QCOMPARE(field.textMargins(), QMargins(8, 0, 8, 0));
    }

    void rolesAreForTheDesignSize_data() {
        QTest::addColumn<QSize>("row");
        for (const QSize size : {QSize(320, 240), QSize(400, 300), QSize(800, 600)})
            QTest::addRow("%dx%d", size.width(), size.height()) << size;
    }
    void rolesAreForTheDesignSize() {
        QFETCH(const QSize, row);
        QWidget screen;
        auto* container = new ActiveResize(&screen);
        container->setDesignSize({400, 300});
        auto* button = new vkCommand(container);
        button->setProperty("textRole", u"wide"_s);
        applyTextRoles(screen);
        container->resize(row);
        screen.show();
        container->show();
        QCOMPARE(button->font().pixelSize(), qRound(20.0 * row.width() / 400));
        QCOMPARE(button->font().weight(), QFont::Medium);
    }
};

QTEST_MAIN(LookTest)
#include "test_look.moc"
