#include "widgets/timepanel.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QVBoxLayout>

#include "values/lettercase.h"
#include "widgets/drawnbutton.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

// At the design size.
constexpr int keyWidth = 54;
constexpr int keyHeight = 48;
constexpr int keyGap = 6;
constexpr int margin = 12;
constexpr int spacing = 10;

/// A key that leaves the arrows to its panel.
class TimeKey : public vkCommand {
public:
    using vkCommand::vkCommand;

protected:
    void keyPressEvent(QKeyEvent* event) override {
        const int key = event->key();
        if (key >= Qt::Key_Home && key <= Qt::Key_PageDown)
            event->ignore();
        else
            vkCommand::keyPressEvent(event);
    }
};

}  // namespace

TimePanel::TimePanel(QWidget& field, Part part, int current)
    : DropPanel(field), m_columns(part == Part::hour ? 6 : 10), m_current(current) {
    const bool hours = part == Part::hour;
    setCaption(hours ? u"SAAT SEİŞİN"_s : u"DAKİKA SEİŞİN"_s);
    setTitleNote(lowerTurkish(field.accessibleName()));

    auto* keys = new QGridLayout;
    keys->setSpacing(scaled(keyGap));
    for (int number = 0; number < (hours ? 24 : 60); ++number) {
        auto* key = new TimeKey(this);
        key->setLook(number == current ? FaceRole::accent : FaceRole::light);
        key->setFont(textFont(20, QFont::Medium));
        key->setCaption(QString::number(number));
        key->setAccessibleName((hours ? u"saat "_s : u"dakika "_s) + QString::number(number));
        key->setFixedSize(target(keyWidth), target(keyHeight));
        connect(key, &QAbstractButton::clicked, this, [this, number] { Q_EMIT chosen(number); });
        keys->addWidget(key, number / m_columns, number % m_columns);
        m_keys.append(key);
    }
    m_close = new TimeKey(this);
    m_close->setLook(FaceRole::slate);
    m_close->setFont(textFont(16, QFont::Medium));
    m_close->setIconFile(u":/icons/x.svg"_s);
    m_close->setIconSize({24, 24});
    m_close->setIconPlace(DrawnButton::IconPlace::beside);
    m_close->setCaption(u"KAPAT"_s);
    m_close->setFixedHeight(target(keyHeight));
    connect(m_close, &QAbstractButton::clicked, this, &DropPanel::left);

    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(scaled(margin), scaled(spacing), scaled(margin), scaled(margin));
    rows->setSpacing(scaled(spacing));
    rows->addLayout(keys);
    rows->addWidget(m_close);
}

TimePanel::~TimePanel() = default;

QList<QWidget*> TimePanel::stops() const {
    return {m_keys[m_current], m_close};
}

void TimePanel::goTo(int number) {
    if (number < 0 || number >= m_keys.size())
        return;
    m_current = number;
    m_keys[m_current]->setFocus(Qt::OtherFocusReason);
}

void TimePanel::keyPressEvent(QKeyEvent* event) {
    const bool plain = !(event->modifiers() & Qt::AltModifier);
    event->accept();
    switch (plain ? event->key() : 0) {
        case Qt::Key_Left:
            return goTo(m_current - 1);
        case Qt::Key_Right:
            return goTo(m_current + 1);
        case Qt::Key_Up:
            // From below the keys back to where the keyboard came from.
            return goTo(m_close->hasFocus() ? m_current : m_current - m_columns);
        case Qt::Key_Down:
            if (m_current + m_columns >= m_keys.size())
                m_close->setFocus(Qt::OtherFocusReason);
            else
                goTo(m_current + m_columns);
            return;
        case Qt::Key_Home:
            return goTo(0);
        case Qt::Key_End:
            return goTo(static_cast<int>(m_keys.size()) - 1);
        default:
            DropPanel::keyPressEvent(event);
    }
}

}  // namespace kovanix
