#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>
#include <utility>

class QMessageBox;

namespace kovanix {

/// A strict queue of answers to message boxes: each box that opens takes the next entry, must bear its title
/// and text, and gets its button pressed. The boxes are the real ones.
class BoxAnswers : public QObject {
    Q_OBJECT

public:
    /// Presses Escape instead of a button.
    static constexpr int escape = -1;
    /// Leaves the box to whoever listens to opened.
    static constexpr int byHand = -2;

    /// Watches every message box of the program from now on.
    explicit BoxAnswers(QObject* parent = nullptr);

    /// Queues an answer: a MessageBoxAnswer, escape or byHand.
    void expect(const QString& title, const QString& text, int answer);
    /// Queues an answer to a box whatever it says.
    void expectAny(int answer);

    /// Asks this for the answer to a box that the queue has no entry for; nothing where no one expects it.
    void askFor(std::function<std::optional<int>(const QMessageBox&)> answer) { m_ask = std::move(answer); }

    /// What went wrong so far: unexpected boxes, wrong titles or texts, buttons that weren't there.
    const QStringList& failures() const { return m_failures; }
    /// How many answers wait for their box.
    qsizetype waiting() const { return m_expected.size(); }
    /// How many boxes have been answered.
    int answered() const { return m_answered; }

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    /// A box stands open and is about to be answered.
    void opened(QMessageBox& box);

private:
    struct Expected {
        QString title;
        QString text;
        int answer;
        bool any;
    };

    void answer(QMessageBox& box);
    void press(QMessageBox& box, int answer);

    QList<Expected> m_expected;
    std::function<std::optional<int>(const QMessageBox&)> m_ask;
    QStringList m_failures;
    int m_answered = 0;
};

}  // namespace kovanix
