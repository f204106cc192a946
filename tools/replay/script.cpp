#include "script.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

const QStringList& commands() {
    static const QStringList names{u"size"_s,  u"clock"_s,  u"scan"_s,   u"type"_s,  u"key"_s,
                                   u"press"_s, u"answer"_s, u"expect"_s, u"cell"_s,  u"screenshot"_s,
                                   u"rows"_s,  u"say"_s,    u"pause"_s,  u"close"_s, u"stay"_s,
                                   u"touch"_s, u"right"_s,  u"double"_s};
    return names;
}

struct Reader {
    QStringList lines;
    QStringList& errors;
    int next = 0;

    QList<ScriptStep> block(bool repeated) {
        QList<ScriptStep> steps;
        while (next < lines.size()) {
            const int number = next + 1;
            const QString line = lines.at(next++).trimmed();
            if (line.isEmpty() || line.startsWith(u'#'))
                continue;
            const QString command = line.section(u' ', 0, 0);
            const QString argument = line.section(u' ', 1).trimmed();
            if (command == u"end") {
                if (!repeated)
                    errors.append(QString::number(number) + u": end without repeat");
                return steps;
            }
            if (command == u"repeat") {
                bool isNumber = false;
                const int times = argument.toInt(&isNumber);
                if (!isNumber || times < 0)
                    errors.append(QString::number(number) + u": repeat takes a count");
                const QList<ScriptStep> body = block(true);
                for (int time = 0; time < times; ++time)
                    steps.append(body);
                continue;
            }
            if (!commands().contains(command))
                errors.append(QString::number(number) + u": no command \"" + command + u'"');
            steps.append({number, command, argument});
        }
        if (repeated)
            errors.append(u"repeat without end"_s);
        return steps;
    }
};

}  // namespace

QString ScriptStep::first() const {
    return argument.section(u' ', 0, 0);
}

QString ScriptStep::rest() const {
    return argument.section(u' ', 1).trimmed();
}

QList<ScriptStep> readScript(const QString& text, QStringList& errors) {
    Reader reader{text.split(u'\n'), errors};
    return reader.block(false);
}

}  // namespace kovanix
