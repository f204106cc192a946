#pragma once

#include <QFont>
#include <QtCharts/QChart>
#include <memory>

#include "grafik/figuretable.h"

namespace kovanix {

/// The bars of one table: turnover and profit beside each other, upright by day and by hour, lying by product
/// with the best seller on top. The other products together would dwarf each of them: their sums are
/// written where their bars would be. What stands around them is painted in the till's look: a legend, the
/// amounts along the axis, as many labels as have room. One bar can be chosen; its full name and its exact
/// figures stand beside it then.
class FigureChart : public QChart {
    Q_OBJECT

public:
    FigureChart();
    ~FigureChart() override;

    void setTable(const FigureTable& table);
    const FigureTable& table() const { return m_table; }

    /// The labels' font; all measures follow from its size.
    void setTextFont(const QFont& font);

    /// The row whose bars stand at a place, or in whose strip it lies; -1 beside the bars.
    int rowAt(QPointF place) const;
    /// @param row  -1 for none
    void choose(int row);
    int chosen() const { return m_chosen; }

    /// What is said of a row: "21.11.2026 Cumartesi, Tutar 1.234,56 TL, Kazanç …".
    QString words(int row) const;

    /// What stands in the place of the bars of all other products: their turnover, and their profit where
    /// there is room for it.
    /// @param font  in which it is written. @param room  in pixels
    static QString restText(const Amounts& amounts, const QFont& font, double room);

protected:
    void resizeEvent(QGraphicsSceneResizeEvent* event) override;

private:
    class Surroundings;
    struct Ticks {
        double least = 0;
        double step = 1;
        int count = 2;
        double most() const { return least + step * (count - 1); }
    };

    bool isLying() const { return m_table.division == Division::product; }
    int pixels(double lines) const;
    void makeBars();
    void findTicks();
    void layOut();
    QString tickText(int tick) const;
    QRectF strip(int row) const;

    void paintUnder(QPainter& painter) const;
    void paintOver(QPainter& painter) const;
    void paintGrid(QPainter& painter) const;
    void paintLegend(QPainter& painter) const;
    void paintAmounts(QPainter& painter) const;
    void paintNames(QPainter& painter) const;
    void paintRest(QPainter& painter, int row) const;
    void paintCard(QPainter& painter) const;

    FigureTable m_table;
    QFont m_font;
    Ticks m_ticks;
    int m_chosen = -1;
    std::unique_ptr<Surroundings> m_under;
    std::unique_ptr<Surroundings> m_over;
};

}  // namespace kovanix
