#include "boxanswers.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QEvent>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>

#include "desktop/messagebox.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

QString buttonCaption(int answer) {
    switch (answer) {
        case MessageBoxAnswer::yes:
            return u"Evet"_s;
        case MessageBoxAnswer::no:
            return u"Hayır"_s;
        case MessageBoxAnswer::cancel:
            return u"İptal"_s;
        case MessageBoxAnswer::retry:
        case MessageBoxAnswer::tryAgain:
            return u"Yeniden dene"_s;
        case MessageBoxAnswer::goOn:
            return u"Devam"_s;
        default:
            return u"Tamam"_s;
    }
}

}  // namespace

BoxAnswers::BoxAnswers(QObject* parent) : QObject(parent) {
    QCoreApplication::instance()->installEventFilter(this);
}

void BoxAnswers::expect(const QString& title, const QString& text, int answer) {
    m_expected.append({title, text, answer, false});
}

void BoxAnswers::expectAny(int answer) {
    m_expected.append({{}, {}, answer, true});
}

bool BoxAnswers::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show) {
        if (auto* box = qobject_cast<QMessageBox*>(watched)) {
            QTimer::singleShot(0, this, [this, shown = QPointer<QMessageBox>(box)] {
                if (shown)
                    answer(*shown);
            });
        }
    }
    return QObject::eventFilter(watched, event);
}

void BoxAnswers::answer(QMessageBox& box) {
    ++m_answered;
    const QString said = u'"' + box.windowTitle() + u"\": \"" + box.text() + u'"';
    if (m_expected.isEmpty()) {
        if (const std::optional<int> asked = m_ask ? m_ask(box) : std::nullopt) {
            Q_EMIT opened(box);
            press(box, *asked);
            return;
        }
        m_failures.append(u"unexpected box " + said);
        Q_EMIT opened(box);
        press(box, escape);
        return;
    }
    const Expected expected = m_expected.takeFirst();
    if (!expected.any && (box.windowTitle() != expected.title || box.text() != expected.text))
        m_failures.append(u"box " + said + u" instead of \"" + expected.title + u"\": \"" + expected.text +
                          u'"');
    Q_EMIT opened(box);
    if (expected.answer != byHand)
        press(box, expected.answer);
}

void BoxAnswers::press(QMessageBox& box, int answer) {
    if (answer == escape) {
        box.reject();
        return;
    }
    for (QAbstractButton* button : box.buttons()) {
        if (button->text() == buttonCaption(answer)) {
            button->click();
            return;
        }
    }
    m_failures.append(u"no button \"" + buttonCaption(answer) + u"\" in box \"" + box.text() + u'"');
    box.reject();
}

}  // namespace kovanix
