#include "scanner/number_reader.h"

#include <cmath>

namespace {

/// The units that are left of a number.
struct NumberText {
    const char16_t* next;
    std::uint32_t left;

    bool take(char16_t unit)
    {
        if (left == 0 || *next != unit)
            return false;
        advance();
        return true;
    }

    /// The value of the next unit when that is a digit, which is then taken; else -1.
    std::int32_t takeDigit()
    {
        if (left == 0 || *next < '0' || *next > '9')
            return -1;
        const std::int32_t digit = *next - '0';
        advance();
        return digit;
    }

private:
    void advance()
    {
        ++next;
        --left;
    }
};

double readWhole(NumberText& text)
{
    double value = 0;
    for (std::int32_t digit = text.takeDigit(); digit >= 0; digit = text.takeDigit())
        value = value * 10 + digit;
    return value;
}

double readFraction(NumberText& text)
{
    double value = 0;
    double scale = 10;
    for (std::int32_t digit = text.takeDigit(); digit >= 0; digit = text.takeDigit()) {
        value += digit / scale;
        scale *= 10;
    }
    return value;
}

double scaleByExponent(double value, NumberText& text)
{
    const bool divide = text.take('-');
    text.take('+');
    std::uint32_t exponent = 0; // wraps at 32 bits
    for (std::int32_t digit = text.takeDigit(); digit >= 0; digit = text.takeDigit())
        exponent = exponent * 10 + static_cast<std::uint32_t>(digit);
    // Without this an infinite power would turn a 0 into no number at all.
    if (value == 0)
        return value;
    const double power = std::pow(10.0, exponent);
    return divide ? value / power : value * power;
}

} // namespace

void HTMLWToF(const char16_t* text, std::uint32_t length, double* result)
{
    NumberText rest = {text, length};
    const bool negative = rest.take('-');
    double value = readWhole(rest);
    if (rest.take('.'))
        value += readFraction(rest);
    if (rest.take('E'))
        value = scaleByExponent(value, rest);
    *result = negative ? -value : value;
}
