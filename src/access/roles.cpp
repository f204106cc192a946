#include "access/roles.h"

#include "values/lettercase.h"

namespace kovanix {

using namespace Qt::StringLiterals;

Role roleOf(const QString& yetki) {
    const QString role = foldTurkishI(yetki.trimmed()).replace(u'ö', u'o');
    const QString tail = u"netici"_s;
    if (role.startsWith(u'y') && role.endsWith(tail) && role.size() > tail.size())
        return Role::manager;
    if (role == u"kasiyer")
        return Role::cashier;
    return role == u"depo sevk" ? Role::warehouse : Role::other;
}

}  // namespace kovanix
