#include "widgets/look.h"

#include <QFont>
#include <QLabel>
#include <QLineEdit>
#include <QMargins>
#include <QWidget>
#include <algorithm>
#include <array>

namespace kovanix {

namespace {

struct RoleColors {
    ColorRole role;
    QRgb light;
    QRgb dark;
};

constexpr std::array table{
    RoleColors{ColorRole::ground, 0xEEF2F7, 0x2A2E34},
    RoleColors{ColorRole::card, 0xFFFFFF, 0x343940},
    RoleColors{ColorRole::edge, 0xC3CEDB, 0x5B6470},
    RoleColors{ColorRole::ink, 0x1B2636, 0xF2F5F8},
    RoleColors{ColorRole::mutedInk, 0x5A6879, 0xB4BEC9},
    RoleColors{ColorRole::stripLeft, 0x3E5675, 0x2C405B},
    RoleColors{ColorRole::stripRight, 0x2C405B, 0x1B2A3D},
    RoleColors{ColorRole::stripInk, 0xFFFFFF, 0xFFFFFF},
    RoleColors{ColorRole::stripNote, 0xE4EBF4, 0xE4EBF4},
    RoleColors{ColorRole::stripRange, 0xFFD27A, 0xFFD27A},
    RoleColors{ColorRole::heading, 0x1F2D3D, 0x14181D},
    RoleColors{ColorRole::headingInk, 0xFFFFFF, 0xFFFFFF},
    RoleColors{ColorRole::sortedHeading, 0x33475F, 0x2C3947},
    RoleColors{ColorRole::sortArrow, 0xF2A51F, 0xF2A51F},
    RoleColors{ColorRole::zebra, 0xF5F8FB, 0x3B4149},
    RoleColors{ColorRole::rowLine, 0xE3E8EE, 0x4A515B},
    RoleColors{ColorRole::selection, 0xD3E4FD, 0x1E4A86},
    RoleColors{ColorRole::selectionBar, 0x1F6FEB, 0x5B9DFF},
    RoleColors{ColorRole::editedRow, 0xFBE3B5, 0x5B4413},
    RoleColors{ColorRole::editedBar, 0xF2A51F, 0xF2A51F},
    RoleColors{ColorRole::addStripLeft, 0x24804A, 0x24804A},
    RoleColors{ColorRole::addStripRight, 0x1B673A, 0x1B673A},
    RoleColors{ColorRole::addRim, 0x1B673A, 0x1B673A},
    RoleColors{ColorRole::editStripLeft, 0xFFC24B, 0xFFC24B},
    RoleColors{ColorRole::editStripRight, 0xF2A51F, 0xF2A51F},
    RoleColors{ColorRole::editStripInk, 0x1B2636, 0x1B2636},
    RoleColors{ColorRole::editRim, 0xC47F00, 0xC47F00},
    RoleColors{ColorRole::filterStrip, 0xC62828, 0x8E1F1F},
    RoleColors{ColorRole::filterCell, 0xA31F1F, 0x6E1515},
    RoleColors{ColorRole::filterInForce, 0x7F1212, 0x4F0D0D},
    RoleColors{ColorRole::filterInk, 0xFFFFFF, 0xFFFFFF},
    RoleColors{ColorRole::filterHint, 0xFFDADA, 0xFFDADA},
    RoleColors{ColorRole::refusedInk, 0xFFD98A, 0xFFD98A},
    RoleColors{ColorRole::refusedRim, 0xFFC24B, 0xFFC24B},
    RoleColors{ColorRole::redWords, 0xA31F1F, 0xFF9A9A},
    RoleColors{ColorRole::footer, 0xE4EBF4, 0x22262B},
    RoleColors{ColorRole::footerTotal, 0x14499F, 0x8FBCFF},
    RoleColors{ColorRole::field, 0xFFFFFF, 0x22262B},
    RoleColors{ColorRole::fieldLine, 0x7C8A9B, 0x8994A1},
    RoleColors{ColorRole::fieldOff, 0xE6EBF1, 0x3B4149},
    RoleColors{ColorRole::quietField, 0xF5F8FB, 0x3B4149},
    RoleColors{ColorRole::focus, 0x125FE0, 0x5B9DFF},
    RoleColors{ColorRole::honey, 0xF2A51F, 0xF2A51F},
    RoleColors{ColorRole::success, 0x1B673A, 0x7BD49B},
    RoleColors{ColorRole::danger, 0xA92E2E, 0xFF9A9A},
    RoleColors{ColorRole::owed, 0xC62828, 0xC62828},
    RoleColors{ColorRole::windowRim, 0x1F2D3D, 0x5B6470},
    RoleColors{ColorRole::disabledTop, 0xE9EDF2, 0x454B53},
    RoleColors{ColorRole::disabledBottom, 0xDFE4EB, 0x3E444B},
    RoleColors{ColorRole::disabledInk, 0x66727F, 0xB4BEC9},
    RoleColors{ColorRole::previewGround, 0x5F6B7A, 0x5F6B7A},
    RoleColors{ColorRole::backdropTop, 0x35496A, 0x35496A},
    RoleColors{ColorRole::backdropBottom, 0x1B2839, 0x1B2839},
};

constexpr bool inOrder() {
    for (size_t i = 0; i < table.size(); ++i) {
        if (table[i].role != static_cast<ColorRole>(i))
            return false;
    }
    return true;
}

struct FaceRow {
    FaceRole role;
    QRgb top;
    QRgb bottom;
    QRgb pressedTop;
    QRgb pressedBottom;
    QRgb rim;
    QRgb rimOnDark;
    QRgb ink;
};

constexpr std::array faces{
    FaceRow{FaceRole::navy, 0x3E5675, 0x2C405B, 0x27394F, 0x1E2D40, 0x22334A, 0x566B87, 0xFFFFFF},
    FaceRow{FaceRole::accent, 0x2A72E5, 0x1A5CCB, 0x1B5FC9, 0x174FA8, 0x14499F, 0x5B9DFF, 0xFFFFFF},
    FaceRow{FaceRole::store, 0x24804A, 0x1B673A, 0x185C36, 0x124A2B, 0x134D2B, 0x134D2B, 0xFFFFFF},
    FaceRow{FaceRole::danger, 0xCC3D3D, 0xA92E2E, 0xA92E2E, 0x862423, 0x86201F, 0x86201F, 0xFFFFFF},
    FaceRow{FaceRole::slate, 0x647186, 0x515D6F, 0x4E5968, 0x404A57, 0x414B5A, 0x7D8998, 0xFFFFFF},
    FaceRow{FaceRole::light, 0xFBFBFB, 0xDCDFE4, 0xC6CED8, 0xD9DFE6, 0xA3ABB6, 0xA3ABB6, 0x1B2636},
    FaceRow{FaceRole::key2, 0xD3DCE8, 0xAEBCCD, 0x9FAEC1, 0xB5C1D0, 0x8495AA, 0x8495AA, 0x1B2636},
    FaceRow{FaceRole::toggle, 0x647186, 0x515D6F, 0x2A72E5, 0x1A5CCB, 0x414B5A, 0x7D8998, 0xFFFFFF},
};

constexpr FaceRow lightOnDark{FaceRole::light, 0x555C66, 0x434950, 0x343940,
                              0x3B4149,        0x8994A1, 0x8994A1, 0xF2F5F8};

struct TextRole {
    QStringView name;
    int pixels;
    QFont::Weight weight;
    QMargins margins = {};
};

constexpr std::array texts{
    TextRole{u"title", 20, QFont::Medium},  // the strip of a window or frame
    TextRole{u"note", 15, QFont::Normal},
    TextRole{u"range", 18, QFont::Medium},
    TextRole{u"heading", 14, QFont::Medium},
    TextRole{u"section", 16, QFont::Medium},
    TextRole{u"label", 15, QFont::Medium},
    TextRole{u"body", 18, QFont::Normal},
    TextRole{u"brand", 30, QFont::Bold},
    TextRole{u"notice", 26, QFont::Medium},  // read in passing
    TextRole{u"field", 20, QFont::Medium, {8, 0, 8, 0}},
    TextRole{u"text", 16, QFont::Normal},
    TextRole{u"person", 20, QFont::Medium},  // a row of the list of users
    // Buttons.
    TextRole{u"command", 14, QFont::Medium},  // of a bottom row, below an icon
    TextRole{u"choice", 16, QFont::Medium},
    TextRole{u"tile", 18, QFont::Medium},
    TextRole{u"wide", 20, QFont::Medium},
    TextRole{u"main", 24, QFont::Bold},  // the one of its screen
    TextRole{u"small", 15, QFont::Medium},
    TextRole{u"key", 30, QFont::Medium},
    TextRole{u"pad", 44, QFont::Medium},
    TextRole{u"keyWord", 26, QFont::Medium},  // a key with a word on it
    // What an on-screen keyboard has typed.
    TextRole{u"typed", 32, QFont::Medium},
    TextRole{u"typedFigure", 52, QFont::Medium},
    // Sums.
    TextRole{u"footer", 28, QFont::Bold},
    TextRole{u"turnover", 34, QFont::Bold},
    TextRole{u"figure", 64, QFont::Bold},
    TextRole{u"sum", 28, QFont::Medium},
    TextRole{u"profit", 32, QFont::Bold},
    TextRole{u"moment", 22, QFont::Medium},
    TextRole{u"figureLabel", 17, QFont::Medium},
    TextRole{u"figureTotal", 18, QFont::Bold},
    // What a cashier types and reads while selling.
    TextRole{u"entry", 24, QFont::Medium, {6, 0, 6, 0}},
    TextRole{u"entryLabel", 16, QFont::DemiBold},
    TextRole{u"digit", 24, QFont::Medium},
    TextRole{u"caption", 13, QFont::DemiBold},  // above a field or an amount
    TextRole{u"ticket", 15, QFont::Normal},
    TextRole{u"corner", 11, QFont::DemiBold},
    TextRole{u"clock", 20, QFont::DemiBold},
    TextRole{u"amount", 26, QFont::DemiBold},
    TextRole{u"price", 40, QFont::Bold},
    TextRole{u"productName", 22, QFont::DemiBold, {8, 8, 8, 8}},
};

void setMargins(QWidget& control, QMargins margins) {
    if (auto* field = qobject_cast<QLineEdit*>(&control))
        field->setTextMargins(margins);
    else
        control.setContentsMargins(margins);
}

constexpr bool facesInOrder() {
    for (size_t i = 0; i < faces.size(); ++i) {
        if (faces[i].role != static_cast<FaceRole>(i + 1))
            return false;
    }
    return true;
}
static_assert(facesInOrder() && faces.size() == static_cast<size_t>(FaceRole::toggle),
              "a row for each face but none, in the roles' order");

static_assert(inOrder() && table.size() == static_cast<size_t>(ColorRole::backdropBottom) + 1,
              "a row for each role, in the roles' order");

}  // namespace

QColor roleColor(ColorRole role, Tone tone) {
    const RoleColors& row = table[static_cast<size_t>(role)];
    return QColor::fromRgb(tone == Tone::light ? row.light : row.dark);
}

FaceColors faceColors(FaceRole role, Tone tone) {
    if (role == FaceRole::none)
        return {};
    const bool dark = tone == Tone::dark;
    const FaceRow& row = dark && role == FaceRole::light ? lightOnDark : faces[static_cast<size_t>(role) - 1];
    return {QColor::fromRgb(row.top),
            QColor::fromRgb(row.bottom),
            QColor::fromRgb(row.pressedTop),
            QColor::fromRgb(row.pressedBottom),
            QColor::fromRgb(dark ? row.rimOnDark : row.rim),
            QColor::fromRgb(row.ink)};
}

void applyTextRoles(QWidget& screen) {
    const QList<QWidget*> controls = screen.findChildren<QWidget*>();
    for (QWidget* control : controls) {
        const QString name = control->property("textRole").toString();
        if (name.isEmpty())
            continue;
        const auto role = std::ranges::find(texts, QStringView(name), &TextRole::name);
        if (role == texts.end())
            qFatal("%s has the unknown text role %s", qUtf8Printable(control->objectName()),
                   qUtf8Printable(name));
        QFont font = control->font();
        font.setPixelSize(role->pixels);
        font.setWeight(role->weight);
        control->setFont(font);
        if (!role->margins.isNull())
            setMargins(*control, role->margins);
    }
}

}  // namespace kovanix
