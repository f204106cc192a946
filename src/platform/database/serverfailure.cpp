#include "database/serverfailure.h"

#include "database/engineerror.h"

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;
using Kind = DatabaseError::Kind;

struct StateKind {
    QLatin1StringView state;  ///< or how it begins
    Kind kind;
};

// The first that fits counts: single codes ahead of their class. Appendix A of the server's manual.
constexpr StateKind kinds[] = {
    {"08001"_L1, Kind::missing},
    {"08004"_L1, Kind::missing},
    {"08T01"_L1, Kind::untrusted},
    {"08"_L1, Kind::lost},
    {"0A000"_L1, Kind::statement},
    {"22"_L1, Kind::value},
    {"23"_L1, Kind::value},
    {"25006"_L1, Kind::readOnly},
    {"28"_L1, Kind::wrongPassword},
    {"3D000"_L1, Kind::notADatabase},
    {"40"_L1, Kind::busy},
    {"42P01"_L1, Kind::noSuchTable},
    {"42703"_L1, Kind::noSuchColumn},
    {"42501"_L1, Kind::readOnly},
    {"42"_L1, Kind::statement},
    {"53100"_L1, Kind::full},
    {"53"_L1, Kind::busy},
    {"55P03"_L1, Kind::busy},
    {"57014"_L1, Kind::busy},
    {"57P04"_L1, Kind::notADatabase},
    {"57P03"_L1, Kind::missing},
    {"57P"_L1, Kind::lost},
    {"58"_L1, Kind::damaged},
    {"XX"_L1, Kind::damaged},
};

}  // namespace

Kind kindOfServerFailure(const QString& state) {
    for (const StateKind& each : kinds) {
        if (state.startsWith(each.state))
            return each.kind;
    }
    return Kind::other;
}

bool isServerConflict(const QString& state) {
    return state == u"40P01"_s || state == u"40001"_s;
}

QString describeServerFailure(Kind kind, const QString& words) {
    return describeFailure(kind, words, dialect::Target::server);
}

}  // namespace kovanix
