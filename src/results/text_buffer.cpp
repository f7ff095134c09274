#include "results/text_buffer.hpp"

#include <algorithm>
#include <cstring>

#include "results/number_format.hpp"

TextBuffer::TextBuffer(OutputFile* file, size_t capacity)
    : file_(file), capacity_(std::max<size_t>(capacity, 2 * kMaxNumberChars)) {
    data_.reset(new char[capacity_]);
}

char* TextBuffer::Reserve(size_t n) {
    if (used_ + n > capacity_) {
        Flush();
        if (used_ + n > capacity_) {
            const size_t grown = std::max(2 * capacity_, used_ + n);
            std::unique_ptr<char[]> larger(new char[grown]);
            std::memcpy(larger.get(), data_.get(), used_);
            data_ = std::move(larger);
            capacity_ = grown;
        }
    }
    return data_.get() + used_;
}

void TextBuffer::Flush() {
    if (file_ == nullptr || used_ == 0) return;
    file_->Write(data_.get(), used_);
    used_ = 0;
}

TextBuffer& TextBuffer::Text(std::string_view text) {
    if (text.size() > capacity_ && file_ != nullptr) {
        Flush();
        file_->Write(text.data(), text.size());
        return *this;
    }
    std::memcpy(Reserve(text.size()), text.data(), text.size());
    used_ += text.size();
    return *this;
}

TextBuffer& TextBuffer::Char(char c) {
    *Reserve(1) = c;
    ++used_;
    return *this;
}

TextBuffer& TextBuffer::Integer(int64_t value) {
    char* start = Reserve(kMaxNumberChars);
    used_ += FormatInteger(start, value) - start;
    return *this;
}

TextBuffer& TextBuffer::Fixed(double value, int precision) {
    char* start = Reserve(kMaxNumberChars);
    used_ += FormatFixed(start, value, precision) - start;
    return *this;
}

TextBuffer& TextBuffer::Scientific(double value) {
    char* start = Reserve(kMaxNumberChars);
    used_ += FormatScientific(start, value) - start;
    return *this;
}
