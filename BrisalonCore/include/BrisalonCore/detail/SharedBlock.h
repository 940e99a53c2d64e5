#pragma once

#include <atomic>
#include <cstdint>
#include <utility>

namespace brisalon::detail {

/// Base of an immutable block that many values share by counting references.
///
/// The count is intrusive (four bytes, no separate control block) because a
/// scan holds millions of these. A block is created with a count of zero; the
/// last SharedRef to go calls `T::destroy(const T*)`.
class SharedBlock {
public:
    SharedBlock(const SharedBlock&) = delete;
    SharedBlock& operator=(const SharedBlock&) = delete;

    void retain(std::uint32_t times = 1) const noexcept
    {
        references_.fetch_add(times, std::memory_order_relaxed);
    }

    /// Returns true when this was the last reference.
    [[nodiscard]] bool release() const noexcept
    {
        return references_.fetch_sub(1, std::memory_order_acq_rel) == 1;
    }

protected:
    SharedBlock() noexcept = default;
    ~SharedBlock() = default;

private:
    mutable std::atomic<std::uint32_t> references_{0};
};

/// A counted reference to a `T` derived from SharedBlock; may be empty.
/// Copies may be made and dropped on any thread.
template <typename T>
class SharedRef {
public:
    SharedRef() noexcept = default;
    explicit SharedRef(const T* block) noexcept : block_(block)
    {
        if (block_)
            block_->retain();
    }
    /// Takes over a reference that the block has counted already.
    static SharedRef adopt(const T* block) noexcept
    {
        SharedRef result;
        result.block_ = block;
        return result;
    }
    SharedRef(const SharedRef& other) noexcept : SharedRef(other.block_) {}
    SharedRef(SharedRef&& other) noexcept : block_(std::exchange(other.block_, nullptr)) {}
    SharedRef& operator=(SharedRef other) noexcept
    {
        std::swap(block_, other.block_);
        return *this;
    }
    ~SharedRef()
    {
        if (block_ && block_->release())
            T::destroy(block_);
    }

    const T* get() const noexcept { return block_; }
    const T* operator->() const noexcept { return block_; }
    const T& operator*() const noexcept { return *block_; }
    explicit operator bool() const noexcept { return block_ != nullptr; }

    /// Gives up the reference without dropping its count.
    [[nodiscard]] const T* detach() noexcept { return std::exchange(block_, nullptr); }

private:
    const T* block_ = nullptr;
};

} // namespace brisalon::detail
