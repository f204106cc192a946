#include <QFileDialog>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QTemporaryDir>

#include "app/ayarmodul.h"
#include "app/tekornek.h"
#include "desktop/messagebox.h"
#include "desktop/singleinstance.h"
#include "programs.h"
#include "rows.h"
#include "runtests.h"
#include "widgets/drawnbutton.h"
#include "widgets/fittedlabel.h"
#include "yedek/copies.h"
#include "yedek/lastcopycard.h"
#include "yedek/window.h"
#include "yedekfixture.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

struct WidthRow {
    int width;
};

class YedekWindowTest;

struct DayAndHour {
    int day;
    int hour;
};

struct CardRow {
    QList<DayAndHour> taken;
    DayAndHour now;
    void (*then)(YedekWindowTest& test);
    LastCopyCard::State state;
    QString words;
    QString hint;  ///< within it
};

class YedekWindowTest : public QObject, BackupCase {
    Q_OBJECT

    std::optional<Window> m_window;

    void openWindow() {
        m_window.emplace(m_place->path());
        m_window->show();
    }
    QString text(const QString& name) { return m_window->findChild<QLabel*>(name)->text(); }
    LastCopyCard::State state() { return m_window->findChild<LastCopyCard*>()->state(); }
    bool cardIsWhole() {
        const auto* const words = m_window->findChild<FittedLabel*>(u"sonyedek"_s);
        const auto* const hint = m_window->findChild<QLabel*>(u"sonyedekaciklama"_s);
        return QTest::qWaitFor([=] { return words->shown() == words->text(); }) &&
               hint->height() >= hint->heightForWidth(hint->width());
    }
    QListWidget& list() { return *m_window->findChild<QListWidget*>(u"yedekler"_s); }
    void press(const QString& name) { m_window->findChild<DrawnButton*>(name)->click(); }
    void takeOne() {
        press(u"yedekal"_s);
        QTRY_VERIFY(!m_window->isWorking());
    }

    void harmNewest() {
        const QString path = copiesIn(m_place->path()).first().path;
        const QByteArray bytes = bytesOf(path);
        writeBytes(path, bytes.first(bytes.size() - 50));
    }

private Q_SLOTS:
    void initTestCase() { isolateFromOtherTills(); }
    void init() {
        begin();
        m_shop->openShop();
        baglanti().execute(u"INSERT INTO urunler (barkod, stok) VALUES ('1', 7)"_s);
        baglantikapat();
    }
    void cleanup() {
        m_window.reset();
        QVERIFY(allAnswered(m_shop->boxes));
        end();
    }

    /// As where nothing can be written beside the shop.
    void aChoiceThatCantBeKeptCountsOnce() {
        const QTemporaryDir other;
        const QString chosen = other.filePath(u"日本"_s);
        QVERIFY(QDir().mkdir(chosen));
        openWindow();
        press(u"klasorsec"_s);
        m_shop->boxes.expect(
            u"Yedek"_s,
            u"Seçtiğiniz klasör yalnız bu kez kullanılacak. Seçilen klasör kaydedilemedi: "_s + chosen,
            MessageBoxAnswer::ok);
        Q_EMIT m_window->findChild<QFileDialog*>()->fileSelected(chosen);
        takeOne();
        QCOMPARE(copiesIn(chosen).size(), 1);
    }

    void noCopyIsRed() {
        openWindow();
        QCOMPARE(text(u"sonyedek"_s), u"Henüz yedek yok"_s);
        QCOMPARE(list().count(), 0);
    }

    void aCopyIsTakenAndTold() {
        openWindow();
        takeOne();
        QCOMPARE(text(u"sonyedek"_s), u"Son yedek: bugün 07:05"_s);
        QCOMPARE(list().count(), 1);
        QCOMPARE(copiesIn(m_place->path()).size(), 1);
        QVERIFY(text(u"yerler"_s).contains(m_place->path()));
        m_shop->setNow(QDateTime(QDate(2026, 5, 6), QTime(8, 0)));
        openWindow();
        QTRY_VERIFY(text(u"sonyedekaciklama"_s).contains(u"İki günden eski"_s));
        QCOMPARE(state(), LastCopyCard::State::bad);
    }

    void aCardIsGreenForWhatCanBeGoneBackTo_data() {
        using State = LastCopyCard::State;
        const auto wait = [](YedekWindowTest&) {};
        const auto harm = [](YedekWindowTest& test) { test.harmNewest(); };
        addRows<CardRow>({
            {"sound", {{{3, 7}}, {3, 8}, wait, State::good, u"Son yedek: bugün 07:00"_s, u"denetlendi"_s}},
            {"harmed", {{{3, 7}}, {3, 8}, harm, State::bad, u"Sağlam yedek yok"_s, u"bozulmuş"_s}},
            {"harmed beside a sound one",
             {{{2, 7}, {3, 7}}, {3, 8}, harm, State::good, u"Son sağlam yedek: dün 07:00"_s, u"bozulmuş"_s}},
            {"harmed beside an old one",
             {{{1, 7}, {4, 7}},
              {4, 8},
              harm,
              State::bad,
              u"Son sağlam yedek: 3 gün önce, 01.05.2026 07:00"_s,
              u"İki günden eski"_s}},
            {"from ahead of now",
             {{{9, 7}}, {3, 8}, wait, State::bad, u"Sağlam yedek yok"_s, u"saatini denetleyin"_s}},
            {"from ahead of now beside one of today",
             {{{9, 7}, {3, 7}},
              {3, 8},
              wait,
              State::good,
              u"Son yedek: bugün 07:00"_s,
              u"saatini denetleyin"_s}},
        });
    }
    void aCardIsGreenForWhatCanBeGoneBackTo() {
        QFETCH(const CardRow, row);
        const auto at = [](const DayAndHour& moment) {
            return QDateTime(QDate(2026, 5, moment.day), QTime(moment.hour, 0));
        };
        for (const DayAndHour& moment : row.taken) {
            m_shop->setNow(at(moment));
            take();
        }
        m_shop->setNow(at(row.now));
        m_shop->setScreenWidth(800);
        row.then(*this);
        openWindow();
        QTRY_COMPARE(state(), row.state);
        QTRY_COMPARE(text(u"sonyedek"_s), row.words);
        QTRY_VERIFY2(text(u"sonyedekaciklama"_s).contains(row.hint), qPrintable(text(u"sonyedekaciklama"_s)));
        QVERIFY(cardIsWhole());
    }

    void aCopyThatIsHarmedUnderTheWindowIsMarked() {
        openWindow();
        takeOne();
        QTRY_COMPARE(state(), LastCopyCard::State::good);
        harmNewest();
        m_window->activateWindow();
        QTRY_VERIFY(m_window->isActiveWindow());
        QEvent comesToFront(QEvent::ActivationChange);
        QCoreApplication::sendEvent(&*m_window, &comesToFront);
        QTRY_COMPARE(state(), LastCopyCard::State::bad);
        QVERIFY(list().item(0)->data(Qt::DisplayRole).toString().contains(u"bozuk"_s));
    }

    void aRestoreIsAskedForTwice() {
        openWindow();
        m_shop->boxes.expect(u"Yedek"_s, u"Önce listeden dönülecek yedeğe dokunun."_s, MessageBoxAnswer::ok);
        press(u"yedektendon"_s);
        takeOne();
        QVERIFY(baglantihazir());
        baglanti().execute(u"UPDATE urunler SET stok = 99"_s);
        baglantikapat();
        const auto before = filesOf(m_shop->folder());
        list().setCurrentRow(0);
        m_shop->boxes.expectAny(MessageBoxAnswer::no);
        press(u"yedektendon"_s);
        list().setCurrentRow(0);
        m_shop->boxes.expectAny(MessageBoxAnswer::yes);
        m_shop->boxes.expectAny(MessageBoxAnswer::no);
        press(u"yedektendon"_s);
        QVERIFY(!m_window->isWorking());
        QCOMPARE(filesOf(m_shop->folder()), before);
        list().setCurrentRow(0);
        for (const int answer : {MessageBoxAnswer::yes, MessageBoxAnswer::yes, MessageBoxAnswer::ok})
            m_shop->boxes.expectAny(answer);
        press(u"yedektendon"_s);
        QTRY_COMPARE(m_shop->boxes.waiting(), 0);
        QTRY_VERIFY(!m_window->isWorking());
        QCOMPARE(m_shop->rows(u"SELECT stok FROM urunler"_s)[0][0].toInt(), 7);
    }

    void aRunningTillIsToldOf() {
        openWindow();
        takeOne();
        list().setCurrentRow(0);
        const SingleInstance till(tekornekadi());
        m_shop->boxes.expectAny(MessageBoxAnswer::yes);
        m_shop->boxes.expectAny(MessageBoxAnswer::yes);
        m_shop->boxes.expect(u"Yedek"_s, u"Bu bilgisayarda kasa açık: kasayı kapatıp yeniden deneyin"_s,
                             MessageBoxAnswer::ok);
        press(u"yedektendon"_s);
        QTRY_COMPARE(m_shop->boxes.waiting(), 0);
    }

    void thatARestoreLeavesTheServerIsSaid() {
        openWindow();
        takeOne();
        const QString pointer = m_shop->file(u"dukkan.sunucu"_s);
        writeBytes(pointer, "x");
        ayarla(u"ip"_s, pointer);
        openWindow();
        list().setCurrentRow(0);
        QString asked;
        m_shop->boxes.askFor([&asked](const QMessageBox& box) {
            const bool second = !asked.isEmpty();
            asked = box.text();
            return second ? MessageBoxAnswer::no : MessageBoxAnswer::yes;
        });
        press(u"yedektendon"_s);
        QVERIFY2(asked.contains(u"Sunucudaki veriler değişmez, öteki kasalar sunucuda kalır"_s),
                 qPrintable(asked));
    }

    void targetsAreLargeAtEverySize_data() {
        addRows<WidthRow>({{"800", {800}}, {"1024", {1024}}, {"1366", {1366}}, {"1920", {1920}}});
    }
    void targetsAreLargeAtEverySize() {
        QFETCH(const WidthRow, row);
        m_shop->setScreenWidth(row.width);
        openWindow();
        takeOne();
        QVERIFY(m_window->width() <= row.width);
        for (const DrawnButton* button : m_window->findChildren<DrawnButton*>()) {
            QVERIFY(button->height() >= 40);
            QVERIFY(m_window->rect().contains(QRect(button->mapTo(&*m_window, QPoint()), button->size())));
        }
        QVERIFY(list().visualItemRect(list().item(0)).height() >= 40);
        QTRY_COMPARE(state(), LastCopyCard::State::good);
        QVERIFY(cardIsWhole());
    }
};

}  // namespace kovanix::yedek

Q_DECLARE_METATYPE(kovanix::yedek::CardRow)
Q_DECLARE_METATYPE(kovanix::yedek::WidthRow)

int main(int argc, char** argv) {
    return kovanix::runTests<kovanix::yedek::YedekWindowTest>(argc, argv);
}
#include "test_yedek_window.moc"
