// SPDX-License-Identifier: MIT
// libkel: Persistence
#include <kel/bufferarea_p.h>

#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <streambuf>
#include <sys/mman.h>

namespace
{
/// Has more characters ready, and more room, than an int can count. The memory is reserved but never touched.
class HugeBuffer : public std::streambuf
{
public:
    HugeBuffer()
    {
        setg(m_memory, m_memory, m_memory + s_size);
        setp(m_memory, m_memory + s_size);
    }
    HugeBuffer(const HugeBuffer&) = delete;
    HugeBuffer& operator=(const HugeBuffer&) = delete;
    ~HugeBuffer() override { munmap(m_memory, s_size); }

    std::ptrdiff_t taken() const { return gptr() - eback(); }
    std::ptrdiff_t put() const { return pptr() - pbase(); }

    static constexpr std::size_t s_size = std::size_t{3} << 30;

private:
    char* m_memory = static_cast<char*>(
        mmap(nullptr, s_size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0));
};
} // namespace

TEST(BufferArea, GivesNoMoreCharactersThanCanBeTakenAtOnce)
{
    HugeBuffer buffer;
    EXPECT_EQ(BufferArea::getEnd(buffer) - BufferArea::getBegin(buffer), INT_MAX);
    BufferArea::takeTo(buffer, BufferArea::getEnd(buffer));
    EXPECT_EQ(buffer.taken(), INT_MAX);
    BufferArea::takeTo(buffer, BufferArea::getEnd(buffer));
    EXPECT_EQ(buffer.taken(), std::ptrdiff_t{HugeBuffer::s_size});
}

TEST(BufferArea, GivesNoMoreRoomThanCanBeFilledAtOnce)
{
    HugeBuffer buffer;
    EXPECT_EQ(BufferArea::getRoom(buffer), std::size_t{INT_MAX});
    BufferArea::putTo(buffer, BufferArea::putBegin(buffer) + BufferArea::getRoom(buffer));
    EXPECT_EQ(buffer.put(), INT_MAX);
    BufferArea::putTo(buffer, BufferArea::putBegin(buffer) + BufferArea::getRoom(buffer));
    EXPECT_EQ(buffer.put(), std::ptrdiff_t{HugeBuffer::s_size});
}
