#include <QPainter>
#include <cmath>
#include <cstring>

#include "appearance/miniature.h"
#include "widgets/face.h"
#include "widgets/look.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr QSizeF screenSize(1024, 768);  // what the places below are stated on

enum class Look { ground, total, amount, field, label, button, commandButton, plainButton };

/// A line of the ticket: how long its name is in the picture, and its figures.
struct Line {
    double name;
    const char* count;
    const char* price;
    const char* sum;
};

constexpr std::array lines{
    Line{86, "2", "15,00", "30,00"},    Line{116, "1", "50,90", "50,90"},
    Line{70, "1,25", "59,90", "74,88"}, Line{126, "1", "89,00", "89,00"},
    Line{83, "0,78", "49,90", "38,92"}, Line{130, "1", "122,90", "122,90"},
    Line{100, "3", "260,90", "782,70"}, Line{41, "1", "20,00", "20,00"},
};

struct Part {
    Look look;
    const char* control;
    QRectF place;
};

// Back to front.
constexpr std::array parts{
    Part{Look::label, "Label4_3", {10, 24, 54, 14}},
    Part{Look::field, "barkod", {71, 8, 253, 46}},
    Part{Look::label, "Label4_6", {384, 24, 50, 14}},
    Part{Look::field, "adet", {440, 8, 134, 46}},
    Part{Look::ground, "Frame1", {8, 624, 570, 56}},
    Part{Look::label, "tarih", {362, 648, 112, 20}},
    Part{Look::label, "saat", {482, 648, 86, 20}},
    Part{Look::ground, "_14", {586, 8, 430, 128}},
    Part{Look::total, "toplam", {589, 11, 424, 122}},
    Part{Look::amount, "verilen", {586, 144, 210, 70}},
    Part{Look::amount, "kalan", {805, 144, 211, 70}},
    Part{Look::field, "ver2", {586, 222, 136, 48}},
    Part{Look::button, "vsil", {730, 222, 62, 48}},
    Part{Look::button, "vkCommand5", {800, 222, 104, 48}},
    Part{Look::button, "ver3", {912, 222, 104, 48}},
    Part{Look::plainButton, "kisayol1", {586, 513, 101, 43}},
    Part{Look::plainButton, "kisayol2", {696, 513, 101, 43}},
    Part{Look::plainButton, "kisayol3", {805, 513, 101, 43}},
    Part{Look::plainButton, "kisayol4", {915, 513, 101, 43}},
    Part{Look::commandButton, "kaydet", {8, 688, 84, 72}},
    Part{Look::commandButton, "nakit", {100, 688, 84, 72}},
    Part{Look::commandButton, "satisiptal", {193, 688, 84, 72}},
    Part{Look::commandButton, "fiyatgor", {285, 688, 84, 72}},
    Part{Look::commandButton, "vkCommand2", {377, 688, 84, 72}},
    Part{Look::commandButton, "vkCommand3", {470, 688, 84, 72}},
    Part{Look::commandButton, "urunbulmak", {562, 688, 84, 72}},
    Part{Look::commandButton, "vkCommand1", {747, 688, 84, 72}},
    Part{Look::commandButton, "vkCommand4", {839, 688, 84, 72}},
    Part{Look::commandButton, "kapat", {932, 688, 84, 72}},
};

struct Money {
    QRgb color;
    QRectF place;
    const char* worth;  ///< of a note; none on a coin
};

constexpr std::array money{
    Money{0xFF7A3FA8, {590, 278, 102, 51}, "200"}, Money{0xFF2B6CB8, {707, 278, 102, 51}, "100"},
    Money{0xFFE07B1A, {590, 336, 102, 51}, "50"},  Money{0xFF2F8F4E, {707, 336, 102, 51}, "20"},
    Money{0xFFC23B3B, {590, 394, 102, 51}, "10"},  Money{0xFF8A6A52, {707, 394, 102, 51}, "5"},
    Money{0xFFD6B04A, {595, 453, 52, 52}, ""},     Money{0xFFC89F3C, {673, 453, 52, 52}, ""},
    Money{0xFFB4BAC2, {751, 453, 52, 52}, ""},
};

constexpr std::array keyCaptions{"7", "8", "9", "4", "5", "6", "1", "2", "3", "0", ",", ""};

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
    /// A colour that no palette names, in the tone of this one's page.
    QColor tinted(ColorRole role) const {
        const QColor page = color(u"vkFrame2"_s, ColorProperty::backcolor1);
        return roleColor(role, page.lightness() < 128 ? Tone::dark : Tone::light);
    }
    QColor color(const QString& control, ColorProperty property) const {
        return colorOf(paletteColor(control, property, m_look));
    }

    void face(const QRectF& place, const QColor& top, const QColor& bottom, const QColor& border);
    void bar(const QRectF& place, const QColor& ink);
    void words(const QRectF& place, const QColor& ink);
    void text(const QRectF& place, const QString& text, const QColor& ink, double height,
              Qt::Alignment alignment = Qt::AlignCenter);
    void ticketLine(double top, const Line& line, bool shaded);
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

/// @param height  of the letters, in pixels of the screen that is shown
void MiniaturePainter::text(const QRectF& place, const QString& text, const QColor& ink, double height,
                            Qt::Alignment alignment) {
    QFont font = m_painter.font();
    font.setWeight(QFont::DemiBold);
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(height * m_scaleY))));
    m_painter.setFont(font);
    m_painter.setPen(ink);
    m_painter.drawText(placed(place), alignment, text);
}

void MiniaturePainter::ground() {
    const QString page = u"vkFrame2"_s;
    QLinearGradient gradient(m_room.topLeft(), m_room.bottomLeft());
    gradient.setColorAt(0, color(page, ColorProperty::backcolor1));
    gradient.setColorAt(1, color(page, ColorProperty::backcolor2));
    m_painter.fillRect(m_room, gradient);
}

void MiniaturePainter::ticketLine(double top, const Line& line, bool shaded) {
    const QColor ink = tinted(ColorRole::ink);
    if (shaded)
        m_painter.fillRect(placed({9, top, 568, 36}), tinted(ColorRole::zebra));
    m_painter.fillRect(placed({9, top + 35, 568, 1}), tinted(ColorRole::rowLine));
    bar({19, top + 14, 109, 8}, ink);
    bar({141, top + 14, line.name, 8}, ink);
    const auto figure = [&](double right, const char* text) {
        const double width = 8.0 * static_cast<double>(std::strlen(text));
        bar({right - width, top + 14, width, 8}, ink);
    };
    figure(371, line.count);
    figure(469, line.price);
    figure(571, line.sum);
}

void MiniaturePainter::ticket() {
    const QColor ground = tinted(ColorRole::card);
    face({8, 62, 570, 554}, ground, ground, tinted(ColorRole::edge));
    m_painter.fillRect(placed({9, 63, 568, 36}), tinted(ColorRole::heading));
    const QColor headingInk = tinted(ColorRole::headingInk);
    bar({19, 77, 57, 8}, headingInk);
    bar({141, 77, 62, 8}, headingInk);
    for (const double right : {371.0, 469.0, 571.0})
        bar({right - 32, 77, 32, 8}, headingInk);
    double top = 99;
    for (const Line& each : lines) {
        ticketLine(top, each, (&each - lines.data()) % 2 == 0);
        top += 36;
    }
    // The entry row.
    m_painter.fillRect(placed({9, top, 5, 36}), tinted(ColorRole::selectionBar));
    bar({541, top + 14, 30, 8}, tinted(ColorRole::edge));
}

void MiniaturePainter::cash() {
    for (const Money& piece : money) {
        const QRectF place = placed(piece.place);
        m_painter.setPen(Qt::NoPen);
        m_painter.setBrush(QColor(piece.color));
        if (!*piece.worth) {
            m_painter.drawEllipse(place.center(), 26 * m_scaleY, 26 * m_scaleY);
            m_painter.setBrush(QColor(piece.color).lighter(135));
            m_painter.drawEllipse(place.center(), 18 * m_scaleY, 18 * m_scaleY);
            continue;
        }
        m_painter.drawRoundedRect(place, 4 * m_scaleY, 4 * m_scaleY);
        m_painter.setBrush(QColor(255, 255, 255, 190));
        m_painter.drawEllipse(placed({piece.place.right() - 24, piece.place.center().y(), 0, 0}).topLeft(),
                              14 * m_scaleY, 14 * m_scaleY);
        text(piece.place.adjusted(0, 0, -34, 0), QString::fromLatin1(piece.worth), Qt::white, 30);
    }
}

void MiniaturePainter::part(Look look, const QString& control, const QRectF& place) {
    using enum ColorProperty;
    const auto own = [&](ColorProperty property) { return color(control, property); };
    const auto buttonFace = [&] {
        face(place, own(backcolor1), own(backcolor2), borderFor(own(backcolor1), own(backcolor2)));
    };
    const auto plainFace = [&] {
        face(place, own(BackColor), own(BackColor), borderFor(own(BackColor), own(BackColor)));
    };
    switch (look) {
        case Look::ground:
            plainFace();
            break;
        case Look::total:
            buttonFace();
            bar({place.left() + 12, place.top() + 12, 106, 8}, own(forecolor));
            text(place.adjusted(0, 18, -14, 0), u"1241,80"_s, own(forecolor), 82,
                 Qt::AlignRight | Qt::AlignVCenter);
            break;
        case Look::amount:
            buttonFace();
            bar({place.left() + 11, place.top() + 12, 52, 8}, own(forecolor));
            text(place.adjusted(0, 24, -12, 0), u"600,00"_s, own(forecolor), 32,
                 Qt::AlignRight | Qt::AlignVCenter);
            break;
        case Look::field:
            plainFace();
            break;
        case Look::label:
            words(place, own(ForeColor));
            break;
        case Look::button:
            buttonFace();
            words(place, own(forecolor));
            break;
        case Look::commandButton:
            buttonFace();
            m_painter.setPen(QPen(own(forecolor), 2 * m_scaleY));
            m_painter.setBrush(Qt::NoBrush);
            m_painter.drawEllipse(placed({place.center().x(), place.top() + 22, 0, 0}).topLeft(),
                                  8 * m_scaleY, 8 * m_scaleY);
            words(place.translated(0, 12), own(forecolor));
            break;
        case Look::plainButton:
            plainFace();
            words(place, inkOn(Qt::black, own(BackColor), own(BackColor)));
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
        const QString control = u"tus_%1"_s.arg(key);
        const QRectF place(822 + 67.5 * (key % 3), 278 + 59.0 * row, 59, 51);
        face(place, color(control, ColorProperty::backcolor1), color(control, ColorProperty::backcolor2),
             borderFor(color(control, ColorProperty::backcolor1), color(control, ColorProperty::backcolor2)));
        text(place, QString::fromLatin1(keyCaptions[static_cast<size_t>(key)]),
             color(control, ColorProperty::forecolor), 30);
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
    words(customers.translated(0, 12), Qt::white);
    // The pad's key beside the barcode, and the mark of the brand: none of the palette's, either.
    const FaceColors light = faceColors(FaceRole::light);
    face({332, 9, 44, 44}, light.top, light.bottom, light.rim);
    face({21, 635, 115, 34}, QColor(0x2A, 0x2E, 0x36), QColor(0x2A, 0x2E, 0x36), QColor(0x2A, 0x2E, 0x36));
    bar({58, 648, 68, 9}, Qt::white);
    bar({30, 645, 16, 15}, roleColor(ColorRole::honey));
}

}  // namespace

void paintMiniature(QPainter& painter, const QRectF& room, Palette look) {
    MiniaturePainter(painter, room, look).paint();
}

}  // namespace kovanix
