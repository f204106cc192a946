#include "profile/profilefile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QByteArray>
#include <QByteArrayView>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

#include "values/codepage.h"
#include "values/lettercase.h"

namespace kovanix {

namespace {

// Letter case works on the bytes of the file, so that no byte is lost in a text on the way. İ and ı are
// nobody's pair here: "ip" is found as "IP" and not as "İp".
std::array<unsigned char, 256> makeFolds() {
    constexpr unsigned char dottedCapitalI = 0xDD;
    constexpr unsigned char dotlessSmallI = 0xFD;
    std::array<unsigned char, 256> folds{};
    for (unsigned i = 0; i < folds.size(); ++i) {
        const char byte = static_cast<char>(i);
        folds[i] = static_cast<unsigned char>(i);
        if (i == dottedCapitalI || i == dotlessSmallI)
            continue;
        const QString character = fromWindows1254(QByteArrayView(&byte, 1));
        const QByteArray folded = toWindows1254(lowerOrdinary(character));
        if (fromWindows1254(folded) == lowerOrdinary(character) &&
            character[0] != QChar::ReplacementCharacter)
            folds[i] = static_cast<unsigned char>(folded[0]);
    }
    return folds;
}

bool sameName(QByteArrayView a, QByteArrayView b) {
    static const std::array<unsigned char, 256> folds = makeFolds();
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char left, char right) {
        return folds[static_cast<unsigned char>(left)] == folds[static_cast<unsigned char>(right)];
    });
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

QByteArrayView trimmed(QByteArrayView text) {
    while (!text.isEmpty() && isBlank(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && isBlank(text.back()))
        text.chop(1);
    return text;
}

constexpr QByteArrayView byteOrderMark = "\xEF\xBB\xBF";

struct Line {
    qsizetype begin = 0;
    qsizetype contentEnd = 0;  // before the line end
    qsizetype end = 0;         // behind it
};

// The lines of a file one by one. A byte order mark that an editor left at the start belongs to no line.
class Lines {
public:
    explicit Lines(QByteArrayView bytes)
        : m_bytes(bytes), m_next(bytes.startsWith(byteOrderMark) ? byteOrderMark.size() : 0) {}

    bool next(Line& line) {
        if (m_next >= m_bytes.size())
            return false;
        line.begin = m_next;
        const void* const found =
            std::memchr(m_bytes.data() + m_next, '\n', static_cast<std::size_t>(m_bytes.size() - m_next));
        line.contentEnd = found ? static_cast<const char*>(found) - m_bytes.data() : m_bytes.size();
        line.end = found ? line.contentEnd + 1 : line.contentEnd;
        if (found && line.contentEnd > line.begin && m_bytes[line.contentEnd - 1] == '\r')
            --line.contentEnd;
        m_next = line.end;
        return true;
    }

private:
    QByteArrayView m_bytes;
    qsizetype m_next;
};

std::optional<QByteArrayView> headingOf(QByteArrayView content) {
    if (content.isEmpty() || content.front() != '[')
        return std::nullopt;
    qsizetype end = content.indexOf(']');
    if (end < 0) {
        // A heading whose bracket got lost still heads its section. With an equals sign it is an entry.
        if (content.contains('='))
            return std::nullopt;
        end = content.size();
    }
    return trimmed(content.sliced(1, end - 1));
}

// Where a section and a key stand in the bytes of a file; -1 where they don't.
struct Place {
    qsizetype sectionEnd = -1;  // behind the section's last line that isn't blank
    qsizetype valueBegin = -1;
    qsizetype valueEnd = -1;
};

enum class Heading { closed, any };

Place findBelow(Heading wanted, QByteArrayView bytes, QByteArrayView section, QByteArrayView key) {
    Place place;
    Lines lines(bytes);
    Line line;
    bool inside = false;
    while (lines.next(line)) {
        const QByteArrayView content = trimmed(bytes.sliced(line.begin, line.contentEnd - line.begin));
        if (content.isEmpty())
            continue;
        if (const auto heading = headingOf(content)) {
            // Only the first section of a name counts.
            if (inside)
                break;
            inside = sameName(*heading, section) && (wanted == Heading::any || content.contains(']'));
            if (inside)
                place.sectionEnd = line.end;
            continue;
        }
        if (!inside)
            continue;
        place.sectionEnd = line.end;
        if (content.front() == ';')
            continue;
        const qsizetype equals = content.indexOf('=');
        if (equals >= 0 && sameName(trimmed(content.first(equals)), key)) {
            place.valueBegin = content.data() - bytes.data() + equals + 1;
            place.valueEnd = line.contentEnd;
            break;
        }
    }
    return place;
}

Place findPlace(QByteArrayView bytes, QByteArrayView section, QByteArrayView key) {
    // A till that took a heading without its bracket for none has put a second one behind it, and kept the
    // shop's settings there since.
    const Place place = findBelow(Heading::closed, bytes, section, key);
    return place.sectionEnd >= 0 ? place : findBelow(Heading::any, bytes, section, key);
}

QByteArrayView withoutQuotes(QByteArrayView value) {
    const bool quoted =
        value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
    return quoted ? value.sliced(1, value.size() - 2) : value;
}

// The line end that the file itself uses; that of the format for a file without any.
QByteArrayView lineEndOf(QByteArrayView bytes) {
    const qsizetype newLine = bytes.indexOf('\n');
    return newLine >= 0 && (newLine == 0 || bytes[newLine - 1] != '\r') ? QByteArrayView("\n")
                                                                        : QByteArrayView("\r\n");
}

std::optional<QByteArray> readAll(const QString& path) {
    QFile file(path);
    // Not a device or a pipe: reading one could take for ever.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return std::nullopt;
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return std::nullopt;
    return bytes;
}

// Names that a line of this format can't hold, or that would read back as something else.
bool isWritableKey(QByteArrayView key) {
    return !key.isEmpty() && key.front() != '[' && key.front() != ';' &&
           std::none_of(key.begin(), key.end(),
                        [](char c) { return c == '=' || c == '\r' || c == '\n' || c == '\0'; });
}

bool isWritableSection(QByteArrayView section) {
    return !section.isEmpty() && std::none_of(section.begin(), section.end(), [](char c) {
        return c == ']' || c == '\r' || c == '\n' || c == '\0';
    });
}

// A line holds no line break, and a profile file never held anything behind a NUL.
QByteArray writableValue(const QString& value) {
    QByteArray bytes = toWindows1254(value);
    const auto end = std::find_if(bytes.cbegin(), bytes.cend(),
                                  [](char c) { return c == '\r' || c == '\n' || c == '\0'; });
    bytes.truncate(end - bytes.cbegin());
    return bytes;
}

void insertLine(QByteArray& bytes, qsizetype at, const QByteArray& line, QByteArrayView lineEnd) {
    const bool open =
        at > 0 && bytes[at - 1] != '\n' && !(at == byteOrderMark.size() && bytes.startsWith(byteOrderMark));
    QByteArray inserted;
    if (open)
        inserted.append(lineEnd);
    inserted.append(line).append(lineEnd);
    bytes.insert(at, inserted);
}

// A replacement belongs to whoever replaces, which would lock the shop out of its own file after one start by
// the administrator, or one cashier out after another's.
bool keepOwner(const QSaveFile& replacement, const QString& path) {
    struct stat old {};
    struct stat fresh {};
    if (::stat(QFile::encodeName(path).constData(), &old) != 0 ||
        ::fstat(replacement.handle(), &fresh) != 0 ||
        (old.st_uid == fresh.st_uid && old.st_gid == fresh.st_gid))
        return true;
    return ::fchown(replacement.handle(), old.st_uid, old.st_gid) == 0 &&
           ::fchmod(replacement.handle(), old.st_mode & 07777U) == 0;
}

// For a folder that takes no new file, and for an owner that can't be kept: not in one step, so a reader may
// meet a half-written file, and what was there is put back when the new bytes don't fit.
bool writeInPlace(const QString& path, const QByteArray& bytes, const QByteArray& before) {
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly | QIODevice::Unbuffered))
        return false;
    if (file.write(bytes) == bytes.size() && file.resize(bytes.size()))
        return true;
    if (file.seek(0) && file.write(before) == before.size())
        file.resize(before.size());
    return false;
}

bool replaceFile(const QString& path, const QByteArray& bytes, const QByteArray& before) {
    QSaveFile file(path);  // follows links itself
    file.setDirectWriteFallback(false);
    const bool isNew = !QFileInfo::exists(path);
    if (!file.open(QIODevice::WriteOnly))
        return writeInPlace(path, bytes, before);
    // Passwords lie in it.
    if (isNew && !file.setPermissions(QFile::ReadOwner | QFile::WriteOwner))
        return false;
    if (!keepOwner(file, path)) {
        file.cancelWriting();
        return writeInPlace(path, bytes, before);
    }
    // commit() doesn't notice bytes that its own flush couldn't write, and would put a cut file in place.
    return file.write(bytes) == bytes.size() && file.flush() && file.commit();
}

}  // namespace

QString ProfileFile::value(const QString& path, const QString& section, const QString& key) {
    const std::optional<QByteArray> bytes = readAll(path);
    if (!bytes)
        return {};
    const QByteArray sectionName = toWindows1254(section);
    const QByteArray keyName = toWindows1254(key);
    const Place place = findPlace(*bytes, trimmed(sectionName), trimmed(keyName));
    if (place.valueBegin < 0)
        return {};
    const QByteArrayView written =
        QByteArrayView(*bytes).sliced(place.valueBegin, place.valueEnd - place.valueBegin);
    const QByteArrayView value = withoutQuotes(trimmed(written));
    return fromWindows1254(value.first(std::min<qsizetype>(value.size(), longestValue)));
}

bool ProfileFile::setValue(const QString& path, const QString& section, const QString& key,
                           const QString& value) {
    const QByteArray sectionBytes = toWindows1254(section);
    const QByteArray keyBytes = toWindows1254(key);
    const QByteArrayView sectionName = trimmed(sectionBytes);
    const QByteArrayView keyName = trimmed(keyBytes);
    if (!isWritableSection(sectionName) || !isWritableKey(keyName))
        return false;

    QByteArray before;
    if (QFileInfo::exists(path)) {
        // What can't be read must not be replaced by the one new key.
        std::optional<QByteArray> read = readAll(path);
        if (!read)
            return false;
        before = *std::move(read);
    }

    QByteArray after = before;
    const QByteArrayView lineEnd = lineEndOf(before);
    const QByteArray newValue = writableValue(value);
    const QByteArray newLine = keyName.toByteArray() + '=' + newValue;
    const Place place = findPlace(before, sectionName, keyName);
    if (place.valueBegin >= 0) {
        after.replace(place.valueBegin, place.valueEnd - place.valueBegin, newValue);
    } else if (place.sectionEnd >= 0) {
        insertLine(after, place.sectionEnd, newLine, lineEnd);
    } else {
        insertLine(after, after.size(), '[' + sectionName.toByteArray() + ']', lineEnd);
        insertLine(after, after.size(), newLine, lineEnd);
    }
    if (after == before && QFileInfo::exists(path))
        return true;
    return replaceFile(path, after, before);
}

}  // namespace kovanix
