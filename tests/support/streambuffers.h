// SPDX-License-Identifier: MIT
// Stream buffers and locales that make trouble.
#pragma once

#include <cstddef>
#include <limits>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>

/// What a failing buffer throws.
class BufferError : public std::runtime_error
{
public:
    BufferError() : std::runtime_error("buffer") {}
};

/// Takes so many bytes and refuses, or throws at, the next.
class FullBuffer : public std::streambuf
{
public:
    explicit FullBuffer(std::size_t room, bool isThrowing = false) : m_room(room), m_isThrowing(isThrowing) {}

    void setRoom(std::size_t room) { m_room = room; }

    std::string bytes;

protected:
    int_type overflow(int_type c) override
    {
        if (bytes.size() < m_room)
        {
            bytes.push_back(traits_type::to_char_type(c));
            return c;
        }
        if (m_isThrowing)
            throw BufferError();
        return traits_type::eof();
    }

private:
    std::size_t m_room;
    bool m_isThrowing;
};

/// Collects its bytes in an area of so many, which fills up now and then.
class SmallBuffer : public std::streambuf
{
public:
    explicit SmallBuffer(std::size_t size) : m_area(size, '\0') { setp(m_area.data(), m_area.data() + size); }

    /// What was put so far.
    std::string getBytes() const { return m_bytes + std::string(pbase(), pptr()); }

protected:
    int_type overflow(int_type c) override
    {
        m_bytes.append(pbase(), pptr());
        setp(m_area.data(), m_area.data() + m_area.size());
        return sputc(traits_type::to_char_type(c));
    }

private:
    std::string m_area;
    std::string m_bytes;
};

/// Gives its bytes in pieces of one, and then ends or throws.
class DrippingBuffer : public std::streambuf
{
public:
    explicit DrippingBuffer(std::string bytes, bool isThrowing = false)
        : m_bytes(std::move(bytes)),
          m_isThrowing(isThrowing)
    {
    }

protected:
    int_type underflow() override
    {
        if (m_next < m_bytes.size())
        {
            char* const piece = m_bytes.data() + m_next++;
            setg(piece, piece, piece + 1);
            return traits_type::to_int_type(*piece);
        }
        if (m_isThrowing)
            throw BufferError();
        return traits_type::eof();
    }

private:
    std::string m_bytes;
    std::size_t m_next = 0;
    bool m_isThrowing;
};

/// Gives its bytes in pieces of one and makes the stream bad where they end: reports an error without an exception.
class BadMakingBuffer : public DrippingBuffer
{
public:
    explicit BadMakingBuffer(std::string bytes) : DrippingBuffer(std::move(bytes)) {}

    std::ios* stream = nullptr;

protected:
    int_type underflow() override
    {
        const int_type next = DrippingBuffer::underflow();
        if (traits_type::eq_int_type(next, traits_type::eof()))
            stream->setstate(std::ios_base::badbit);
        return next;
    }
};

/// Gives all its bytes at once, and then throws.
class BreakingBuffer : public std::stringbuf
{
public:
    explicit BreakingBuffer(const std::string& bytes) : std::stringbuf(bytes, std::ios_base::in) {}

protected:
    int_type underflow() override
    {
        const int_type next = std::stringbuf::underflow();
        if (traits_type::eq_int_type(next, traits_type::eof()))
            throw BufferError();
        return next;
    }
};

/// Groups digits and writes a decimal comma.
class ForeignNumbers : public std::numpunct<char>
{
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

/// Makes the global locale of C++ one with foreign numbers for a scope.
class ForeignLocale
{
public:
    ForeignLocale() : m_before(std::locale::global(std::locale(std::locale::classic(), new ForeignNumbers))) {}
    ForeignLocale(const ForeignLocale&) = delete;
    ForeignLocale& operator=(const ForeignLocale&) = delete;
    ~ForeignLocale() { std::locale::global(m_before); }

private:
    std::locale m_before;
};
