#include "reports/rangewords.h"
#include "rows.h"
#include "runtests.h"

using namespace kovanix;

namespace {

struct WordsRow {
    const char* from;
    const char* to;
    QString words;
};

}  // namespace

class RangeWordsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void words_data() {
        addRows<WordsRow>({
            {"a whole day",
             {"2026-05-04 00:00:00", "2026-05-04 23:59:59", "4 Mayıs 2026 Pazartesi, bütün gün"}},
            {"part of a day, in whole minutes",
             {"2026-05-04 10:00:00", "2026-05-04 23:59:59", "4 Mayıs 2026 Pazartesi, 10:00 – 23:59"}},
            {"seconds at the start",
             {"2026-05-04 10:00:01", "2026-05-04 12:30:59", "4 Mayıs 2026 Pazartesi, 10:00:01 – 12:30:59"}},
            {"seconds at the end",
             {"2026-05-04 10:00:00", "2026-05-04 12:30:00", "4 Mayıs 2026 Pazartesi, 10:00:00 – 12:30:00"}},
            {"one second",
             {"2026-05-04 10:00:00", "2026-05-04 10:00:00", "4 Mayıs 2026 Pazartesi, 10:00:00 – 10:00:00"}},
            {"days of a month", {"2026-05-01 00:00:00", "2026-05-04 23:59:59", "1 – 4 Mayıs 2026, 4 gün"}},
            {"a week over a month's end",
             {"2026-04-27 00:00:00", "2026-05-04 23:59:59", "27 Nisan – 4 Mayıs 2026, 8 gün"}},
            {"over a year's end",
             {"2025-12-29 00:00:00", "2026-01-04 23:59:59", "29 Aralık 2025 – 4 Ocak 2026, 7 gün"}},
            {"the same month of two years",
             {"2025-05-04 00:00:00", "2026-05-04 23:59:59", "4 Mayıs 2025 – 4 Mayıs 2026, 366 gün"}},
            {"over a leap day",
             {"2028-02-28 00:00:00", "2028-03-01 23:59:59", "28 Şubat – 1 Mart 2028, 3 gün"}},
            {"days in part",
             {"2026-05-01 09:30:00", "2026-05-04 18:00:59", "1 Mayıs 09:30 – 4 Mayıs 2026 18:00"}},
            {"days in part over a year's end",
             {"2025-12-31 22:00:00", "2026-01-01 02:00:59", "31 Aralık 2025 22:00 – 1 Ocak 2026 02:00"}},
            {"days in part to the second",
             {"2026-05-01 09:30:15", "2026-05-04 18:00:59", "1 Mayıs 09:30:15 – 4 Mayıs 2026 18:00:59"}},
            {"a second too much", {"2026-05-04 10:00:01", "2026-05-04 10:00:00", "Başlangıç bitişten sonra"}},
            {"days the wrong way round",
             {"2026-05-04 00:00:00", "2026-05-03 23:59:59", "Başlangıç bitişten sonra"}},
            {"no moment at the start", {"", "2026-05-04 23:59:59", ""}},
            {"no moment at the end", {"2026-05-04 23:59:59", "2026-05-04 25:00:00", ""}},
        });
    }
    void words() {
        QFETCH(const WordsRow, row);
        const auto moment = [](const char* text) {
            return QDateTime::fromString(QString(text), "yyyy-MM-dd HH:mm:ss");
        };
        QCOMPARE(rangeWords(moment(row.from), moment(row.to)), row.words);
    }
};

int main(int argc, char** argv) {
    return runTests<RangeWordsTest>(argc, argv);
}

#include "test_rangewords.moc"
