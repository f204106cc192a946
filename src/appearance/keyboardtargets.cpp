#include "appearance/keyboardtargets.h"

#include <QLineEdit>
#include <algorithm>
#include <array>

#include "access/frmLogin.h"
#include "access/kullanicilar.h"
#include "access/sifresorur.h"
#include "catalogue/liste.h"
#include "catalogue/urunler.h"
#include "runtime/attempt.h"
#include "runtime/screenregistry.h"
#include "sales/satisekrani.h"

namespace kovanix {

namespace {

constexpr auto full = KeyboardKind::full;
constexpr auto pad = KeyboardKind::pad;

constexpr std::array targets{
    KeyboardTarget{full, u"1", u"frmLogin", u"sifre", u"isyeriadi2", u"Şifre", true},
    KeyboardTarget{full, u"2"},
    KeyboardTarget{full, u"3", u"urunler", u"urun2", {}, u"Ürün adı"},
    KeyboardTarget{full, u"4"},
    KeyboardTarget{full, u"5"},
    KeyboardTarget{full, u"6"},
    KeyboardTarget{full, u"7", u"kullanicilar", u"personeladi", {}, u"Kullanıcı adı"},
    KeyboardTarget{full, u"8", u"kullanicilar", u"sifre", {}, u"Şifre", true},
    KeyboardTarget{full, u"9", u"kullanicilar", u"sifre1", {}, u"Şifre tekrarı", true},
    KeyboardTarget{full, u"10", u"liste", u"mail", u"site", u"E-posta"},
    KeyboardTarget{full, u"11", u"liste", u"site", u"ilkborcu", u"Web sitesi"},
    KeyboardTarget{full, u"12", u"liste", u"txtLName", u"txtFName", u"Soyadı"},
    KeyboardTarget{full, u"13", u"liste", u"txtFName", u"txtCourse", u"Adı"},
    KeyboardTarget{full, u"14", u"liste", u"adres", u"musterikart", u"Adres"},
    KeyboardTarget{full, u"15", u"sifresorur", u"Text1", u"Text1", u"Şifre", true},
    KeyboardTarget{full, u"16"},
    KeyboardTarget{full, u"17", u"liste", u"faturano", u"faturano", u"Fatura no"},
    KeyboardTarget{full, u"18", u"frmLogin", u"sifre", {}, u"Şifre", true},
    KeyboardTarget{full, u"19", u"satisekrani", u"hizliurunadi", {}, u"Kısayol adı"},
    KeyboardTarget{pad, u"1", u"urunler", u"barkod2", {}, u"Barkod"},
    KeyboardTarget{pad, u"2", u"urunler", u"alis", {}, u"Alış fiyatı"},
    KeyboardTarget{pad, u"3", u"urunler", u"fiyat", {}, u"Satış fiyatı"},
    KeyboardTarget{pad, u"4", u"urunler", u"stok", {}, u"Stok"},
    KeyboardTarget{pad, u"8", u"satisekrani", u"barkod", {}, u"Barkod"},
};

/// A screen that targets lie on, found or loaded by its name.
struct Form {
    QStringView name;
    Screen& (*load)();
    bool (*isLoaded)();
};

template <class S>
constexpr Form form(QStringView name) {
    return {name, []() -> Screen& { return screen<S>(); }, loaded<S>};
}

// A screen that isn't named here is passed over, with all that lies on it.
constexpr std::array forms{
    form<frmLogin>(u"frmLogin"),     form<kullanicilar>(u"kullanicilar"), form<liste>(u"liste"),
    form<sifresorur>(u"sifresorur"), form<satisekrani>(u"satisekrani"),   form<urunler>(u"urunler"),
};

Screen* formOf(const KeyboardTarget& target, bool load) {
    const auto found = std::ranges::find(forms, target.form, &Form::name);
    if (found == forms.end() || (!load && !found->isLoaded()))
        return nullptr;
    Screen* screen = nullptr;
    attempt([&] { screen = &found->load(); });
    return screen;
}

QWidget* controlOf(const Screen& screen, QStringView name) {
    return screen.findChild<QWidget*>(name.toString());
}

}  // namespace

std::span<const KeyboardTarget> keyboardTargets() {
    return targets;
}

const KeyboardTarget* keyboardTarget(KeyboardKind keyboard, QStringView code) {
    const auto found = std::ranges::find_if(targets, [&](const KeyboardTarget& target) {
        return target.keyboard == keyboard && target.code == code;
    });
    return found == targets.end() ? nullptr : &*found;
}

QWidget* handOver(const KeyboardTarget& target, const QString& text) {
    const Screen* screen = formOf(target, true);
    if (!screen)
        return nullptr;
    // A box that is out of use is meant to keep what it holds, like the barcode of a product being changed.
    auto* box = qobject_cast<QLineEdit*>(controlOf(*screen, target.control));
    if (box && box->isEnabled())
        attempt([&] { box->setText(text); });
    QWidget* next = controlOf(*screen, target.next.isEmpty() ? target.control : target.next);
    return next && next->isVisible() ? next : nullptr;
}

QWidget* visibleBox(const KeyboardTarget& target) {
    const Screen* screen = formOf(target, false);
    QWidget* box = screen ? controlOf(*screen, target.control) : nullptr;
    return box && box->isVisible() ? box : nullptr;
}

}  // namespace kovanix
