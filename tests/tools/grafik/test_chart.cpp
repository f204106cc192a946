#include <QGraphicsScene>
#include <QtTest>

#include "grafik/figurechart.h"
#include "rows.h"
#include "runtests.h"
#include "widgets/look.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

constexpr QSize size(800, 500);

struct PlaceRow {
    Division division;
    QPoint place;
    int row;
};

struct BarsRow {
    Division division;
    QList<double> turnover;
    QList<double> profit;
};

FigureTable tableOf(Division division, const QList<double>& turnover, const QList<double>& profit = {}) {
    FigureTable table{division, u"Gün"_s, {}};
    for (qsizetype i = 0; i < turnover.size(); ++i) {
        FigureRow row;
        row.label = u"%1.11"_s.arg(i + 1);
        row.name = u"Kasım’ın %1. günü"_s.arg(i + 1);
        row.amounts.turnover.add(turnover[i]);
        row.amounts.profit.add(profit.value(i));
        row.amounts.quantity.add(1.5);
        table.rows.push_back(row);
    }
    return table;
}

}  // namespace

class ChartTest : public QObject {
    Q_OBJECT

    QImage painted() {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        m_scene->render(&painter, image.rect(), QRectF(QPointF(), size));
        return image;
    }
    /// The pixels of a colour, as far as they reach; empty where there is none.
    static QRect reach(const QImage& image, ColorRole role, const QRect& within) {
        QRect found;
        for (int y = within.top(); y <= within.bottom(); ++y) {
            for (int x = within.left(); x <= within.right(); ++x) {
                if (image.pixelColor(x, y) == roleColor(role))
                    found |= QRect(x, y, 1, 1);
            }
        }
        return found;
    }
    QRect stripOf(int row, qsizetype count) const {
        const auto rows = static_cast<double>(count);
        const QRectF area = m_chart->plotArea();
        if (m_chart->table().division == Division::product)
            return QRectF(area.left(), area.top() + area.height() / rows * row, area.width(),
                          area.height() / rows)
                .toRect();
        return QRectF(area.left() + area.width() / rows * row, area.top(), area.width() / rows, area.height())
            .toRect();
    }

private Q_SLOTS:
    void init() {
        m_scene = std::make_unique<QGraphicsScene>();
        m_chart = new FigureChart;
        m_scene->addItem(m_chart);
        m_chart->resize(size);
    }

    void barsAreAsLongAsTheirAmounts_data() {
        addRows<BarsRow>({{"upright", {Division::day, {100, 50, 0}, {20, 10, 0}}},
                          {"lying", {Division::product, {100, 50, 0}, {20, 10, 0}}},
                          {"losses", {Division::day, {100, 50, 0}, {-20, -40, 0}}},
                          {"losses lying", {Division::product, {100, 50, 0}, {-20, -40, 0}}},
                          {"millions", {Division::hour, {98e6, 1e6, 49e6}, {5e6, 0, -9e6}}},
                          {"kuruş", {Division::day, {0.09, 0.03, 0}, {0.01, 0, 0}}}});
    }
    void barsAreAsLongAsTheirAmounts() {
        QFETCH(const BarsRow, row);
        m_chart->setTable(tableOf(row.division, row.turnover, row.profit));
        const QImage image = painted();
        const bool lying = row.division == Division::product;
        const auto length = [&](qsizetype i, ColorRole role) {
            const QRect bar = reach(image, role, stripOf(static_cast<int>(i), row.turnover.size()));
            return lying ? bar.width() : bar.height();
        };
        const double most = length(0, ColorRole::selectionBar);
        QVERIFY(most > (lying ? size.width() : size.height()) / 3.0);
        for (qsizetype i = 0; i < row.turnover.size(); ++i) {
            const auto wanted = [&](double amount) { return std::abs(amount) / row.turnover[0] * most; };
            constexpr double pixels = 3;
            QVERIFY(std::abs(length(i, ColorRole::selectionBar) - wanted(row.turnover[i])) <= pixels);
            QVERIFY(std::abs(length(i, ColorRole::honey) - wanted(row.profit[i])) <= pixels);
        }
        // A loss goes the other way.
        for (qsizetype i = 0; i < row.profit.size(); ++i) {
            if (row.profit[i] >= 0)
                continue;
            const QRect strip = stripOf(static_cast<int>(i), row.turnover.size());
            const QRect turnover = reach(image, ColorRole::selectionBar, strip);
            const QRect profit = reach(image, ColorRole::honey, strip);
            QVERIFY(lying ? profit.right() <= turnover.left() : profit.top() >= turnover.bottom());
        }
    }

    void theRestHasNoBar() {
        FigureTable table = tableOf(Division::product, {100, 100000});
        table.rows[1].isRest = true;
        m_chart->setTable(table);
        const QImage image = painted();
        QVERIFY(reach(image, ColorRole::selectionBar, stripOf(0, 2)).width() > size.width() / 3);
        QVERIFY(reach(image, ColorRole::selectionBar, stripOf(1, 2)).isEmpty());
        QVERIFY(
            !reach(image, ColorRole::ink, stripOf(1, 2).adjusted(8, 4, 0, -4)).isEmpty());  // but its sums
    }

    void places_data() {
        addRows<PlaceRow>({{"first bar", {Division::day, {200, 300}, 0}},
                           {"above a low bar", {Division::day, {750, 60}, 2}},
                           {"label below", {Division::day, {750, 495}, 2}},
                           {"amounts", {Division::day, {5, 300}, -1}},
                           {"legend", {Division::day, {300, 5}, -1}},
                           {"lying", {Division::product, {400, 50}, 0}},
                           {"name of a lying bar", {Division::product, {5, 450}, 2}},
                           {"amounts below", {Division::product, {400, 495}, -1}}});
    }
    void places() {
        QFETCH(const PlaceRow, row);
        m_chart->setTable(tableOf(row.division, {100, 50, 1}));
        QCOMPARE(m_chart->rowAt(row.place), row.row);
    }

    void oneRowIsChosen() {
        m_chart->setTable(tableOf(Division::day, {1234.5, 50}, {-2, 0}));
        QCOMPARE(m_chart->chosen(), -1);
        const QImage before = painted();
        m_chart->choose(0);
        QVERIFY(painted() != before);
        QCOMPARE(m_chart->words(0), u"Kasım’ın 1. günü, Tutar 1.234,50 TL, Kazanç -2,00 TL, Miktar 1,5"_s);
        m_chart->choose(2);
        QCOMPARE(m_chart->chosen(), -1);
        QCOMPARE(painted(), before);
        m_chart->choose(1);
        m_chart->setTable(tableOf(Division::day, {1, 2}));
        QCOMPARE(m_chart->chosen(), -1);
    }

    void oddTables() {
        for (const Division division : {Division::day, Division::product}) {
            for (const QList<double>& amounts :
                 {QList<double>{}, {0}, {-5}, {1e300, 1}, {std::nan("")}, {1e-9}, QList<double>(3000, 7)}) {
                m_chart->setTable(tableOf(division, amounts, amounts));
                m_chart->choose(0);
                painted();
                m_chart->resize(3, 2);
                m_chart->resize(size);
            }
        }
    }

private:
    std::unique_ptr<QGraphicsScene> m_scene;
    FigureChart* m_chart = nullptr;

    /// A sum that is cut says another.
    void theRestIsNeverCut() {
        Amounts amounts;
        amounts.turnover.add(135'850'258.41);
        amounts.profit.add(26'552'638.11);
        const QString turnover = u"135.850.258,41 TL"_s;
        const QString whole = turnover + u", kazanç 26.552.638,11 TL";
        const double width = QFontMetricsF(QFont()).horizontalAdvance(whole);
        QCOMPARE(FigureChart::restText(amounts, QFont(), width), whole);
        QCOMPARE(FigureChart::restText(amounts, QFont(), width - 1), turnover);
    }
};

int main(int argc, char** argv) {
    return runTests<ChartTest>(argc, argv);
}
#include "test_chart.moc"
