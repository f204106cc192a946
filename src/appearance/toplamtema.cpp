#include "appearance/toplamtema.h"

#include <algorithm>
#include <utility>

#include "app/ayarmodul.h"
#include "app/modTurkce.h"
#include "appearance/modTema.h"
#include "appearance/tema.h"
#include "appearance/temakayitmodulu.h"
#include "desktop/focus.h"
#include "desktop/messagebox.h"
#include "runtime/attempt.h"
#include "sales/satisekrani.h"
#include "screens/clicks.h"
#include "widgets/colorvalue.h"
#include "widgets/controlcolor.h"
#include "widgets/face.h"
#include "widgets/look.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

/// An ink for a small caption, as much nearer to black or white as it takes to be read without an outline.
QColor captionInk(const QColor& wanted, const QColor& ground) {
    QColor ink = wanted;
    for (double share = 0; contrast(ink, ground) < legible && share < 1;) {
        share += 0.05;
        ink = mixed(wanted, blackOrWhite(ground), share);
    }
    return ink;
}

DrawnButton& realTotal() {
    return *screen<satisekrani>().ui.toplam;
}

}  // namespace

/// Five values in one go; the four backgrounds are equal.
struct toplamtema::Preset {
    ColorValue fore;
    ColorValue back;

    QColor color(TotalColor property) const {
        return colorOf(property == TotalColor::forecolor ? fore : back);
    }
};

struct toplamtema::SavedSet {
    int number;
    TotalSet keys;
    TotalSet other;
    void (*apply)();
};

toplamtema::toplamtema() {
    ui.setupUi(this);
    applyTextRoles(*this);
    m_rows = {{
        {TotalColor::forecolor, ui.Command1, ui.Frame1, &CommonDialog1},
        {TotalColor::backcolor1, ui.Command2, ui.Frame2, &CommonDialog2},
        {TotalColor::backcolor2, ui.Command3, ui.Frame3, &CommonDialog3},
        {TotalColor::backcolorpushed1, ui.Command4, ui.Frame4, &CommonDialog4},
        {TotalColor::backcolorpushed2, ui.Command5, ui.Frame5, &CommonDialog5},
    }};
    connectControls();
    standInFrame(*ui.vkFrame1);
    setCloseButton(*ui.vkCommand5);
    restOnCloseButton();
}

toplamtema::~toplamtema() = default;

void toplamtema::connectControls() {
    for (const Row& row : m_rows) {
        const TotalColor color = row.color;
        connect(row.button, &QAbstractButton::clicked, this, [this, color] { Command_click(color); });
    }
    connect(ui.Frame2, &Swatch::mousedown, this,
            [this] { Frame_mousedown(TotalColor::backcolor1, TotalColor::backcolorpushed1); });
    connect(ui.Frame3, &Swatch::mousedown, this,
            [this] { Frame_mousedown(TotalColor::backcolor2, TotalColor::backcolorpushed2); });

    const std::initializer_list<std::pair<vkCommand*, Preset>> presets{{ui.vkCommand1, {0xC00000, 0xFFFFFF}},
                                                                       {ui.vkCommand2, {0x0000FF, 0xFFFFFF}},
                                                                       {ui.vkCommand3, {0x00FF00, 0x000000}},
                                                                       {ui.vkCommand4, {0xC000C0, 0xFFFFFF}}};
    for (const auto& [button, values] : presets) {
        for (const TotalColor color : totalColors)
            setTotalColor(*button, color, values.color(color));
        button->setForecolor(captionInk(button->forecolor(), button->backcolor1()));
        connect(button, &QAbstractButton::clicked, this, [this, preset = values] { preset_click(preset); });
    }

    const SavedSet first{1, TotalSet::saved1, TotalSet::saved2, kayit1uygula};
    const SavedSet second{2, TotalSet::saved2, TotalSet::saved1, kayit2uygula};
    connect(ui.vkCommand6, &QAbstractButton::clicked, this, [this, first] { save_click(first); });
    connect(ui.vkCommand7, &QAbstractButton::clicked, this, [this, first] { fetch_click(first); });
    connect(ui.vkCommand8, &QAbstractButton::clicked, this, [this, second] { fetch_click(second); });
    connect(ui.vkCommand9, &QAbstractButton::clicked, this, [this, second] { save_click(second); });
    clicks(this, {{ui.temakaydetme, &toplamtema::temakaydetme_click},
                  {ui.vkCommand5, &toplamtema::vkCommand5_click}});
}

void toplamtema::form_load() {
    ekrandonat(*this);
}

void toplamtema::form_activate() {
    toplamtemadegisken = temasayisi(u"toplamtemadegisken"_s);
    temakaydetme1 = ayar(u"temakaydetme1"_s);
    // Where neither word is on file yet, the number says which of them is true.
    const bool keeps = temakaydetme1 == u"True" || (temakaydetme1 != u"False" && toplamtemadegisken != 1);
    ui.temakaydetme->setChecked(keeps);
    keeps ? temakaydediyor() : temakaydetmiyor();

    toplamtemadegisken = temasayisi(u"toplamtemadegisken"_s);
    toplamrenkaktar();
    dressSlots();
    for (const Row& row : m_rows)
        setTotalColor(*ui.toplam, row.color, backColor(*row.swatch));
    if (ui.temakaydetme->isChecked())
        temakaydediyor();
}

void toplamtema::dressSlots() {
    for (SetButton* slot : {ui.vkCommand6, ui.vkCommand7})
        applyTotalColors(*slot, TotalSet::saved1);
    for (SetButton* slot : {ui.vkCommand8, ui.vkCommand9})
        applyTotalColors(*slot, TotalSet::saved2);
}

void toplamtema::toplamrenkaktar() {
    for (const Row& row : m_rows)
        setBackColor(*row.swatch, totalColor(realTotal(), row.color));
}

toplamtema::Row& toplamtema::rowOf(TotalColor color) {
    return m_rows[static_cast<size_t>(color)];
}

Swatch& toplamtema::swatch(TotalColor color) const {
    return *m_rows[static_cast<size_t>(color)].swatch;
}

void toplamtema::Command_click(TotalColor color) {
    Row& row = rowOf(color);
    // Until something has been chosen in it the dialog starts from what the total shows, so that a cancel
    // changes nothing. Later a cancel brings back the last choice, as required.
    if (!row.chosen)
        row.dialog->setColor(totalColor(realTotal(), color));
    row.dialog->showColor(*this, [this, color, start = row.dialog->color()] {
        Row& changed = rowOf(color);
        const QColor value = changed.dialog->color();
        changed.chosen = changed.chosen || value != start;
        setTotalColor(realTotal(), color, value);
        setTotalColor(*ui.toplam, color, value);
        setBackColor(*changed.swatch, value);
        change(color, value);
    });
}

void toplamtema::Frame_mousedown(TotalColor from, TotalColor pushed) {
    const QColor value = backColor(swatch(from));
    setTotalColor(realTotal(), pushed, value);
    setTotalColor(*ui.toplam, pushed, value);
    setBackColor(swatch(pushed), value);
    change(pushed, value);
}

/// What follows on every colour that was chosen: its key, where the live colours are stored, and the end of
/// the saved sets' say.
void toplamtema::change(TotalColor color, const QColor& value) {
    if (toplamtemadegisken == 1) {
        storeTotalColor(TotalSet::live, color, value);
        // What the file took is what shows.
        attempt([&] { setTotalColor(*ui.toplam, color, storedTotalColor(TotalSet::live, color)); });
        attempt([&] { setTotalColor(realTotal(), color, storedTotalColor(TotalSet::live, color)); });
        toplamrenkaktar();
        ayarla(u"kayitgetir1"_s, u"0"_s);
        kayitgetir1 = temasayisi(u"kayitgetir1"_s);
    }
    sonrenk = 0;
    ayarla(u"sonrenk"_s, u"0"_s);
}

/// The swatches stay as they are, and so does what was last saved or fetched: required.
void toplamtema::preset_click(const Preset& preset) {
    for (const TotalColor color : totalColors) {
        storeTotalColor(TotalSet::live, color, preset.color(color));
        storeTotalColor(TotalSet::live, color, preset.color(color));  // written twice, as required
    }
    for (const TotalColor color : totalColors) {
        attempt([&] { setTotalColor(*ui.toplam, color, storedTotalColor(TotalSet::live, color)); });
        attempt([&] { setTotalColor(realTotal(), color, storedTotalColor(TotalSet::live, color)); });
    }
    // Whatever the file took, the preset shows.
    for (DrawnButton* total : {static_cast<DrawnButton*>(ui.toplam), &realTotal()}) {
        for (const TotalColor background : {TotalColor::backcolor1, TotalColor::backcolor2,
                                            TotalColor::backcolorpushed1, TotalColor::backcolorpushed2})
            setTotalColor(*total, background, preset.color(background));
        setTotalColor(*total, TotalColor::forecolor, preset.color(TotalColor::forecolor));
    }
}

/// Whether the swatches show the very colours of a set, by their numbers. A number that can't be read equals
/// none.
bool toplamtema::showsSet(TotalSet set) const {
    return std::ranges::all_of(m_rows, [set](const Row& row) {
        bool equal = false;
        attempt([&] {
            equal = colorValue(storedTotalColor(set, row.color)) == colorValue(backColor(*row.swatch));
        });
        return equal;
    });
}

void toplamtema::save_click(const SavedSet& set) {
    if (showsSet(set.other) &&
        mesajsor(u"MSG_KAYDET_ONAY"_s, MessageBoxStyle::yesNo, u"UYARI"_s) != MessageBoxAnswer::yes)
        return;
    for (const Row& row : m_rows)
        storeTotalColor(set.keys, row.color, backColor(*row.swatch));
    set.apply();
    sonrenk = set.number;
    ayarla(u"sonrenk"_s, QString::number(set.number));
    dressSlots();
}

void toplamtema::fetch_click(const SavedSet& set) {
    set.apply();
    ayarla(u"kaydedilenigetir"_s, QString::number(set.number - 1));
    kaydedilenigetir = temasayisi(u"kaydedilenigetir"_s);
    toplamrenkaktar();
    for (const Row& row : m_rows)
        attempt([&] { setBackColor(*row.swatch, storedTotalColor(set.keys, row.color)); });
    // The process-wide kayitgetir1 follows at the next start only; until then sonrenk speaks for the set.
    ayarla(u"kayitgetir1"_s, QString::number(set.number));
    sonrenk = set.number;
    ayarla(u"sonrenk"_s, QString::number(set.number));
}

void toplamtema::temakaydetme_click() {
    ui.temakaydetme->isChecked() ? temakaydediyor() : temakaydetmiyor();
}

void toplamtema::vkCommand5_click() {
    unload<toplamtema>();
    showInFront(screen<tema>());
}

}  // namespace kovanix
