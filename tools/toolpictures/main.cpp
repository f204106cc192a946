// Opens the programs beside the till on a shop, presses what a shopkeeper would press, and saves their
// windows as pictures: kovanix-toolpictures SHOP WORK OUTPUT SIZE. WORK is where copies and files of the shop
// go.

#include <QDateTime>
#include <QFile>
#include <QTimer>
#include <deque>
#include <functional>
#include <memory>

#include "aktar/aktarwindow.h"
#include "app/frame.h"
#include "app/shopfolder.h"
#include "desktop/application.h"
#include "grafik/grafikwindow.h"
#include "kit/toolprogram.h"
#include "runtime/clock.h"
#include "runtime/runtimeerror.h"
#include "widgets/drawnbutton.h"
#include "yedek/lastcopycard.h"
#include "yedek/window.h"

namespace {

using namespace kovanix;
using namespace Qt::StringLiterals;

const QDateTime today(QDate(2026, 5, 4), QTime(13, 2, 11));

void press(const QWidget& window, const QString& name) {
    auto* const button = window.findChild<DrawnButton*>(name);
    if (!button)
        throw RuntimeError(0, u"no button "_s + name);
    button->click();
}

/// What is done one after the other, each step as soon as the window's work of the one before has ended.
class Session {
public:
    Session(QString work, QString output, QString size)
        : m_work(std::move(work)), m_output(std::move(output)), m_size(std::move(size)) {
        backup();
        transfer();
        chart();
        constexpr int patience = 20;  // milliseconds
        m_timer.callOnTimeout([this] { goOn(); });
        m_timer.start(patience);
    }

    int status() const { return m_status; }

private:
    void goOn() {
        if (m_window && (m_window->isWorking() || isReading()))
            return;
        if (m_steps.empty()) {
            m_window.reset();
            QCoreApplication::quit();
            return;
        }
        const std::function<void()> step = std::move(m_steps.front());
        m_steps.pop_front();
        try {
            step();
        } catch (const RuntimeError& error) {
            tellError(error.description());
            m_status = ToolExit::failed;
            m_steps.clear();
        }
    }

    /// Whether the window of copies hasn't found out yet what its last one is worth.
    bool isReading() const {
        const auto* const card = m_window->findChild<yedek::LastCopyCard*>();
        return card && card->state() == yedek::LastCopyCard::State::unknown;
    }

    template <typename Window, typename... Arguments>
    void open(const Arguments&... arguments) {
        m_steps.emplace_back([this, arguments...] {
            m_window = std::make_unique<Window>(arguments...);
            m_window->show();
        });
    }
    void pressed(const QString& name) {
        m_steps.emplace_back([this, name] { press(*m_window, name); });
    }
    void saved(const QString& name) {
        m_steps.emplace_back([this, name] {
            const QString path = m_output + u'/' + name + u'-' + m_size + u".png";
            // What has just been shown may be longer than what the layout last knew.
            QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
            if (!m_window->grab().save(path))
                throw RuntimeError(0, u"can't write "_s + path);
        });
    }

    void backup() {
        open<yedek::Window>(m_work);
        for (const int daysAgo : {2, 1, 0}) {
            m_steps.emplace_back(
                [daysAgo] { Clock::setSource([daysAgo] { return today.addDays(-daysAgo); }); });
            pressed(u"yedekal"_s);
        }
        saved(u"yedek"_s);
    }

    void transfer() {
        open<aktar::AktarWindow>();
        m_steps.emplace_back([this] {
            const QString path = m_work + u"/fiyatlar.csv";
            QFile prices(path);
            if (!prices.open(QIODevice::WriteOnly))
                throw RuntimeError(0, u"can't write "_s + path);
            prices.write(
                "Barkod;Ürün adı;Alış fiyatı;Satış fiyatı\n"
                "8695463115280;Ekmek 200 g;13,34;17,50\n"
                "8694925028779;Tam Yağlı Süt 1 L;41,20;54,90\n"
                "8697823795064;Simit;15,30;20\n"
                "8697712044556;Acıbadem Kurabiyesi 250 g;61;85,00\n"
                "8,69E+12;Beyaz Peynir 500 g;140;189,90\n"
                "8691004868240;Köy Usulü Yoğurt 1 kg;72;doksan\n");
            prices.close();
            dynamic_cast<aktar::AktarWindow&>(*m_window).readFile(path);
        });
        pressed(u"denetle"_s);
        saved(u"aktar"_s);
    }

    void chart() {
        open<GrafikWindow>();
        pressed(u"gun31"_s);
        saved(u"grafik"_s);
    }

    QString m_work;
    QString m_output;
    QString m_size;
    std::deque<std::function<void()>> m_steps;
    std::unique_ptr<ToolWindow> m_window;
    QTimer m_timer;
    int m_status = ToolExit::done;
};

}  // namespace

int main(int argc, char** argv) {
    Application application(argc, argv);
    prepareApplication();
    const QStringList given = QCoreApplication::arguments().mid(1);
    if (given.size() != 4) {
        tellError(u"kovanix-toolpictures SHOP WORK OUTPUT SIZE"_s);
        return ToolExit::wrongUsage;
    }
    Clock::setSource([] { return today; });
    findShopFolder(given[0]);
    const Session session(given[1], given[2], given[3]);
    QCoreApplication::exec();
    return session.status();
}
