#include <QLabel>
#include <QVBoxLayout>
#include <QtTest>
#include <semaphore>

#include "desktop/messagebox.h"
#include "kit/toolprogram.h"
#include "kit/toolwindow.h"
#include "runtests.h"
#include "runtime/runtimeerror.h"
#include "shopfixture.h"
#include "widgets/drawnbutton.h"
#include "widgets/drawnframe.h"

namespace kovanix {

using namespace Qt::StringLiterals;

class ToolWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_shop.emplace();
        m_window.emplace(u"Araç"_s, u":/icons/save.svg"_s, QSize(720, 480));
        m_start =
            &m_window->addButton(u"basla"_s, u"Başla"_s, u":/icons/save.svg"_s, FaceRole::accent, [this] {
                m_window->work(
                    [this](WorkProgress& progress) {
                        m_begun.release();
                        m_go.acquire();
                        progress.tell(u"okunuyor"_s, 1, 2);
                        if (m_fails)
                            throw RuntimeError(1, u"disk dolu"_s);
                    },
                    [this] { ++m_done; });
            });
        m_window->finishLayout();
        m_window->show();
        m_done = 0;
        m_fails = false;
    }

    void cleanup() {
        m_window.reset();
        QVERIFY2(m_shop->boxes.failures().isEmpty(), qPrintable(m_shop->boxes.failures().join(u'\n')));
        m_shop.reset();
    }

    void buttonsAreDeadWhileWorkRuns() {
        m_start->click();
        m_begun.acquire();
        QVERIFY(!m_start->isEnabled());
        QCOMPARE(leave().caption(), u"Vazgeç"_s);
        m_go.release();
        QTRY_COMPARE(m_done, 1);
        QVERIFY(m_start->isEnabled());
        QCOMPARE(leave().caption(), u"Kapat"_s);
    }

    void aFailureIsABox() {
        m_fails = true;
        m_shop->boxes.expect(u"Araç"_s, u"disk dolu"_s, MessageBoxAnswer::ok);
        m_start->click();
        m_go.release();
        QTRY_COMPARE(m_shop->boxes.answered(), 1);
        QVERIFY(m_start->isEnabled());
        QCOMPARE(m_done, 0);
        m_begun.acquire();
    }

    void theTitleScalesWithTheScreen() {
        const auto titleAt = [this](int width) {
            m_shop->setScreenWidth(width);
            ToolWindow window(u"Araç"_s, u":/icons/save.svg"_s, QSize(720, 480));
            window.finishLayout();
            window.show();
            return window.findChild<vkFrame*>()->font().pixelSize();
        };
        const int usual = titleAt(1024);
        QCOMPARE(titleAt(2048), 2 * usual);
        QVERIFY(titleAt(800) < usual);
    }

    void closingCancelsFirst() {
        m_start->click();
        m_begun.acquire();
        m_window->close();
        QVERIFY(m_window->isVisible());
        m_go.release();
        QTRY_VERIFY(!m_window->isVisible());
        QCOMPARE(m_done, 0);
    }

    void escapeLeaves() {
        QTest::keyClick(&*m_window, Qt::Key_Escape);
        QVERIFY(!m_window->isVisible());
    }

    void aShopIsFoundAndNeverMade() {
        ToolCommandLine commandLine(u"kovanix-arac"_s, u"Araç"_s);
        const QString none = m_shop->file(u"yok"_s);
        QVERIFY(commandLine.parse({u"kovanix-arac"_s, u"--folder"_s, none}));
        QVERIFY(!commandLine.findShop());
        QVERIFY(!QFileInfo::exists(none));
        m_shop->makeDatabase();
        QVERIFY(commandLine.parse({u"kovanix-arac"_s, u"--folder"_s, m_shop->folder()}));
        QVERIFY(commandLine.findShop());
    }

private:
    DrawnButton& leave() { return *m_window->findChild<DrawnButton*>(u"kapat"_s); }

    std::optional<ShopFixture> m_shop;
    std::optional<ToolWindow> m_window;
    DrawnButton* m_start = nullptr;
    std::binary_semaphore m_begun{0};
    std::binary_semaphore m_go{0};
    int m_done = 0;
    bool m_fails = false;
};

}  // namespace kovanix

int main(int argc, char** argv) {
    return kovanix::runTests<kovanix::ToolWindowTest>(argc, argv);
}
#include "test_toolwindow.moc"
