#pragma once

#include <string_view>

#include "aktar/ziparchive.h"

namespace kovanix::aktar {

/// The attributes of a tag.
class XmlAttributes {
public:
    /// @param pairs  names and values in turn, and a null pointer behind them
    explicit XmlAttributes(const char* const* pairs) : m_pairs(pairs) {}

    /// The value of an attribute; empty for one that isn't there.
    /// @param name  without a namespace's prefix
    std::string_view value(std::string_view name) const;
    /// The same as a number; 0 for none.
    int number(std::string_view name) const;

private:
    const char* const* m_pairs;
};

/// What is told of a part of a workbook while it is read: names without their prefixes, texts in UTF-8, which
/// are gone behind the call.
class XmlListener {
public:
    virtual ~XmlListener() = default;
    virtual void begin(std::string_view name, const XmlAttributes& attributes) = 0;
    virtual void end(std::string_view /*name*/) {}
    /// A piece of text; one text may come in several.
    virtual void text(std::string_view /*piece*/) {}
    /// Whether the rest needn't be read.
    virtual bool isDone() const { return false; }
};

/// Reads a part of a workbook from its beginning to its end. A document type is no part of a workbook: what
/// it could define is never read.
/// @throws RuntimeError where it isn't there, is broken or goes beyond the archive's limits; what the
/// listener throws
void readXmlPart(ZipArchive& archive, const QString& name, XmlListener& listener);

}  // namespace kovanix::aktar
