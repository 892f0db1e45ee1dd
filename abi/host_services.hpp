// Services of the host, each reached through a stub that marks the service vector, hands over the service identifier
// (vector << 32 | slot) in register r10 and jumps, every argument untouched. The stubs are host_services.S.
#pragma once

#include <cstdint>

extern "C" {

// Ends the host's process; does not return where the host keeps its promise.
void xexit(std::int64_t code, std::int64_t detail);

// One log line: printf-style format, then its arguments.
[[gnu::format(printf, 1, 2)]] void xpslog(const char* format, ...);

// A message of the host's catalogue.
void xpmlog(std::int32_t message_set, std::int32_t message_number);

// Case conversion in place, aware of multibyte texts.
void wzstrlo(char* text, std::int64_t length);
void wzstrup(char* text, std::int64_t length);

// Multibyte translation, modes 0 and 1; multibyte comparison with the arguments and the result of wzstcmn.
void wzsxcch(const char* source, std::int64_t length, char* destination, std::int64_t destination_length,
             std::int64_t one);
void wzsxrch(const char* source, std::int64_t length, char* destination, std::int64_t destination_length,
             std::int64_t one);
std::int32_t wzsxcmn(const char* a, std::int64_t a_length, const char* b, std::int64_t b_length, std::int64_t options);

// The host's date value (days since 1 January 1960) of a month, day and year.
double zmdy(double month, double day, double year);
}
