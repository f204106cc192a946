#include <QBoxLayout>
#include <QFormLayout>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include "rows.h"
#include "widgets/activeresize.h"
#include "widgets/drawnbutton.h"
#include "widgets/tdbgrid.h"
#include "widgets/vsflexgrid.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

// A small screen: everything that is scaled and everything that isn't.
struct TestScreen : QWidget {
    ActiveResize* container = new ActiveResize(this);
    QGridLayout* grid = new QGridLayout(container);
    QHBoxLayout* line = new QHBoxLayout;
    QLabel* inherits = new QLabel(u"inherits"_s, container);
    QLabel* points = new QLabel(u"points"_s, container);
    QLineEdit* pixels = new QLineEdit(container);
    vkCommand* fixed = new vkCommand(container);
    vkToggleButton* total = new vkToggleButton(container);
    QLabel* exempt = new QLabel(u"exempt"_s, container);
    VSFlexGrid* ticket = new VSFlexGrid(container);

    TestScreen() {
        auto* outer = new QVBoxLayout(this);
        outer->setContentsMargins(0, 0, 0, 0);
        outer->addWidget(container);
        QFont font = this->font();
        font.setPointSizeF(11);
        setFont(font);
        font.setPointSizeF(17);
        points->setFont(font);
        font.setPixelSize(25);
        pixels->setFont(font);
        font.setPointSizeF(13);
        total->setFont(font);
        total->setFontsize(80);
        fixed->setFixedSize(131, 57);
        pixels->setMinimumHeight(33);
        points->setMaximumWidth(333);
        exempt->setProperty("noscale", true);
        exempt->setFixedHeight(21);
        grid->setContentsMargins(7, 9, 11, 13);
        grid->setHorizontalSpacing(5);
        grid->setVerticalSpacing(8);
        line->setSpacing(7);
        line->addWidget(inherits);
        line->addWidget(points);
        line->addWidget(pixels);
        grid->addLayout(line, 0, 0, 1, 2);
        grid->addWidget(fixed, 1, 0);
        grid->addWidget(total, 1, 1);
        grid->addWidget(exempt, 2, 0);
        grid->addWidget(ticket, 2, 1);
    }

    QVariantList state() const {
        return {inherits->font().pointSizeF(),
                points->font().pointSizeF(),
                points->maximumSize(),
                pixels->font().pixelSize(),
                pixels->minimumSize(),
                fixed->minimumSize(),
                fixed->maximumSize(),
                fixed->font().pointSizeF(),
                total->font().pointSizeF(),
                total->fontsize(),
                exempt->font().pointSizeF(),
                exempt->minimumSize(),
                ticket->rowHeight(),
                QVariant::fromValue(grid->contentsMargins()),
                grid->horizontalSpacing(),
                grid->verticalSpacing(),
                line->spacing()};
    }

    void sizeTo(QSize size) {
        resize(size);
        if (!isVisible()) {
            show();
            QVERIFY(QTest::qWaitForWindowExposed(this));
        }
        QCoreApplication::processEvents();
        QCOMPARE(container->size(), size);
    }
};

}  // namespace

class TestActiveResize : public QObject {
    Q_OBJECT

    struct ScalesRow {
        QSize size;
        double scale;
    };
    struct NothingGetsTooSmallRow {
        int letters;
        QSize size;
        int scaledLetters;
        QSize scaledSize;
    };

private Q_SLOTS:
    void scales_data() {
        addRows<ScalesRow>({{"800x600", {QSize(800, 600), 0.78125}},
                            {"1024x768", {QSize(1024, 768), 1.0}},
                            {"1366x768", {QSize(1366, 768), 1.0}},
                            {"1920x1080", {QSize(1920, 1080), 1.40625}},
                            {"never above 3", {QSize(4096, 3072), 3.0}},
                            {"just above the smallest", {QSize(640, 480), 0.625}}});
    }
    void scales() {
        QFETCH(const ScalesRow, row);
        TestScreen screen;
        screen.sizeTo(row.size);
        QCOMPARE(screen.container->scale(), row.scale);
        QCOMPARE(screen.inherits->font().pointSizeF(), 11 * row.scale);
        QCOMPARE(screen.points->font().pointSizeF(), 17 * row.scale);
        QCOMPARE(screen.points->maximumWidth(), qRound(333 * row.scale));
        QCOMPARE(screen.points->maximumHeight(), QWIDGETSIZE_MAX);
        QCOMPARE(screen.pixels->font().pixelSize(), qRound(25 * row.scale));
        QCOMPARE(screen.pixels->minimumHeight(), qRound(33 * row.scale));
        QCOMPARE(screen.fixed->size(), QSize(qRound(131 * row.scale), std::max(qRound(57 * row.scale), 40)));
        QCOMPARE(screen.ticket->rowHeight(), std::max(qRound(36 * row.scale), 32));
        QCOMPARE(screen.grid->horizontalSpacing(), qRound(5 * row.scale));
        QCOMPARE(screen.grid->verticalSpacing(), qRound(8 * row.scale));
        QCOMPARE(screen.line->spacing(), qRound(7 * row.scale));
        QCOMPARE(screen.grid->contentsMargins(), QMargins(qRound(7 * row.scale), qRound(9 * row.scale),
                                                          qRound(11 * row.scale), qRound(13 * row.scale)));
        // Left alone.
        QCOMPARE(screen.total->font().pointSizeF(), 13.0);
        QCOMPARE(screen.total->fontsize(), 80);
        QCOMPARE(screen.exempt->font().pointSizeF(), 11.0);
        QCOMPARE(screen.exempt->height(), 21);
    }

    void nothingGetsTooSmall_data() {
        addRows<NothingGetsTooSmallRow>({{"letters of 13", {13, {100, 20}, 11, {78, 16}}},
                                         {"letters of 30", {30, {100, 20}, 23, {78, 16}}},
                                         {"letters that are smaller by design", {9, {100, 20}, 9, {78, 16}}},
                                         {"a target", {15, {44, 44}, 12, {40, 40}}},
                                         {"a large target", {15, {64, 60}, 12, {50, 47}}},
                                         {"no target: low", {15, {64, 30}, 12, {50, 23}}}});
    }
    void nothingGetsTooSmall() {
        QFETCH(const NothingGetsTooSmallRow, row);
        ActiveResize container;
        vkCommand button(&container);
        QFont font;
        font.setPixelSize(row.letters);
        button.setFont(font);
        button.setMinimumSize(row.size);
        container.resize(800, 600);
        container.show();
        QCOMPARE(container.scale(), 0.78125);
        QCOMPARE(button.font().pixelSize(), row.scaledLetters);
        QCOMPARE(button.minimumSize(), row.scaledSize);
    }

    void smallestScale() {
        ActiveResize container;
        container.resize(100, 100);
        container.setDesignSize({1000, 1000});
        QCOMPARE(container.scale(), 0.6);
    }

    void switchedOff() {
        TestScreen screen;
        const QVariantList start = screen.state();
        screen.container->setResizing(false);
        screen.sizeTo({1920, 1080});
        QCOMPARE(screen.container->scale(), 1.0);
        QCOMPARE(screen.state(), start);
        QCOMPARE(screen.container->minimumSizeHint(), screen.grid->minimumSize());
    }

    void switchedOffAndOnWhileOpen() {
        TestScreen screen;
        screen.sizeTo({1024, 768});
        const QVariantList start = screen.state();
        screen.sizeTo({1920, 1080});
        const QVariantList scaled = screen.state();
        screen.container->setResizing(false);
        QCOMPARE(screen.state(), start);
        QCOMPARE(screen.container->scale(), 1.0);
        screen.container->setResizing(true);
        QCOMPARE(screen.state(), scaled);
        QCOMPARE(screen.container->scale(), 1.40625);
    }

    void thereAndBackIsExact() {
        TestScreen screen;
        const QVariantList start = screen.state();
        screen.sizeTo({1024, 768});
        QCOMPARE(screen.state(), start);
        for (int round = 0; round < 3; ++round) {
            for (const QSize size : {QSize(800, 600), QSize(1024, 768), QSize(1920, 1080), QSize(911, 777)})
                screen.sizeTo(size);
            QVERIFY(screen.state() != start);
            screen.sizeTo({1024, 768});
            QCOMPARE(screen.state(), start);
        }
    }

    void tellsOncePerChange() {
        TestScreen screen;
        screen.sizeTo({1024, 768});
        const QSignalSpy scaled(screen.container, &ActiveResize::scaled);
        screen.sizeTo({1200, 768});
        QCOMPARE(scaled.count(), 0);
        screen.sizeTo({1920, 1080});
        QCOMPARE(scaled.count(), 1);
        QCOMPARE(scaled.at(0).at(0).toDouble(), 1.40625);
    }

    void lateControlsFollow() {
        TestScreen screen;
        screen.sizeTo({1920, 1080});
        auto* late = new vkCommand(screen.container);
        late->setFixedSize(100, 50);
        auto* bold = new QLabel(screen.container);
        QFont font;
        font.setBold(true);
        font.setResolveMask(QFont::WeightResolved);
        bold->setFont(font);
        auto* exempt = new QLabel(screen.container);
        exempt->setProperty("noscale", true);
        auto* plain = new QLabel(screen.container);
        screen.grid->addWidget(late, 3, 0);
        late->show();
        screen.sizeTo({800, 600});
        QCOMPARE(late->size(), QSize(78, 40));  // a thumb needs so much
        QCOMPARE(bold->font().pointSizeF(), 11 * 0.78125);
        QVERIFY(bold->font().bold());
        QCOMPARE(plain->font().pointSizeF(), 11 * 0.78125);
        QCOMPARE(exempt->font().pointSizeF(), 11.0);
        screen.sizeTo({1024, 768});
        QCOMPARE(late->size(), QSize(100, 50));
        QCOMPARE(bold->font().pointSizeF(), 11.0);
        QCOMPARE(exempt->font().pointSizeF(), 11.0);
    }

    void goneControlsAreForgotten() {
        TestScreen screen;
        screen.sizeTo({800, 600});
        delete screen.fixed;
        delete screen.points;
        screen.sizeTo({1024, 768});
        QCOMPARE(screen.container->scale(), 1.0);
    }

    void windowCanGetSmallerThanItsContents() {
        TestScreen screen;
        screen.fixed->setFixedSize(900, 100);
        screen.sizeTo({1024, 768});
        screen.sizeTo({800, 600});
        QCOMPARE(screen.size(), QSize(800, 600));
    }

    void otherFontPropertiesStay() {
        TestScreen screen;
        screen.sizeTo({800, 600});
        QFont font = screen.points->font();
        font.setBold(true);
        screen.points->setFont(font);
        screen.sizeTo({1024, 768});
        QVERIFY(screen.points->font().bold());
        QCOMPARE(screen.points->font().pointSizeF(), 17.0);
    }

    void emptyDesignSizeIsRefused() {
        ActiveResize container;
        container.setDesignSize({0, 100});
        QCOMPARE(container.designSize(), QSize(1024, 768));
    }

    void formSpacings() {
        ActiveResize container;
        auto* form = new QFormLayout(&container);
        form->setHorizontalSpacing(10);
        form->setVerticalSpacing(20);
        container.resize(512, 768);
        container.resize(2048, 1536);
        container.show();
        QVERIFY(QTest::qWaitForWindowExposed(&container));
        QCOMPARE(form->horizontalSpacing(), 20);
        QCOMPARE(form->verticalSpacing(), 40);
    }

    // Another width at the same scale is a new size too; the controls stand in their places by then.
    void everyNewSizeIsToldOnce() {
        TestScreen screen;
        QList<QSize> sizes;
        QList<int> widths;
        connect(screen.container, &ActiveResize::resized, this, [&](QSize size) {
            sizes << size;
            widths << screen.ticket->geometry().right() + 1 + screen.grid->contentsMargins().right();
        });
        screen.resize(1024, 768);
        QVERIFY(sizes.isEmpty());
        screen.show();
        QCOMPARE(sizes, QList<QSize>{QSize(1024, 768)});
        screen.resize(1366, 768);
        screen.resize(1366, 768);
        screen.resize(800, 600);
        screen.hide();
        screen.show();
        QCOMPARE(sizes, (QList<QSize>{{1024, 768}, {1366, 768}, {800, 600}}));
        QCOMPARE(widths, (QList<int>{1024, 1366, 800}));
    }

    void listGridTakesItsScale() {
        ActiveResize container;
        TDBGrid grid(&container);
        grid.setObjectName(u"TDBGrid1"_s);
        grid.setColumnCaptions({u"NO"_s});
        const QWidget* cell = grid.findChild<QWidget*>(u"TDBGrid1_filter_0"_s);
        container.resize(1024, 768);
        container.show();
        QCOMPARE(cell->height(), 44);
        container.resize(2048, 1536);
        QCOMPARE(grid.scale(), 2.0);
        QCOMPARE(cell->height(), 88);
        container.resize(1024, 768);
        QCOMPARE(cell->height(), 44);
        QCOMPARE(cell->font().pixelSize(), 16);
    }
};

QTEST_MAIN(TestActiveResize)
#include "test_activeresize.moc"
