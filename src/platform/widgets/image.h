#pragma once

#include <QPixmap>
#include <memory>

#include "widgets/look.h"
#include "widgets/pressable.h"

class QSvgRenderer;

namespace kovanix {

/// A picture that can be pressed. SVG and bitmap sources, drawn crisp at any size and scale, kept in
/// proportion and centred. Most pictures are there to be seen: the keyboard reaches one where its focus
/// policy says so.
class Image : public Pressable<QAbstractButton> {
    Q_OBJECT
    Q_PROPERTY(QString source READ source WRITE setSource)
    Q_PROPERTY(kovanix::FaceRole look READ look WRITE setLook)

public:
    explicit Image(QWidget* parent = nullptr);
    ~Image() override;

    /// The picture's path (a file or ":/…"). Empty shows nothing, the control still takes presses.
    const QString& source() const { return m_source; }
    void setSource(const QString& path);

    /// The face behind a picture that is a button; FaceRole::none (the start value) has none. On a face the
    /// picture leaves a margin.
    FaceRole look() const { return m_look; }
    void setLook(FaceRole role);

    QSize sizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QSvgRenderer& drawing() const;
    QPixmap rendered(QSize room) const;
    void paintPicture(QPainter& painter);

    QString m_source;
    FaceRole m_look = FaceRole::none;
    mutable std::shared_ptr<QSvgRenderer> m_drawing;  // read once, for the size and for every painting
    QPixmap m_rendered;     // the picture at the size and scale of the last painting
    QString m_givenName;    // the accessible name that follows the tip
    bool m_failed = false;  // the source can't be read; not tried again at each painting
};

}  // namespace kovanix
