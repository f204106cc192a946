#include "desktop/messagebox.h"

#include <QApplication>
#include <QPointer>
#include <QPushButton>
#include <QScopeGuard>
#include <QVector>
#include <algorithm>
#include <utility>

#include "desktop/dressedbox.h"
#include "desktop/focus.h"
#include "desktop/keyguard.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

MessageBoxCaptions& captions() {
    static MessageBoxCaptions current{u"OK"_s, u"Cancel"_s,    u"Retry"_s,   u"Yes"_s,
                                      u"No"_s, u"Try Again"_s, u"Continue"_s};
    return current;
}

QString captionOf(int answer) {
    switch (answer) {
        case MessageBoxAnswer::cancel:
            return captions().cancel;
        case MessageBoxAnswer::retry:
            return captions().retry;
        case MessageBoxAnswer::yes:
            return captions().yes;
        case MessageBoxAnswer::no:
            return captions().no;
        case MessageBoxAnswer::tryAgain:
            return captions().tryAgain;
        case MessageBoxAnswer::goOn:
            return captions().goOn;
        default:
            return captions().ok;
    }
}

/// The answers that a style offers, from left to right.
QVector<int> answersOf(int style) {
    using namespace MessageBoxAnswer;
    switch (style & 0xF) {
        case MessageBoxStyle::okCancel:
            return {ok, cancel};
        case MessageBoxStyle::yesNoCancel:
            return {yes, no, cancel};
        case MessageBoxStyle::yesNo:
            return {yes, no};
        case MessageBoxStyle::retryCancel:
            return {retry, cancel};
        case MessageBoxStyle::cancelTryContinue:
            return {cancel, tryAgain, goOn};
        default:
            return {ok};
    }
}

int escapeAnswerOf(const QVector<int>& answers) {
    if (answers.contains(MessageBoxAnswer::cancel))
        return MessageBoxAnswer::cancel;
    return answers.contains(MessageBoxAnswer::no) ? MessageBoxAnswer::no : MessageBoxAnswer::ok;
}

int defaultAnswerOf(const QVector<int>& answers, int style) {
    const int index = (style >> 8) & 0x3;
    return index < answers.size() ? answers.at(index) : answers.first();
}

QMessageBox::Icon iconOf(int style) {
    switch (style & 0xF0) {
        case MessageBoxStyle::critical:
            return QMessageBox::Critical;
        case MessageBoxStyle::question:
            return QMessageBox::Question;
        case MessageBoxStyle::warning:
            return QMessageBox::Warning;
        case MessageBoxStyle::information:
            return QMessageBox::Information;
        default:
            return QMessageBox::NoIcon;
    }
}

/// The window that a box belongs to and stands in the middle of: the one in front, else any that is shown.
QWidget* windowBelow() {
    if (QWidget* front = frontWindow())
        return front;
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto visible = std::find_if(windows.rbegin(), windows.rend(), [](const QWidget* window) {
        return window->isVisible() && window->windowType() == Qt::Window;
    });
    return visible == windows.rend() ? nullptr : *visible;
}

}  // namespace

void setMessageBoxCaptions(const MessageBoxCaptions& newCaptions) {
    captions() = newCaptions;
}

int messageBox(const QString& text, int style, const QString& title) {
    // The window below may be unloaded while the box stands open, and takes the box with it: hence the guard
    // instead of a box on the stack.
    QPointer<DressedBox> box = new DressedBox(windowBelow());
    const auto drop = qScopeGuard([&box] { delete box.data(); });
    box->setText(text);
    box->setWindowTitle(title);
    box->setIcon(iconOf(style));

    const QVector<int> answers = answersOf(style);
    const int escapeAnswer = escapeAnswerOf(answers);
    const int defaultAnswer = defaultAnswerOf(answers, style);
    auto* unmeant = new UnmeantKeys(box);
    box->installEventFilter(unmeant);
    QVector<std::pair<const QAbstractButton*, int>> offered;
    for (const int answer : answers) {
        QPushButton* button = box->addAnswer(captionOf(answer), answer == defaultAnswer);
        button->installEventFilter(unmeant);
        if (answer == escapeAnswer)
            box->setEscapeButton(button);
        offered.append({button, answer});
    }

    box->exec();
    const QAbstractButton* clicked = box ? box->clickedButton() : nullptr;
    for (const auto& [button, answer] : offered) {
        if (clicked && button == clicked)
            return answer;
    }
    return escapeAnswer;
}

}  // namespace kovanix
