#include <QMessageBox>
#include <QPushButton>

#include "app/modTurkce.h"
#include "desktop/messagebox.h"
#include "rows.h"
#include "runtests.h"
#include "shopfixture.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

/// What the box on the screen looks like at the moment when it is shown.
class BoxLook : public QObject {
public:
    BoxLook() { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        const auto* box = qobject_cast<QMessageBox*>(watched);
        if (box && event->type() == QEvent::Show) {
            icon = box->icon();
            format = box->textFormat();
            buttons.clear();
            for (const QAbstractButton* button : box->buttons())
                buttons.append(button->text());
            buttons.sort();
            standard = box->defaultButton() ? box->defaultButton()->text() : QString();
        }
        return QObject::eventFilter(watched, event);
    }

    QMessageBox::Icon icon = QMessageBox::NoIcon;
    Qt::TextFormat format = Qt::AutoText;
    QStringList buttons;
    QString standard;
};

}  // namespace

class TestMessages : public QObject {
    Q_OBJECT

    struct ShowsTextsRow {
        QString text, title, shownText, shownTitle;
    };
    struct WarnsRow {
        QString text, shownText;
    };
    struct ShowsStylesRow {
        int style, pressed, code, icon;
        QStringList buttons;
        QString standard;
    };

private Q_SLOTS:
    void showsTexts_data() {
        const QString sentence = u"Satış kaydedilemedi"_s;
        const QString hata = u"Hata"_s;
        addRows<ShowsTextsRow>(
            {{"body by text", {u"Sat|# kaydedilemedi"_s, hata, sentence, hata}},
             {"body by key", {u"MSG_SATIS_KAYIT_HATA"_s, hata, sentence, hata}},
             {"body by catalogue text", {metin(u"MSG_SATIS_KAYIT_HATA"_s), hata, sentence, hata}},
             {"body by unknown key", {u"MSG_YOK|"_s, hata, u"MSG_YOK|"_s, hata}},
             {"key without underscore is a text", {u"TAMAM"_s, hata, u"TAMAM"_s, hata}},
             {"underscore and lower case is a text",
              {u"Msg_satis_kay|t_hata"_s, hata, u"Msg_satis_kayıt_hata"_s, hata}},
             {"key with a blank behind is a text", {u"MSG_EKLENDI "_s, hata, u"MSG_EKLENDI "_s, hata}},
             {"a path is transcribed too",
              {u"/srv/kasa#1/^r^n%20~veri.data"_s, hata, u"/srv/kasaş1/ürünĞ20Üveri.data"_s, hata}},
             {"markup stays text", {u"<b>a</b>"_s, hata, u"<b>a</b>"_s, hata}},
             {"empty body", {QString(), hata, QString(), hata}},
             {"empty title", {u"MSG_EKLENDI"_s, QString(), u"Eklendi"_s, u"Bilgi"_s}},
             {"bare HATA stays that word", {u"MSG_EKLENDI"_s, u"HATA"_s, u"Eklendi"_s, u"HATA"_s}},
             {"title by key",
              {u"MSG_URUN_SIL_SOR"_s, u"MSG_SILME_ONAY_BASLIK"_s, u"ürün silinsin mi?"_s, u"Silme onayı"_s}},
             {"title by text", {u"MSG_EKLENDI"_s, u"Uyar|"_s, u"Eklendi"_s, u"Uyarı"_s}},
             {"title by catalogue text", {u"MSG_EKLENDI"_s, metin(u"UYARI"_s), u"Eklendi"_s, u"Uyarı"_s}},
             {"title of underscore and lower case",
              {u"MSG_EKLENDI"_s, u"Uyar|_baslik"_s, u"Eklendi"_s, u"Uyarı_baslik"_s}}});
    }
    void showsTexts() {
        QFETCH(const ShowsTextsRow, row);
        ShopFixture fixture;
        fixture.boxes.expect(row.shownTitle, row.shownText, MessageBoxAnswer::ok);
        QCOMPARE(mesaj(row.text, MessageBoxStyle::ok, row.title), MessageBoxAnswer::ok);
        fixture.boxes.expect(row.shownTitle, row.shownText, MessageBoxAnswer::no);
        QCOMPARE(mesajsor(row.text, MessageBoxStyle::yesNo, row.title), MessageBoxAnswer::no);
        QVERIFY(allAnswered(fixture.boxes));
        QCOMPARE(fixture.boxes.answered(), 2);
    }

    void warns_data() {
        addRows<WarnsRow>({{"by key", {u"SON_YONETICI"_s, u"Son Yönetici Silemezsiniz"_s}},
                           {"by text", {u"&nce sat|# yap|n"_s, u"önce satış yapın"_s}}});
    }
    void warns() {
        QFETCH(const WarnsRow, row);
        ShopFixture fixture;
        fixture.boxes.expect(u"UYARI"_s, row.shownText, MessageBoxAnswer::ok);
        QCOMPARE(uyarimesaj(row.text, 48), 1);
        fixture.boxes.expect(u"UYARI"_s, row.shownText, MessageBoxAnswer::yes);
        QCOMPARE(uyarimesaj(row.text, 52), 6);
        QVERIFY(allAnswered(fixture.boxes));
    }

    void showsStyles_data() {
        QTest::addColumn<ShowsStylesRow>("row");
        const auto row = [](const char* name, int style, int pressed, int code, QMessageBox::Icon icon,
                            const QStringList& buttons, const QString& standard) {
            QTest::newRow(name) << ShowsStylesRow{style,   pressed, code, static_cast<int>(icon),
                                                  buttons, standard};
        };
        const QString tamam = u"Tamam"_s;
        const QString evet = u"Evet"_s;
        const QString hayir = u"Hayır"_s;
        const QStringList ok{tamam};
        const QStringList yesNo{evet, hayir};
        constexpr int escape = BoxAnswers::escape;
        row("0, OK", 0, 1, 1, QMessageBox::NoIcon, ok, tamam);
        row("0, Escape", 0, escape, 1, QMessageBox::NoIcon, ok, tamam);
        row("4, yes", 4, 6, 6, QMessageBox::NoIcon, yesNo, evet);
        row("4, no", 4, 7, 7, QMessageBox::NoIcon, yesNo, evet);
        row("4, Escape", 4, escape, 7, QMessageBox::NoIcon, yesNo, evet);
        row("16, OK", 16, 1, 1, QMessageBox::Critical, ok, tamam);
        row("16, Escape", 16, escape, 1, QMessageBox::Critical, ok, tamam);
        row("48, OK", 48, 1, 1, QMessageBox::Warning, ok, tamam);
        row("52, yes", 52, 6, 6, QMessageBox::Warning, yesNo, evet);
        row("52, no", 52, 7, 7, QMessageBox::Warning, yesNo, evet);
        row("52, Escape", 52, escape, 7, QMessageBox::Warning, yesNo, evet);
        row("292, yes", 292, 6, 6, QMessageBox::Question, yesNo, hayir);
        row("292, no", 292, 7, 7, QMessageBox::Question, yesNo, hayir);
        row("292, Escape", 292, escape, 7, QMessageBox::Question, yesNo, hayir);
        row("36, yes", 36, 6, 6, QMessageBox::Question, yesNo, evet);
        row("36, no", 36, 7, 7, QMessageBox::Question, yesNo, evet);
        row("64, OK", 64, 1, 1, QMessageBox::Information, ok, tamam);
        const QString iptal = u"İptal"_s;
        const QStringList retry{u"Devam"_s, u"Yeniden dene"_s, iptal};
        row("6, cancel", 6, 2, 2, QMessageBox::NoIcon, retry, iptal);
        row("6, try again", 6, 10, 10, QMessageBox::NoIcon, retry, iptal);
        row("6, continue", 6, 11, 11, QMessageBox::NoIcon, retry, iptal);
        row("6, Escape", 6, escape, 2, QMessageBox::NoIcon, retry, iptal);
    }
    void showsStyles() {
        QFETCH(ShowsStylesRow, row);
        ShopFixture fixture;
        BoxLook look;
        fixture.boxes.expect(u"Hata"_s, u"Eklendi"_s, row.pressed);
        QCOMPARE(mesaj(u"MSG_EKLENDI"_s, row.style, u"Hata"_s), row.code);
        QVERIFY(allAnswered(fixture.boxes));
        row.buttons.sort();
        QCOMPARE(static_cast<int>(look.icon), row.icon);
        QCOMPARE(look.format, Qt::PlainText);
        QCOMPARE(look.buttons, row.buttons);
        QCOMPARE(look.standard, row.standard);
    }
};

int main(int argc, char** argv) {
    return runTests<TestMessages>(argc, argv);
}
#include "test_messages.moc"
