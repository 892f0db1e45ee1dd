#include "command/schedules/payment_dates.hpp"

#include <algorithm>
#include <chrono>

namespace finance::command {

double months_later(double date, std::int64_t months) {
    namespace calendar = std::chrono;
    constexpr calendar::sys_days day_0 = calendar::year{1960} / calendar::January / 1;
    const calendar::year_month_day from{day_0 + calendar::days{static_cast<int>(date)}};
    const calendar::year_month month = from.year() / from.month() + calendar::months{months};
    const calendar::day last = calendar::year_month_day_last{month / calendar::last}.day();
    return static_cast<double>((calendar::sys_days{month / std::min(from.day(), last)} - day_0).count());
}

}  // namespace finance::command
