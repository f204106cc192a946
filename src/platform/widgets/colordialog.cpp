#include "widgets/colordialog.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "widgets/activeresize.h"
#include "widgets/dialogframe.h"
#include "widgets/drawnbutton.h"
#include "widgets/face.h"
#include "widgets/keyfilter.h"
#include "widgets/look.h"
#include "widgets/paintedhint.h"
#include "widgets/pictures.h"
#include "widgets/pressable.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

// At the design size.
constexpr QSize design(864, 592);
constexpr int gap = 16;
constexpr int smallGap = 10;
constexpr int swatchSide = 56;
constexpr int swatchRim = 5;  // around it, for the ring of the chosen one
constexpr int fieldHeight = 48;
constexpr int stepButtonWidth = 52;
constexpr int labelWidth = 24;
constexpr QSize buttonSize(200, 60);
constexpr int iconSide = 24;
constexpr double radius = 8;

constexpr int columns = 8;
constexpr int largestValue = 255;
constexpr int stepDelay = 400;  // milliseconds that a step button is held until it goes on by itself
constexpr int stepPause = 30;   // and between two of its steps then

constexpr std::array<QRgb, 8> greys{0xFFFFFF, 0xE0E0E0, 0xBDBDBD, 0x9E9E9E,
                                    0x616161, 0x424242, 0x212121, 0x000000};
constexpr std::array<QRgb, 16> hues{0xB71C1C, 0xD84315, 0xEF6C00, 0xF2A51F, 0xFDD835, 0x7CB342,
                                    0x2E7D32, 0x00897B, 0x00ACC1, 0x1F6FEB, 0x1A3FAF, 0x5E35B1,
                                    0x8E24AA, 0xC2185B, 0x795548, 0x546E7A};
constexpr double paleShare = 0.55;
constexpr std::array<QRgb, 8> pure{0xFF0000, 0xFF8000, 0xFFFF00, 0x00FF00,
                                   0x00FFFF, 0x0000FF, 0x8000FF, 0xFF00FF};

/// What can be chosen with one press, row by row: greys, hues dark and pale, and the pure colours.
QList<QColor> swatchColors() {
    QList<QColor> all;
    for (const QRgb grey : greys)
        all.append(QColor::fromRgb(grey));
    for (const QRgb hue : hues)
        all.append(QColor::fromRgb(hue));
    for (const QRgb hue : hues)
        all.append(mixed(QColor::fromRgb(hue), Qt::white, paleShare));
    for (const QRgb color : pure)
        all.append(QColor::fromRgb(color));
    return all;
}

/// A colour in words that can be read out: what the three fields then hold.
QString nameOf(const QColor& color) {
    return u"Kırmızı %1, yeşil %2, mavi %3"_s.arg(color.red()).arg(color.green()).arg(color.blue());
}

vkCommand* command(FaceRole face, const QString& caption, const char* textRole) {
    auto* button = new vkCommand;
    button->setLook(face);
    button->setCaption(caption);
    button->setProperty("textRole", QLatin1String(textRole));
    return button;
}

}  // namespace

/// One colour that can be pressed.
class ColorSwatch : public Pressable<QAbstractButton> {
public:
    explicit ColorSwatch(const QColor& color) : m_color(color) {
        setCheckable(true);
        setFocusPolicy(Qt::ClickFocus);
        setAccessibleName(nameOf(color));
        setMinimumSize(swatchSide + 2 * swatchRim, swatchSide + 2 * swatchRim);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    }

    const QColor& color() const { return m_color; }
    QSize sizeHint() const override { return minimumSize(); }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        const double scale = designScale(*this);
        const double rim = swatchRim * scale;
        const QRectF face = QRectF(rect()).adjusted(rim, rim, -rim, -rim);
        QColor edge = roleColor(ColorRole::ink);
        edge.setAlphaF(0.45F);
        painter.setPen(QPen(edge, 1));
        painter.setBrush(isDown() ? mixed(m_color, blackOrWhite(m_color), 0.15) : m_color);
        painter.drawRoundedRect(face.adjusted(0.5, 0.5, -0.5, -0.5), radius * scale, radius * scale);
        if (isChecked())
            paintMark(painter, face, scale);
        if (hasFocus())
            paintFocusRing(painter, face, radius * scale);
    }

private:
    void paintMark(QPainter& painter, const QRectF& face, double scale) const {
        const double outside = 3.5 * scale;
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(roleColor(ColorRole::focus), 3 * scale));
        painter.drawRoundedRect(face.adjusted(-outside, -outside, outside, outside), (radius + 3.5) * scale,
                                (radius + 3.5) * scale);
        const double side = iconSide * scale;
        const QPixmap check =
            sharedIcon(u":/icons/check.svg"_s).pixmap(QSizeF(side, side).toSize(), devicePixelRatioF());
        painter.drawPixmap(face.center() - QPointF(side / 2, side / 2),
                           inColor(check, blackOrWhite(m_color)));
    }

    QColor m_color;
};

/// The chosen colour above the one of before.
class ColorPreview : public QWidget {
public:
    explicit ColorPreview(const QColor& former) : m_former(former) {
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    }

    void setColor(const QColor& color) {
        m_color = color;
        setAccessibleDescription(u"Yeni: %1; önceki: %2"_s.arg(nameOf(color), nameOf(m_former)));
        update();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const double corner = radius * designScale(*this);
        const QRectF face = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
        QPainterPath shape;
        shape.addRoundedRect(face, corner, corner);
        QPainterPath below;
        below.addRect(face.adjusted(0, face.height() * 2 / 3, 0, 0));
        painter.fillPath(shape, m_color);
        painter.fillPath(shape.intersected(below), m_former);
        painter.setPen(QPen(roleColor(ColorRole::edge), 1));
        const double border = std::floor(below.boundingRect().top()) + 0.5;
        painter.drawLine(QPointF(face.left(), border), QPointF(face.right(), border));
        painter.drawPath(shape);
    }

private:
    QColor m_former;
    QColor m_color;
};

ColorDialog::ColorDialog(const QColor& former, QWidget* parent) : QDialog(parent) {
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    setWindowTitle(u"Renk"_s);

    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins({});
    auto* container = new ActiveResize;
    container->setDesignSize(design);
    whole->addWidget(container);
    auto* inside = new QVBoxLayout(container);
    inside->setContentsMargins({});
    auto* frame = new DialogFrame(container);
    frame->setProperty("textRole", u"title"_s);
    frame->setCaption(windowTitle());
    inside->addWidget(frame);

    auto* rows = new QVBoxLayout(frame);
    rows->setContentsMargins(gap - swatchRim, gap - swatchRim, gap, gap);
    rows->setSpacing(gap - swatchRim);
    auto* choice = new QHBoxLayout;
    choice->setSpacing(gap - swatchRim);
    choice->addWidget(makeSwatches(), 16);
    choice->addWidget(makeValues(former), 9);
    rows->addLayout(choice, 1);
    rows->addWidget(makeButtons());

    applyTextRoles(*this);
    setCurrentColor(former);
    m_ok->setFocus();
}

ColorDialog::~ColorDialog() {
    // While everything stands: a field that loses the keyboard tells so.
    hide();
}

QSize ColorDialog::sizeHint() const {
    return design;
}

QWidget* ColorDialog::makeSwatches() {
    auto* all = new QWidget;
    auto* grid = new QGridLayout(all);
    grid->setContentsMargins({});
    grid->setSpacing(0);
    const QList<QColor> colors = swatchColors();
    for (const QColor& color : colors) {
        auto* swatch = new ColorSwatch(color);
        const int index = static_cast<int>(m_swatches.size());
        swatch->setObjectName(u"swatch_%1"_s.arg(index));
        connect(swatch, &QAbstractButton::clicked, this, [this, color] { setCurrentColor(color); });
        swatch->installEventFilter(this);
        grid->addWidget(swatch, index / columns, index % columns);
        m_swatches.append(swatch);
    }
    return all;
}

QWidget* ColorDialog::makeValues(const QColor& former) {
    auto* all = new QWidget;
    auto* rows = new QVBoxLayout(all);
    rows->setContentsMargins(0, swatchRim, 0, swatchRim);
    rows->setSpacing(smallGap);
    m_preview = new ColorPreview(former);
    m_preview->setObjectName(u"preview"_s);
    rows->addWidget(m_preview, 1);
    rows->addWidget(new PaintedHint(QString(), u"üstte yeni, altta önceki renk"_s));
    addChannel(*rows, red, u"K"_s, u"Kırmızı"_s);
    addChannel(*rows, green, u"Y"_s, u"Yeşil"_s);
    addChannel(*rows, blue, u"M"_s, u"Mavi"_s);
    return all;
}

void ColorDialog::addChannel(QVBoxLayout& rows, Channel channel, const QString& letter, const QString& name) {
    auto* row = new QHBoxLayout;
    row->setSpacing(gap / 2);
    auto* label = new QLabel(letter);
    label->setProperty("textRole", u"body"_s);
    label->setFixedWidth(labelWidth);
    QPalette quiet = label->palette();
    quiet.setColor(QPalette::WindowText, roleColor(ColorRole::mutedInk));
    label->setPalette(quiet);
    row->addWidget(label);

    const auto addStep = [&](const QString& sign, const QString& what, const QString& object, int step) {
        vkCommand* button = command(FaceRole::light, sign, "digit");
        button->setObjectName(object + letter);
        button->setAccessibleName(name + u' ' + what);
        button->setFixedSize(stepButtonWidth, fieldHeight);
        button->setAutoRepeat(true);
        button->setAutoRepeatDelay(stepDelay);
        button->setAutoRepeatInterval(stepPause);
        connect(button, &QAbstractButton::clicked, this,
                [this, channel, step] { setValue(channel, value(channel) + step); });
        row->addWidget(button);
    };
    addStep(u"−"_s, u"azalt"_s, u"less"_s, -1);
    auto* field = new QLineEdit;
    field->setObjectName(u"value"_s + letter);
    field->setAccessibleName(name);
    field->setProperty("textRole", u"field"_s);
    field->setMinimumHeight(fieldHeight);
    field->setMinimumWidth(fieldHeight);
    field->setAlignment(Qt::AlignRight);
    field->setMaxLength(3);
    connect(field, &QLineEdit::textEdited, this, [this, channel] { typed(channel); });
    connect(field, &QLineEdit::editingFinished, this, [this] { choose(m_color, nullptr); });
    new KeyFilter(
        *field,
        [this, channel](int key) {
            if (key == Qt::Key_Escape)
                reject();  // as a character it is none of the field's
            else if (key == Qt::Key_Return)
                leaveField(channel);
            else if (key == Qt::Key_Up || key == Qt::Key_Down)
                setValue(channel, value(channel) + (key == Qt::Key_Up ? 1 : -1));
        },
        onlyCharacters(u"0123456789"));
    m_fields[channel] = field;
    row->addWidget(field, 1);
    addStep(u"+"_s, u"artır"_s, u"more"_s, 1);
    rows.addLayout(row);
}

QWidget* ColorDialog::makeButtons() {
    auto* all = new QWidget;
    auto* row = new QHBoxLayout(all);
    row->setContentsMargins({});
    row->setSpacing(gap * 3 / 4);
    row->addStretch();
    const auto add = [&](FaceRole face, const QString& caption, const QString& object, const QString& icon) {
        vkCommand* button = command(face, caption, "wide");
        button->setObjectName(object);
        button->setIconFile(icon);
        button->setIconSize({iconSide, iconSide});
        button->setIconPlace(DrawnButton::IconPlace::beside);
        button->setFixedSize(buttonSize);
        row->addWidget(button);
        return button;
    };
    m_ok = add(FaceRole::accent, u"Tamam"_s, u"ok"_s, u":/icons/check.svg"_s);
    connect(m_ok, &QAbstractButton::clicked, this, &QDialog::accept);
    const vkCommand* cancel = add(FaceRole::light, u"Vazgeç"_s, u"cancel"_s, u":/icons/x.svg"_s);
    connect(cancel, &QAbstractButton::clicked, this, &QDialog::reject);
    return all;
}

int ColorDialog::value(Channel channel) const {
    return channel == red ? m_color.red() : channel == green ? m_color.green() : m_color.blue();
}

void ColorDialog::setValue(Channel channel, int value) {
    std::array<int, channels> all{m_color.red(), m_color.green(), m_color.blue()};
    all[channel] = std::clamp(value, 0, largestValue);
    choose(QColor(all[red], all[green], all[blue]), nullptr);
}

void ColorDialog::setCurrentColor(const QColor& color) {
    choose(color.toRgb(), nullptr);
}

/// @param untouched  a field that is being typed in
void ColorDialog::choose(const QColor& color, const QLineEdit* untouched) {
    m_color = QColor(color.red(), color.green(), color.blue());
    m_preview->setColor(m_color);
    for (const Channel channel : {red, green, blue}) {
        if (m_fields[channel] != untouched)
            m_fields[channel]->setText(QString::number(value(channel)));
    }
    const auto same = std::ranges::find(m_swatches, m_color, &ColorSwatch::color);
    for (ColorSwatch* swatch : std::as_const(m_swatches)) {
        const bool chosen = same != m_swatches.cend() && swatch == *same;
        swatch->setChecked(chosen);
        const bool stop = same == m_swatches.cend() ? swatch == m_swatches.front() : chosen;
        swatch->setFocusPolicy(stop ? Qt::StrongFocus : Qt::ClickFocus);
    }
}

void ColorDialog::typed(Channel channel) {
    const QLineEdit* field = m_fields[channel];
    bool isNumber = false;
    const int number = field->text().toInt(&isNumber);
    if (!isNumber || number < 0)
        return;  // nothing yet: the value of before stays, and comes back when the field is left
    std::array<int, channels> all{m_color.red(), m_color.green(), m_color.blue()};
    all[channel] = std::min(number, largestValue);
    choose(QColor(all[red], all[green], all[blue]), number > largestValue ? nullptr : field);
}

void ColorDialog::leaveField(Channel channel) {
    if (channel == blue)
        m_ok->setFocus(Qt::TabFocusReason);
    else
        m_fields[channel + 1]->setFocus(Qt::TabFocusReason);
}

void ColorDialog::moveFrom(ColorSwatch* swatch, int byColumns, int byRows) {
    const auto index = static_cast<int>(m_swatches.indexOf(swatch));
    const int column = index % columns + byColumns;
    const int row = index / columns + byRows;
    const int rows = static_cast<int>(m_swatches.size()) / columns;
    if (column < 0 || column >= columns || row < 0 || row >= rows)
        return;
    ColorSwatch* next = m_swatches[row * columns + column];
    setCurrentColor(next->color());
    next->setFocus(Qt::TabFocusReason);
}

bool ColorDialog::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    auto* swatch = static_cast<ColorSwatch*>(watched);
    switch (static_cast<const QKeyEvent&>(*event).key()) {
        case Qt::Key_Left:
            moveFrom(swatch, -1, 0);
            return true;
        case Qt::Key_Right:
            moveFrom(swatch, 1, 0);
            return true;
        case Qt::Key_Up:
            moveFrom(swatch, 0, -1);
            return true;
        case Qt::Key_Down:
            moveFrom(swatch, 0, 1);
            return true;
        default:
            return QDialog::eventFilter(watched, event);
    }
}

}  // namespace kovanix
