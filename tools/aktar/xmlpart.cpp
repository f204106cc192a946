#include "aktar/xmlpart.h"

#include <expat.h>

#include <charconv>
#include <exception>
#include <type_traits>

#include "aktar/failure.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

constexpr int chunkSize = 1 << 16;
constexpr int deepest = 64;

[[noreturn]] void failBroken() {
    fail(u"Dosya bozuk: içindeki bir sayfa okunamadı"_s);
}

std::string_view withoutPrefix(std::string_view name) {
    const std::size_t colon = name.rfind(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

/// Between the parser and the listener: no exception may pass through the parser, which is C.
class Reading {
public:
    explicit Reading(XmlListener& listener) : m_listener(listener), m_parser(XML_ParserCreate(nullptr)) {
        if (!m_parser)
            throw std::bad_alloc();
        XML_SetUserData(m_parser.get(), this);
        XML_SetElementHandler(m_parser.get(), onBegin, onEnd);
        XML_SetCharacterDataHandler(m_parser.get(), onText);
        XML_SetStartDoctypeDeclHandler(m_parser.get(), onDocumentType);
    }

    /// @return false where the bytes are no XML
    bool take(const QByteArray& bytes, bool last) {
        const XML_Status status =
            XML_Parse(m_parser.get(), bytes.constData(), static_cast<int>(bytes.size()), last ? 1 : 0);
        if (m_thrown)
            std::rethrow_exception(m_thrown);
        return status == XML_STATUS_OK;
    }

private:
    struct Closer {
        void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
    };

    template <class Step>
    static void passOn(void* self, Step&& step) {
        auto& reading = *static_cast<Reading*>(self);
        if (reading.m_thrown)
            return;
        try {
            step(reading);
        } catch (...) {
            reading.m_thrown = std::current_exception();
            XML_StopParser(reading.m_parser.get(), XML_FALSE);
        }
    }
    static void onBegin(void* self, const char* name, const char** attributes) {
        passOn(self, [&](Reading& reading) {
            if (++reading.m_depth > deepest)
                failBroken();
            reading.m_listener.begin(withoutPrefix(name), XmlAttributes(attributes));
        });
    }
    static void onEnd(void* self, const char* name) {
        passOn(self, [&](Reading& reading) {
            --reading.m_depth;
            reading.m_listener.end(withoutPrefix(name));
        });
    }
    static void onText(void* self, const char* text, int length) {
        passOn(self, [&](Reading& reading) {
            reading.m_listener.text({text, static_cast<std::size_t>(length)});
        });
    }
    static void onDocumentType(void* self, const char*, const char*, const char*, int) {
        passOn(self, [](Reading&) { failBroken(); });
    }

    XmlListener& m_listener;
    std::unique_ptr<std::remove_pointer_t<XML_Parser>, Closer> m_parser;
    std::exception_ptr m_thrown;
    int m_depth = 0;
};

}  // namespace

std::string_view XmlAttributes::value(std::string_view name) const {
    for (const char* const* pair = m_pairs; *pair != nullptr; pair += 2) {
        if (withoutPrefix(pair[0]) == name)
            return pair[1];
    }
    return {};
}

int XmlAttributes::number(std::string_view name) const {
    const std::string_view digits = value(name);
    int number = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return read.ec == std::errc() && read.ptr == digits.data() + digits.size() ? number : 0;
}

void readXmlPart(ZipArchive& archive, const QString& name, XmlListener& listener) {
    const std::unique_ptr<ZipFile> file = archive.open(name);
    Reading reading(listener);
    for (bool last = false; !last && !listener.isDone();) {
        const QByteArray bytes = file->read(chunkSize);
        last = bytes.isEmpty();
        if (last)
            file->check();
        if (!reading.take(bytes, last)) {
            // Damage in the archive, where it is one, says more.
            while (!file->read(chunkSize).isEmpty()) {
            }
            file->check();
            failBroken();
        }
    }
}

}  // namespace kovanix::aktar
