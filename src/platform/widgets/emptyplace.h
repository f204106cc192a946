#pragma once

#include <QString>
#include <QWidget>

namespace kovanix {

/// The place of a frame that comes and goes. While the frame isn't there, a picture and a line, muted, in the
/// middle say what brings it. Assistive tools are told the line as the place's description.
class EmptyPlace : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString picture READ picture WRITE setPicture)
    Q_PROPERTY(QString text READ text WRITE setText)

public:
    using QWidget::QWidget;

    /// The picture's path; it is painted as a shape.
    const QString& picture() const { return m_picture; }
    void setPicture(const QString& path);
    const QString& text() const { return m_text; }
    void setText(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_picture;
    QString m_text;
};

}  // namespace kovanix
