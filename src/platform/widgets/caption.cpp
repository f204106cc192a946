#include "widgets/caption.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMetaProperty>
#include <QPlainTextEdit>
#include <QTextEdit>

namespace kovanix {

using namespace Qt::StringLiterals;
namespace {

constexpr const char* captionProperty = "caption";

QString escaped(QString text) {
    return text.replace(QLatin1Char('&'), u"&&"_s);
}

QString unescaped(const QString& text) {
    QString raw;
    raw.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == QLatin1Char('&') && ++i == text.size())
            break;
        raw += text[i];
    }
    return raw;
}

bool hasCaptionProperty(const QWidget& control) {
    return control.metaObject()->indexOfProperty(captionProperty) >= 0;
}

// What such a control shows is its text, even where it stands alone as a window.
bool holdsText(const QWidget& control) {
    return qobject_cast<const QLineEdit*>(&control) || qobject_cast<const QTextEdit*>(&control) ||
           qobject_cast<const QPlainTextEdit*>(&control) || qobject_cast<const QComboBox*>(&control) ||
           qobject_cast<const QAbstractSpinBox*>(&control);
}

}  // namespace

QString caption(const QWidget& control) {
    if (hasCaptionProperty(control))
        return control.property(captionProperty).toString();
    if (const auto* label = qobject_cast<const QLabel*>(&control))
        return label->text();
    if (const auto* button = qobject_cast<const QAbstractButton*>(&control))
        return unescaped(button->text());
    if (const auto* group = qobject_cast<const QGroupBox*>(&control))
        return unescaped(group->title());
    if (control.isWindow() && !holdsText(control))
        return control.windowTitle();
    return {};
}

bool setCaption(QWidget& control, const QString& text) {
    if (hasCaptionProperty(control))
        return control.setProperty(captionProperty, text);
    if (auto* label = qobject_cast<QLabel*>(&control)) {
        if (label->textFormat() != Qt::PlainText)
            label->setTextFormat(Qt::PlainText);
        if (label->text() != text)
            label->setText(text);
        return true;
    }
    if (auto* button = qobject_cast<QAbstractButton*>(&control)) {
        button->setText(escaped(text));
        return true;
    }
    if (auto* group = qobject_cast<QGroupBox*>(&control)) {
        group->setTitle(escaped(text));
        return true;
    }
    if (control.isWindow() && !holdsText(control)) {
        control.setWindowTitle(text);
        return true;
    }
    return false;
}

QString controlKind(const QWidget& control) {
    const QString name = QString::fromLatin1(control.metaObject()->className());
    const qsizetype scope = name.lastIndexOf(u"::"_s);
    return scope < 0 ? name : name.mid(scope + 2);
}

}  // namespace kovanix
