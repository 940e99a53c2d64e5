#pragma once

#include <utility>

#include <sys/types.h>

namespace brisalon {

/// Owns an open file descriptor, or none: the one owner of what the kernel lends.
/// Move-only; closes itself. Never passed on to a program that is started.
class Descriptor {
public:
    Descriptor() noexcept = default;
    /// Takes over an open descriptor; a negative number is none.
    explicit Descriptor(int number) noexcept : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor();

    /// Opens `path`, relative to the folder `base` unless absolute, with the flags of
    /// open(2). Invalid when it cannot, with the reason in errno. Before it fails for
    /// want of descriptors, scans give up the folders that they keep open.
    static Descriptor open(int base, const char* path, int flags, mode_t mode = 0) noexcept;

    bool isValid() const noexcept { return number_ >= 0; }
    /// What the system's calls take; negative for none, which they refuse.
    int get() const noexcept { return number_; }

    /// The same open file once more, under the lowest free number from `least` on.
    Descriptor duplicate(int least = 0) const noexcept;

    /// Closes; false when something written before did not arrive.
    bool close() noexcept;

private:
    int number_ = -1;
};

} // namespace brisalon
