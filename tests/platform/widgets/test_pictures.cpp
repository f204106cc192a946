#include <QFile>
#include <QSvgRenderer>
#include <QTemporaryDir>
#include <QTest>

#include "widgets/drawnbutton.h"
#include "widgets/drawnframe.h"
#include "widgets/pictures.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

const QString plus = u":/icons/plus.svg"_s;
const QString bin = u":/icons/bin.svg"_s;

void writeDrawing(const QString& path, int side) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' width='%1' height='%1'/>")
                   .arg(side)
                   .toUtf8());
}

}  // namespace

class TestPictures : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatIsBuiltInIsReadOnce() {
        QVERIFY(!sharedIcon(plus).pixmap(24, 24).isNull());
        QCOMPARE(sharedIcon(plus).cacheKey(), sharedIcon(plus).cacheKey());
        QVERIFY(sharedIcon(plus).cacheKey() != sharedIcon(bin).cacheKey());
        QVERIFY(sharedDrawing(plus)->isValid());
        QCOMPARE(sharedDrawing(plus), sharedDrawing(plus));
        QVERIFY(sharedDrawing(plus) != sharedDrawing(bin));
    }

    void aFileIsReadAnew() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"picture.svg"_s);
        QSet<qint64> keys;
        for (const int side : {20, 30}) {
            writeDrawing(path, side);
            QCOMPARE(sharedDrawing(path)->defaultSize(), QSize(side, side));
            keys.insert(sharedIcon(path).cacheKey());
        }
        QCOMPARE(keys.size(), 2);
    }

    void whatCannotBeRead() {
        for (const QString& path : {QString(), u":/icons/none"_s, u"/none.svg"_s})
            QVERIFY(!sharedDrawing(path)->isValid());
        QVERIFY(sharedIcon(QString()).isNull());
    }

    void ofButtonsAndFrames() {
        vkCommand button;
        button.setIconFile(plus);
        QCOMPARE(button.iconFile(), plus);
        QCOMPARE(button.icon().cacheKey(), sharedIcon(plus).cacheKey());
        vkFrame frame;
        frame.setTitleIconFile(bin);
        QCOMPARE(frame.titleIconFile(), bin);
        QCOMPARE(frame.titleIcon().cacheKey(), sharedIcon(bin).cacheKey());
    }
};

QTEST_MAIN(TestPictures)
#include "test_pictures.moc"
