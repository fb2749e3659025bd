#include "libs/kestrel_wire/utctime.h"

#include <algorithm>

namespace kestrel_wire {

namespace {

constexpr std::int64_t millisecondsPerDay = 24LL * 60 * 60 * 1000;
constexpr std::int64_t daysPerEra = 146097;      // 400 years
constexpr std::int64_t daysBeforeEpoch = 719468; // from 0000-03-01 to 1970-01-01
constexpr std::string_view form = "dddd-dd-ddTdd:dd:dd.dddZ";

struct Date {
    std::int64_t year = 0;
    std::int64_t month = 0;
    std::int64_t day = 0;
};

// Years begin in March here, so that the leap day is the last one.
std::int64_t daysSinceEpoch(const Date& date) {
    const std::int64_t year = date.month > 2 ? date.year : date.year - 1;
    const std::int64_t era = year / 400;
    const std::int64_t yearOfEra = year - era * 400;
    const std::int64_t monthFromMarch = (date.month + 9) % 12;
    const std::int64_t dayOfYear = (153 * monthFromMarch + 2) / 5 + date.day - 1;
    const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * daysPerEra + dayOfEra - daysBeforeEpoch;
}

Date dateOf(std::int64_t days) {
    const std::int64_t fromMarch = days + daysBeforeEpoch;
    const std::int64_t era = fromMarch / daysPerEra;
    const std::int64_t dayOfEra = fromMarch - era * daysPerEra;
    const std::int64_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;
    Date date;
    date.day = dayOfYear - (153 * monthFromMarch + 2) / 5 + 1;
    date.month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
    date.year = yearOfEra + era * 400 + (date.month <= 2 ? 1 : 0);
    return date;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool hasForm(std::string_view text) {
    return std::equal(text.begin(), text.end(), form.begin(), form.end(),
                      [](char c, char place) { return place == 'd' ? isDigit(c) : c == place; });
}

std::int64_t numberAt(std::string_view text, std::size_t position, std::size_t digits) {
    std::int64_t number = 0;
    for (const char c : text.substr(position, digits)) {
        number = number * 10 + (c - '0');
    }
    return number;
}

void writeNumber(std::int64_t number, std::size_t position, std::size_t digits, std::string& text) {
    for (std::size_t i = digits; i > 0; --i, number /= 10) {
        text[position + i - 1] = static_cast<char>('0' + number % 10);
    }
}

} // namespace

std::string formatUtc(UtcMilliseconds time) {
    const UtcMilliseconds known = std::clamp<UtcMilliseconds>(time, 0, lastUtc);
    const Date date = dateOf(known / millisecondsPerDay);
    const std::int64_t rest = known % millisecondsPerDay;
    std::string text(form);
    writeNumber(date.year, 0, 4, text);
    writeNumber(date.month, 5, 2, text);
    writeNumber(date.day, 8, 2, text);
    writeNumber(rest / 3600000, 11, 2, text);
    writeNumber(rest / 60000 % 60, 14, 2, text);
    writeNumber(rest / 1000 % 60, 17, 2, text);
    writeNumber(rest % 1000, 20, 3, text);
    return text;
}

bool parseUtc(std::string_view text, UtcMilliseconds& time) {
    if (!hasForm(text)) {
        return false;
    }
    const Date date = {numberAt(text, 0, 4), numberAt(text, 5, 2), numberAt(text, 8, 2)};
    const std::int64_t hours = numberAt(text, 11, 2);
    const std::int64_t minutes = numberAt(text, 14, 2);
    const std::int64_t milliseconds = numberAt(text, 17, 2) * 1000 + numberAt(text, 20, 3);
    const UtcMilliseconds parsed = daysSinceEpoch(date) * millisecondsPerDay + hours * 3600000 +
                                   minutes * 60000 + milliseconds;
    // No other date and time has this text: the 30th of February is another day.
    if (parsed < 0 || parsed > lastUtc || formatUtc(parsed) != text) {
        return false;
    }
    time = parsed;
    return true;
}

} // namespace kestrel_wire
