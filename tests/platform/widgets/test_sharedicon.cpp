// Drawn controls come and go with their screens; what the toolkit keeps of their icons must not.

#include <malloc.h>

#include <QFile>
#include <QPainter>
#include <QPixmapCache>
#include <QTemporaryDir>
#include <QTest>
#include <functional>

#include "rows.h"
#include "sanitized.h"
#include "widgets/drawnbutton.h"
#include "widgets/drawnframe.h"
#include "widgets/emptyplace.h"
#include "widgets/paintedhint.h"
#include "widgets/pictures.h"
#include "widgets/tdbgrid.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

constexpr QSize side(24, 24);

void paint(QWidget& control) {
    control.resize(200, 160);
    control.grab();
}

}  // namespace

class TestSharedIcon : public QObject {
    Q_OBJECT

    struct PaintedControlRow {
        std::function<void(const QString& path)> paint;
    };

    /// An SVG file with a bar of that width. @return its path
    QString file(const QString& name, int width) {
        QFile svg(m_folder.filePath(name));
        if (!svg.open(QIODevice::WriteOnly))
            qFatal("no file can be written");
        svg.write(
            QByteArrayLiteral("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 24 24'><rect width='") +
            QByteArray::number(width) + "' height='24'/></svg>");
        return svg.fileName();
    }

    QTemporaryDir m_folder;

private Q_SLOTS:
    void aFileGivesOneIcon() {
        const QString path = file(u"one.svg"_s, 8);
        const QIcon first{path};
        const QIcon again{path};
        QVERIFY(first.cacheKey() != again.cacheKey());
        QCOMPARE(sharedIcon(first).cacheKey(), sharedIcon(again).cacheKey());
        QCOMPARE(sharedIcon(path).cacheKey(), sharedIcon(first).cacheKey());
        QCOMPARE(sharedIcon(path).cacheKey(), sharedIcon(path).cacheKey());
    }

    void otherFilesStayApart() {
        const QIcon narrow = sharedIcon(QIcon(file(u"narrow.svg"_s, 4)));
        const QIcon wide = sharedIcon(QIcon(file(u"wide.svg"_s, 20)));
        QCOMPARE(narrow.pixmap(side).toImage().pixelColor(12, 12).alpha(), 0);
        QCOMPARE(wide.pixmap(side).toImage().pixelColor(12, 12).alpha(), 255);
    }

    void whatIsNotFromAnSvgFileStaysItself() {
        QPixmap red(side);
        red.fill(Qt::red);
        const QIcon icon(red);
        QCOMPARE(sharedIcon(icon).cacheKey(), icon.cacheKey());
        QVERIFY(sharedIcon(QIcon()).isNull());
        QVERIFY(sharedIcon(QString()).isNull());
    }

    void paintedControlsLeaveNothing_data() {
        addRows<PaintedControlRow>({{"button", {[](const QString& path) {
                                         vkCommand button;
                                         button.setIcon(QIcon(path));
                                         paint(button);
                                     }}},
                                    {"frame", {[](const QString& path) {
                                         vkFrame frame;
                                         frame.setTitleHeight(40);
                                         frame.setCaption(u"x"_s);
                                         frame.setTitleIcon(QIcon(path));
                                         paint(frame);
                                     }}},
                                    {"empty place", {[](const QString& path) {
                                         EmptyPlace place;
                                         place.setPicture(path);
                                         paint(place);
                                     }}},
                                    {"hint", {[](const QString& path) {
                                         PaintedHint hint(path, u"x"_s);
                                         paint(hint);
                                     }}},
                                    {"list without rows", {[](const QString& path) {
                                         TDBGrid list;
                                         list.setEmptyState({path, u"x"_s, u"y"_s});
                                         paint(list);
                                     }}}});
    }
    void paintedControlsLeaveNothing() {
        if (sanitized)
            QSKIP("the sanitizer's allocator doesn't tell what is in use");
        QFETCH(const PaintedControlRow, row);
        const QString path = u":/icons/bin.svg"_s;
        constexpr int times = 300;
        constexpr qint64 mostBytes = 50;  // a name takes some 200
        const auto inUse = [&](int count) {
            for (int i = 0; i < count; ++i)
                row.paint(path);
            QPixmapCache::clear();
            const struct mallinfo2 heap = mallinfo2();
            return qint64(heap.uordblks + heap.hblkhd);
        };
        const qint64 before = inUse(times);
        const qint64 bytes = (inUse(times) - before) / times;
        QVERIFY2(bytes <= mostBytes, qPrintable(u"%1 bytes each time"_s.arg(bytes)));
    }
};

QTEST_MAIN(TestSharedIcon)
#include "test_sharedicon.moc"
