#include "appearance/keyboardscreen.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QIcon>

#include "app/modTurkce.h"
#include "appearance/keyboardfield.h"
#include "appearance/keyboardtargets.h"
#include "appearance/mdlMonitors.h"
#include "desktop/focus.h"
#include "desktop/sendkeys.h"
#include "widgets/activeresize.h"
#include "widgets/drawnbutton.h"
#include "widgets/drawnframe.h"
#include "widgets/image.h"
#include "widgets/look.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr int widestLarge = 1280;  // pixels: up to there a keyboard fills the display

// At the design size.
constexpr QSize displaySize(1024, 768);
constexpr QSize fullSize(1100, 480);
constexpr QSize padSize(480, 620);
constexpr int gap = 8;

FaceRole faceOf(KeyWork work) {
    switch (work) {
        case KeyWork::enter:
            return FaceRole::accent;
        case KeyWork::erase:
            return FaceRole::key2;
        case KeyWork::clear:
            return FaceRole::danger;
        default:
            return FaceRole::light;
    }
}

QString keyName(int index) {
    return u"vkCommand1_"_s + QString::number(index);
}

QString withoutLast(QString text) {
    const bool pair =
        text.size() > 1 && text.back().isLowSurrogate() && text.at(text.size() - 2).isHighSurrogate();
    text.chop(pair ? 2 : 1);
    return text;
}

}  // namespace

klavyeyeni::klavyeyeni() : KeyboardScreen(KeyboardKind::full, Make::drawn) {
    setWindowTitle(u"KLAVYE"_s);
}

klavyeyeni2::klavyeyeni2() : KeyboardScreen(KeyboardKind::full, Make::plain) {
    setWindowTitle(u"KLAVYE"_s);
}

klavyesayi::klavyesayi() : KeyboardScreen(KeyboardKind::pad, Make::drawn) {}

KeyboardScreen::KeyboardScreen(KeyboardKind kind, Make make) : m_kind(kind), m_make(make) {
    ui.ActiveResize1 = new ActiveResize(this);
    ui.ActiveResize1->setObjectName(u"ActiveResize1"_s);
    ui.abc = new vkFrame(ui.ActiveResize1);
    ui.abc->setObjectName(u"abc"_s);
    const FaceColors navy = faceColors(FaceRole::navy);
    ui.abc->setCornerRadius(0);
    ui.abc->setBackcolor1(navy.top);
    ui.abc->setBackcolor2(navy.rim);
    ui.nereye = new QLineEdit(ui.abc);
    ui.nereye->setObjectName(u"nereye"_s);
    ui.nereye->hide();
    ui.yazilan = new KeyboardField(ui.abc);
    ui.yazilan->setObjectName(u"yazilan"_s);
    ui.yazilan->setAccessibleName(u"Yazılan"_s);
    ui.yazilan->setProperty("textRole", kind == KeyboardKind::full ? u"typed"_s : u"typedFigure"_s);
    ui.yazilan->setAlignment((kind == KeyboardKind::full ? Qt::AlignLeft : Qt::AlignRight) |
                             Qt::AlignVCenter);
    addKeys();
    ui.kapat = addButton(u"kapat"_s, u"KAPAT"_s, kind == KeyboardKind::full ? "tile" : "wide");
    ui.kapat->setLook(FaceRole::slate);
    ui.kapat->setIcon(QIcon(u":/icons/x.svg"_s));
    ui.kapat->setIconSize({22, 22});
    ui.kapat->setIconPlace(DrawnButton::IconPlace::beside);
    applyTextRoles(*this);

    connect(ui.nereye, &QLineEdit::textChanged, this, &KeyboardScreen::nereye_change);
    connect(ui.kapat, &QAbstractButton::clicked, this, &KeyboardScreen::kapat_click);
    setCloseButton(*ui.kapat);
    ui.yazilan->setFocus();
}

KeyboardScreen::~KeyboardScreen() = default;

DrawnButton* KeyboardScreen::addButton(const QString& name, const QString& caption, const char* textRole) {
    DrawnButton* button =
        m_make == Make::plain ? static_cast<DrawnButton*>(new CommandButton(ui.abc)) : new vkCommand(ui.abc);
    button->setObjectName(name);
    button->setCaption(caption);
    button->setProperty("textRole", QLatin1StringView(textRole));
    button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    // A press leaves the keyboard in the box.
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

void KeyboardScreen::addKeys() {
    const bool full = m_kind == KeyboardKind::full;
    for (const KeyboardKey& stored : keyboardKeys(m_kind)) {
        const KeyWork work = keyWork(m_kind, stored.index);
        const bool narrowWord = full && work == KeyWork::clear;
        const char* role = work != KeyWork::type ? narrowWord ? "wide" : "keyWord" : full ? "key" : "pad";
        DrawnButton* key = addButton(keyName(stored.index), stored.caption.toString(), role);
        // A plain key has one face, unless it does something of its own.
        const FaceRole face = faceOf(work);
        key->setLook(m_make == Make::plain && face == FaceRole::light ? FaceRole::none : face);
        // Whoever has real keys types with them; ENTER they can't do without.
        if (work != KeyWork::enter)
            key->setFocusPolicy(Qt::NoFocus);
        if (work == KeyWork::erase)
            key->setAccessibleName(u"Geri sil"_s);
        connect(key, &QAbstractButton::clicked, this,
                [this, index = stored.index] { vkCommand1_click(index); });
    }
}

DrawnButton* KeyboardScreen::keyOf(int index) const {
    return ui.abc->findChild<DrawnButton*>(keyName(index), Qt::FindDirectChildrenOnly);
}

void KeyboardScreen::form_load() {
    if (Monitors.empty())
        monitorlerioku();
    layOut();
    ekrandonat(*this);
}

/// Whether the keyboard fills the display.
bool KeyboardScreen::isLarge() const {
    return Monitors.front().width <= widestLarge;
}

void KeyboardScreen::layOut() {
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins({});
    whole->addWidget(ui.ActiveResize1);
    auto* resized = new QVBoxLayout(ui.ActiveResize1);
    resized->setContentsMargins({});
    resized->addWidget(ui.abc);
    const QSize design = m_kind == KeyboardKind::full ? layOutFull() : layOutPad();
    ui.ActiveResize1->setDesignSize(design);
    if (isLarge())
        setWindowState(Qt::WindowMaximized);
}

/// Box and KAPAT above, each as wide as the keys below it.
QSize KeyboardScreen::layOutFull() {
    constexpr int columns = 12;
    constexpr int closeColumns = 2;
    constexpr int largeBox = 84;
    constexpr int windowBox = 64;
    auto* grid = new QGridLayout(ui.abc);
    grid->setContentsMargins(gap, gap, gap, gap);
    grid->setSpacing(gap);
    ui.yazilan->setFixedHeight(isLarge() ? largeBox : windowBox);
    ui.yazilan->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    grid->addWidget(ui.yazilan, 0, 0, 1, columns - closeColumns);
    grid->addWidget(ui.kapat, 0, columns - closeColumns, 1, closeColumns);
    for (int column = 0; column < columns; ++column)
        grid->setColumnStretch(column, 1);

    QHBoxLayout* wideRow = nullptr;
    int row = -1;
    int column = 0;
    for (const KeyboardKey& stored : keyboardKeys(m_kind)) {
        column = stored.row == row ? column + 1 : 0;
        row = stored.row;
        if (stored.share == 1) {
            grid->addWidget(keyOf(stored.index), row + 1, column);
            continue;
        }
        if (!wideRow) {
            wideRow = new QHBoxLayout;
            wideRow->setSpacing(gap);
            grid->addLayout(wideRow, row + 1, 0, 1, columns);
        }
        wideRow->addWidget(keyOf(stored.index), stored.share);
    }
    int line = 0;
    for (const int height : keyboardRows(m_kind))
        grid->setRowStretch(++line, height);
    return isLarge() ? displaySize : fullSize;
}

/// Box and KAPAT beside the keys, or above them where the pad is a window.
QSize KeyboardScreen::layOutPad() {
    constexpr int columns = 3;
    constexpr int sideWidth = 344;
    constexpr int largeBox = 150;
    constexpr int windowBox = 96;
    constexpr int closeHeight = 72;
    const bool large = isLarge();
    auto* grid = new QGridLayout;
    grid->setSpacing(gap);
    QBoxLayout* all = large ? static_cast<QBoxLayout*>(new QHBoxLayout(ui.abc)) : new QVBoxLayout(ui.abc);
    all->setContentsMargins(gap, gap, gap, gap);
    all->setSpacing(gap);
    ui.yazilan->setFixedHeight(large ? largeBox : windowBox);
    ui.yazilan->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    if (large) {
        auto* honeycomb = new Image(ui.abc);
        honeycomb->setSource(u":/honeycomb.svg"_s);
        honeycomb->setFixedSize(264, 227);
        honeycomb->setAttribute(Qt::WA_TransparentForMouseEvents);
        honeycomb->setAccessibleName(u"Petek"_s);
        ui.yazilan->setFixedWidth(sideWidth);
        ui.kapat->setFixedSize(sideWidth, closeHeight);
        for (QWidget* fixed : {static_cast<QWidget*>(ui.yazilan), static_cast<QWidget*>(ui.kapat)})
            fixed->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
        auto* side = new QVBoxLayout;
        side->setSpacing(gap);
        side->addWidget(ui.yazilan);
        side->addStretch(1);
        side->addWidget(honeycomb, 0, Qt::AlignHCenter);
        side->addStretch(1);
        side->addWidget(ui.kapat);
        all->addLayout(side);
        all->addLayout(grid, 1);
    } else {
        grid->addWidget(ui.yazilan, 0, 0, 1, columns - 1);
        grid->addWidget(ui.kapat, 0, columns - 1);
        all->addLayout(grid);
    }
    for (int column = 0; column < columns; ++column)
        grid->setColumnStretch(column, 1);
    int place = 0;
    for (const KeyboardKey& stored : keyboardKeys(m_kind)) {
        grid->addWidget(keyOf(stored.index), stored.row + 1, place % columns);
        ++place;
    }
    int line = 0;
    for (const int height : keyboardRows(m_kind))
        grid->setRowStretch(++line, height);
    return large ? displaySize : padSize;
}

void KeyboardScreen::open(int code, QWidget& opener) {
    m_opener = opener.window();
    m_entered = nullptr;
    const Qt::Alignment place =
        m_kind == KeyboardKind::full ? Qt::AlignBottom | Qt::AlignHCenter : Qt::AlignRight | Qt::AlignVCenter;
    showInFront(*this, {.opener = &opener, .place = place});
    ui.nereye->setText(QString::number(code));
    ui.yazilan->setFocus();
}

void KeyboardScreen::nereye_change() {
    const KeyboardTarget* target = keyboardTarget(m_kind, ui.nereye->text());
    const bool secret = target && target->secret;
    if (!secret && !ui.yazilan->passwordchar().isEmpty())
        ui.yazilan->setText({});  // a password is neither shown nor handed to anybody else
    ui.yazilan->setLabel(target ? target->label.toString() : QString());
    ui.yazilan->setPasswordchar(secret ? u"*"_s : QString());
    ui.yazilan->fitText();
}

void KeyboardScreen::vkCommand1_click(int index) {
    const KeyWork work = keyWork(m_kind, index);
    if (work == KeyWork::enter) {
        enter();
        return;
    }
    ui.yazilan->setFocus();
    // Sets the caret behind the text, too. Nothing can be undone: that would bring a password back.
    ui.yazilan->setText(typedBy(work, index));
}

/// What has been typed once that key has done its work.
QString KeyboardScreen::typedBy(KeyWork work, int index) const {
    const QString text = ui.yazilan->text();
    switch (work) {
        case KeyWork::clear:
            return {};
        case KeyWork::erase:
            return withoutLast(text);
        case KeyWork::blank:
            return text + u' ';
        default:
            break;
    }
    const DrawnButton* key = keyOf(index);
    return key ? text + key->caption() : text;
}

void KeyboardScreen::enter() {
    const KeyboardTarget* target = keyboardTarget(m_kind, ui.nereye->text());
    QWidget* next = target ? handOver(*target, ui.yazilan->text()) : nullptr;
    // A box that was filled out of sight must not have its Enter taken by another.
    const bool filled = target && !target->control.isEmpty();
    m_entered = next || filled ? next : m_opener.data();
    ui.yazilan->setText({});
    if (target) {
        leave();
        return;
    }
    hide();
    giveFocusBack();
}

void KeyboardScreen::kapat_click() {
    leave();
}

// The keyboard may be unloaded by now: its screen's name would load another one.
void KeyboardScreen::giveFocusBack() {
    const KeyboardTarget* target = keyboardTarget(m_kind, ui.nereye->text());
    QWidget* box = target ? visibleBox(*target) : nullptr;
    QWidget* opener = m_opener;
    if (QWidget* entered = m_entered) {
        if (entered->isWindow())
            entered->activateWindow();
        else
            giveFocus(*entered);
        sendKey(Qt::Key_Return, *entered);
    } else if (box) {
        giveFocus(*box);
        sendFocus(*box);
    } else if (opener && opener->isVisible()) {
        opener->activateWindow();
    }
}

}  // namespace kovanix
