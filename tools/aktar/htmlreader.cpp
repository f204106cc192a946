#include "aktar/htmlreader.h"

#include <QIODevice>
#include <map>

#include "aktar/failure.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 chunkSize = 1 << 16;
constexpr qsizetype longestTag = 1 << 16;

QString nameOf(QStringView tag) {
    qsizetype end = tag.startsWith(u'/') ? 1 : 0;
    while (end < tag.size() && tag[end].isLetterOrNumber())
        ++end;
    return tag.left(end).toString().toLower();
}

QString entity(QStringView name) {
    static const std::map<QString, QString> names{{u"amp"_s, u"&"_s},  {u"lt"_s, u"<"_s},
                                                  {u"gt"_s, u">"_s},   {u"quot"_s, u"\""_s},
                                                  {u"apos"_s, u"'"_s}, {u"nbsp"_s, u" "_s}};
    if (const auto known = names.find(name.toString()); known != names.end())
        return known->second;
    if (!name.startsWith(u'#'))
        return {};
    bool ok = false;
    const bool hex = name.size() > 1 && name[1].toLower() == u'x';
    const uint code = hex ? name.mid(2).toUInt(&ok, 16) : name.mid(1).toUInt(&ok);
    if (!ok || code == 0 || code > QChar::LastValidCodePoint || QChar::isSurrogate(code))
        return {};
    const auto letter = static_cast<char32_t>(code);
    return QString::fromUcs4(&letter, 1);
}

QString withoutEntities(const QString& text) {
    constexpr qsizetype longestName = 10;
    QString plain;
    qsizetype place = 0;
    while (place < text.size()) {
        const qsizetype end = text[place] == u'&' ? text.indexOf(u';', place) : -1;
        const QString letter = end > 0 && end - place <= longestName
                                   ? entity(QStringView(text).mid(place + 1, end - place - 1))
                                   : QString();
        plain += letter.isEmpty() ? QString(text[place]) : letter;
        place = letter.isEmpty() ? place + 1 : end + 1;
    }
    return plain;
}

}  // namespace

bool looksLikeHtml(const QByteArray& beginning) {
    QByteArray start = beginning.left(4096);
    if (start.startsWith("\xEF\xBB\xBF"))
        start.remove(0, 3);
    start = start.trimmed().toLower();
    return start.startsWith('<') &&
           (start.startsWith("<!doctype html") || start.contains("<html") || start.contains("<table"));
}

void HtmlParser::feed(QStringView text) {
    for (const QChar letter : text) {
        if (m_inTag) {
            if (letter == u'>')
                endTag();
            else if (m_tag.size() < longestTag)
                m_tag += letter;
        } else if (letter == u'<') {
            m_inTag = true;
            m_tag.clear();
        } else if (m_inCell && m_hidden.isEmpty()) {
            m_cell += letter;
            if (m_cell.size() > CellTable::longestCell)
                fail(u"Dosyada aşırı uzun bir hücre var"_s);
        }
    }
}

void HtmlParser::endTag() {
    m_inTag = false;
    const QString name = nameOf(m_tag);
    if (!m_hidden.isEmpty()) {
        if (name == m_hidden)
            m_hidden.clear();
    } else if (name == u"style" || name == u"script") {
        m_hidden = u'/' + name;
    } else if (name == u"tr" || name == u"/tr" || name == u"/table") {
        endRow();
        m_inRow = name == u"tr";
    } else if (name == u"td" || name == u"th") {
        endCell();
        m_inCell = true;
    } else if (name == u"/td" || name == u"/th") {
        endCell();
    } else if (name == u"br" && m_inCell) {
        m_cell += u' ';
    }
}

void HtmlParser::endCell() {
    if (!m_inCell)
        return;
    m_table.addCell(withoutEntities(m_cell).trimmed());
    m_cell.clear();
    m_inCell = false;
}

void HtmlParser::endRow() {
    endCell();
    if (m_inRow)
        m_table.endRow(++m_row);
    m_inRow = false;
}

void HtmlParser::finish() {
    endRow();
}

CellTable readHtml(QIODevice& file, const BytesRead& progress) {
    CellTable table(true);
    HtmlParser parser(table);
    TextDecoder decoder(findEncoding(file));
    file.seek(0);
    while (true) {
        const QByteArray bytes = file.read(chunkSize);
        if (bytes.isEmpty())
            break;
        parser.feed(decoder.decode(bytes));
        if (progress)
            progress(file.pos());
    }
    parser.finish();
    return table;
}

}  // namespace kovanix::aktar
