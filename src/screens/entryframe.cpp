#include "screens/entryframe.h"

#include <QKeyEvent>
#include <QLineEdit>

#include "desktop/focus.h"
#include "widgets/fieldedits.h"
#include "widgets/pictures.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr int stripHeight = 40;
constexpr int escape = 27;  // the code of its character

}  // namespace

EntryFrame::EntryFrame(QWidget* parent) : vkFrame(parent) {
    setTitleHeight(stripHeight);
    setCornerRadius(8);
    setMode(u"EKLE"_s);
}

void EntryFrame::setFields(const QList<Field>& fields) {
    for (const Field& field : fields) {
        m_boxes.append(field.box);
        keepOnOneLine(*field.box);
        new KeyFilter(
            *field.box,
            [next = field.next](int key) {
                if (key == Qt::Key_Return && next)
                    giveFocus(*next);
            },
            [accepts = field.accepts](int code) {
                if (code == u'\r')
                    return 0;
                return accepts && code != escape ? accepts(code) : code;  // Escape is the frame's
            });
    }
}

void EntryFrame::setMode(const QString& caption, const QString& record) {
    setCaption(caption);
    setLook(adds() ? FrameRole::adds : FrameRole::edits);
    setTitleIcon(sharedIcon(adds() ? u":/icons/plus.svg"_s : u":/icons/pencil.svg"_s));
    setTitleNote(record);
    Q_EMIT recordChanged();
}

bool EntryFrame::adds() const {
    return caption() == u"EKLE";
}

void EntryFrame::clearFields() {
    for (QLineEdit* box : m_boxes)
        box->setText({});
}

void EntryFrame::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && m_cancel)
        m_cancel->click();
    else
        vkFrame::keyPressEvent(event);
}

}  // namespace kovanix
