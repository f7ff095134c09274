#include "base/console.hpp"

#include <cstdarg>
#include <cstdio>

namespace console {

void Out(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
}

void OutLine(std::string_view text) {
    Out(text);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

void OutF(const char* format, ...) {
    va_list args;
    va_start(args, format);
    std::vfprintf(stdout, format, args);
    va_end(args);
}

void ErrF(const char* format, ...) {
    std::fflush(stdout);
    va_list args;
    va_start(args, format);
    std::vfprintf(stderr, format, args);
    va_end(args);
}

void Flush() {
    std::fflush(stdout);
}

void ErrLine(std::string_view text) {
    std::fflush(stdout);
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fputc('\n', stderr);
    std::fflush(stderr);
}

}  // namespace console
