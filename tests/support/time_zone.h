// The local time of tests.
#pragma once

#include <QByteArray>

#include <ctime>

namespace tonewright {

// One hour ahead of UTC, two from the last Sunday of March, 2:00, to that of October, 3:00.
constexpr const char *ZoneOfBerlin = "CET-1CEST,M3.5.0,M10.5.0/3";
// Five hours behind UTC, four from the second Sunday of March to the first of November, 2:00.
constexpr const char *ZoneOfNewYork = "EST5EDT,M3.2.0,M11.1.0";

// Local times are those of a zone, written as in the variable TZ, as long as it lives.
struct TimeZone {
    explicit TimeZone(const char *zone)
        : former(qgetenv("TZ")), wasSet(qEnvironmentVariableIsSet("TZ")) {
        qputenv("TZ", zone);
        tzset();
    }
    ~TimeZone() {
        if (wasSet) {
            qputenv("TZ", former);
        } else {
            qunsetenv("TZ");
        }
        tzset();
    }
    TimeZone(const TimeZone &) = delete;
    TimeZone &operator=(const TimeZone &) = delete;

private:
    const QByteArray former;
    const bool wasSet;
};

} // namespace tonewright
