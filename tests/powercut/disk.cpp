#include "disk.h"

#include <algorithm>
#include <cstring>

namespace kovanix {

namespace {

using Kind = FileStep::Kind;

constexpr qint64 sector = 512;
constexpr qint64 page = 4096;  // the system's, not the database's

void fitSize(QByteArray& file, qint64 size) {
    const qint64 before = file.size();
    file.resize(size);
    if (size > before)
        std::memset(file.data() + before, 0, static_cast<std::size_t>(size - before));
}

}  // namespace

Disk::Disk(const FileTrace& trace) : m_trace(trace) {
    for (const FileTrace::File& file : trace.files) {
        if (file.wasThereBefore)
            m_names[file.name].durable = m_names[file.name].now = static_cast<int>(m_files.size());
        m_files.push_back({file.before, file.before, {}});
    }
}

void Disk::write(QByteArray& file, const FileStep& step) {
    if (step.kind == Kind::truncate) {
        fitSize(file, step.place);
        return;
    }
    fitSize(file, std::max<qint64>(file.size(), step.place + step.bytes.size()));
    std::memcpy(file.data() + step.place, step.bytes.constData(),
                static_cast<std::size_t>(step.bytes.size()));
}

void Disk::take(const FileStep& step) {
    ++m_taken;
    switch (step.kind) {
        case Kind::write:
        case Kind::truncate: {
            File& file = m_files[step.file];
            write(file.now, step);
            file.unsynced.emplace_back(m_taken, &step);
            break;
        }
        case Kind::sync: {
            File& file = m_files[step.file];
            file.durable = file.now;
            file.unsynced.clear();
            break;
        }
        case Kind::create:
        case Kind::remove: {
            Name& name = m_names[m_trace.files[step.file].name];
            name.now = step.kind == Kind::create ? step.file : -1;
            name.unsynced.emplace_back(m_taken, name.now);
            break;
        }
        case Kind::syncFolder:
            for (Name& name : m_names) {
                for (const auto& [moment, file] : name.unsynced)
                    forget(file, name.now);
                forget(name.durable, name.now);
                name.durable = name.now;
                name.unsynced.clear();
            }
            break;
        case Kind::begun:
        case Kind::told:
            break;
    }
}

/// A file whose name is gone for good.
void Disk::forget(int file, int besides) {
    if (file >= 0 && file != besides)
        m_files[file] = {};
}

FolderFiles Disk::killed(const FileStep& next) const {
    FolderFiles files;
    for (auto name = m_names.begin(); name != m_names.end(); ++name) {
        if (name->now >= 0)
            files[name.key()] = m_files[name->now].now;
    }
    if (next.kind != Kind::write || next.bytes.size() <= page - next.place % page)
        return files;
    FileStep part = next;
    part.bytes.truncate(page - next.place % page);
    const QString& name = m_trace.files[next.file].name;
    if (m_names.value(name).now == next.file)
        write(files[name], part);
    return files;
}

QByteArray Disk::scattered(const File& file, Random& random) const {
    // How many of the unsynced steps have reached a place; the ends are likelier than what is between them.
    const qsizetype steps = static_cast<qsizetype>(file.unsynced.size());
    const auto reached = [&]() -> qsizetype {
        switch (random() % 4) {
            case 0:
                return 0;
            case 1:
                return steps;
            default:
                return static_cast<qsizetype>(random() % static_cast<quint64>(steps + 1));
        }
    };
    std::map<qint64, qsizetype> bySector;
    const auto reachedSector = [&](qint64 number) {
        const auto found = bySector.find(number);
        return found != bySector.end() ? found->second : bySector.emplace(number, reached()).first->second;
    };

    QByteArray bytes = file.durable;
    qint64 size = bytes.size();
    const qsizetype reachedSize = reached();
    for (qsizetype i = 0; i < steps; ++i) {
        const FileStep& step = *file.unsynced[static_cast<std::size_t>(i)].second;
        const bool isWrite = step.kind == Kind::write;
        const qint64 end = isWrite ? step.place + step.bytes.size() : bytes.size();
        if (i < reachedSize)
            size = isWrite ? std::max(size, end) : step.place;
        if (end > bytes.size())
            fitSize(bytes, end);
        for (qint64 place = step.place; place < end;) {
            const qint64 next = std::min(end, (place / sector + 1) * sector);
            if (i < reachedSector(place / sector)) {
                char* const target = bytes.data() + place;
                const auto length = static_cast<std::size_t>(next - place);
                if (isWrite)
                    std::memcpy(target, step.bytes.constData() + (place - step.place), length);
                else
                    std::memset(target, 0, length);
            }
            place = next;
        }
    }
    fitSize(bytes, size);
    return bytes;
}

FolderFiles Disk::cut(Cut how, Random& random) const {
    quint64 last = how == Cut::lost ? 0 : m_taken;
    if (how == Cut::inOrder) {
        quint64 first = m_taken;
        for (const File& file : m_files)
            first = file.unsynced.empty() ? first : std::min(first, file.unsynced.front().first);
        last = std::uniform_int_distribution<quint64>(std::max<quint64>(first, 1) - 1, m_taken)(random);
    }

    FolderFiles files;
    for (auto name = m_names.begin(); name != m_names.end(); ++name) {
        int number = name->durable;
        const std::size_t reached = random() % (name->unsynced.size() + 1);
        for (std::size_t i = 0; i < name->unsynced.size(); ++i) {
            if (how == Cut::scattered ? i < reached : name->unsynced[i].first <= last)
                number = name->unsynced[i].second;
        }
        if (number < 0)
            continue;
        const File& file = m_files[number];
        if (how == Cut::scattered) {
            files[name.key()] = scattered(file, random);
            continue;
        }
        QByteArray bytes = file.durable;
        for (const auto& [moment, step] : file.unsynced) {
            if (moment <= last)
                write(bytes, *step);
        }
        files[name.key()] = bytes;
    }
    return files;
}

}  // namespace kovanix
