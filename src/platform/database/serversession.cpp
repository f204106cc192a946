#include "database/serversession.h"

#include "database/serveraddress.h"

namespace kovanix {

using namespace Qt::StringLiterals;

QString serverSessionSettings() {
    return u"-c client_min_messages=warning -c jit=off -c max_parallel_workers_per_gather=0 "
           "-c standard_conforming_strings=on -c search_path=public"_s;
}

QString serverTlsOptions(const ServerAddress& address) {
    // Where Debian keeps the certificates of the machine's own authorities; the library looks elsewhere.
    static const QString machinesOwn = u"/etc/ssl/certs/ca-certificates.crt"_s;
    switch (address.tls) {
        case ServerAddress::Tls::off:
            return u"sslmode=disable"_s;
        case ServerAddress::Tls::on:
            return u"sslmode=require"_s;
        case ServerAddress::Tls::full:
            break;
    }
    QString root = address.rootCertificate.isEmpty() ? machinesOwn : address.rootCertificate;
    return u"sslmode=verify-full;sslrootcert="_s + root.replace(u';', u"\\;"_s);
}

}  // namespace kovanix
