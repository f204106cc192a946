#pragma once

#include <QString>
#include <QWidget>
#include <optional>
#include <vector>

namespace kovanix {

/// The members of a control array in the order of their indices: the controls below a screen whose objectName
/// is the array's name, "_" and the index ("tus_0" … "tus_11"). Gaps are allowed; the position in the result
/// is then not the index.
std::vector<QWidget*> controlArray(const QWidget& screen, const QString& name);

/// The same, for members of one class.
template <class Control>
std::vector<Control*> controlArrayOf(const QWidget& screen, const QString& name) {
    std::vector<Control*> members;
    for (QWidget* member : controlArray(screen, name)) {
        if (auto* control = qobject_cast<Control*>(member))
            members.push_back(control);
    }
    return members;
}

/// The index of a control that is a member of a control array; nothing for any other control.
std::optional<int> controlIndex(const QWidget& control);

}  // namespace kovanix
