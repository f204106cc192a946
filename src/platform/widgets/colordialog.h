#pragma once

#include <QColor>
#include <QDialog>
#include <QList>
#include <array>

class QLineEdit;
class QVBoxLayout;

namespace kovanix {

class ColorPreview;
class ColorSwatch;
class DrawnButton;

/// A dialog in which a colour is chosen with a thumb: swatches, the chosen colour above the one of before,
/// and red, green and blue (K, Y, M) one by one for those who want a certain value. Accepted by its button
/// alone, never by an Enter in a field, which may be a scanner's; Escape rejects it.
///
/// In the swatches the arrow keys choose; Tab comes to the chosen one.
class ColorDialog : public QDialog {
    Q_OBJECT

public:
    /// @param former  the colour of before, which is also the first one chosen
    explicit ColorDialog(const QColor& former, QWidget* parent = nullptr);
    ~ColorDialog() override;

    QColor currentColor() const { return m_color; }
    /// Chooses a colour; its transparency is dropped.
    void setCurrentColor(const QColor& color);

    /// At the design size of 1024×768; the contents scale with the dialog.
    QSize sizeHint() const override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    enum Channel { red, green, blue };
    static constexpr int channels = 3;

    QWidget* makeSwatches();
    QWidget* makeValues(const QColor& former);
    void addChannel(QVBoxLayout& rows, Channel channel, const QString& letter, const QString& name);
    QWidget* makeButtons();
    int value(Channel channel) const;
    void setValue(Channel channel, int value);
    void choose(const QColor& color, const QLineEdit* untouched);
    void typed(Channel channel);
    void leaveField(Channel channel);
    void moveFrom(ColorSwatch* swatch, int byColumns, int byRows);

    QColor m_color;
    QList<ColorSwatch*> m_swatches;
    ColorPreview* m_preview = nullptr;
    std::array<QLineEdit*, channels> m_fields{};
    DrawnButton* m_ok = nullptr;
};

}  // namespace kovanix
