#include <QAbstractButton>
#include <QImage>
#include <QLineEdit>
#include <QTest>
#include <algorithm>
#include <functional>
#include <memory>

#include "rows.h"
#include "widgets/colordialog.h"
#include "widgets/paintedhint.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

const QColor former(0xC0, 0x00, 0x00);

/// What somebody does in the dialog, and the colour that it then shows.
struct DoesRow {
    std::function<void(ColorDialog&)> does;
    QColor color;
};

struct LeavesRow {
    std::function<void(ColorDialog&)> does;
    bool stays;
    bool taken;
};

struct SizeRow {
    QSize size;
};

QAbstractButton& button(const ColorDialog& dialog, const QString& name) {
    auto* found = dialog.findChild<QAbstractButton*>(name);
    if (!found)
        qFatal("no button %s", qPrintable(name));
    return *found;
}

QLineEdit& field(const ColorDialog& dialog, const QString& letter) {
    return *dialog.findChild<QLineEdit*>(u"value"_s + letter);
}

QList<QAbstractButton*> swatches(const ColorDialog& dialog) {
    QList<QAbstractButton*> all = dialog.findChildren<QAbstractButton*>();
    all.removeIf([](const QAbstractButton* each) { return !each->objectName().startsWith(u"swatch_"); });
    return all;
}

/// The swatches that are marked as chosen.
QStringList marked(const ColorDialog& dialog) {
    QStringList names;
    for (const QAbstractButton* swatch : swatches(dialog)) {
        if (swatch->isChecked())
            names.append(swatch->objectName());
    }
    return names;
}

void click(const ColorDialog& dialog, const QString& name) {
    QTest::mouseClick(&button(dialog, name), Qt::LeftButton);
}

/// Types in a field in place of what is there.
void type(const ColorDialog& dialog, const QString& letter, const QString& text) {
    field(dialog, letter).setFocus();
    field(dialog, letter).selectAll();
    QTest::keyClick(&field(dialog, letter), Qt::Key_Backspace);
    QTest::keyClicks(&field(dialog, letter), text);
}

void keys(const ColorDialog& dialog, const QList<Qt::Key>& all) {
    for (const Qt::Key key : all)
        QTest::keyClick(dialog.focusWidget(), key);
}

}  // namespace

Q_DECLARE_METATYPE(DoesRow)
Q_DECLARE_METATYPE(LeavesRow)
Q_DECLARE_METATYPE(SizeRow)

class TestColorDialog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_dialog = std::make_unique<ColorDialog>(former);
        open({864, 592});
    }
    void cleanup() { m_dialog.reset(); }

    void opensOnTheFormerColour() {
        QCOMPARE(m_dialog->currentColor(), former);
        QCOMPARE(m_dialog->windowTitle(), u"Renk"_s);
        QCOMPARE(m_dialog->focusWidget()->objectName(), u"ok"_s);
        QVERIFY(marked(*m_dialog).isEmpty());
        // Without its transparency.
        QCOMPARE(ColorDialog(QColor(1, 2, 3, 4)).currentColor(), QColor(1, 2, 3));
    }

    void chooses_data() {
        addRows<DoesRow>(
            {{"a swatch", {[](ColorDialog& d) { click(d, u"swatch_17"_s); }, QColor(0x1F, 0x6F, 0xEB)}},
             {"the same twice",
              {[](ColorDialog& d) {
                   click(d, u"swatch_47"_s);
                   click(d, u"swatch_47"_s);
               },
               QColor(0xFF, 0, 0xFF)}},
             {"Enter on a swatch",
              {[](ColorDialog& d) {
                   button(d, u"swatch_7"_s).setFocus();
                   keys(d, {Qt::Key_Return});
               },
               QColor(0, 0, 0)}},
             {"arrows",
              {[](ColorDialog& d) {
                   button(d, u"swatch_0"_s).setFocus();
                   keys(d, {Qt::Key_Right, Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_Up,
                            Qt::Key_Right, Qt::Key_Left});
               },
               QColor(0x1F, 0x6F, 0xEB)}},
             {"arrows at the edge",
              {[](ColorDialog& d) {
                   click(d, u"swatch_0"_s);
                   keys(d, {Qt::Key_Left, Qt::Key_Up});
               },
               QColor(0xFF, 0xFF, 0xFF)}},
             {"more", {[](ColorDialog& d) { click(d, u"moreY"_s); }, QColor(0xC0, 1, 0)}},
             {"less", {[](ColorDialog& d) { click(d, u"lessK"_s); }, QColor(0xBF, 0, 0)}},
             {"less than nothing", {[](ColorDialog& d) { click(d, u"lessM"_s); }, former}},
             {"more than all",
              {[](ColorDialog& d) {
                   type(d, u"K"_s, u"255"_s);
                   click(d, u"moreK"_s);
               },
               QColor(0xFF, 0, 0)}},
             {"up and down in a field",
              {[](ColorDialog& d) {
                   field(d, u"M"_s).setFocus();
                   keys(d, {Qt::Key_Up, Qt::Key_Up, Qt::Key_Down});
               },
               QColor(0xC0, 0, 1)}},
             {"typed", {[](ColorDialog& d) { type(d, u"Y"_s, u"111"_s); }, QColor(0xC0, 111, 0)}},
             {"typed, too large", {[](ColorDialog& d) { type(d, u"Y"_s, u"999"_s); }, QColor(0xC0, 255, 0)}},
             {"letters", {[](ColorDialog& d) { type(d, u"Y"_s, u"a7-b"_s); }, QColor(0xC0, 7, 0)}},
             {"emptied", {[](ColorDialog& d) { type(d, u"K"_s, QString()); }, former}},
             {"typed, with zeros ahead",
              {[](ColorDialog& d) { type(d, u"M"_s, u"007"_s); }, QColor(0xC0, 0, 7)}},
             {"a scan in a field",
              {[](ColorDialog& d) {
                   type(d, u"K"_s, u"8695463115280"_s);
                   keys(d, {Qt::Key_Return});
               },
               QColor(0xFF, 0, 0)}},
             {"a scan at first",
              {[](ColorDialog& d) { QTest::keyClicks(d.focusWidget(), u"8695463115280"_s); }, former}}});
    }
    void chooses() {
        QFETCH(const DoesRow, row);
        row.does(*m_dialog);
        QCOMPARE(m_dialog->currentColor(), row.color);
        QVERIFY(m_dialog->isVisible());
        // Whatever has been typed, the fields show it once they are left; and one swatch is marked, if any
        // has that colour.
        button(*m_dialog, u"ok"_s).setFocus();
        QCOMPARE(field(*m_dialog, u"K"_s).text(), QString::number(row.color.red()));
        QCOMPARE(field(*m_dialog, u"Y"_s).text(), QString::number(row.color.green()));
        QCOMPARE(field(*m_dialog, u"M"_s).text(), QString::number(row.color.blue()));
        const QString name = u"Kırmızı %1, yeşil %2, mavi %3"_s.arg(row.color.red())
                                 .arg(row.color.green())
                                 .arg(row.color.blue());
        QStringList same;
        for (const QAbstractButton* swatch : swatches(*m_dialog)) {
            if (swatch->accessibleName() == name)
                same.append(swatch->objectName());
        }
        QCOMPARE(marked(*m_dialog), same);
        const auto* preview = m_dialog->findChild<QWidget*>(u"preview"_s);
        const QImage picture = const_cast<QWidget*>(preview)->grab().toImage();
        QCOMPARE(picture.pixelColor(picture.rect().center()), row.color);
        QCOMPARE(picture.pixelColor(picture.width() / 2, picture.height() * 5 / 6), former);
    }

    void leaves_data() {
        const auto pressing = [](const QString& name) {
            return [name](ColorDialog& dialog) { click(dialog, name); };
        };
        const auto striking = [](const QString& name, Qt::Key key) {
            return [name, key](ColorDialog& dialog) {
                dialog.findChild<QWidget*>(name)->setFocus();
                QTest::keyClick(dialog.focusWidget(), key);
            };
        };
        addRows<LeavesRow>({{"Tamam", {pressing(u"ok"_s), false, true}},
                            {"Vazgeç", {pressing(u"cancel"_s), false, false}},
                            {"Enter on Tamam", {striking(u"ok"_s, Qt::Key_Return), false, true}},
                            {"Space on Vazgeç", {striking(u"cancel"_s, Qt::Key_Space), false, false}},
                            {"Enter in a field", {striking(u"valueY"_s, Qt::Key_Return), true, false}},
                            {"Enter in the last field", {striking(u"valueM"_s, Qt::Key_Return), true, false}},
                            {"Enter on a swatch", {striking(u"swatch_3"_s, Qt::Key_Enter), true, false}},
                            {"Escape on Tamam", {striking(u"ok"_s, Qt::Key_Escape), false, false}},
                            {"Escape in a field", {striking(u"valueK"_s, Qt::Key_Escape), false, false}},
                            {"Escape on a swatch", {striking(u"swatch_3"_s, Qt::Key_Escape), false, false}},
                            {"its window's close", {[](ColorDialog& d) { d.close(); }, false, false}}});
    }
    void leaves() {
        QFETCH(const LeavesRow, row);
        row.does(*m_dialog);
        QCOMPARE(m_dialog->isVisible(), row.stays);
        QCOMPARE(m_dialog->result() == QDialog::Accepted, row.taken);
    }

    void tabStops() {
        const QStringList stops{u"ok"_s,     u"cancel"_s, u"swatch_0"_s, u"lessK"_s, u"valueK"_s,
                                u"moreK"_s,  u"lessY"_s,  u"valueY"_s,   u"moreY"_s, u"lessM"_s,
                                u"valueM"_s, u"moreM"_s,  u"ok"_s};
        QStringList seen{m_dialog->focusWidget()->objectName()};
        while (seen.size() < stops.size()) {
            QTest::keyClick(m_dialog->focusWidget(), Qt::Key_Tab);
            seen.append(m_dialog->focusWidget()->objectName());
        }
        QCOMPARE(seen, stops);
        // To the chosen one where there is such.
        m_dialog->setCurrentColor(Qt::black);
        keys(*m_dialog, {Qt::Key_Tab, Qt::Key_Tab});
        QCOMPARE(m_dialog->focusWidget()->objectName(), u"swatch_7"_s);
    }

    void enterWalksThroughTheFields() {
        field(*m_dialog, u"K"_s).setFocus();
        QStringList seen;
        for (int i = 0; i < 3; ++i) {
            QTest::keyClick(m_dialog->focusWidget(), Qt::Key_Return);
            seen.append(m_dialog->focusWidget()->objectName());
        }
        QCOMPARE(seen, QStringList({u"valueY"_s, u"valueM"_s, u"ok"_s}));
    }

    void holdingAStepGoesOn() {
        QAbstractButton& more = button(*m_dialog, u"moreM"_s);
        QTest::mousePress(&more, Qt::LeftButton);
        QTRY_VERIFY(m_dialog->currentColor().blue() >= 3);
        QTest::mouseRelease(&more, Qt::LeftButton);
    }

    void fits_data() {
        addRows<SizeRow>({{"800x600", {{675, 463}}},
                          {"1024x768 and 1366x768", {{864, 592}}},
                          {"1920x1080", {{1215, 833}}}});
    }
    void fits() {
        QFETCH(const SizeRow, row);
        m_dialog = std::make_unique<ColorDialog>(former);
        open(row.size);
        const double scale = row.size.width() / 864.0;
        QCOMPARE(swatches(*m_dialog).size(), 48);
        QList<QWidget*> targets;
        for (QAbstractButton* each : m_dialog->findChildren<QAbstractButton*>())
            targets.append(each);
        for (QLineEdit* each : m_dialog->findChildren<QLineEdit*>())
            targets.append(each);
        QRegion taken;
        for (const QWidget* target : std::as_const(targets)) {
            const QRect place(target->mapTo(m_dialog.get(), QPoint(0, 0)), target->size());
            QVERIFY2(place.width() >= 40 && place.height() >= 40, qPrintable(target->objectName()));
            QVERIFY2(m_dialog->rect().contains(place), qPrintable(target->objectName()));
            QVERIFY2(!taken.intersects(place), qPrintable(target->objectName()));
            taken += place;
            QVERIFY(target->font().pixelSize() >= 11);
            if (target->objectName().startsWith(u"swatch_"))
                QVERIFY(place.width() >= qRound(56 * scale) + 2 * qRound(5 * scale) - 1);
        }
        for (const QLineEdit* each : m_dialog->findChildren<QLineEdit*>())
            QVERIFY(each->width() > each->fontMetrics().horizontalAdvance(u"888"_s) + 16);
        const auto* note = m_dialog->findChild<PaintedHint*>();
        QCOMPARE(note->text(), u"üstte yeni, altta önceki renk"_s);
        QFont small = note->font();
        small.setPixelSize(std::max(11, static_cast<int>(15 * scale)));
        QVERIFY(note->width() >= QFontMetrics(small).horizontalAdvance(note->text()));
        QVERIFY(note->height() >= QFontMetrics(small).height());
        const auto* preview = m_dialog->findChild<QWidget*>(u"preview"_s);
        QVERIFY(preview->height() >= 150 * scale);
    }

private:
    void open(QSize size) {
        m_dialog->resize(size);
        m_dialog->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_dialog.get()));
        m_dialog->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
    }

    std::unique_ptr<ColorDialog> m_dialog;
};

QTEST_MAIN(TestColorDialog)
#include "test_colordialog.moc"
