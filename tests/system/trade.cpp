// A till that sells all day to customers of its own: one of the tills of test_twotills and test_servertrade.

#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QTimer>
#include <array>
#include <cstdio>
#include <random>

#include "app/frame.h"
#include "app/session.h"
#include "app/shopfolder.h"
#include "boxanswers.h"
#include "data/baglanmamodulu.h"
#include "desktop/application.h"
#include "entry.h"
#include "hands.h"
#include "player.h"
#include "runtime/clock.h"
#include "runtime/screenregistry.h"
#include "sales/satisekrani.h"
#include "widgets/vsflexgrid.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

/// At once: a killed till has said everything that it did.
void say(const QString& line) {
    std::fprintf(stdout, "%s\n", qUtf8Printable(line));
    std::fflush(stdout);
}

struct Plan {
    int till;   ///< from 0
    int tills;  ///< how many there are
    int from;   ///< the first sale's number
    int sales;
    int seconds;  ///< after which none begins any more; 0 for no end by the clock
};

/// Each sale has a second of its own, of all tills, by which its rows are found.
QDateTime momentOf(const Plan& plan, int sale) {
    return QDateTime(QDate(2026, 5, 3), QTime(7, 0)).addSecs(plan.tills * sale + plan.till);
}

class Seller : public QObject {
public:
    explicit Seller(const Plan& plan) : m_plan(plan), m_sale(plan.from) {
        Clock::setSource([this] { return momentOf(m_plan, m_sale); });
        connect(&m_next, &QTimer::timeout, this, [this] { sell(); });
    }

    void start() {
        m_clock.start();
        m_next.start(0);
    }

private:
    void sell() {
        if (m_sale >= m_plan.sales || (m_plan.seconds > 0 && m_clock.elapsed() >= 1000 * m_plan.seconds)) {
            m_next.stop();
            QCoreApplication::exit();  // quitting would ask whether it is meant
            return;
        }
        std::minstd_rand random(static_cast<unsigned>(m_plan.tills * m_sale + m_plan.till + 1));
        random.discard(10);
        for (unsigned line = 1 + random() % 4; line > 0; --line) {
            static const std::array codes{u"8690000000012"_s, u"8690000000029"_s, u"2700012002504"_s};
            typeText(codes[random() % codes.size()]);
            sendEnter();
        }
        const VSFlexGrid& ticket = *screen<satisekrani>().ui.satisekrani1;
        QString pressed = u"press %1"_s.arg(m_sale);
        for (int row = 1; row <= ticket.rows() - 2; ++row)
            pressed +=
                u' ' + ticket.textMatrix(row, 1) + u'=' + sqlsayi(sayicevir(ticket.textMatrix(row, 3)));
        say(pressed);
        QElapsedTimer clock;
        clock.start();
        sendKey(Qt::Key_F1);
        say(u"stored %1 %2"_s.arg(m_sale).arg(clock.nsecsElapsed() / 1000));
        ++m_sale;
    }

    Plan m_plan;
    int m_sale;
    QElapsedTimer m_clock;
    QTimer m_next;  ///< between two customers the till paints and has its moment
};

}  // namespace

int main(int argc, char** argv) {
    Application application(argc, argv);
    prepareApplication();
    QCommandLineParser commandLine;
    const QCommandLineOption folder(u"folder"_s, u"The shop's folder."_s, u"DIR"_s);
    const QCommandLineOption till(u"till"_s, u"Which of the tills, from 0."_s, u"N"_s);
    const QCommandLineOption tills(u"tills"_s, u"How many tills sell."_s, u"N"_s);
    const QCommandLineOption from(u"from"_s, u"The first sale's number."_s, u"N"_s, u"0"_s);
    const QCommandLineOption sales(u"sales"_s, u"The number behind the last sale's."_s, u"N"_s);
    const QCommandLineOption seconds(u"seconds"_s, u"After how many seconds the last sale begins."_s, u"N"_s,
                                     u"0"_s);
    commandLine.addOptions({folder, till, tills, from, sales, seconds});
    commandLine.process(application);

    prepareShopFolder(commandLine.value(folder));
    BoxAnswers boxes;
    QObject::connect(&boxes, &BoxAnswers::opened, &application, [](const QMessageBox& box) {
        say(u"box "_s + box.text());
        std::exit(1);  // none is expected, and what comes behind it is worth nothing
    });
    Seller seller({commandLine.value(till).toInt(), commandLine.value(tills).toInt(),
                   commandLine.value(from).toInt(), commandLine.value(sales).toInt(),
                   commandLine.value(seconds).toInt()});
    const int status = application.run([&seller] {
        startConnection();
        girisyetki = 1;
        screen<satisekrani>().show();
        seller.start();
    });
    baglantikapatsessiz();
    return status;
}
