#pragma once

#include <QColor>
#include <QWidget>
#include <memory>

namespace kovanix {

class FittedText;

/// The label of the drawn family: a line of text in forecolor, painted as it stands, shrunk where it doesn't
/// fit.
class vkLabel : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString caption READ caption WRITE setCaption)
    Q_PROPERTY(QColor forecolor READ forecolor WRITE setForecolor)
    Q_PROPERTY(Qt::Alignment captionAlignment READ captionAlignment WRITE setCaptionAlignment)

public:
    explicit vkLabel(QWidget* parent = nullptr);
    ~vkLabel() override;

    const QString& caption() const { return m_caption; }
    void setCaption(const QString& text);
    QColor forecolor() const { return m_forecolor; }
    void setForecolor(const QColor& color);
    Qt::Alignment captionAlignment() const { return m_captionAlignment; }
    void setCaptionAlignment(Qt::Alignment alignment);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QString m_caption;
    QColor m_forecolor;
    Qt::Alignment m_captionAlignment = Qt::AlignLeft | Qt::AlignVCenter;
    std::unique_ptr<FittedText> m_text;
};

}  // namespace kovanix
