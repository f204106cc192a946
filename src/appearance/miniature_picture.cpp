#include <QPainter>

#include "appearance/miniature.h"
#include "widgets/face.h"
#include "widgets/look.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr QSizeF screenSize(1024, 768);  // what the places below are stated on

// What no palette touches: the ticket.
const QColor ticketGround(Qt::white);
const QColor ticketBorder(0xB9, 0xC4, 0xD1);
const QColor headings = roleColor(ColorRole::heading);
const QColor ticketLine(0xE6, 0xEB, 0xF2);
const QColor ticketText(0x7B, 0x88, 0x99);

enum class Look { ground, display, field, groundedLabel, label, button, plainButton };

struct Part {
    Look look;
    const char* control;
    QRectF place;
};

// Back to front.
constexpr std::array parts{
    Part{Look::label, "Label4_3", {10, 24, 56, 14}},
    Part{Look::field, "barkod", {71, 8, 242, 46}},
    Part{Look::label, "Label4_6", {319, 24, 52, 14}},
    Part{Look::field, "adet", {377, 8, 145, 46}},
    Part{Look::ground, "Frame1", {8, 624, 570, 56}},
    Part{Look::label, "tarih", {362, 644, 120, 20}},
    Part{Look::label, "saat", {480, 644, 92, 20}},
    Part{Look::ground, "_14", {586, 8, 430, 128}},
    Part{Look::display, "toplam", {590, 12, 422, 120}},
    Part{Look::groundedLabel, "Label4_4", {586, 143, 211, 20}},
    Part{Look::groundedLabel, "Label4_5", {805, 143, 211, 20}},
    Part{Look::display, "verilen", {586, 166, 211, 46}},
    Part{Look::display, "kalan", {805, 166, 211, 46}},
    Part{Look::field, "ver2", {586, 222, 102, 46}},
    Part{Look::button, "vsil", {696, 222, 67, 46}},
    Part{Look::button, "vkCommand5", {771, 222, 102, 46}},
    Part{Look::button, "ver3", {881, 222, 135, 46}},
    Part{Look::plainButton, "kisayol1", {586, 513, 101, 43}},
    Part{Look::plainButton, "kisayol2", {696, 513, 101, 43}},
    Part{Look::plainButton, "kisayol3", {805, 513, 101, 43}},
    Part{Look::plainButton, "kisayol4", {915, 513, 101, 43}},
    Part{Look::button, "kaydet", {8, 688, 84, 72}},
    Part{Look::button, "nakit", {100, 688, 84, 72}},
    Part{Look::button, "satisiptal", {193, 688, 84, 72}},
    Part{Look::button, "fiyatgor", {285, 688, 84, 72}},
    Part{Look::button, "vkCommand2", {377, 688, 84, 72}},
    Part{Look::button, "vkCommand3", {470, 688, 84, 72}},
    Part{Look::button, "urunbulmak", {562, 688, 84, 72}},
    Part{Look::button, "vkCommand1", {747, 688, 84, 72}},
    Part{Look::button, "vkCommand4", {839, 688, 84, 72}},
    Part{Look::button, "kapat", {932, 688, 84, 72}},
};

struct Money {
    QRgb color;
    QRectF place;
    bool coin;
};

constexpr std::array money{
    Money{0xFF7A3FA8, {594, 300, 71, 36}, false}, Money{0xFF2B6CB8, {673, 300, 71, 36}, false},
    Money{0xFFE07B1A, {752, 300, 71, 36}, false}, Money{0xFF2F8F4E, {594, 373, 71, 36}, false},
    Money{0xFFC23B3B, {673, 373, 71, 36}, false}, Money{0xFF8A6A52, {752, 373, 71, 36}, false},
    Money{0xFFD6B04A, {598, 432, 62, 62}, true},  Money{0xFFC89F3C, {677, 432, 62, 62}, true},
    Money{0xFFB4BAC2, {756, 432, 62, 62}, true},
};

class MiniaturePainter {
public:
    MiniaturePainter(QPainter& painter, const QRectF& room, Palette look)
        : m_painter(painter),
          m_room(room),
          m_scaleX(room.width() / screenSize.width()),
          m_scaleY(room.height() / screenSize.height()),
          m_look(look) {}

    void paint();

private:
    QRectF placed(const QRectF& place) const {
        return {m_room.left() + place.left() * m_scaleX, m_room.top() + place.top() * m_scaleY,
                place.width() * m_scaleX, place.height() * m_scaleY};
    }
    QColor color(const QString& control, ColorProperty property) const {
        return colorOf(paletteColor(control, property, m_look));
    }

    void face(const QRectF& place, const QColor& top, const QColor& bottom, const QColor& border);
    void bar(const QRectF& place, const QColor& ink);
    void words(const QRectF& place, const QColor& ink);
    void number(const QRectF& place, const QString& text, const QColor& ink);
    void ground();
    void ticket();
    void cash();
    void part(Look look, const QString& control, const QRectF& place);

    QPainter& m_painter;
    QRectF m_room;
    double m_scaleX;
    double m_scaleY;
    Palette m_look;
};

void MiniaturePainter::face(const QRectF& place, const QColor& top, const QColor& bottom,
                            const QColor& border) {
    paintFace(m_painter, placed(place), 7 * m_scaleY, top, bottom, border, false);
}

/// Words of that size can't be read: a bar in their colour stands for them.
void MiniaturePainter::bar(const QRectF& place, const QColor& ink) {
    const QRectF line = placed(place);
    m_painter.setPen(Qt::NoPen);
    m_painter.setBrush(ink);
    m_painter.drawRoundedRect(line, line.height() / 2, line.height() / 2);
}

void MiniaturePainter::words(const QRectF& place, const QColor& ink) {
    QRectF line(0, 0, place.width() * 0.62, 9);
    line.moveCenter(place.center());
    bar(line, ink);
}

void MiniaturePainter::number(const QRectF& place, const QString& text, const QColor& ink) {
    const QRectF box = placed(place);
    QFont font = m_painter.font();
    font.setWeight(QFont::DemiBold);
    font.setPixelSize(std::max(1, static_cast<int>(box.height() * 0.7)));
    m_painter.setFont(font);
    m_painter.setPen(ink);
    m_painter.drawText(box.adjusted(0, 0, -10 * m_scaleX, 0), Qt::AlignRight | Qt::AlignVCenter, text);
}

void MiniaturePainter::ground() {
    const QString page = u"vkFrame2"_s;
    QLinearGradient gradient(m_room.topLeft(), m_room.bottomLeft());
    gradient.setColorAt(0, color(page, ColorProperty::backcolor1));
    gradient.setColorAt(1, color(page, ColorProperty::backcolor2));
    m_painter.fillRect(m_room, gradient);
}

void MiniaturePainter::ticket() {
    face({8, 62, 570, 554}, ticketGround, ticketGround, ticketBorder);
    m_painter.fillRect(placed({9, 63, 568, 36}), headings);
    bar({19, 77, 52, 8}, Qt::white);
    bar({157, 77, 60, 8}, Qt::white);
    for (const double right : {387.0, 475.0, 567.0})
        bar({right - 34, 77, 34, 8}, Qt::white);
    for (int row = 0; row < 7; ++row) {
        const double y = 112 + 36.0 * row;
        bar({19, y, 112, 9}, ticketText);
        bar({157, y, row % 3 == 1 ? 150.0 : 105.0, 9}, ticketText);
        bar({375, y, 12, 9}, ticketText);
        bar({427, y, 48, 9}, ticketText);
        bar({519, y, 48, 9}, ticketText);
        m_painter.fillRect(placed({9, y + 22, 568, 1.5}), ticketLine);
    }
}

void MiniaturePainter::cash() {
    m_painter.setPen(Qt::NoPen);
    for (const Money& piece : money) {
        m_painter.setBrush(QColor(piece.color));
        if (piece.coin)
            m_painter.drawEllipse(placed(piece.place).center(), 31 * m_scaleY, 31 * m_scaleY);
        else
            m_painter.drawRoundedRect(placed(piece.place), 3 * m_scaleY, 3 * m_scaleY);
    }
}

void MiniaturePainter::part(Look look, const QString& control, const QRectF& place) {
    using enum ColorProperty;
    const auto own = [&](ColorProperty property) { return color(control, property); };
    switch (look) {
        case Look::ground:
            face(place, own(BackColor), own(BackColor), borderFor(own(BackColor), own(BackColor)));
            break;
        case Look::display:
            face(place, own(backcolor1), own(backcolor2), borderFor(own(backcolor1), own(backcolor2)));
            number(place, u"125,50"_s, own(forecolor));
            break;
        case Look::field:
            face(place, own(BackColor), own(BackColor), borderFor(own(BackColor), own(BackColor)));
            bar({place.left() + 10, place.center().y() - 5, place.width() * 0.55, 10}, own(ForeColor));
            break;
        case Look::groundedLabel:
            m_painter.fillRect(placed(place), own(BackColor));
            bar({place.left() + 8, place.center().y() - 4, place.width() * 0.3, 8}, own(ForeColor));
            break;
        case Look::label:
            words(place, own(ForeColor));
            break;
        case Look::button:
            face(place, own(backcolor1), own(backcolor2), borderFor(own(backcolor1), own(backcolor2)));
            words(place, own(forecolor));
            break;
        case Look::plainButton:
            face(place, own(BackColor), own(BackColor), borderFor(own(BackColor), own(BackColor)));
            break;
    }
}

void MiniaturePainter::paint() {
    ground();
    ticket();
    for (const Part& each : parts)
        part(each.look, QLatin1StringView(each.control), each.place);
    cash();
    for (int key = 0; key < 12; ++key) {
        const int row = key / 3;
        part(Look::button, u"tus_%1"_s.arg(key), {847 + 57.0 * (key % 3), 286 + 54.5 * row, 48, 47});
    }
    for (int key = 0; key < 8; ++key) {
        const int row = key / 4;
        part(Look::plainButton, u"kisayol_%1"_s.arg(key),
             {586 + 109.7 * (key % 4), 565 + 62.0 * row, 101, 53});
    }
    // The one button of the row that no palette touches.
    const QRectF customers(655, 688, 84, 72);
    const FaceColors navy = faceColors(FaceRole::navy);
    face(customers, navy.top, navy.bottom, navy.bottom);
    words(customers, Qt::white);
}

}  // namespace

void paintMiniature(QPainter& painter, const QRectF& room, Palette look) {
    MiniaturePainter(painter, room, look).paint();
}

}  // namespace kovanix
