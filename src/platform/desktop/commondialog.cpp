#include "desktop/commondialog.h"

#include <QAbstractButton>
#include <utility>

#include "desktop/keyguard.h"
#include "desktop/windowplace.h"
#include "widgets/colordialog.h"

namespace kovanix {

CommonDialog::CommonDialog(QObject* parent) : QObject(parent) {}

void CommonDialog::showColor(QWidget& above, std::function<void()> done) {
    QWidget& window = *above.window();
    auto* dialog = new ColorDialog(m_color, &window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    // Only the window above would be blocked otherwise, and the sale behind it could go on with half a
    // colour.
    dialog->setWindowModality(Qt::ApplicationModal);
    auto* unmeant = new UnmeantKeys(dialog);
    const auto buttons = dialog->findChildren<QAbstractButton*>();
    for (QAbstractButton* button : buttons)
        button->installEventFilter(unmeant);
    const QRect area = screenArea(window.windowHandle());
    dialog->resize((QSizeF(dialog->sizeHint()) * screenScale()).toSize().boundedTo(area.size()));
    dialog->move(placeFor(dialog->size(), window.windowHandle()).topLeft());

    connect(dialog, &QDialog::finished, this, [this, dialog, done = std::move(done)](int result) {
        if (result == QDialog::Accepted)
            m_color = dialog->currentColor();
        done();
    });
    // Without this control no one waits for an answer: gone without the signal that a close would send.
    connect(this, &QObject::destroyed, dialog, [dialog] {
        dialog->hide();
        dialog->deleteLater();
    });
    dialog->show();
}

}  // namespace kovanix
