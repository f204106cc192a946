#include "yedek/lastcopycard.h"

#include <QLabel>
#include <QLinearGradient>
#include <QPainter>
#include <QVBoxLayout>

#include "widgets/fittedlabel.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

namespace {

FaceRole faceOf(LastCopyCard::State state) {
    switch (state) {
        case LastCopyCard::State::good:
            return FaceRole::store;
        case LastCopyCard::State::bad:
            return FaceRole::danger;
        case LastCopyCard::State::unknown:
            break;
    }
    return FaceRole::navy;
}

}  // namespace

LastCopyCard::LastCopyCard(QWidget* parent)
    : QWidget(parent), m_words(new FittedLabel(this)), m_hint(new QLabel(this)) {
    auto* const layout = new QVBoxLayout(this);
    constexpr int margin = 16;
    layout->setContentsMargins(margin, margin, margin, margin);
    m_words->setObjectName(u"sonyedek"_s);
    m_words->setProperty("textRole", u"turnover"_s);
    m_words->setAlignment(Qt::AlignCenter);
    m_hint->setObjectName(u"sonyedekaciklama"_s);
    m_hint->setProperty("textRole", u"text"_s);
    m_hint->setAlignment(Qt::AlignCenter);
    m_hint->setWordWrap(true);
    layout->addWidget(m_words, 1);
    layout->addWidget(m_hint);
    for (QLabel* const label : {static_cast<QLabel*>(m_words), m_hint}) {
        QPalette colors = label->palette();
        colors.setColor(QPalette::WindowText, faceColors(FaceRole::store).ink);
        label->setPalette(colors);
    }
}

void LastCopyCard::setState(State state, const QString& words, const QString& hint) {
    m_state = state;
    m_words->setText(words);
    m_hint->setText(hint);
    m_hint->setVisible(!hint.isEmpty());
    setAccessibleName(words);
    setAccessibleDescription(hint);
    update();
}

void LastCopyCard::paintEvent(QPaintEvent* /*event*/) {
    constexpr qreal radius = 8;
    const FaceColors colors = faceColors(faceOf(m_state));
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient ground(0, 0, 0, height());
    ground.setColorAt(0, colors.top);
    ground.setColorAt(1, colors.bottom);
    painter.setPen(colors.rim);
    painter.setBrush(ground);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
}

}  // namespace kovanix::yedek
