#include "system_actions/week_counting.h"

namespace velarc {

using std::chrono::days;
using std::chrono::local_days;
using std::chrono::year;
using std::chrono::year_month_day;

local_days newYear(int number)
{
    return local_days(year(number) / 1 / 1);
}

local_days firstWeek(int number, std::chrono::weekday weekStart)
{
    const local_days fourth = newYear(number) + days(3);
    return fourth - (std::chrono::weekday(fourth) - weekStart);
}

int weekYear(local_days day, std::chrono::weekday weekStart)
{
    const int number = static_cast<int>(year_month_day(day).year());
    if (day >= firstWeek(number + 1, weekStart)) {
        return number + 1;
    }
    return day < firstWeek(number, weekStart) ? number - 1 : number;
}

} // namespace velarc
