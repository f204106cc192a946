#pragma once

#include <QColor>
#include <QWidget>
#include <memory>

namespace kovanix {

class FittedText;

/// The frame of the drawn family: a rounded panel with a vertical gradient from backcolor1 to backcolor2, a
/// border in bordercolor and, when there is a caption, a title bar from titlecolor1 to titlecolor2 with the
/// caption in forecolor.
class vkFrame : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString caption READ caption WRITE setCaption)
    Q_PROPERTY(QColor backcolor1 READ backcolor1 WRITE setBackcolor1)
    Q_PROPERTY(QColor backcolor2 READ backcolor2 WRITE setBackcolor2)
    Q_PROPERTY(QColor bordercolor READ bordercolor WRITE setBordercolor)
    Q_PROPERTY(QColor forecolor READ forecolor WRITE setForecolor)
    Q_PROPERTY(QColor titlecolor1 READ titlecolor1 WRITE setTitlecolor1)
    Q_PROPERTY(QColor titlecolor2 READ titlecolor2 WRITE setTitlecolor2)

public:
    explicit vkFrame(QWidget* parent = nullptr);
    ~vkFrame() override;

    const QString& caption() const { return m_caption; }
    /// The title bar takes its height off the contents' margins.
    void setCaption(const QString& text);
    QColor backcolor1() const { return m_backcolor1; }
    void setBackcolor1(const QColor& color);
    QColor backcolor2() const { return m_backcolor2; }
    void setBackcolor2(const QColor& color);
    QColor bordercolor() const { return m_bordercolor; }
    void setBordercolor(const QColor& color);
    QColor forecolor() const { return m_forecolor; }
    void setForecolor(const QColor& color);
    QColor titlecolor1() const { return m_titlecolor1; }
    void setTitlecolor1(const QColor& color);
    QColor titlecolor2() const { return m_titlecolor2; }
    void setTitlecolor2(const QColor& color);

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    int titleHeight() const;
    void layOutTitle();
    void setColor(QColor& member, const QColor& color);

    QString m_caption;
    QColor m_backcolor1;
    QColor m_backcolor2;
    QColor m_bordercolor;
    QColor m_forecolor;
    QColor m_titlecolor1;
    QColor m_titlecolor2;
    std::unique_ptr<FittedText> m_title;
    int m_titleMargin = 0;  // what the title bar takes of the contents' upper margin
};

}  // namespace kovanix
