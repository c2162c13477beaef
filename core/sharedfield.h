#pragma once

#include <QtGlobal>
#include <cstddef>
#include <cstdint>

#if Q_BYTE_ORDER != Q_LITTLE_ENDIAN
#error "The shared record is little-endian and is accessed as it lies in memory"
#endif

/// The fields of the shared record. Threads and processes meet here without a lock: readers tolerate an old
/// value, so these accesses, and no others in the program, are exempt from the thread sanitizer.
#define MX_UNLOCKED __attribute__((no_sanitize("thread")))

/// A number that lies at any address, even or odd: alignment 1, and each load or store is one access.
template <typename T>
class SharedNumber
{
public:
    SharedNumber() = default;
    SharedNumber(const SharedNumber &) = delete;
    SharedNumber &operator=(const SharedNumber &other)
    {
        *this = static_cast<T>(other);
        return *this;
    }

    MX_UNLOCKED operator T() const { return *reinterpret_cast<const volatile Unaligned *>(m_bytes); }
    MX_UNLOCKED SharedNumber &operator=(T value)
    {
        *reinterpret_cast<volatile Unaligned *>(m_bytes) = value;
        return *this;
    }

private:
    typedef T Unaligned __attribute__((aligned(1), may_alias));
    unsigned char m_bytes[sizeof(T)];
};

using SharedInt32 = SharedNumber<std::int32_t>;
using SharedUInt32 = SharedNumber<std::uint32_t>;
using SharedUInt16 = SharedNumber<std::uint16_t>;

/// One byte that hands data over: what was written before `raise()` is visible to whoever takes it. The taker
/// reads the data after that, so data that come meanwhile raise the flag again and are never missed.
class SharedFlag
{
public:
    bool raised() const { return __atomic_load_n(&m_byte, __ATOMIC_RELAXED) == 1; }
    void raise() { __atomic_store_n(&m_byte, 1, __ATOMIC_RELEASE); }
    /// Lowers the flag. \return whether it was raised
    bool take() { return __atomic_exchange_n(&m_byte, 0, __ATOMIC_ACQ_REL) == 1; }

private:
    unsigned char m_byte;
};

/// NUL-terminated 8-bit text in a field of `Width` bytes.
template <int Width>
class SharedText
{
public:
    static constexpr int MaxLength = Width - 1;

    /// A text copied out of the record; always terminated, whatever another process wrote into the field.
    struct Copy {
        char text[Width];
        operator const char *() const { return text; }
    };

    MX_UNLOCKED Copy get() const
    {
        Copy copy;
        int i = 0;
        for (; i < MaxLength && byte(i) != '\0'; ++i) {
            copy.text[i] = byte(i);
        }
        copy.text[i] = '\0';
        return copy;
    }

    /// Stores `text`, cut to `Width` - 1 bytes.
    MX_UNLOCKED void set(const char *text)
    {
        volatile char *field = m_bytes;
        int i = 0;
        for (; i < MaxLength && text[i] != '\0'; ++i) {
            field[i] = text[i];
        }
        field[i] = '\0';
    }

private:
    MX_UNLOCKED char byte(int i) const { return static_cast<const volatile char *>(m_bytes)[i]; }
    char m_bytes[Width];
};
