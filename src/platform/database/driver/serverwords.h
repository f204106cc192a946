#pragma once

#include <QStringView>

namespace kovanix::engine {

// What the driver says where the library has no words. It stands in the till's message boxes, in brackets.
inline constexpr QStringView lostServer = u"bağlantı kesildi";
inline constexpr QStringView silentServer = u"sunucu yanıt vermiyor";
inline constexpr QStringView unknownHost = u"%1 adının adresi bulunamıyor";

}  // namespace kovanix::engine
