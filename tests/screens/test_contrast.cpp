#include <QFile>
#include <QFrame>
#include <QLabel>
#include <algorithm>
#include <cmath>
#include <map>

#include "app/session.h"
#include "appearance/palette.h"
#include "desktop/screensize.h"
#include "everyscreen.h"
#include "paintedtext.h"
#include "salestest.h"
#include "widgets/drawnbutton.h"
#include "widgets/face.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

const QString document = QStringLiteral(PROJECT_FOLDER "/docs/accessibility.md");
const QString tableHead = u"| Screen | Control | Shows, for one | In the middle | At worst |"_s;
const QString tableRule = u"|---|---|---|---|---|"_s;

/// The machines' letters differ by a pixel, and with them the part of a gradient that is behind them.
constexpr double tolerance = 0.2;

/// What falls below legible contrast: the weakest text of each control of each screen.
using WeakTexts = std::map<std::pair<QString, QString>, PaintedText>;

/// @return whether there was a text at all
bool note(WeakTexts& weak, const QString& screen, QWidget& window) {
    QCoreApplication::processEvents();
    const QList<PaintedText> texts = paintedTexts(window);
    for (const PaintedText& text : texts) {
        if (text.worst >= legible)
            continue;
        const auto [place, isNew] = weak.try_emplace({screen, text.control}, text);
        if (!isNew && text.worst < place->second.worst)
            place->second = text;
    }
    return !texts.isEmpty();
}

QStringList tableOf(const WeakTexts& weak) {
    QStringList lines;
    for (const auto& [place, text] : weak) {
        constexpr int longest = 24;
        QString shown = text.text.left(longest);
        shown.replace(u'|', u'/');
        lines.append(u"| %1 | `%2` | %3 | %4 | %5 |"_s.arg(place.first, place.second, shown)
                         .arg(text.middle, 0, 'f', 1)
                         .arg(text.worst, 0, 'f', 1));
    }
    return lines;
}

/// The lines of the document, and where its table stands in them.
struct Document {
    QStringList lines;
    qsizetype first = -1;
    qsizetype last = -1;  ///< behind the table

    static Document read() {
        Document read;
        QFile file(document);
        if (file.open(QIODevice::ReadOnly))
            read.lines = QString::fromUtf8(file.readAll()).split(u'\n');
        const qsizetype head = read.lines.indexOf(tableHead);
        if (head < 0)
            return read;
        read.first = read.last = head + 2;
        while (read.last < read.lines.size() && read.lines[read.last].startsWith(u'|'))
            ++read.last;
        return read;
    }

    QStringList table() const { return first < 0 ? QStringList() : lines.mid(first, last - first); }
};

/// What a line of the table says, but for the example.
struct Told {
    QString place;
    double middle;
    double worst;
};

QList<Told> toldBy(const QStringList& table) {
    QList<Told> told;
    for (const QString& line : table) {
        const QStringList cells = line.split(u'|');
        told.append(
            {cells[1].trimmed() + u" " + cells[2].trimmed(), cells[4].toDouble(), cells[5].toDouble()});
    }
    return told;
}

/// What a table lacks that another one has, or says otherwise; what lies at the border may be in either.
QStringList missing(const QList<Told>& from, const QList<Told>& wanted) {
    QStringList faults;
    for (const Told& line : wanted) {
        const auto found = std::ranges::find(from, line.place, &Told::place);
        if (found == from.end()) {
            if (line.worst < legible - tolerance)
                faults.append(u"%1: %2"_s.arg(line.place).arg(line.worst));
        } else if (std::abs(found->worst - line.worst) > tolerance ||
                   std::abs(found->middle - line.middle) > tolerance) {
            faults.append(u"%1: %2 or %3"_s.arg(line.place).arg(found->worst).arg(line.worst));
        }
    }
    return faults;
}

}  // namespace

/// A label on a ground, and what is seen of it.
struct SeenRow {
    QColor ink;
    QColor ground;
    bool enabled;
    bool covered;
    double ratio;  // 0 where nothing is seen
};

/// Looks at every text that the till shows, as it is painted.
class ContrastTest : public SalesTest {
    Q_OBJECT

    WeakTexts m_weak;

private Q_SLOTS:
    void init() {
        SalesTest::init();
        m_shop->run("INSERT INTO kullanici (personeladi, sifre, yetki) VALUES ('Ayşe', 'gizli', 'Yönetici')");
        girisyetki = 1;
    }

    void whatIsPaintedIsSeen_data() {
        QTest::addColumn<SeenRow>("row");
        QTest::newRow("black on white") << SeenRow{Qt::black, Qt::white, true, false, 21.0};
        QTest::newRow("grey on white") << SeenRow{QColor(0x77, 0x77, 0x77), Qt::white, true, false, 4.48};
        QTest::newRow("red on black") << SeenRow{Qt::red, Qt::black, true, false, 5.25};
        QTest::newRow("half transparent") << SeenRow{QColor(0, 0, 0, 128), Qt::white, true, false, 3.98};
        QTest::newRow("disabled") << SeenRow{Qt::black, Qt::white, false, false, 0};
        QTest::newRow("covered") << SeenRow{Qt::black, Qt::white, true, true, 0};
    }
    void whatIsPaintedIsSeen() {
        QFETCH(const SeenRow, row);
        QWidget window;
        window.resize(300, 100);
        QLabel label(u"Yoğurt"_s, &window);
        label.setObjectName(u"yazi"_s);
        label.setGeometry(window.rect());
        label.setAutoFillBackground(true);
        QPalette colors;
        colors.setColor(QPalette::Window, row.ground);
        colors.setColor(QPalette::WindowText, row.ink);
        label.setPalette(colors);
        label.setEnabled(row.enabled);
        QFrame panel(&window);
        panel.setGeometry(window.rect());
        panel.setAutoFillBackground(true);
        panel.setVisible(row.covered);
        const QList<PaintedText> seen = paintedTexts(window);
        QCOMPARE(seen.size(), row.ratio > 0 ? 1 : 0);
        for (const PaintedText& text : seen) {
            QCOMPARE(text.text, u"Yoğurt"_s);
            QCOMPARE(text.control, u"yazi"_s);
            QVERIFY2(std::abs(text.middle - row.ratio) < 0.05, qPrintable(QString::number(text.middle)));
        }
    }

    void everyScreen_data() {
        QTest::addColumn<ScreenRow>("row");
        for (const ScreenRow& row : screens()) {
            if (QLatin1StringView(row.name) != "satisekrani"_L1)
                QTest::newRow(row.name) << row;
        }
    }
    void everyScreen() {
        QFETCH(const ScreenRow, row);
        setScreenMetricsSource([] { return ScreenMetrics{{1024, 768}, 15, 15}; });
        Screen& opened = row.open();
        QVERIFY(QTest::qWaitForWindowExposed(&opened));
        if (row.design.isEmpty()) {
            opened.setWindowState(Qt::WindowNoState);
            opened.resize(1024, 768);
        }
        // The clock's dial is painted once, as a picture.
        QCOMPARE(note(m_weak, QLatin1StringView(row.name), opened), row.name != "saatt"_L1);
    }

    void theSalesScreenInEachPalette_data() {
        QTest::addColumn<Palette>("row");
        for (const Palette palette : allPalettes)
            QTest::addRow("resim%d", static_cast<int>(palette) + 1) << palette;
    }
    void theSalesScreenInEachPalette() {
        QFETCH(const Palette, row);
        satisekrani& sales = screen<satisekrani>();
        sales.setWindowState(Qt::WindowNoState);
        sales.resize(1024, 768);
        paintPalette(sales, row);
        paintTotal(sales, row);
        for (const char* key : {"kisayol1", "kisayol_0"})
            sales.findChild<DrawnButton*>(QLatin1StringView(key))->setCaption(u"Ekmek"_s);
        const QString name = u"satisekrani, "_s + QTest::currentDataTag();
        m_shop->scan(goods::milk);
        QVERIFY(note(m_weak, name, sales));
        pressCell(1, 3);
        QVERIFY(note(m_weak, name, sales));
        press(*ui().vazgecc);
        press(*ui().fiyatgor);
        QVERIFY(note(m_weak, name, sales));
        press(*ui().fiyargorkapat);
        m_shop->scan(unknown);
        QVERIFY(note(m_weak, name, sales));
        press(*ui().urunbulunamadikapat);
    }

    void whatIsWeakIsListed() {
        const QStringList table = tableOf(m_weak);
        Document told = Document::read();
        QVERIFY(told.first > 0);
        if (qEnvironmentVariableIsSet("KOVANIX_RENEW_DOCUMENTS")) {
            QFile file(document);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(
                (told.lines.mid(0, told.first) + table + told.lines.mid(told.last)).join(u'\n').toUtf8());
            return;
        }
        const QList<Told> listed = toldBy(told.table());
        const QList<Told> seen = toldBy(table);
        QVERIFY(!seen.isEmpty());
        QCOMPARE(missing(listed, seen).join(u'\n'), QString());
        QCOMPARE(missing(seen, listed).join(u'\n'), QString());
    }
};

int main(int argc, char** argv) {
    return runTests<ContrastTest>(argc, argv);
}
#include "test_contrast.moc"
