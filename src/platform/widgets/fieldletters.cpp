#include "widgets/fieldletters.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QStyle>
#include <QStyleOptionFrame>
#include <cmath>

#include "widgets/fittedtext.h"

namespace kovanix {

namespace {

// What the toolkit keeps free beside the text, and the caret behind it.
constexpr int besideText = 2;
constexpr int caretWidth = 1;

class Letters : public QObject {
public:
    explicit Letters(QLineEdit& field) : QObject(&field), m_field(field), m_full(pixelSize()) {
        field.installEventFilter(this);
        connect(&field, &QLineEdit::textChanged, this, &Letters::fit);
        fit();
    }

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::FontChange && !m_fitting) {
            m_full = pixelSize();
            fit();
        } else if (event->type() == QEvent::Resize) {
            fit();
        }
        return false;
    }

private:
    int pixelSize() const { return FittedText::pixelSizeOf(m_field.font(), m_field.logicalDpiY()); }

    int room() const {
        QStyleOptionFrame option;
        option.initFrom(&m_field);
        if (m_field.hasFrame())
            option.lineWidth = m_field.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, &m_field);
        const QRect contents =
            m_field.style()->subElementRect(QStyle::SE_LineEditContents, &option, &m_field);
        const QMargins own = m_field.textMargins();
        return contents.width() - own.left() - own.right() - 2 * besideText - caretWidth;
    }

    void fit() {
        QFont font = m_field.font();
        const int most = room();
        int size = m_full;
        for (; size > FittedText::smallestLegible; --size) {
            font.setPixelSize(size);
            if (std::ceil(QFontMetricsF(font).horizontalAdvance(m_field.text())) <= most)
                break;
        }
        if (size == pixelSize())
            return;
        const QScopedValueRollback fitting(m_fitting, true);
        font.setPixelSize(size);
        m_field.setFont(font);
    }

    QLineEdit& m_field;
    int m_full;  ///< the size that it was given, in pixels
    bool m_fitting = false;
};

}  // namespace

void keepWhole(QLineEdit& field) {
    new Letters(field);
}

}  // namespace kovanix
