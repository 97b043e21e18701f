// SPDX-License-Identifier: MIT
// libkel: Persistence
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

/// Formats real numbers as printf does with "%.*g", which is the default formatting of streams.
///
/// The digits come from one exact product of 128 bits, for numbers of the size that models consist of, and take a third
/// of the time that std::to_chars needs for them. std::to_chars formats all others.
class RealFormat
{
public:
    /// As many digits as tell all doubles apart.
    static constexpr int maxPrecision = 17;
    /// Room for whatever is put; more is needed than a number has characters.
    static constexpr std::size_t room = 64;

    /// Puts a finite number with so many significant digits, 0 to 17, and returns the end of it.
    static char* put(char* out, double number, int precision)
    {
        const int count = precision == 0 ? 1 : precision;
        Decimal decimal;
        if (std::endian::native != std::endian::little || !round(std::fabs(number), count, decimal))
            return std::to_chars(out, out + room, number, std::chars_format::general, precision).ptr;
        // A sign is as likely as none: no branch.
        *out = '-';
        return putDecimal(out + std::signbit(number), decimal, count);
    }

private:
    __extension__ typedef unsigned __int128 Product;

    /// The digits d.ddd times 10 to the exponent, without the point.
    struct Decimal
    {
        std::uint64_t digits;
        int exponent;
    };

    /// 5 to this power times a mantissa fits into the product.
    static constexpr int maxScale = 27;

    static constexpr std::array<std::uint64_t, maxScale + 1> s_powersOf5 = []
    {
        std::array<std::uint64_t, maxScale + 1> powers{1};
        for (std::size_t i = 1; i < powers.size(); ++i)
            powers[i] = 5 * powers[i - 1];
        return powers;
    }();

    static constexpr std::array<std::uint64_t, maxPrecision + 1> s_powersOf10 = []
    {
        std::array<std::uint64_t, maxPrecision + 1> powers{1};
        for (std::size_t i = 1; i < powers.size(); ++i)
            powers[i] = 10 * powers[i - 1];
        return powers;
    }();

    /// The exponents for which the nearest double to their power of ten is looked up.
    static constexpr int minExponent = -12;
    static constexpr int maxExponent = 17;

    static constexpr std::array<double, maxExponent - minExponent + 1> s_realPowers = []
    {
        std::array<double, maxExponent - minExponent + 1> powers{};
        for (int exponent = minExponent; exponent <= maxExponent; ++exponent)
        {
            const auto power =
                static_cast<double>(s_powersOf10[static_cast<std::size_t>(exponent < 0 ? -exponent : exponent)]);
            powers[static_cast<std::size_t>(exponent - minExponent)] = exponent < 0 ? 1 / power : power;
        }
        return powers;
    }();

    /// The decimal exponent of a positive number, or one more where the nearest double to the next power of ten is less
    /// than that power. It is never too small: no double stands between a power and the nearest one to it.
    static bool estimateExponent(double number, int binaryExponent, int& exponent)
    {
        // The logarithm of 2 to the base of 10 is 78913 / 2^18 to six digits; the power of two is at most the number.
        exponent = (binaryExponent * 78913) >> 18;
        if (exponent < minExponent || exponent >= maxExponent)
            return false;
        exponent += number >= s_realPowers[static_cast<std::size_t>(exponent + 1 - minExponent)];
        return true;
    }

    /// Rounds a number that is not negative to so many digits, half to even; false when it is not of a size for that.
    static bool round(double number, int count, Decimal& decimal)
    {
        constexpr int mantissaBits = 52;
        constexpr std::uint64_t mantissaMask = (std::uint64_t(1) << mantissaBits) - 1;
        const auto bits = std::bit_cast<std::uint64_t>(number);
        const int binaryExponent = static_cast<int>(bits >> mantissaBits) - 1023;
        if (!estimateExponent(number, binaryExponent, decimal.exponent))
            return false;
        const int scale = count - 1 - decimal.exponent;
        if (scale < 0 || scale > maxScale)
            return false;
        const std::uint64_t mantissa = (bits & mantissaMask) | (mantissaMask + 1);
        return roundProduct(Product(mantissa) * s_powersOf5[static_cast<std::size_t>(scale)],
                            mantissaBits - binaryExponent - scale, s_powersOf10[static_cast<std::size_t>(count)],
                            decimal);
    }

    /// The product over 2 to the shift, which is below the limit, rounded half to even; false when it has fewer digits
    /// than the numbers right below the limit.
    static bool roundProduct(Product product, int shift, std::uint64_t limit, Decimal& decimal)
    {
        const auto whole = static_cast<std::uint64_t>(shift > 0 ? product >> shift : product << -shift);
        if (whole < limit / 10)
            return false;
        decimal.digits = whole + (shift > 0 && isRoundedUp(product, shift));
        if (decimal.digits == limit)
        {
            decimal.digits /= 10;
            ++decimal.exponent;
        }
        return true;
    }

    static bool isRoundedUp(Product product, int shift)
    {
        const Product half = Product(1) << (shift - 1);
        const Product rest = product & (2 * half - 1);
        const bool isOdd = ((product >> shift) & 1) != 0;
        // Up or down is anybody's guess: no branch.
        return static_cast<bool>(static_cast<int>(rest > half) |
                                 (static_cast<int>(rest == half) & static_cast<int>(isOdd)));
    }

    /// Seventeen digits as characters: one, and two words of eight. The first digit of a word is its lowest byte, which
    /// a machine with that byte order writes first.
    struct Digits
    {
        char first;
        std::uint64_t middle;
        std::uint64_t last;
        int significant; // without the zeros at the end
    };

    static Digits spread(std::uint64_t number)
    {
        constexpr std::uint64_t eightDigits = 100000000;
        constexpr std::uint64_t zeros = 0x3030303030303030;
        const std::uint64_t middle = spreadEight(number / eightDigits % eightDigits);
        const std::uint64_t last = spreadEight(number % eightDigits);
        const int trailing = last != 0 ? std::countl_zero(last) / 8 : 8 + std::countl_zero(middle) / 8;
        return {static_cast<char>('0' + number / eightDigits / eightDigits), middle | zeros, last | zeros,
                maxPrecision - trailing};
    }

    /// Eight digits, each in a byte: halves, pairs and digits are taken apart side by side. The multiplications and
    /// shifts are divisions by 100 and 10, exact for numbers of this size.
    static std::uint64_t spreadEight(std::uint64_t number)
    {
        const std::uint64_t halves = number / 10000 | (number % 10000) << 32;
        const std::uint64_t hundreds = ((halves * 10486) >> 20) & 0x0000007F0000007F;
        const std::uint64_t pairs = hundreds | (halves - 100 * hundreds) << 16;
        const std::uint64_t tens = ((pairs * 103) >> 10) & 0x000F000F000F000F;
        return tens | (pairs - 10 * tens) << 8;
    }

    static void putWord(char* out, std::uint64_t word) { std::memcpy(out, &word, sizeof(word)); }

    static void putDigits(char* out, const Digits& digits)
    {
        *out = digits.first;
        putWord(out + 1, digits.middle);
        putWord(out + 9, digits.last);
    }

    static char* putDecimal(char* out, const Decimal& decimal, int count)
    {
        const Digits digits = spread(decimal.digits * s_powersOf10[static_cast<std::size_t>(maxPrecision - count)]);
        if (decimal.exponent < -4 || decimal.exponent >= count)
            return putScientific(out, digits, decimal.exponent);
        if (decimal.exponent < 0)
            return putFraction(out, digits, -decimal.exponent);
        return putFixed(out, digits, decimal.exponent + 1);
    }

    static char* putFixed(char* out, const Digits& digits, int whole)
    {
        if (digits.significant <= whole)
        {
            putDigits(out, digits);
            return out + whole;
        }
        if (whole <= 8)
            putWithPoint(out, digits, 8 * (whole - 1));
        else
        {
            putDigits(out, digits);
            std::memmove(out + whole + 1, out + whole, static_cast<std::size_t>(digits.significant - whole));
            out[whole] = '.';
        }
        return out + digits.significant + 1;
    }

    /// The digits with a point after the first and so many bits of the middle ones. The words are put together here,
    /// since to move characters that were just put makes the machine wait.
    static void putWithPoint(char* out, const Digits& digits, int bits)
    {
        const std::uint64_t before = (std::uint64_t(1) << bits) - 1;
        *out = digits.first;
        putWord(out + 1, (digits.middle & before) | std::uint64_t('.') << bits | (digits.middle & ~before) << 8);
        out[9] = static_cast<char>(digits.middle >> 56);
        putWord(out + 10, digits.last);
    }

    /// Zeros: the one before the point, and those behind it.
    static char* putFraction(char* out, const Digits& digits, int zeros)
    {
        std::copy_n("0.000", 5, out);
        putDigits(out + 1 + zeros, digits);
        return out + 1 + zeros + digits.significant;
    }

    static char* putScientific(char* out, const Digits& digits, int exponent)
    {
        out = putFixed(out, digits, 1);
        const int distance = exponent < 0 ? -exponent : exponent;
        *out++ = 'e';
        *out++ = exponent < 0 ? '-' : '+';
        *out++ = static_cast<char>('0' + distance / 10);
        *out++ = static_cast<char>('0' + distance % 10);
        return out;
    }
};
