#include <malloc.h>

#include <QClipboard>
#include <QFont>
#include <QPixmapCache>
#include <QPointer>
#include <algorithm>
#include <utility>

#include "app/session.h"
#include "desktop/screensize.h"
#include "everyscreen.h"
#include "focuslog.h"
#include "salestest.h"
#include "sanitized.h"
#include "screencontract.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

void addScreens() {
    QTest::addColumn<ScreenRow>("row");
    for (const ScreenRow& row : screens())
        QTest::newRow(row.name) << row;
}

struct SizeRow : ScreenRow {
    QSize display;
};

struct LeavingRow : ScreenRow {
    bool byEscape;
};

struct TextRow : ScreenRow {
    QString text;
    bool typed;
};

}  // namespace

/// What every screen keeps to, whatever it is for.
class ScreenContractTest : public SalesTest {
    Q_OBJECT

    static Screen& open(const ScreenRow& row) {
        Screen& opened = row.open();
        if (row.tabOrder.isEmpty()) {
            // It never has the keyboard.
            if (!QTest::qWaitForWindowExposed(&opened))
                qFatal("%s doesn't show", row.name);
            return opened;
        }
        // The toolkit's own wait takes a window for active as soon as the one that it belongs to is.
        if (!QTest::qWaitFor([&opened] { return opened.isActiveWindow(); }))
            qFatal("%s doesn't become active", row.name);
        return opened;
    }

private Q_SLOTS:
    void init() {
        SalesTest::init();
        m_shop->run("INSERT INTO kullanici (personeladi, sifre, yetki) VALUES ('Ayşe', 'gizli', 'Yönetici')");
        girisyetki = 1;
    }

    void bearsItsTitleAndLetters_data() { addScreens(); }
    void bearsItsTitleAndLetters() {
        QFETCH(const ScreenRow, row);
        const Screen& opened = open(row);
        QCOMPARE(opened.windowTitle(), row.title);
        QCOMPARE(symbolsLeft(opened, row.symbols).join(u'\n'), QString());
    }

    void assistiveToolsAreToldOfEverything_data() { addScreens(); }
    void assistiveToolsAreToldOfEverything() {
        QFETCH(const ScreenRow, row);
        Screen& opened = open(row);
        QCOMPARE(untoldControls(opened).join(u'\n'), QString());
        if (row.tabOrder.isEmpty())
            return;
        FocusLog log;
        for (qsizetype step = row.tabOrder.split(u' ', Qt::SkipEmptyParts).size(); step > 1; --step) {
            log.clear();
            QTest::keyClick(&opened, Qt::Key_Tab);
            QVERIFY2(!log.names().isEmpty(), qPrintable(QApplication::focusWidget()->objectName()));
        }
    }

    // One title each, with round corners.
    void aSmallOneIsItsOwnFrame_data() { addScreens(); }
    void aSmallOneIsItsOwnFrame() {
        QFETCH(const ScreenRow, row);
        const Screen& opened = open(row);
        if (row.design.isEmpty())
            return;
        QVERIFY(opened.windowFlags() & Qt::FramelessWindowHint);
        QVERIFY(!opened.mask().contains(QPoint(0, 0)));
        QVERIFY(opened.mask().contains(opened.rect().center()));
    }

    void fits_data() {
        QTest::addColumn<SizeRow>("row");
        const auto add = [](const ScreenRow& row, QSize display) {
            QTest::addRow("%s %dx%d", row.name, display.width(), display.height()) << SizeRow{row, display};
        };
        for (const ScreenRow& row : screens()) {
            for (const QSize display : displays())
                add(row, display);
        }
        add(screens().constFirst(), {640, 480});
    }
    void fits() {
        QFETCH(const SizeRow, row);
        setScreenMetricsSource([row] { return ScreenMetrics{row.display, 15, 15}; });
        Screen& opened = open(row);
        if (row.design.isEmpty()) {
            QCOMPARE(layoutFaults(opened).join(u'\n'), QString());  // as it opens
            opened.setWindowState(Qt::WindowNoState);
            opened.resize(row.display);
            QCoreApplication::processEvents();
        } else {
            const double scale = std::min(row.display.width() / 1024.0, row.display.height() / 768.0);
            QCOMPARE(opened.size(), (QSizeF(row.design) * scale).toSize());
        }
        QCOMPARE(layoutFaults(opened).join(u'\n'), QString());
        opened.resize(opened.width() * 8 / 5, opened.height());
        QCoreApplication::processEvents();
        QCOMPARE(layoutFaults(opened).join(u'\n'), QString());
    }

    void tabReachesEverything_data() { addScreens(); }
    void tabReachesEverything() {
        QFETCH(const ScreenRow, row);
        const Screen& opened = open(row);
        if (row.tabOrder.isEmpty()) {
            QVERIFY(opened.windowFlags() & Qt::WindowDoesNotAcceptFocus);
            return;
        }
        QCOMPARE(tabFaults(opened, row.tabOrder.split(u' ', Qt::SkipEmptyParts)).join(u'\n'), QString());
    }

    void leaving_data() {
        QTest::addColumn<LeavingRow>("row");
        for (const ScreenRow& row : screens()) {
            if (!row.tabOrder.isEmpty())  // else the key goes elsewhere
                QTest::addRow("%s by Escape", row.name) << LeavingRow{row, true};
            QTest::addRow("%s by X", row.name) << LeavingRow{row, false};
        }
    }
    void leaving() {
        QFETCH(const LeavingRow, row);
        const QPointer<Screen> opened(&open(row));
        const Leaving leaving = row.byEscape ? row.escape : row.x;
        if (leaving == Leaving::asks)
            m_shop->boxes.expectAny(MessageBoxAnswer::no);
        if (row.byEscape)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        else
            opened->close();
        const bool goes = leaving == Leaving::closes || leaving == Leaving::goesBack;
        QCOMPARE(row.isOpen(), !goes);
        if (!goes)
            return;
        QTRY_VERIFY(!opened);
        if (leaving == Leaving::goesBack) {
            QTRY_VERIFY(QApplication::activeWindow());
            QVERIFY(!m_shop->sales().isActiveWindow());
            return;
        }
        if (!loaded<satisekrani>())
            return;
        if (!QApplication::activeWindow())
            m_shop->sales().activateWindow();  // as a window manager does
        QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
    }

    void opensAgainWithoutGrowing_data() { addScreens(); }
    void opensAgainWithoutGrowing() {
        if (sanitized)
            QSKIP("the sanitizer's allocator doesn't tell what is in use");
        QFETCH(const ScreenRow, row);
        constexpr int times = 10;
        constexpr int rounds = 20;
        constexpr qint64 mostBytes = 50;
        const auto inUse = [&] {
            for (int i = 0; i < times; ++i) {
                Screen& opened = open(row);
                opened.grab();
                ScreenRegistry::unload(opened);
                QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            }
            // Drawn icons and letters are kept, up to a limit.
            QPixmapCache::clear();
            QFont::cleanup();
            const struct mallinfo2 heap = mallinfo2();
            return qint64(heap.uordblks + heap.hblkhd);
        };
        // The first rounds fill reserves; what each opening leaves behind shows in every round.
        qint64 bytes = mostBytes + 1;
        qint64 before = inUse();
        for (int round = 0; round < rounds && bytes > mostBytes; ++round) {
            const qint64 now = inUse();
            bytes = (now - std::exchange(before, now)) / times;
        }
        QVERIFY2(bytes <= mostBytes, qPrintable(u"%1 bytes an opening"_s.arg(bytes)));
    }

    void fieldsAreKnown_data() { addScreens(); }
    void fieldsAreKnown() {
        QFETCH(const ScreenRow, row);
        QStringList fields;
        for (const QLineEdit* field : writableFields(open(row)))
            fields.append(field->objectName());
        QCOMPARE(fields.join(u' '), row.fields);
    }

    void takesAnyText_data() {
        QTest::addColumn<TextRow>("row");
        for (const ScreenRow& row : screens()) {
            for (const auto& [name, text] :
                 row.fields.isEmpty() ? decltype(hostileTexts()){} : hostileTexts()) {
                for (const bool typed : {true, false})
                    QTest::addRow("%s, %s %s", row.name, qUtf8Printable(name), typed ? "typed" : "pasted")
                        << TextRow{row, text, typed};
            }
        }
    }
    void takesAnyText() {
        QFETCH(const TextRow, row);
        const Screen& opened = open(row);
        const auto before = m_shop->tables();
        for (QLineEdit* field : writableFields(opened)) {
            field->setFocus();
            if (!row.typed) {
                QApplication::clipboard()->setText(row.text);
                field->paste();
                continue;
            }
            // A field takes longer for each letter, the more it holds.
            for (const char32_t character : row.text.left(1000).toUcs4()) {
                if (character == U'\r' || character == U'\n')
                    continue;  // the Enter key
                QTest::sendKeyEvent(QTest::Click, field, Qt::Key_unknown, QString::fromUcs4(&character, 1),
                                    Qt::NoModifier);
            }
        }
        QVERIFY(row.isOpen());
        QVERIFY(opened.isVisible());
        QVERIFY(m_shop->tables() == before);
    }
};

int main(int argc, char** argv) {
    return runTests<ScreenContractTest>(argc, argv);
}

#include "test_contract.moc"
