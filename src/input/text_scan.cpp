#include "input/text_scan.hpp"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <fstream>

bool ReadWholeFile(const std::string& path, std::string& text) {
    std::error_code ec;
    if (std::filesystem::is_directory(path, ec)) return false;
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    in.seekg(0, std::ios::end);
    const std::streamoff size = in.tellg();
    if (size < 0) return false;
    text.resize(static_cast<size_t>(size));
    in.seekg(0, std::ios::beg);
    in.read(text.data(), size);
    text.resize(static_cast<size_t>(in.gcount()));
    return true;
}

bool LineCursor::Next(std::string_view& line) {
    if (rest_.empty()) return false;
    const size_t end = rest_.find('\n');
    if (end == std::string_view::npos) {
        line = rest_;
        rest_ = {};
    } else {
        line = rest_.substr(0, end);
        rest_.remove_prefix(end + 1);
    }
    ++number_;
    return true;
}

namespace {
bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}
bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// A number [begin, p) whose exponent lacks its digits ("1e", "1e+", "0x1p") ends with the
// exponent mark and its sign consumed, as the formatted scan does: it cannot give those
// characters back.
const char* SkipDanglingExponent(const char* begin, const char* p, const char* end,
                                 bool hexadecimal) {
    const char mark = hexadecimal ? 'p' : 'e';
    const auto isMark = [mark](char c) { return c == mark || c == mark - 32; };
    if (p < end && isMark(*p) && std::none_of(begin, p, isMark)) {
        ++p;
        if (p < end && (*p == '+' || *p == '-')) ++p;
    }
    return p;
}
}  // namespace

bool FieldScanner::SkipBlank() {
    if (failed_) return false;
    while (pos_ < end_ && IsBlank(*pos_)) ++pos_;
    if (pos_ == end_) failed_ = true;
    return !failed_;
}

bool FieldScanner::Int(int& value) {
    if (!SkipBlank()) return false;
    const char* p = pos_;
    const bool negative = *p == '-';
    if (*p == '-' || *p == '+') ++p;
    if (p == end_ || !IsDigit(*p)) {
        failed_ = true;
        return false;
    }
    // Accumulate the magnitude, saturating just beyond the int range.
    const long long limit = static_cast<long long>(INT_MAX) + 1;
    long long magnitude = 0;
    for (; p < end_ && IsDigit(*p); ++p)
        if (magnitude <= limit) magnitude = magnitude * 10 + (*p - '0');
    if (negative)
        value = magnitude >= limit ? INT_MIN : static_cast<int>(-magnitude);
    else
        value = magnitude >= limit ? INT_MAX : static_cast<int>(magnitude);
    pos_ = p;
    return true;
}

bool FieldScanner::Double(double& value) {
    if (!SkipBlank()) return false;
    const char* start = pos_;
    const char* p = start;
    const bool negative = *p == '-';
    if (*p == '-' || *p == '+') ++p;
    const bool hexadecimal = end_ - p >= 2 && p[0] == '0' && (p[1] == 'x' || p[1] == 'X');
    if (p < end_ && *p != '-' && *p != '+' && !hexadecimal) {
        double magnitude = 0.0;
        const auto [next, ec] = std::from_chars(p, end_, magnitude, std::chars_format::general);
        if (ec == std::errc()) {
            value = negative ? -magnitude : magnitude;
            const bool numeral = IsDigit(*p) || *p == '.';
            pos_ = numeral ? SkipDanglingExponent(p, next, end_, false) : next;
            return true;
        }
        if (ec == std::errc::invalid_argument) {
            failed_ = true;
            return false;
        }
    }
    // Hexadecimal numbers and magnitudes beyond the double range: the C library's conversion,
    // on a terminated copy of the rest of the line.
    const std::string rest(start, end_);
    char* stop = nullptr;
    const double converted = std::strtod(rest.c_str(), &stop);
    const char* next = start + (stop - rest.c_str());
    // "0x" without a hexadecimal digit is no number for the formatted scan.
    if (stop == rest.c_str() || (hexadecimal && next == p + 1)) {
        failed_ = true;
        return false;
    }
    value = converted;
    pos_ = SkipDanglingExponent(hexadecimal ? p + 2 : p, next, end_, hexadecimal);
    return true;
}
