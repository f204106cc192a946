#pragma once

#include <QIcon>
#include <QString>
#include <QWidget>

namespace kovanix {

/// A line that says what can be done or is to be typed here: a text, muted, behind an icon where there is
/// one. No control: it has no name, takes no focus, and tells assistive tools its text as a description.
class PaintedHint : public QWidget {
    Q_OBJECT

public:
    /// @param alignment  left, or right for the name of a field that follows
    PaintedHint(const QString& iconPath, const QString& text, Qt::Alignment alignment = Qt::AlignLeft);

    const QString& text() const { return m_text; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QIcon m_icon;
    QString m_text;
    Qt::Alignment m_alignment;
};

}  // namespace kovanix
