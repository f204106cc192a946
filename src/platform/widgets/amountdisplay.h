#pragma once

#include "widgets/drawnbutton.h"

namespace kovanix {

class FittedText;

/// A display of an amount, as a card: its label stands in the upper left corner, painted or as a label that
/// the display holds, the amount below it. An amount below nothing is owed: where the display has words for
/// that, it shows them in a corner and has a red rim.
///
/// The painted label and the words are no controls. Assistive tools are told them as its description.
class AmountDisplay : public vkToggleButton {
    Q_OBJECT
    Q_PROPERTY(QString label READ label WRITE setLabel)
    Q_PROPERTY(QString owedNote READ owedNote WRITE setOwedNote)
    Q_PROPERTY(bool framed READ isFramed WRITE setFramed)

public:
    explicit AmountDisplay(QWidget* parent = nullptr);
    ~AmountDisplay() override;

    const QString& label() const { return m_label; }
    void setLabel(const QString& text);

    const QString& owedNote() const { return m_owedNote; }
    void setOwedNote(const QString& text);
    /// Whether the amount is below nothing and the display has words for it.
    bool isOwed() const;

    /// Whether it stands in a frame that is its rim; else it has one of its own.
    bool isFramed() const { return m_framed; }
    void setFramed(bool framed);

protected:
    void paintEvent(QPaintEvent* event) override;
    bool isLit() const override { return false; }
    QMarginsF captionMargins() const override;
    void captionChanged() override;
    QColor rim(const QColor& top, const QColor& bottom) const override;

private:
    void describe();
    QFont labelFont() const;
    void paintLabel(QPainter& painter);
    void paintOwed(QPainter& painter);

    QString m_label;
    QString m_owedNote;
    bool m_framed = false;
    std::unique_ptr<FittedText> m_labelText;
    std::unique_ptr<FittedText> m_noteText;
};

}  // namespace kovanix
