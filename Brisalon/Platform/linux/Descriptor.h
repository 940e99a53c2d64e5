#pragma once

#include <utility>

#include <sys/types.h>

namespace brisalon {

/// Owns an open file descriptor, or none. Move-only; closes itself.
class Descriptor {
public:
    Descriptor() noexcept = default;
    Descriptor(Descriptor&& other) noexcept : handle_(std::exchange(other.handle_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~Descriptor();

    /// Opens `path`, relative to the folder `base` unless absolute. Invalid when it
    /// cannot, with the reason in errno.
    static Descriptor open(int base, const char* path, int flags, mode_t mode = 0) noexcept;

    /// The folder of that name in the folder `base`, for reaching what is in it.
    /// Never follows a link at the end of the path.
    static Descriptor openFolder(int base, const char* path) noexcept;

    /// The same, made for the user alone if there is nothing of that name.
    static Descriptor openOrMakeFolder(int base, const char* path) noexcept;

    bool isValid() const noexcept { return handle_ >= 0; }
    int get() const noexcept { return handle_; }

    /// The same open file once more.
    Descriptor duplicate() const noexcept;

    /// Closes; false when something written before did not arrive.
    bool close() noexcept;

private:
    explicit Descriptor(int handle) noexcept : handle_(handle) {}
    int handle_ = -1;
};

} // namespace brisalon
