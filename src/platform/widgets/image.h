#pragma once

#include <QPixmap>
#include <QWidget>
#include <memory>

class QSvgRenderer;

namespace kovanix {

/// A picture that can be pressed; it never takes the focus. SVG and bitmap sources, drawn crisp at any size
/// and scale, kept in proportion and centred.
class Image : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString source READ source WRITE setSource)

public:
    explicit Image(QWidget* parent = nullptr);
    ~Image() override;

    /// The picture's path (a file or ":/…"). Empty shows nothing, the control still takes presses.
    const QString& source() const { return m_source; }
    void setSource(const QString& path);

    QSize sizeHint() const override;

Q_SIGNALS:
    /// The left button (or a finger) pressed and let go over the picture.
    void clicked();

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QSvgRenderer& drawing() const;
    QPixmap rendered(QSize room) const;

    QString m_source;
    mutable std::unique_ptr<QSvgRenderer> m_drawing;  // read once, for the size and for every painting
    QPixmap m_rendered;     // the picture at the size and scale of the last painting
    QString m_givenName;    // the accessible name that follows the tip
    bool m_failed = false;  // the source can't be read; not tried again at each painting
    bool m_down = false;
};

}  // namespace kovanix
