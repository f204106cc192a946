#include "till.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QRandomGenerator>
#include <QSet>
#include <QTimer>
#include <QWindow>

#include "app/session.h"
#include "app/shopfolder.h"
#include "child.h"
#include "data/baglanmamodulu.h"
#include "figures.h"
#include "runtime/screenregistry.h"

namespace kovanix::bench {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype barcodeLength = 13;

QString firstField(const QString& sql, const QString& field) {
    Recordset rows;
    rows.open(sql, baglanti());
    return rows.atEnd() ? QString() : rows.field(field).toString();
}

}  // namespace

void closeShop() {
    ScreenRegistry::clear();
    baglantikapatsessiz();
    semahazir = false;
}

satisekrani& openShop(const QString& folder) {
    closeShop();
    prepareShopFolder(folder);
    if (!veritabaninibagla())
        giveUp("the shop doesn't open");
    satisekrani& sales = screen<satisekrani>();
    sales.showMaximized();
    return sales;
}

std::string rowsOf(const QString& table) {
    const qlonglong count = firstField(u"select count(*) as lines from "_s + table, u"lines"_s).toLongLong();
    return u"%L1"_s.arg(count).toStdString();
}

bool takesScans(const satisekrani& sales) {
    return sales.isActiveWindow() && sales.ui.barkod->hasFocus();
}

QStringList drawBarcodes(qsizetype count, quint32 seed) {
    const quint32 last = firstField(u"select max(no) as last from urunler"_s, u"last"_s).toUInt();
    QRandomGenerator random(seed);
    QSet<QString> drawn;
    QStringList barcodes;
    for (qint64 tries = 0; barcodes.size() < count; ++tries) {
        if (tries > 100 * qint64(count))
            giveUp("the shop has too few products");
        const QString number = QString::number(random.bounded(last) + 1);
        const QString barcode = firstField(u"select barkod from urunler where no=" + number, u"barkod"_s);
        if (barcode.size() != barcodeLength || drawn.contains(barcode))
            continue;
        drawn.insert(barcode);
        barcodes.append(barcode);
    }
    return barcodes;
}

void pressKey(QWidget& window, Qt::Key key, const QString& text) {
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, Qt::NoModifier, text);
        QCoreApplication::sendEvent(window.windowHandle(), &event);
    }
}

void pressOn(QWidget& control) {
    QWidget& window = *control.window();
    const QPointF place = control.mapTo(&window, control.rect().center());
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, place, window.mapToGlobal(place), Qt::LeftButton,
                          type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(window.windowHandle(), &event);
    }
}

void typeText(QWidget& window, const QString& text) {
    for (const QChar character : text)
        pressKey(window, static_cast<Qt::Key>(character.unicode()), character);
}

void scan(QWidget& window, const QString& barcode) {
    typeText(window, barcode);
    pressKey(window, Qt::Key_Return, u"\r"_s);
}

void finishPosted() {
    QCoreApplication::sendPostedEvents();
}

void await(const std::function<bool()>& condition) {
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > 60'000)
            giveUp("a screen doesn't come");
        QCoreApplication::processEvents();
    }
}

ListWatch::ListWatch() {
    qApp->installEventFilter(this);
}

bool ListWatch::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Paint && watched->parent() && watched->parent()->objectName() == u"TDBGrid1")
        painted = true;
    return false;
}

void OpeningTimes::tell(Figures& figures, const std::string& screen, const std::string& shop) const {
    figures.tell(screen + ", press to first paint, " + shop, percentile(times, 0.5), "ms");
    figures.atMost(2.5, screen + ", against reading through the C interface, " + shop,
                   percentile(ratios, 0.5), "×");
}

void openList(ListWatch& watch, const QString& folder, vkCommand* Ui::satisekrani::*button,
              OpeningTimes& taken) {
    satisekrani& sales = openShop(folder);
    await([&] { return takesScans(sales); });
    watch.painted = false;
    QElapsedTimer timer;
    timer.start();
    (sales.ui.*button)->click();
    await([&] { return watch.painted; });
    taken.times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
    taken.ratios.push_back(taken.times.back() / rawListRead(folder.toStdString()));
}

void measureInTurns(qsizetype shops, int rounds, const std::function<void(qsizetype)>& measure) {
    QTimer::singleShot(0, qApp, [=] {
        for (int round = 0; round < rounds; ++round) {
            for (qsizetype shop = 0; shop < shops; ++shop)
                measure(shop);
        }
        closeShop();
        QCoreApplication::exit(0);
    });
}

}  // namespace kovanix::bench
