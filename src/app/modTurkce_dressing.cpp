#include <array>
#include <vector>

#include "app/modTurkce.h"
#include "runtime/attempt.h"
#include "runtime/screen.h"
#include "values/lettercase.h"
#include "widgets/caption.h"
#include "widgets/controlarray.h"
#include "widgets/tdbgrid.h"
#include "widgets/vsflexgrid.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr int deepest = 7;

struct Title {
    QStringView screen;
    QStringView title;
};

// Plain capitals, as required: titles don't pass through the transcription.
constexpr std::array<Title, 17> titles{{
    {u"urunler", u"URUN LISTESI"},
    {u"stokraporu", u"STOK RAPORU"},
    {u"liste", u"MUSTERI LISTESI"},
    {u"urunbul", u"URUN ARA"},
    {u"satisraporlar", u"SATIS RAPORLARI"},
    {u"zparogu", u"Z RAPORU"},
    {u"raporlarmenu", u"RAPORLAR"},
    {u"kullanicilar", u"KULLANICILAR"},
    {u"menu", u"MENU"},
    {u"frmLogin", u"Kovanix"},
    {u"satisekrani", u"Kovanix Satis"},
    {u"tema", u"TEMA"},
    {u"toplamtema", u"TOPLAM RENGI"},
    {u"sifresorur", u"SIFRE"},
    {u"hallimzda", u"Kovanix"},
    {u"uyari", u"UYARI"},
    {u"klavyesayi", u"SAYILAR"},
}};

/// The controls that a container holds. Viewports and other parts of the toolkit's own ("qt_…") are no
/// controls: what they hold counts as held by the container itself.
std::vector<QWidget*> heldControls(const QWidget& container) {
    std::vector<QWidget*> held;
    for (QObject* child : container.children()) {
        auto* control = qobject_cast<QWidget*>(child);
        if (!control || control->isWindow())
            continue;
        if (control->objectName().startsWith(u"qt_")) {
            for (QWidget* inner : heldControls(*control))
                held.push_back(inner);
        } else {
            held.push_back(control);
        }
    }
    return held;
}

void tipdonat(QWidget& control) {
    if (harfvarmi(control.toolTip()))
        control.setToolTip(harfcevir(control.toolTip()));
}

void dugmedonat(QWidget& button) {
    if (harfvarmi(caption(button)))
        setCaption(button, harfcevir(caption(button)));
    tipdonat(button);
}

/// One key of the letter keyboard shows a symbol for itself: known by its index and its place, in twips.
bool captionIsLeftAlone(const QWidget& control) {
    return controlIndex(control) == 21 && control.property("left").toInt() == 30 &&
           control.property("top").toInt() == 1680;
}

void etiketdonat(QWidget& label) {
    if (captionIsLeftAlone(label)) {
        tipdonat(label);
        return;
    }
    dugmedonat(label);
}

bool isGrid(const QString& kind) {
    return kind == u"TDBGrid" || kind == u"ATDBGrid" || kind == u"DataGrid" || kind == u"VSFlexGrid";
}

void kontroldonat(QWidget& control, int depth) {
    if (depth >= deepest)
        return;
    const auto donatHeld = [&control, depth] {
        for (QWidget* held : heldControls(control))
            kontroldonat(*held, depth + 1);
    };
    const QString kind = controlKind(control);
    if (kind == u"ActiveResize" || kind == u"EntryFrame") {
        donatHeld();  // an entry frame's caption is its mode, compared as it was set
    } else if (isGrid(kind)) {
        return;
    } else if (kind == u"vkCommand" || kind == u"vkToggleButton") {
        dugmedonat(control);
    } else if (kind == u"vkFrame") {
        dugmedonat(control);
        donatHeld();
    } else if (kind.startsWith(u"vk")) {
        return;
    } else {
        etiketdonat(control);
        donatHeld();
    }
}

void nameForAssistance(QWidget& screen) {
    for (QWidget* control : screen.findChildren<QWidget*>()) {
        if (!control->accessibleName().isEmpty() || control->objectName().startsWith(u"qt_"))
            continue;
        // A caption is the control's name as it stands at any moment; a copy of it would grow stale when the
        // text changes.
        if (caption(*control).isEmpty())
            control->setAccessibleName(control->toolTip());
    }
}

}  // namespace

void ekranbasligi(Screen& screen) {
    const QString name = controlKind(screen);
    for (const Title& entry : titles) {
        if (entry.screen == name) {
            screen.setWindowTitle(entry.title.toString());
            return;
        }
    }
}

void ekrandonat(Screen& screen) {
    ekranbasligi(screen);
    const QString name = controlKind(screen);
    if (name == u"frmLogin" || name == u"satisekrani")
        return;
    kontrolleridolas(screen);
    if (name != u"hallimzda")
        gridleridolas(screen, 0);
}

void kontrolleridolas(QWidget& screen) {
    for (QWidget* control : heldControls(screen))
        kontroldonat(*control, 0);
    nameForAssistance(screen);
}

void gridleridolas(QWidget& container, int depth) {
    if (depth >= deepest)
        return;
    for (QWidget* control : heldControls(container)) {
        if (auto* grid = qobject_cast<TDBGrid*>(control))
            gridbasliklari(*grid);
        else
            gridleridolas(*control, depth + 1);
    }
}

void gridbasliklari(TDBGrid& grid) {
    for (int column = 0; column < grid.columnCount(); ++column) {
        const QString stored = grid.columnCaption(column);
        const QString heading = lowerOrdinary(stored.trimmed());
        if (heading == u"personeladi")
            grid.setColumnCaption(column, upperOrdinary(metin(u"KULLANICI_ADI"_s)));
        else if (heading == u"sifre")
            grid.setColumnCaption(column, upperOrdinary(metin(u"SIFRE"_s)));
        else if (heading == u"id")
            grid.setColumnCaption(column, u"NO"_s);
        else if (harfvarmi(stored))
            grid.setColumnCaption(column, harfcevir(stored));
    }
    grid.printInfo().previewPageOf = metin(u"YAZDIR_SAYFA"_s);
}

void gridbasliklari(VSFlexGrid& grid) {
    satisgridbasliklari(grid);
}

void satisgridbasliklari(VSFlexGrid& grid) {
    // A grid that isn't set up yet lacks some of the columns.
    const auto heading = [&grid](int column, const QString& text) {
        attempt([&] { grid.setTextMatrix(0, column, text); });
    };
    attempt([&] { grid.setColWidth(0, 0); });
    heading(1, u"BARKOD"_s);
    heading(2, harfcevir(u"~R~N ADI"_s));
    heading(3, harfcevir(u"M!KT."_s));
    heading(4, harfcevir(u"F!Y."_s));
    heading(5, u"TOP."_s);
}

}  // namespace kovanix
