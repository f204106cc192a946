#include "desktop/dressedbox.h"

#include <QDialogButtonBox>
#include <QFontMetricsF>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QProxyStyle>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTextLayout>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "desktop/windowplace.h"
#include "widgets/dialogframe.h"
#include "widgets/face.h"
#include "widgets/fittedtext.h"
#include "widgets/gridcell.h"
#include "widgets/look.h"
#include "widgets/pictures.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

// At the design size.
constexpr int narrow = 472;
constexpr int wide = 720;
constexpr int stripHeight = 48;
constexpr int margin = 24;
constexpr int iconSide = 56;
constexpr int iconGap = 20;
constexpr int textPixels = 20;
constexpr int buttonHeight = 60;
constexpr int buttonWidth = 148;
constexpr int buttonPadding = 20;
constexpr int buttonGap = 12;
constexpr int aroundBox = 8;
constexpr int barWidth = 28;

constexpr int smallestTarget = 40;  // pixels, on any display
constexpr double lineSpacing = 1.35;
constexpr int linesOfANarrowBox = 3;
constexpr int mostTitleLines = 40;
constexpr double largestTitleShare = 0.4;  // of the box's height

/// The till's own pictures in place of the toolkit's. They come by the style, because a box that is given a
/// picture has no kind any more.
class BoxStyle : public QProxyStyle {
public:
    BoxStyle(int iconPixels, QObject* parent) : QProxyStyle(u"fusion"_s), m_iconPixels(iconPixels) {
        setParent(parent);
    }

    QIcon standardIcon(StandardPixmap picture, const QStyleOption* option,
                       const QWidget* widget) const override {
        switch (picture) {
            case SP_MessageBoxWarning:
                return sharedIcon(u":/icons/warning.svg"_s);
            case SP_MessageBoxQuestion:
                return sharedIcon(u":/icons/question.svg"_s);
            case SP_MessageBoxCritical:
                return sharedIcon(u":/icons/critical.svg"_s);
            case SP_MessageBoxInformation:
                return sharedIcon(u":/icons/information.svg"_s);
            default:
                return QProxyStyle::standardIcon(picture, option, widget);
        }
    }

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        return metric == PM_MessageBoxIconSize ? m_iconPixels
                                               : QProxyStyle::pixelMetric(metric, option, widget);
    }

private:
    int m_iconPixels;
};

/// A toolkit's button, as message boxes need one, with a face of the drawn family.
class AnswerButton : public QPushButton {
public:
    AnswerButton(const QString& caption, FaceRole face) : m_caption(caption), m_face(face) {
        // What follows an "&" would be underlined, and a scanned letter would press the button.
        setText(QString(caption).replace(QLatin1Char('&'), QLatin1String("&&")));
    }

    const QString& caption() const { return m_caption; }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
        const FaceColors colors = faceColors(m_face);
        const QRectF bounds(rect());
        constexpr double designRadius = 8;
        const double corner = designRadius * height() / buttonHeight;
        paintFace(painter, bounds, corner, isDown() ? colors.pressedTop : colors.top,
                  isDown() ? colors.pressedBottom : colors.bottom, colors.rim, !isDown());
        if (isDown())
            paintPressedShade(painter, bounds, corner);
        m_text.fit(m_caption, font(), FittedText::pixelSizeOf(font(), logicalDpiY()),
                   bounds.adjusted(corner, corner / 2, -corner, -corner / 2), Qt::AlignCenter, 2);
        m_text.paint(painter, colors.ink);
        if (hasFocus())
            paintFocusRing(painter, bounds, corner);
    }

private:
    QString m_caption;
    FaceRole m_face;
    FittedText m_text;
};

}  // namespace

/// A text in lines of one size: broken between its words, and within one that is longer than a line.
class TextLines {
public:
    TextLines(QString text, const QFont& font, int width)
        : m_step(std::ceil(font.pixelSize() * lineSpacing)) {
        text.replace(u"\r\n"_s, u"\n"_s).replace(QLatin1Char('\r'), QLatin1Char('\n'));
        // Control characters have no glyph but a box.
        text.removeIf([](QChar sign) {
            return sign.category() == QChar::Other_Control && sign != u'\n' && sign != u'\t';
        });
        text.replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
        m_layout.setText(text);
        m_layout.setFont(font);
        QTextOption option(Qt::AlignLeft);
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        m_layout.setTextOption(option);
        m_layout.beginLayout();
        double y = 0;
        for (QTextLine line = m_layout.createLine(); line.isValid(); line = m_layout.createLine()) {
            line.setLineWidth(width);
            line.setPosition({0, y + (m_step - line.height()) / 2});
            y += m_step;
        }
        m_layout.endLayout();
    }

    int count() const { return m_layout.lineCount(); }
    int height() const { return heightOf(count()); }
    /// The height of the lines that have room, none of them cut.
    int heightWithin(int room) const {
        return heightOf(std::clamp(static_cast<int>(room / m_step), 1, count()));
    }
    void paint(QPainter& painter) const { m_layout.draw(&painter, {0, 0}); }

private:
    int heightOf(int lines) const { return static_cast<int>(std::ceil(lines * m_step)); }

    QTextLayout m_layout;
    double m_step;
};

DressedBox::DressedBox(QWidget* owner)
    : QMessageBox(owner), m_scale(std::clamp(screenScale(), 0.5, 4.0)), m_frame(new DialogFrame(this)) {
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    setTextFormat(Qt::PlainText);
    setFont(textFont(QFont::Normal));
    setStyle(new BoxStyle(scaled(iconSide), this));
}

DressedBox::~DressedBox() = default;

QPushButton* DressedBox::addAnswer(const QString& caption, bool isDefault) {
    auto* button = new AnswerButton(caption, isDefault ? FaceRole::accent : FaceRole::light);
    button->setFont(textFont(QFont::Medium));
    // The action role is the only one that every desktop's button layout leaves in the order given.
    addButton(button, ActionRole);
    if (isDefault)
        setDefaultButton(button);
    return button;
}

int DressedBox::scaled(int design) const {
    return static_cast<int>(std::lround(design * m_scale));
}

QFont DressedBox::textFont(QFont::Weight weight) const {
    QFont own = font();
    own.setPixelSize(std::max(FittedText::smallestLegible, scaled(textPixels)));
    own.setWeight(weight);
    return own;
}

/// Puts the toolkit's own label and picture, which go by the names that it gives them, and the buttons into
/// the frame.
void DressedBox::dress() {
    m_text = findChild<QLabel*>(u"qt_msgbox_label"_s);
    m_icon = findChild<QLabel*>(u"qt_msgboxex_icon_label"_s);
    m_buttons = findChild<QDialogButtonBox*>();

    m_frame->setScale(m_scale);
    m_frame->setFont(textFont(QFont::Medium));
    m_frame->setCaption(windowTitle());

    m_view = new QScrollArea;
    m_view->setFrameShape(QFrame::NoFrame);
    m_view->setFocusPolicy(Qt::NoFocus);  // the keyboard stays with the buttons
    m_view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_view->verticalScrollBar()->setStyleSheet(scrollBarStyle(m_scale));
    m_view->setWidget(m_text);
    m_view->viewport()->setAutoFillBackground(false);
    m_text->setAutoFillBackground(false);
    m_text->setFont(font());
    m_text->installEventFilter(this);

    m_buttons->setCenterButtons(false);
    m_buttons->layout()->setSpacing(scaled(buttonGap));

    delete layout();
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins({});
    all->addWidget(m_frame);
    auto* rows = new QVBoxLayout(m_frame);
    rows->setContentsMargins(scaled(margin), scaled(margin), scaled(margin), scaled(margin));
    rows->setSpacing(scaled(margin));
    m_message = new QHBoxLayout;
    m_message->setSpacing(scaled(iconGap));
    m_icon->setVisible(icon() != NoIcon);
    m_icon->setFixedSize(scaled(iconSide), scaled(iconSide));
    m_message->addWidget(m_icon, 0, Qt::AlignVCenter);
    m_message->addWidget(m_view, 1, Qt::AlignVCenter);
    rows->addLayout(m_message, 1);
    rows->addWidget(m_buttons);
}

/// @return the width of all of them
int DressedBox::layOutButtons() {
    int width = 0;
    const QList<QAbstractButton*> all = buttons();
    for (QAbstractButton* button : all) {
        const auto& answer = static_cast<const AnswerButton&>(*button);
        const double text = QFontMetricsF(button->font()).horizontalAdvance(answer.caption());
        const QSize size(
            std::max(scaled(buttonWidth), static_cast<int>(std::ceil(text)) + 2 * scaled(buttonPadding)),
            std::max(smallestTarget, scaled(buttonHeight)));
        button->setFixedSize(size);
        width += size.width() + (width > 0 ? scaled(buttonGap) : 0);
    }
    return width;
}

/// What the title takes beside its text.
int DressedBox::titleWidth() const {
    return static_cast<int>(std::ceil(2 * 0.6 * QFontMetricsF(m_frame->font()).height())) + 2;
}

/// Gives the title as many lines as it needs, and smaller letters where those would take too much.
/// @return the strip's height
int DressedBox::fitTitle(int width, int highest) {
    const QFont own = m_frame->font();
    FittedText title;
    title.fit(windowTitle(), own, own.pixelSize(), QRectF(0, 0, width - titleWidth(), highest), Qt::AlignLeft,
              mostTitleLines);
    const int lines = std::max(1, title.lineCount());
    const int height = lines == 1 ? scaled(stripHeight)
                                  : static_cast<int>(std::ceil(title.bounds().height())) + scaled(margin);
    m_frame->setTitleLines(lines);
    m_frame->setTitleHeight(height);
    return windowTitle().isEmpty() ? 0 : height;
}

void DressedBox::arrange() {
    const QWidget* owner = parentWidget();
    const QWindow* ownerWindow = owner ? owner->window()->windowHandle() : nullptr;
    const QRect area = screenArea(ownerWindow);
    const int widest = std::min(scaled(wide), area.width() - 2 * scaled(aroundBox));
    const int highest = area.height() - 2 * scaled(aroundBox);
    const int beside = 2 * scaled(margin) + (icon() == NoIcon ? 0 : scaled(iconSide) + scaled(iconGap));

    const QFontMetricsF titleMetrics(m_frame->font());
    const int title = static_cast<int>(std::ceil(titleMetrics.horizontalAdvance(windowTitle())));
    const int needed = std::max({scaled(narrow), layOutButtons() + 2 * scaled(margin), title + titleWidth()});
    int width = std::min(needed, widest);
    const auto breakInto = [this](int lineWidth) {
        m_lines = std::make_unique<TextLines>(text(), m_text->font(), lineWidth);
    };
    breakInto(width - beside);
    if (m_lines->count() > linesOfANarrowBox) {
        width = widest;
        breakInto(width - beside);
    }

    const int around = fitTitle(width, static_cast<int>(highest * largestTitleShare)) + 3 * scaled(margin) +
                       std::max(smallestTarget, scaled(buttonHeight));
    const int room = highest - around;
    const bool scrolls = m_lines->height() > room;
    int textWidth = width - beside;
    if (scrolls) {
        textWidth -= scaled(barWidth) + scaled(aroundBox);
        breakInto(textWidth);
    }
    m_message->setAlignment(m_icon, scrolls ? Qt::AlignTop : Qt::AlignVCenter);
    m_view->setVerticalScrollBarPolicy(scrolls ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
    m_text->setFixedSize(textWidth, m_lines->height());
    m_view->setFixedHeight(m_lines->heightWithin(room));
    // Now, from the inside out: what they hint at has changed.
    m_buttons->layout()->activate();
    m_frame->layout()->activate();
    setFixedSize(width, around + std::max(scaled(iconSide), m_view->height()));
    move(placeFor(size(), ownerWindow).topLeft());
}

void DressedBox::setVisible(bool visible) {
    if (visible && !m_view)
        dress();
    QMessageBox::setVisible(visible);
}

void DressedBox::showEvent(QShowEvent* event) {
    QMessageBox::showEvent(event);  // gives the box a size of the toolkit's own
    if (!event->spontaneous())
        arrange();
}

bool DressedBox::event(QEvent* event) {
    // The toolkit would go back to its own size; the layout itself has been told already.
    return event->type() == QEvent::LayoutRequest || QMessageBox::event(event);
}

void DressedBox::keyPressEvent(QKeyEvent* event) {
    QScrollBar& bar = *m_view->verticalScrollBar();
    switch (event->key()) {
        case Qt::Key_PageUp:
            return bar.triggerAction(QScrollBar::SliderPageStepSub);
        case Qt::Key_PageDown:
            return bar.triggerAction(QScrollBar::SliderPageStepAdd);
        case Qt::Key_Home:
            return bar.triggerAction(QScrollBar::SliderToMinimum);
        case Qt::Key_End:
            return bar.triggerAction(QScrollBar::SliderToMaximum);
        default:
            QMessageBox::keyPressEvent(event);
    }
}

bool DressedBox::eventFilter(QObject* watched, QEvent* event) {
    if (watched != m_text || event->type() != QEvent::Paint)
        return QMessageBox::eventFilter(watched, event);
    // By itself the label would cut a word that is longer than a line.
    QPainter painter(m_text);
    painter.setPen(roleColor(ColorRole::ink));
    if (m_lines)
        m_lines->paint(painter);
    return true;
}

}  // namespace kovanix
