#include "screens/capitals.h"

#include "app/modTurkce.h"

namespace kovanix {

KeyFilter::KeyPress capitals() {
    return [](int code) {
        if (code == u'\r')
            return 0;
        const auto character = static_cast<char32_t>(code);
        const QList<uint> capital = buyukharf(QString::fromUcs4(&character, 1)).toUcs4();
        return capital.size() == 1 ? static_cast<int>(capital.front()) : code;
    };
}

}  // namespace kovanix
