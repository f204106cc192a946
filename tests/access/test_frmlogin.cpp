#include <QAccessible>
#include <QFile>
#include <QMessageBox>
#include <QPushButton>

#include "app/session.h"
#include "appearance/modTema.h"
#include "appearance/uyari.h"
#include "data/baglanmamodulu.h"
#include "desktop/screensize.h"
#include "loginfixture.h"
#include "rows.h"
#include "runtests.h"
#include "runtime/clock.h"
#include "sales/satisekrani.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

/// Remembers what the notice looked like at the moment when it was shown.
class NoticeWatch : public QObject {
public:
    NoticeWatch() { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (auto* notice = qobject_cast<uyari*>(watched); notice && event->type() == QEvent::Show)
            seen.append(notice->ui.yazi->text() + u'|' + QString::number(notice->kapat.interval()));
        return false;
    }

    QStringList seen;
};

void makeProgram(const QString& path, const QString& trace) {
    QFile program(path);
    if (!program.open(QIODevice::WriteOnly))
        qFatal("no program");
    program.write("#!/bin/sh\necho \"$#\" > '" + trace.toUtf8() + "'\n");
    program.close();
    program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

QString contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

}  // namespace

/// The login screen itself: its load, its buttons, its window.
class FrmLoginTest : public QObject {
    Q_OBJECT

    struct VersionsRow {
        QString version, shown;
    };
    struct WindowRow {
        int width;
        bool maximised;
    };
    struct ClosingRow {
        int answer;
        bool ends;
    };
    struct LaunchersRow {
        QString button, name;
        bool ends;
    };
    struct LaunchersOfNothingRow {
        QString button, name;
        int kind;
        bool ends;
    };
    struct WaitingRow {
        int width;
        bool notice;
    };

private Q_SLOTS:
    void captions() {
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, u""_s);
        const frmLogin& login = shop.open();
        QCOMPARE(login.windowTitle(), u"Kovanix"_s);
        QCOMPARE(login.ui.cmdOK->caption(), u"GİRİŞ"_s);
        QCOMPARE(login.ui.cmdCancel->caption(), u"KAPAT"_s);
        QCOMPARE(login.ui.Label1->text(), u"Kullanıcı Adı"_s);
        QCOMPARE(login.ui.Label7->text(), u"şifre"_s);
        QCOMPARE(login.ui.ver->text(),
                 u"Versiyon: "_s + QCoreApplication::applicationVersion().replace(u'.', u'-'));
        QCOMPARE(login.ui.vkCommand1->caption(), u"ŞİFRE GİZLE"_s);
        QCOMPARE(login.ui.vkCommand1->toolTip(), u"ŞİFREYİ GİZLEMEK İçİN TIKLAYIN"_s);
        QCOMPARE(login.ui.destekprograminiac->caption(), u"Uzaktan Destek"_s);
        QCOMPARE(login.ui.yazilimguncelle->caption(), u"Yazılım Güncelle"_s);
        QCOMPARE(login.ui.kullanici->accessibleName(), u"Kullanıcı Adı"_s);
        QCOMPARE(login.ui.sifre->accessibleName(), u"şifre"_s);
        QVERIFY(login.ui.Image3->isVisible());
        for (const QWidget* picture : {login.ui.Image1, login.ui.Image2, login.ui.Image5})
            QVERIFY(picture->isVisible());
    }

    void versions_data() {
        addRows<VersionsRow>({{"three numbers", {u"12.34.567"_s, u"Versiyon: 12-34-567"_s}},
                              {"two numbers", {u"2.5"_s, u"Versiyon: 2-5-0"_s}}});
    }
    void versions() {
        QFETCH(const VersionsRow, row);
        const QString before = QCoreApplication::applicationVersion();
        QCoreApplication::setApplicationVersion(row.version);
        const LoginFixture shop;
        const QString text = screen<frmLogin>().ui.ver->text();
        QCoreApplication::setApplicationVersion(before);
        QCOMPARE(text, row.shown);
    }

    void settings() {
        LoginFixture shop;
        shop.writeConfig(
            "[ayar]\nekledznlsil=2\nsifresor2=evet\nsonrenk=1\ntemakaydetme1=True\nkayitgetir1=2\n"
            "kaydedilenigetir=3\ntoplamtemadegisken=4\nensonkikisayol=3\n");
        screen<frmLogin>();
        QCOMPARE(ekledznlsil, u"2"_s);
        QCOMPARE(sifresor2, u"evet"_s);
        QCOMPARE(sonrenk, 1);
        QCOMPARE(temakaydetme1, u"True"_s);
        QCOMPARE(kayitgetir1, 2);
        QCOMPARE(kaydedilenigetir, 3);
        QCOMPARE(toplamtemadegisken, 4);
        QCOMPARE(ensonkikisayol, u"3"_s);
    }

    void settingsOfAMissingFile() {
        LoginFixture shop;
        QFile::remove(shop.file(u"Kovanix.config"_s));
        for (QString* value : {&ekledznlsil, &sifresor2, &ensonkikisayol, &temakaydetme1})
            *value = u"eski"_s;
        for (int* value : {&sonrenk, &kayitgetir1, &kaydedilenigetir, &toplamtemadegisken})
            *value = 77;
        screen<frmLogin>();
        for (const QString& value : {ekledznlsil, sifresor2, ensonkikisayol, temakaydetme1})
            QCOMPARE(value, u""_s);
        for (const int value : {sonrenk, kayitgetir1, kaydedilenigetir, toplamtemadegisken})
            QCOMPARE(value, 0);
        QVERIFY(!QFile::exists(shop.file(u"Kovanix.config"_s)));
    }

    void window_data() {
        addRows<WindowRow>({{"640", {640, true}},
                            {"799", {799, true}},
                            {"800", {800, true}},
                            {"801", {801, false}},
                            {"1024", {1024, false}},
                            {"1920", {1920, false}}});
    }
    void window() {
        QFETCH(const WindowRow, row);
        LoginFixture shop;
        shop.setScreenWidth(row.width);
        shop.addUser(u"Ayşe"_s, u""_s);
        frmLogin& login = shop.open();
        QCOMPARE(login.isMaximized(), row.maximised);
        QCOMPARE(login.ui.boyutlandirma->isResizing(), row.maximised);
        if (!row.maximised) {
            // The card in the middle of a display that is all the brand's.
            QCOMPARE(login.size(), screenMetrics().pixels);
            QVERIFY(login.windowFlags() & Qt::FramelessWindowHint);
            const ActiveResize& card = *login.ui.boyutlandirma;
            QCOMPARE(card.size(), QSize(760, 520));
            QVERIFY((card.geometry().center() - login.rect().center()).manhattanLength() <= 2);
            const QImage picture = login.grab().toImage();
            QCOMPARE(picture.pixelColor(picture.width() / 2, picture.height() / 2),
                     login.palette().color(QPalette::Base));
            QCOMPARE(picture.pixelColor(card.geometry().topLeft() + QPoint(252, 4)),
                     login.palette().color(QPalette::Window));
            QVERIFY(picture.pixelColor(0, 0).lightness() < 100);
            QVERIFY(picture.pixelColor(picture.width() - 1, picture.height() - 1).lightness() < 100);
            login.resize(1200, 900);
            QCOMPARE(card.scale(), 1.0);
        } else {
            login.setWindowState(Qt::WindowNoState);
            login.resize(1520, 1040);
            QTRY_COMPARE(login.ui.boyutlandirma->scale(), 2.0);
            QCOMPARE(login.ui.cmdOK->minimumHeight(), 144);
        }
    }

    void usersAreForFingers_data() {
        QTest::addColumn<QSize>("size");
        QTest::newRow("640x480") << QSize(640, 480);
        QTest::newRow("800x600") << QSize(800, 600);
        QTest::newRow("design") << QSize(760, 520);
        QTest::newRow("large") << QSize(1366, 768);
    }
    void usersAreForFingers() {
        QFETCH(const QSize, size);
        LoginFixture shop;
        shop.setScreenWidth(size.width() <= 800 && size.width() != 760 ? size.width() : 1366);
        shop.addUser(u"Ayşe"_s, u""_s);
        frmLogin& login = shop.open();
        login.setWindowState(Qt::WindowNoState);
        login.resize(size);
        QTRY_COMPARE(login.size(), size);
        const double scale = login.ui.boyutlandirma->scale();
        QVERIFY(login.ui.kullanici->visualItemRect(login.ui.kullanici->item(0)).height() >=
                qFloor(44 * scale));
        QVERIFY(login.ui.kullanici->viewport()->height() >= 2 * 44 * scale);
    }

    // The focus that a listed user brings along stays away where the list can't be read.
    void theFirstFocusWithoutAList() {
        const LoginFixture shop;
        auto& login = screen<frmLogin>();
        login.show();
        login.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&login));
        QVERIFY(login.ui.sifre->hasFocus());
    }

    void showAndHide() {
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, u""_s);
        const Ui::frmLogin& ui = shop.open().ui;
        QTest::keyClicks(ui.sifre, u"gizli"_s);
        QCOMPARE(ui.sifre->passwordchar(), u"*"_s);
        QCOMPARE(ui.sifre->displayText(), u"*****"_s);
        // It reads "hide" over a hidden password, so the first press only turns its own look.
        for (int round = 0; round < 2; ++round) {
            QTest::mouseClick(ui.vkCommand1, Qt::LeftButton);
            QCOMPARE(ui.sifre->passwordchar(), u"*"_s);
            QCOMPARE(ui.sifre->displayText(), u"*****"_s);
            QCOMPARE(ui.vkCommand1->caption(), u"ŞİFRE GÖSTER"_s);
            QCOMPARE(ui.vkCommand1->toolTip(), u"ŞİFREYİ GÖSTERMEK İçİN TIKLAYIN"_s);
            QCOMPARE(ui.vkCommand1->backcolor1(), QColor(0xFB, 0xFB, 0xFB));
            QCOMPARE(ui.vkCommand1->backcolor2(), QColor(0xFF, 0xFF, 0x00));
            QTest::mouseClick(ui.vkCommand1, Qt::LeftButton);
            QCOMPARE(ui.sifre->passwordchar(), u""_s);
            QCOMPARE(ui.sifre->displayText(), u"gizli"_s);
            QCOMPARE(ui.vkCommand1->caption(), u"ŞİFRE GİZLE"_s);
            QCOMPARE(ui.vkCommand1->toolTip(), u"ŞİFREYİ GİZLEMEK İçİN TIKLAYIN"_s);
            QCOMPARE(ui.vkCommand1->backcolor1(), QColor(0xFB, 0xFB, 0xFB));
            QCOMPARE(ui.vkCommand1->backcolor2(), QColor(0x80, 0xFF, 0x80));
            QCOMPARE(ui.sifre->text(), u"gizli"_s);
        }
    }

    void aHiddenPasswordIsHiddenFromHelpers() {
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, u""_s);
        const Ui::frmLogin& ui = shop.open().ui;
        QTest::keyClicks(ui.sifre, u"gizli"_s);
        QAccessibleInterface* reader = QAccessible::queryAccessibleInterface(ui.sifre);
        QVERIFY(reader);
        QCOMPARE(reader->text(QAccessible::Value), u"*****"_s);
        QVERIFY(reader->state().passwordEdit);
        QVERIFY(ui.sifre->inputMethodHints().testFlag(Qt::ImhSensitiveData));
        QVERIFY(ui.sifre->inputMethodHints().testFlag(Qt::ImhHiddenText));
    }

    void closing_data() {
        addRows<ClosingRow>({{"yes", {MessageBoxAnswer::yes, true}},
                             {"no", {MessageBoxAnswer::no, false}},
                             {"Escape", {BoxAnswers::escape, false}}});
    }
    void closing() {
        QFETCH(const ClosingRow, row);
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, u"gizli"_s);
        shop.open();
        QTest::keyClicks(shop.ui().sifre, u"giz"_s);
        shop.boxes.expect(u"Program kapatma"_s, u"PROGRAMI KAPATMAK İSTEDİĞİNİZE EMİNMİSİNİZ?"_s, row.answer);
        QString standard;
        connect(&shop.boxes, &BoxAnswers::opened, this,
                [&standard](const QMessageBox& box) { standard = box.defaultButton()->text(); });
        QTest::mouseClick(shop.ui().cmdCancel, Qt::LeftButton);
        QVERIFY(allAnswered(shop.boxes));
        QCOMPARE(standard, u"Hayır"_s);
        QCOMPARE(shop.ended, row.ends ? std::optional(0) : std::nullopt);
        QCOMPARE(baglanti().isOpen(), !row.ends);
        QCOMPARE(baglantidurumu, row.ends ? 0 : 1);
        QVERIFY(shop.login().isVisible());
        QCOMPARE(shop.ui().sifre->text(), u"giz"_s);
    }

    void launchers_data() {
        addRows<LaunchersRow>({{"support", {u"destekprograminiac"_s, u"TORVELAKA.exe"_s, false}},
                               {"update", {u"yazilimguncelle"_s, u"Kovanix-Guncelle.exe"_s, true}}});
    }
    void launchers() {
        QFETCH(const LaunchersRow, row);
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, u""_s);
        makeProgram(shop.file(row.name), shop.file(u"trace"_s));
        frmLogin& login = shop.open();
        QTest::mouseClick(login.findChild<QWidget*>(row.button), Qt::LeftButton);
        QTRY_COMPARE(contents(shop.file(u"trace"_s)), u"0\n"_s);  // without arguments
        QCOMPARE(shop.ended, row.ends ? std::optional(0) : std::nullopt);
        QCOMPARE(baglanti().isOpen(), !row.ends);
        QVERIFY(login.isVisible());
        QVERIFY(allAnswered(shop.boxes));
    }

    void launchersOfNothing_data() {
        QTest::addColumn<LaunchersOfNothingRow>("row");
        for (int kind = 0; kind < 3; ++kind) {
            const QStringList kinds{u"missing"_s, u"a file that can't be started"_s, u"a folder"_s};
            QTest::newRow(qUtf8Printable(u"support: "_s + kinds.at(kind)))
                << LaunchersOfNothingRow{u"destekprograminiac"_s, u"TORVELAKA.exe"_s, kind, false};
            QTest::newRow(qUtf8Printable(u"update: "_s + kinds.at(kind)))
                << LaunchersOfNothingRow{u"yazilimguncelle"_s, u"Kovanix-Guncelle.exe"_s, kind, true};
        }
    }
    void launchersOfNothing() {
        QFETCH(const LaunchersOfNothingRow, row);
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, u""_s);
        if (row.kind == 1) {
            makeProgram(shop.file(row.name), shop.file(u"trace"_s));
            QVERIFY(QFile::setPermissions(shop.file(row.name), QFile::ReadOwner));
        } else if (row.kind == 2) {
            QVERIFY(QDir().mkdir(shop.file(row.name)));
        }
        frmLogin& login = shop.open();
        QTest::mouseClick(login.findChild<QWidget*>(row.button), Qt::LeftButton);
        QCOMPARE(shop.ended, row.ends ? std::optional(0) : std::nullopt);
        QCOMPARE(baglanti().isOpen(), !row.ends);
        QVERIFY(login.isVisible());
        QVERIFY(!QFile::exists(shop.file(u"trace"_s)));
        QVERIFY(allAnswered(shop.boxes));
    }

    void waiting_data() {
        addRows<WaitingRow>({{"639", {639, false}},
                             {"640", {640, true}},
                             {"800", {800, true}},
                             {"801", {801, false}},
                             {"1024", {1024, false}}});
    }
    void waiting() {
        QFETCH(const WaitingRow, row);
        LoginFixture shop;
        shop.setScreenWidth(row.width);
        shop.addUser(u"Ayşe"_s, u"gizli"_s);
        shop.open();
        const NoticeWatch watch;
        shop.enterWrong(u"yanlış"_s);
        QVERIFY(watch.seen.isEmpty());
        shop.enter(u"gizli"_s);
        QVERIFY(shop.isLoggedIn());
        QCOMPARE(watch.seen, row.notice ? QStringList{u"Yıkleniyor...|1500"_s} : QStringList());
        QVERIFY(!loaded<uyari>());
        QVERIFY(allAnswered(shop.boxes));
    }

    void theWarehouseWaits() {
        LoginFixture shop;
        shop.setScreenWidth(800);
        shop.addUser(u"Depo"_s, u""_s, u"depo sevk"_s);
        shop.open();
        shop.enter(u""_s);
        // No one takes the notice away: it goes by its own time.
        QVERIFY(loaded<uyari>());
        QTRY_VERIFY_WITH_TIMEOUT(!loaded<uyari>(), 10000);
        QVERIFY(shop.login().isVisible());
    }

    void aSalesScreenThatDoesntLoad() {
        LoginFixture shop;
        shop.setScreenWidth(800);
        shop.addUser(u"Ayşe"_s, u"gizli"_s, u"Kasiyer"_s);
        shop.open();
        Clock::setSource([]() -> QDateTime { throw RuntimeError(5, u"saat yok"_s); });
        shop.boxes.expect(words::error, u"Satış ekranı açılamadı: saat yok"_s, MessageBoxAnswer::ok);
        shop.enter(u"gizli"_s);
        QVERIFY(allAnswered(shop.boxes));
        QVERIFY(!loaded<satisekrani>());
        QVERIFY(shop.login().isVisible());
        QVERIFY(!shop.ended);
        shop.setNow(QDateTime(QDate(2026, 5, 3), QTime(7, 5, 9)));
        shop.enter(u"gizli"_s);
        QVERIFY(shop.isLoggedIn());
        QVERIFY(!loaded<uyari>());
        QVERIFY(allAnswered(shop.boxes));
    }

    void backToTheLogin() {
        LoginFixture shop;
        shop.addUser(u"Ayşe"_s, hashed("gizli"));
        shop.addUser(u"Kasa"_s, u""_s, u"Kasiyer"_s);
        shop.open();
        shop.enter(u"gizli"_s);
        QVERIFY(shop.isLoggedIn());
        for (const auto& [row, password, role] :
             {std::tuple{1, u""_s, 0}, {0, u"gizli"_s, 1}, {1, u""_s, 0}}) {
            unloadAllScreens();
            shop.open();
            QCOMPARE(shop.ui().sifre->text(), u""_s);
            shop.logIn(row, password);
            QVERIFY(shop.isLoggedIn());
            QCOMPARE(girisyetki, role);
            QCOMPARE(girissifre, u"gizli"_s);
        }
        QVERIFY(allAnswered(shop.boxes));
    }
};

int main(int argc, char** argv) {
    return runTests<FrmLoginTest>(argc, argv);
}

#include "test_frmlogin.moc"
